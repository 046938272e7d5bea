#include "extractor/run/start_up.h"

#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstring>

#include "crypto/signature.h"
#include "extractor/run/launch_property.h"
#include "extractor/run/names.h"
#include "extractor/run/run.h"
#include "launcher/installation/install_locations.h"
#include "launcher/installation/silent_word.h"
#include "support/encoding/field_reader.h"
#include "support/encoding/hex.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/splash/splash.h"
#include "support/text/strings.h"

void prepareSplash() {
  init();
}

void resolveWrapperPaths(ExtractorRun& run) {
  run.absoluteWrapperPath = getAbsoluteExePath(run.executablePath);
  logMessage("[Extractor] The absolute wrapper path is %s\n", run.absoluteWrapperPath);
  logMessage("[Extractor] The executable name is %s\n", run.executablePath);
  run.executableDir = getAbsoluteExeDir(run.absoluteWrapperPath);
  logMessage("[Extractor] The executable dir is %s\n", run.executableDir);
}

void announceTail(const ExtractorRun& run) {
  logEndSection("Processing dynamic properties\n");
  if (run.elevated) {
    logMessage(
        "[Extractor] This is an elevated run purely to prepare an installation. Will not show UI "
        "or "
        "launch an app\n");
  }
  logMessage("\n");
  logStartSection("Extracting wrapper tail\n");
}

static bool usesDynamicUpdateUrl(const ExtractorRun& run) {
  return strcmp(run.tail.updateUrl, "D") == 0;
}

const char* storedUpdateUrl(const ExtractorRun& run) {
  return usesDynamicUpdateUrl(run) ? run.tail.updateUrl : run.updateURL.c_str();
}

const char* dynamicUpdateUrl(const ExtractorRun& run) {
  const bool isUsed = run.dynamic.updateUrl != nullptr && usesDynamicUpdateUrl(run);
  return isUsed ? run.updateURL.c_str() : run.dynamic.updateUrl;
}

void chooseUpdateUrl(ExtractorRun& run) {
  if (run.tail.requiredJavaVersion[0] != 0) {
    logMessage("[Extractor] Required Java version %s\n", run.tail.requiredJavaVersion);
  }
  if (!usesDynamicUpdateUrl(run)) {
    run.updateURL = run.tail.updateUrl;
    logMessage("[Extractor] Will use Static Update URL: %s\n", run.updateURL.c_str());
    return;
  }
  run.updateURL = run.dynamic.updateUrl != nullptr ? run.dynamic.updateUrl : "";
  logMessage("[Extractor] Will use Dynamic Update URL: %s\n", run.updateURL.c_str());
}

void decideSilence(ExtractorRun& run) {
  run.silent =
      run.dynamic.noUi || isSilent(run.tail.silentParameter, run.argumentCount, run.arguments);
  logMessage("[Extractor] Is silent install is %d\n", run.silent ? 1 : 0);
  logEndSection("Extracting tail\n");
  allowAlert(!isQuiet(run));
}

void addStaticProperties(ExtractorRun& run) {
  logMessage("[Extractor] Setting up static properties\n");
  const TailFields& tail = run.tail;
  addStaticLaunchProperty(run, "update_url", tail.updateUrl);
  addStaticLaunchProperty(run, "install_type", tail.installType);
  addStaticLaunchProperty(run, "min_splash_ms", tail.minSplashMs);
  addStaticLaunchProperty(run, "qvsig_public_key", tail.publicKeyHex);
  addStaticLaunchProperty(run, "can_override_splash", tail.canOverrideSplash);
  addStaticLaunchProperty(run, "app_name", tail.appName);
  addStaticLaunchProperty(run, "wrapper_app_version", tail.appVersion);
  addStaticLaunchProperty(run, "wrapper_gu_version", tail.guVersion);
  addStaticLaunchProperty(run, "silent_parameter", tail.silentParameter);
  addStaticLaunchProperty(run, "java_version", tail.requiredJavaVersion);
  if (run.silent) {
    addStaticLaunchProperty(run, "show_no_ui", "true");
  }
}

