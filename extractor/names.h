#ifndef QUORVANE_EXTRACTOR_NAMES_H
#define QUORVANE_EXTRACTOR_NAMES_H

// Checks on texts that become part of a folder's name. Main thread.

// Ends the process with a logged error line that names `what` when `text` holds a '/', so that it
// would not stay one part of a path.
void requireFolderNamePart(const char* what, const char* text);

// Returns whether a version text that came from a server may stand in a folder's name and in a URL:
// letters, digits, '.', '_', '+' and '-' only. The empty text is valid.
[[nodiscard]] bool isVersionText(const char* text);

#endif
