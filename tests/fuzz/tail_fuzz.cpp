// A whole Tail record, behind the marker in an executable or as a file of the bundle: Launcher and
// Extractor find it at the same place and read the same values, whatever they are, and the steps
// that work on them stay inside their buffers.

#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "crypto/signature.h"
#include "extractor/archives/tail_stream.h"
#include "extractor/run/run.h"
#include "extractor/run/start_up.h"
#include "formats/tail_marker.h"
#include "launch/launch_properties.h"
#include "launcher/installation/tail_reader.h"
#include "tests/fuzz/field_model.h"
#include "tests/fuzz/fuzz_target.h"

// Room for a key of more than its field's 8192 bytes, and for all the other fields.
static const size_t kLongest = 24 * 1024;

// What the first byte of the input chooses.
enum Choice : unsigned char { BEHIND_EXECUTABLE = 1, NO_TAIL_FILE = 2 };

namespace {

struct Values {
  std::vector<std::string> common;
  std::string launchersUpdateUrl;
  std::string requiredJavaVersion;
  std::string updateUrl;
};

struct Scene {
  std::string folder = fuzz::emptyFolder();
  std::string executable = folder + "/MacOS/Sample";
  std::string tail = folder + "/Resources/Tail";
};

}  // namespace

static std::string markerText() {
  return {marker, TAIL_MARKER_SIZE};
}

static Values valuesOf(fuzz::FieldModel model) {
  Values values;
  for (const size_t limit : {1024, 1024, 1024, 1024, 1024, 8192, 1024, 1024, 1024}) {
    values.common.push_back(model.takeField(limit));
  }
  fuzz::FieldModel again = model;
  values.launchersUpdateUrl = again.takeField(5000);
  values.requiredJavaVersion = model.takeField(1024);
  values.updateUrl = model.takeField(5000);
  return values;
}

static void requireSame(const std::vector<std::string>& wanted, const std::vector<char*>& read) {
  for (size_t i = 0; i < read.size(); ++i) {
    fuzz::require(wanted[i] == read[i], "every field has its value");
  }
}

static void readAsLauncher(const Scene& scene, const Values* wanted) {
  int status = 0;
  const bool isEnd = fuzz::endsProcess([&] { extractTail(scene.executable.c_str()); }, &status);
  fuzz::require(isEnd == (wanted == nullptr), "the Launcher finds the record that is there");
  fuzz::require(!isEnd || status == 1, "the Launcher ends with status 1 without one");
  if (wanted == nullptr) {
    return;
  }
  requireSame(wanted->common,
              {app_name, app_version, jre_version, gu_version, min_splash, derPublicKeyHex,
               can_override_splash, install_type, silent_parameter});
  fuzz::require(wanted->launchersUpdateUrl == update_url, "the Launcher's tenth field");
  for (char* text : {app_name, app_version, jre_version, gu_version, min_splash, derPublicKeyHex,
                     can_override_splash, install_type, silent_parameter, update_url}) {
    free(text);
  }
}

static bool cannotNameFolders(const Values& values) {
  const size_t names = 4;
  for (size_t i = 0; i < names; ++i) {
    if (values.common[i].find('/') != std::string::npos) {
      return true;
    }
  }
  return false;
}

// The Extractor's steps from the record to the master folder that touch no file.
static void useFields(ExtractorRun& run) {
  chooseUpdateUrl(run);
  decideSilence(run);
  addStaticProperties(run);
  loadPublicKey(run);
  endUpdateUrlInSlash(run);
}

static void compare(const ExtractorRun& run, const Values& wanted) {
  const TailFields& tail = run.tail;
  requireSame(wanted.common,
              {tail.appName, tail.appVersion, tail.jreVersion, tail.guVersion, tail.minSplashMs,
               tail.publicKeyHex, tail.canOverrideSplash, tail.installType, tail.silentParameter});
  fuzz::require(wanted.requiredJavaVersion == tail.requiredJavaVersion, "the Extractor's tenth");
  fuzz::require(wanted.updateUrl == tail.updateUrl, "the Extractor's eleventh");
  const std::string url = run.updateURL;
  fuzz::require(url.empty() || url.back() == '/', "the update URL ends in a slash");
  const std::string word = wanted.common[8];
  fuzz::require(run.silent == (word == "-quiet"), "the word of the command line makes silent");
}

static void release(ExtractorRun& run) {
  TailFields& tail = run.tail;
  for (char* text : std::set<char*>{
           tail.appName, tail.appVersion, tail.jreVersion, tail.guVersion, tail.minSplashMs,
           tail.publicKeyHex, tail.canOverrideSplash, tail.installType, tail.silentParameter,
           tail.requiredJavaVersion, tail.updateUrl, run.launchProperties, run.executableDir}) {
    free(text);
  }
  freePublicKey(run.trust.key);
  if (run.tailStream != nullptr) {
    fclose(run.tailStream);
  }
}

static void readAsExtractor(const Scene& scene, const Values* wanted) {
  static ExtractorRun run;
  run = ExtractorRun{};
  std::string executable = scene.executable;
  char word[] = "-quiet";
  char* arguments[] = {executable.data(), word, nullptr};
  run.executablePath = executable.data();
  run.argumentCount = 2;
  run.arguments = arguments;
  run.launchProperties = static_cast<char*>(calloc(LAUNCH_PROPERTIES_SIZE, 1));
  int status = 0;
  const bool isEnd = fuzz::endsProcess(
      [] {
        resolveWrapperPaths(run);
        openTailStream(run);
        readTailFields(run);
        closeTailStream(run);
        useFields(run);
      },
      &status);
  fuzz::require(isEnd == (wanted == nullptr || cannotNameFolders(*wanted)),
                "the Extractor takes a record that is there, and names only");
  fuzz::require(!isEnd || status == 1, "the Extractor ends with status 1 otherwise");
  if (!isEnd) {
    compare(run, *wanted);
  }
  release(run);
}

// The second byte of the input is the length of the bytes before the marker; that follows, then
// the record.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2 || size - 2 < data[1] || size > kLongest) {
    return 0;
  }
  static const Scene scene;
  if (marker == nullptr) {
    marker = allocAndInitMarker();
  }
  const unsigned char choice = data[0];
  std::string executable(data + 2, data + 2 + data[1]);
  const std::string record(data + 2 + data[1], data + size);
  if ((choice & BEHIND_EXECUTABLE) != 0) {
    executable += markerText() + record;
  }
  fuzz::writeFile(scene.executable, executable);
  fuzz::writeFile(scene.tail, record);
  if ((choice & NO_TAIL_FILE) != 0) {
    std::filesystem::remove(scene.tail);
  }

  fuzz::FieldModel model(executable);
  if (model.skipTo(markerText()) >= 0) {
    const Values values = valuesOf(model);
    readAsLauncher(scene, &values);
    readAsExtractor(scene, &values);
  } else if ((choice & NO_TAIL_FILE) == 0) {
    const Values values = valuesOf(fuzz::FieldModel(record));
    readAsLauncher(scene, &values);
    readAsExtractor(scene, &values);
  } else {
    readAsLauncher(scene, nullptr);
    readAsExtractor(scene, nullptr);
  }
  return 0;
}
