#include "extractor/runtime/version_file.h"

#include <cstring>
#include <string>

#include "formats/names.h"
#include "formats/site_names.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/network/downloader.h"

bool isInvalidUpdateURL(const char* url) {
  return url != nullptr && strncmp(url, INVALID_UPDATE_URL, strlen(INVALID_UPDATE_URL)) == 0;
}

void downloadVersionFile(const char* folder, const char* url, const char* name) {
  if (isInvalidUpdateURL(url)) {
    logMessage("[Extractor] Invalid Update URL. Skipping...\n");
    return;
  }
  const std::string fileName = versionFileName(name);
  downloadFile((url + fileName).c_str(), childPath(folder, fileName).c_str(),
               MOST_VERSION_FILE_BYTES);
}

bool readVersionText(FILE* file, char* version) {
  int length = 0;
  version[0] = 0;
  for (int c = getc(file); c != EOF; c = getc(file)) {
    logMessage("%c", c);
    if (c == ' ' || c == '\r' || c == '\n') {
      logMessage("\n[JREDownload] Spaces in version file, assuming EOF\n");
      return true;
    }
    if (length == VERSION_TEXT_SIZE - 1) {
      logMessage("\n[JREDownload] Version invalid (too long)\n");
      return false;
    }
    // A zero byte must not hide what follows it: it becomes a character that no version may have.
    version[length++] = c == 0 ? '?' : static_cast<char>(c);
    version[length] = 0;
  }
  if (ferror(file) != 0) {
    logMessage("\n[JREDownload] Version file cannot be read\n");
    return false;
  }
  return true;
}
