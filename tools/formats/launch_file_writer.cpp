#include "tools/formats/launch_file_writer.h"

#include "support/encoding/field_reader.h"
#include "tools/formats/field_writer.h"
#include "tools/system/input_error.h"

namespace tools {

static void requireVersion(const LaunchFile& file, long since, bool isSet, const char* field) {
  if (isSet && file.version < since) {
    throw InputError(std::string(field) + " is set, but version " + std::to_string(file.version) +
                     " of the launch file has no such field; use version " + std::to_string(since) +
                     " or leave it out");
  }
}

static void requireNotNegative(long value, const char* field) {
  if (value < 0) {
    throw InputError(std::string(field) + " is " + std::to_string(value) +
                     ", which must not be negative; use 0 to leave it to the runtime");
  }
}

static void check(const LaunchFile& file) {
  if (file.version < OLDEST_LAUNCH_FILE_VERSION || file.version > NEWEST_LAUNCH_FILE_VERSION) {
    throw InputError("the launch file's version is " + std::to_string(file.version) +
                     ", known are " + std::to_string(OLDEST_LAUNCH_FILE_VERSION) + " to " +
                     std::to_string(NEWEST_LAUNCH_FILE_VERSION));
  }
  if (file.appName.empty() || file.appName.find('/') != std::string::npos) {
    throw InputError("the application's name \"" + file.appName +
                     "\" cannot name an executable; it must not be empty or contain a '/'");
  }
  requireNotNegative(file.maximumHeapMegabytes, "the maximum heap size");
  requireNotNegative(file.initialHeapMegabytes, "the initial heap size");
  requireVersion(file, 3, !file.compatibilityClass.empty(), "the compatibility class");
  requireVersion(file, 4, !file.postInstallClass.empty(), "the post-install class");
  requireVersion(file, 4, !file.preUninstallClass.empty(), "the pre-uninstall class");
  requireVersion(file, 5, !file.jvmOptions.empty(), "a JVM option");
  requireVersion(file, 6, file.mustFork, "\"must fork\"");
}

static void appendText(std::string* out, const char* name, const std::string& text) {
  appendField(out, name, text, DEFAULT_FIELD_LIMIT);
}

static void appendTexts(std::string* out, const char* name, const std::vector<std::string>& texts) {
  appendNumber(out, static_cast<long>(texts.size()));
  for (const std::string& text : texts) {
    appendText(out, name, text);
  }
}

static void appendNewerFields(std::string* out, const LaunchFile& file) {
  if (file.version >= 3) {
    appendText(out, "Main Class JRECompatibility", file.compatibilityClass);
  }
  if (file.version >= 4) {
    appendText(out, "Main Class PostInstall", file.postInstallClass);
    appendText(out, "Main Class PreUninstall", file.preUninstallClass);
  }
  if (file.version >= 5) {
    appendTexts(out, "App JVM Option Entry", file.jvmOptions);
  }
  if (file.version >= 6) {
    appendNumber(out, file.mustFork ? 1 : 0);
  }
}

std::string encodeLaunchFile(const LaunchFile& file) {
  check(file);
  std::string out;
  appendNumber(&out, file.version);
  appendText(&out, "Class", file.mainClass);
  appendText(&out, "Class OnUpdate", file.updateClass);
  appendText(&out, "App Name", file.appName);
  appendText(&out, "OS ICNS", file.icon);
  appendNumber(&out, file.urlRequired ? 1 : 0);
  appendNumber(&out, file.maximumHeapMegabytes);
  appendNumber(&out, file.initialHeapMegabytes);
  appendTexts(&out, "Classpath Entry", file.classPath);
  appendTexts(&out, "Extra Args Entry", file.arguments);
  appendNewerFields(&out, file);
  return out;
}

std::string encodeOptionsFile(const std::vector<std::string>& options) {
  std::string out;
  appendTexts(&out, "LSO Entry", options);
  return out;
}

}  // namespace tools
