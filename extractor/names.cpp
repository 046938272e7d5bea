#include "extractor/names.h"

#include <cstring>

#include "extractor/run.h"

void requireFolderNamePart(const char* what, const char* text) {
  if (strchr(text, '/') != nullptr) {
    failRun("[Extractor] The %s cannot be part of a folder name: %.200s\n", what, text);
  }
}

bool isVersionText(const char* text) {
  static const char kAllowed[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._+-";
  return text[strspn(text, kAllowed)] == 0;
}
