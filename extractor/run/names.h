#ifndef QUORVANE_EXTRACTOR_RUN_NAMES_H
#define QUORVANE_EXTRACTOR_RUN_NAMES_H

// Checks on texts that become part of a folder's name. Main thread.

// Ends the process with a logged error line that names `what` when `text` holds a '/', so that it
// would not stay one part of a path.
void requireFolderNamePart(const char* what, const char* text);

// Ends the process with a logged error line when the version folders of the updater, the runtime
// and the application could not be told from each other, by names that are equal but for their
// case, which most volumes disregard; or when the runtime's name holds a '-', behind which nothing
// counts as the name, so that the launch would not find it.
void requireDistinctNames(const char* jreName, const char* appName);

// Returns whether a version text that came from a server may stand in a folder's name and in a URL:
// letters, digits, '.', '_', '+' and '-' only. The empty text is valid.
[[nodiscard]] bool isVersionText(const char* text);

#endif
