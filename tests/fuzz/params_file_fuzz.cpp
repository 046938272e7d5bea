// The params file: its pairs, as many as are counted and there, become launch properties in their
// order, and those that the Extractor knows have their effect; a runtime's name that leads out of
// the master folder ends the process with status 1.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "extractor/run/params_file.h"
#include "extractor/run/run.h"
#include "formats/params_format.h"
#include "launch/launch_app.h"
#include "support/files/paths.h"
#include "tests/fuzz/field_model.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongest = 8192;
static const long kMostFields = 60;
static const size_t kNameLimit = 1024;
static const size_t kValueLimit = 200000;

// What the first byte of the input chooses.
enum Choice : unsigned char { WITHOUT_MARKER = 1, SECOND_PLACE = 2, NO_FILE = 4 };

namespace {

struct Wanted {
  std::string properties;
  std::string updateUrl;
  bool hasUpdateUrl = false;
  bool noUi = false;
  bool requireSignature = false;
  bool endsProcess = false;
};

struct Scene {
  std::string folder = fuzz::emptyFolder();
  std::string executables = folder + "/MacOS";
  std::string first = folder + "/Resources/AppParams.excludefromsigning";
  std::string second = folder + "/Resources/params.lproj/locversion.plist";

  Scene() { std::filesystem::create_directory(executables); }

  void layOut(unsigned char choice, const std::string& bytes) const {
    std::filesystem::remove(first);
    std::filesystem::remove(second);
    if ((choice & NO_FILE) == 0) {
      fuzz::writeFile((choice & SECOND_PLACE) != 0 ? second : first, bytes);
    }
  }
};

}  // namespace

static void apply(const std::string& name, const std::string& value, Wanted* wanted) {
  wanted->properties += "qvdyna_" + name + '\0' + (value.empty() ? "\x04" : value) + '\0';
  if (name == "update_url") {
    wanted->hasUpdateUrl = true;
    wanted->updateUrl = value;
  }
  wanted->noUi = wanted->noUi || (name == "show_no_ui" && value == "true");
  wanted->requireSignature =
      wanted->requireSignature || (name == "require_signature" && value == "true");
  // A name that does not fit its buffer becomes a path at which nothing can be.
  wanted->endsProcess = name == "jre_name" &&
                        (value.find('/') != std::string::npos || value.size() >= PATH_BUFFER_SIZE);
}

static Wanted wantedOf(const std::string& bytes, const std::string& marker) {
  fuzz::FieldModel model(bytes);
  Wanted wanted;
  if (model.skipTo(marker) < 0) {
    wanted.endsProcess = true;
    return wanted;
  }
  const long count = model.takeNumber();
  for (long i = 0; i < count && !model.hasMetEnd() && !wanted.endsProcess; ++i) {
    const std::string name = model.takeField(kNameLimit);
    apply(name, model.takeField(kValueLimit), &wanted);
  }
  return wanted;
}

static void compare(const ExtractorRun& run, const Wanted& wanted) {
  const DynamicProperties& dynamic = run.dynamic;
  fuzz::require(
      memcmp(run.launchProperties, wanted.properties.data(), wanted.properties.size()) == 0,
      "the launch properties are the file's pairs");
  fuzz::require(run.launchProperties[wanted.properties.size()] == 0, "and no others");
  fuzz::require((dynamic.updateUrl != nullptr) == wanted.hasUpdateUrl &&
                    (dynamic.updateUrl == nullptr || dynamic.updateUrl == wanted.updateUrl),
                "the last update URL counts");
  fuzz::require(dynamic.noUi == wanted.noUi, "what says that nothing is shown");
  fuzz::require(dynamic.requireSignature == wanted.requireSignature, "what asks for signatures");
  fuzz::require(strchr(run.jreName, '/') == nullptr, "the runtime's name stays a name");
}

static void release(ExtractorRun& run) {
  free(run.launchProperties);
  free(run.dynamic.updateUrl);
  free(run.dynamic.splashImage);
  run = ExtractorRun{};
  forceSpawn = false;
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // Every value is read into a block of its limit: many of them take too long.
  if (size == 0 || size > kLongest || std::count(data, data + size, 0) > kMostFields) {
    return 0;
  }
  static const Scene scene;
  static ExtractorRun run;
  const unsigned char choice = data[0];
  const std::string marker(reinterpret_cast<const char*>(paramsMarker), PARAMS_MARKER_SIZE);
  const std::string bytes =
      ((choice & WITHOUT_MARKER) != 0 ? "" : marker) + std::string(data + 1, data + size);
  scene.layOut(choice, bytes);
  std::string executables = scene.executables;
  run.executableDir = executables.data();
  const Wanted wanted = wantedOf(bytes, marker);
  int status = 0;
  const bool isEnd = fuzz::endsProcess([] { readDynamicProperties(run); }, &status);
  fuzz::require(isEnd == (wanted.endsProcess || (choice & NO_FILE) != 0),
                "only a missing file or marker or a wrong name ends the process");
  fuzz::require(!isEnd || status == 1, "with status 1");
  if (!isEnd) {
    compare(run, wanted);
  }
  release(run);
  return 0;
}
