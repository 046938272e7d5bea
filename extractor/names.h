#ifndef QUORVANE_EXTRACTOR_NAMES_H
#define QUORVANE_EXTRACTOR_NAMES_H

// Checks on texts that become part of a folder's name. Main thread.

// Returns whether `text` stays one part of a path wherever it is put: it holds no '/'.
[[nodiscard]] bool isFolderNamePart(const char* text);

// Ends the process with a logged error line that names `what` when `text` is no folder name part.
void requireFolderNamePart(const char* what, const char* text);

// Returns whether a version text that came from a server may stand in a folder's name and in a URL:
// letters, digits, '.', '_', '+' and '-' only. The empty text is valid.
[[nodiscard]] bool isVersionText(const char* text);

#endif
