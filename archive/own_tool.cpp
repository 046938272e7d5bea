#include "archive/own_tool.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>

#include "archive/archive.h"
#include "archive/entry.h"
#include "archive/signature_check.h"
#include "support/encoding/field_reader.h"
#include "support/owned.h"
#include "support/text/strings.h"

namespace {

// What a look through an archive's records finds without extracting any.
struct Survey {
  bool needsTool = false;
  bool isReadable = true;
  MetSignature met;
};

}  // namespace

static bool isBelow(const char* path, const char* folder) {
  const size_t length = strlen(folder);
  return strncmp(path, folder, length) == 0 && path[length] == '/';
}

// Looks at the next record. Returns false behind the last one that an extraction would read, and at
// a length that no entry has, where it would end.
static bool surveyRecord(FILE* archive, Survey* survey) {
  survey->met.offset = ftello(archive);
  const Block<char> type(readString(archive, "Archive File Type"));
  if (type.get()[0] == 0) {
    return false;
  }
  const Block<char> path(readString(archive, "Archive File Path", DEFAULT_FIELD_LIMIT));
  toNativePath(path.get());
  if (atol(type.get()) == FOLDER_ENTRY) {
    return true;
  }
  const long length = readInt(archive, "Archive File Length");
  if (strcmp(path.get(), SIGNATURE_RECORD_PATH) == 0) {
    char* hex = nullptr;
    readSignatureFields(archive, &survey->met.signedLength, &hex);
    survey->met.hex.reset(hex);
    return false;
  }
  survey->needsTool = survey->needsTool || atol(type.get()) == PACK200_ENTRY;
  return length >= 0 && fseeko(archive, length, SEEK_CUR) == 0;
}

static Survey surveyArchive(const char* archivePath) {
  const Stream archive = openArchive(archivePath);
  Survey survey;
  noteFile(archive.get(), &survey.met);
  while (surveyRecord(archive.get(), &survey)) {
  }
  survey.isReadable = ferror(archive.get()) == 0;
  survey.met.isComplete = feof(archive.get()) == 0;
  return survey;
}

bool mayRunTool(const char* unpack200Exe, const char* archivePath, const char* destDir,
                Rsa_key* key) {
  if (!requireSignature || unpack200Exe == nullptr || !isBelow(unpack200Exe, destDir)) {
    return true;
  }
  const Survey survey = surveyArchive(archivePath);
  if (!survey.isReadable) {
    return false;
  }
  return !survey.needsTool ||
         (survey.met.hex != nullptr && isSignatureRight(archivePath, survey.met, key));
}
