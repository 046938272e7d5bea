#ifndef QUORVANE_EXTRACTOR_RUN_NAMES_H
#define QUORVANE_EXTRACTOR_RUN_NAMES_H

// Checks of texts that become part of a folder's name. Main thread.

// Ends the process with a logged error line that names `what` if `text` contains a '/', so that it
// would not be a single path component.
void requireFolderNamePart(const char* what, const char* text);

// Ends the process with a logged error line if the version folders of the updater, the runtime and
// the application could not be told apart, because their names differ at most in case, which most
// volumes ignore; or if the runtime's name contains a '-': the launch would ignore everything after
// it and not find the runtime.
void requireDistinctNames(const char* jreName, const char* appName);

// Returns whether a version text from a server is safe in a folder's name and in a URL: letters,
// digits, '.', '_', '+' and '-' only. The empty text is valid.
[[nodiscard]] bool isVersionText(const char* text);

#endif
