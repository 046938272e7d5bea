// The file that names another runtime: Launcher and Extractor read the same name from it, and the
// Extractor takes none that leads out of the master folder.

#include <string>

#include "extractor/run/run.h"
#include "extractor/run/start_up.h"
#include "launcher/installation/install_locations.h"
#include "platform/process_end.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "tests/fuzz/field_model.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongest = 2048;
static const size_t kNameLimit = 500;
static const char kName[] = "Sample64JRE";
static const int kWentOn = 0;

// Returns the status with which the Extractor ends the process, or kWentOn.
static int overrideName(ExtractorRun& run) {
  int status = -1;
  fuzz::endsProcess(
      [&run] {
        overrideJreName(run);
        // Ends here as well, so that the file is closed which this step leaves open.
        endProcess(kWentOn);
      },
      &status);
  return status;
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kLongest) {
    return 0;
  }
  static const std::string master = fuzz::emptyFolder();
  const std::string bytes(data, data + size);
  fuzz::writeFile(master + "/QVApps/JreNameOverride", bytes);
  const std::string name = fuzz::FieldModel(bytes).takeField(kNameLimit);
  const bool isDefault = name == "-";

  const Block<char> launchers(getJREName(master.c_str()));
  fuzz::require(launchers.get() == (isDefault ? "Mac64JRE" : name), "the Launcher takes the name");

  static ExtractorRun run;
  setPath(run.masterFolder, master.c_str());
  setPath(run.jreName, kName);
  const bool leadsOut = name.find('/') != std::string::npos;
  fuzz::require(overrideName(run) == (leadsOut ? 1 : kWentOn), "only a path ends the process");
  fuzz::require(run.jreName == (isDefault ? kName : name), "the Extractor takes the name");
  return 0;
}
