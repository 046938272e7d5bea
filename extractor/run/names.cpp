#include "extractor/run/names.h"

#include <strings.h>

#include <cstring>

#include "extractor/run/run.h"
#include "formats/names.h"

void requireFolderNamePart(const char* what, const char* text) {
  if (strchr(text, '/') != nullptr) {
    failRun(Failure::BundleUnusable, "[Extractor] The %s cannot be part of a folder name: %.200s\n",
            what, text);
  }
}

[[noreturn]] static void refuseName(const char* what, const char* name) {
  failRun(Failure::BundleUnusable, "[Extractor] The %s cannot name a component: %.200s\n", what,
          name);
}

void requireDistinctNames(const char* jreName, const char* appName) {
  const auto isTaken = [](const char* name) { return strcasecmp(name, UPDATER_NAME) == 0; };
  if (isTaken(appName)) {
    refuseName("App Name", appName);
  }
  if (isTaken(jreName) || strcasecmp(jreName, appName) == 0 || strchr(jreName, '-') != nullptr) {
    refuseName("JRE name", jreName);
  }
}

bool isVersionText(const char* text) {
  static const char kAllowed[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._+-";
  return text[strspn(text, kAllowed)] == 0;
}