void loadPublicKey(ExtractorRun& run) {
  const char* hex = run.tail.publicKeyHex;
  if (hex == nullptr) {
    logMessage("[Extractor] Public key empty (no public key)\n");
    return;
  }
  const int length = static_cast<int>(strlen(hex));
  if (length == 0) {
    logMessage("[Extractor] Public key length %d (no public key)\n", length);
    return;
  }
  const int capacity = length / 2 + 2;
  const Block<unsigned char> der(
      static_cast<unsigned char*>(allocZeroed(static_cast<size_t>(capacity))));
  const int count = hexToBytes(der.get(), capacity, hex);
  logMessage("[Extractor] Processed public key of length %d\n", count);
  run.trust.key = loadDEREncodedPublicKey(der.get(), count);
  logMessage("[Extractor] Public Key: %08" PRIX32 "\n",
             static_cast<uint32_t>(reinterpret_cast<uintptr_t>(run.trust.key)));
}

void enforceSignatures(ExtractorRun& run) {
  if (!run.dynamic.requireSignature) {
    return;
  }
  if (run.trust.key == nullptr) {
    failRun(Failure::BundleUnusable,
            "[Extractor] Signatures are required, but there is no usable public key\n");
  }
  run.trust.isRequired = true;
}

void findSharedFolder(ExtractorRun& run) {
  run.sharedDir = locateSharedDirectory(run.tail.installType);
  logMessage("[Extractor] Shared dir is %s\n", run.sharedDir);
}

void endUpdateUrlInSlash(ExtractorRun& run) {
  logMessage("[Extractor] Update URL is currently '%s'\n", run.updateURL.c_str());
  if (!run.updateURL.empty() && run.updateURL.back() != '/') {
    run.updateURL += '/';
  }
  logMessage("[Extractor] Update URL is now '%s'\n", run.updateURL.c_str());
}

void nameMasterFolder(ExtractorRun& run) {
  setPath(run.masterFolder, run.sharedDir, "Quorvane-");
  appendToPath(run.masterFolder, run.tail.appName);
  logMessage("[Extractor] Master folder is %s\n", run.masterFolder);
}

// With these error numbers the Launcher goes on without an override, too. Any other leaves open
// whether there is one: under the wrong name the runtime would not be found again.
static bool isWithoutOverride(int error) {
  return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP;
}

void overrideJreName(ExtractorRun& run) {
  char path[PATH_BUFFER_SIZE];
  setPath(path, run.masterFolder, "QVApps", "JreNameOverride");
  Stream file(fopen(path, "r"));
  if (file == nullptr && !isWithoutOverride(errno)) {
    failRun("[JREOverride] Unable to open the JRE name override %s\n", path);
  }
  if (file == nullptr) {
    if (errno != ENOENT && errno != ENOTDIR) {
      logMessage("[JREOverride] The JRE name override %s cannot be opened\n", path);
    }
    logMessage("[JREOverride] No JRE name override, will continue to use %s\n", run.jreName);
    return;
  }
  logMessage("[JREOverride] Processing JRE Override file (JreNameOverride)\n");
  constexpr int kOverrideLimit = 500;
  const Block<char> name(readString(file.get(), "JRE Override App Name", kOverrideLimit));
  if (ferror(file.get()) != 0 && !leadsToFolder(path)) {
    failRun("[JREOverride] Unable to read the JRE name override %s\n", path);
  }
  if (strcmp(name.get(), "-") == 0) {
    (void)file.release();  // the file stays open on this path
    logMessage("[JREOverride] Ignoring JRE name -, keeping %s\n", run.jreName);
    return;
  }
  setPath(run.jreName, name.get());
  file.reset();
  logMessage("[JREOverride] JRE name overriden to %s\n", run.jreName);
  requireFolderNamePart("JRE name", run.jreName);
}

void makeSharedConfigFolder(const ExtractorRun& run) {
  char path[PATH_BUFFER_SIZE];
  makeDir(setPath(path, run.masterFolder, "QVAppsSharedConfig"));
}

int getPathToExe(char* buffer, int size) {
  if (size < 1) {
    return -1;
  }
  memset(buffer, 0, static_cast<size_t>(size));
  if (readlink("/proc/self/exe", buffer, static_cast<size_t>(size) - 1) < 0) {
    return -1;
  }
  logMessage("Path to exe is %s\n", buffer);
  return 0;
}
