#ifndef QUORVANE_EXTRACTOR_RUNTIME_VERSION_FILE_H
#define QUORVANE_EXTRACTOR_RUNTIME_VERSION_FILE_H

#include <cstdio>

// The version file of an update site: one line of text that names the version of the site's runtime
// archive. Main thread.

// Size of a version text's buffer; a version has at most 50 characters.
constexpr int VERSION_TEXT_SIZE = 51;

// The largest version file that is downloaded. Sites may put more than the version into it, but the
// bytes come from outside and end up in the user's home.
constexpr int MOST_VERSION_FILE_BYTES = 64 * 1024;

// Returns whether `url` is present and begins with INVALID_UPDATE_URL.
[[nodiscard]] bool isInvalidUpdateURL(const char* url);

// Downloads the version file of the runtime `name` from the update site `url`, which ends in '/',
// into the folder `folder`, unless the URL is the placeholder. Logs only that it is skipped; the
// caller checks for the file, named as versionFileName() says. A file of more than
// MOST_VERSION_FILE_BYTES counts as not downloaded.
void downloadVersionFile(const char* folder, const char* url, const char* name);

// Reads the version text from `file` into the VERSION_TEXT_SIZE bytes at `version`: up to a blank,
// a line end or the end of the file. Logs each character. Returns false, after a logged line, if it
// is too long or cannot be read.
[[nodiscard]] bool readVersionText(FILE* file, char* version);

#endif
