#include <algorithm>
#include <cctype>

#include "formats/names.h"
#include "formats/tail_fields.h"
#include "tools/formats/field_writer.h"
#include "tools/formats/tail_writer.h"
#include "tools/formats/value_check.h"
#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"

namespace tools {

// The components besides the application that have version folders in its master folder.
static const char* const kOtherComponents[] = {UPDATER_NAME, DEFAULT_JRE_NAME};

static void requireAppName(const std::string& name) {
  if (name.empty() || name.find_first_of("/-") != std::string::npos) {
    throw InputError("the application's name \"" + name +
                     "\" cannot name its folders; it must not be empty or contain a '/' or a '-'");
  }
  for (const char* other : kOtherComponents) {
    if (isSameButForCase(name, other)) {
      throw InputError("the application's name \"" + name +
                       "\" is that of another component; choose a different one");
    }
  }
}

static bool consistsOf(const std::string& text, int (*isMember)(int)) {
  return std::all_of(text.begin(), text.end(), [=](unsigned char c) { return isMember(c) != 0; });
}

static void requireVersion(const std::string& version, const char* what) {
  constexpr size_t kMostDigits = 18;
  if (version.size() > kMostDigits || !consistsOf(version, isdigit)) {
    throw InputError(std::string(what) + " is \"" + version +
                     "\"; versions are compared as whole numbers, so use up to 18 digits, or "
                     "leave it empty if it is not carried");
  }
}

static void requireKey(const std::string& hex) {
  if (hex.size() % 2 != 0 || !consistsOf(hex, isxdigit)) {
    throw InputError(
        "the public key is not hexadecimal text; give what 'quorvane-pack key show' prints");
  }
}

static void requireInstallType(const std::string& type) {
  if (type != INSTALL_FOR_ALL && type != INSTALL_FOR_USER && type != INSTALL_TEMPORARY) {
    throw InputError("the install type is \"" + type + "\"; known are " + INSTALL_FOR_ALL + ", " +
                     INSTALL_FOR_USER + " and " + INSTALL_TEMPORARY);
  }
}

static void requireJavaVersion(const std::string& version) {
  const std::string fault = faultOfRequiredJava(version);
  if (!fault.empty()) {
    throw InputError("the required Java version is \"" + version + "\"; " + fault);
  }
}

static void check(const Tail& tail) {
  requireAppName(tail.appName);
  requireVersion(tail.appVersion, "the application's version");
  requireVersion(tail.jreVersion, "the runtime's version");
  requireVersion(tail.guVersion, "the GenericUpdater's version");
  if (tail.minSplashMs < 0) {
    throw InputError("the splash time is " + std::to_string(tail.minSplashMs) +
                     " ms, which must not be negative");
  }
  requireKey(tail.publicKeyHex);
  requireInstallType(tail.installType);
  requireJavaVersion(tail.requiredJavaVersion);
}

static void appendTailField(std::string* out, TailFieldNumber number, const std::string& value) {
  appendField(out, TAIL_FIELDS[number].name, value, TAIL_FIELDS[number].limit);
}

std::string encodeTail(const Tail& tail) {
  check(tail);
  std::string out;
  appendTailField(&out, TAIL_APP_NAME, tail.appName);
  appendTailField(&out, TAIL_APP_VERSION, tail.appVersion);
  appendTailField(&out, TAIL_JRE_VERSION, tail.jreVersion);
  appendTailField(&out, TAIL_GU_VERSION, tail.guVersion);
  appendNumber(&out, tail.minSplashMs);
  appendTailField(&out, TAIL_PUBLIC_KEY, tail.publicKeyHex);
  appendNumber(&out, tail.canOverrideSplash ? 1 : 0);
  appendTailField(&out, TAIL_INSTALL_TYPE, tail.installType);
  appendTailField(&out, TAIL_SILENT_PARAMETER, tail.silentParameter);
  appendTailField(&out, TAIL_REQUIRED_JAVA_VERSION, tail.requiredJavaVersion);
  appendTailField(&out, TAIL_UPDATE_URL, tail.updateUrl);
  return out;
}

}  // namespace tools
