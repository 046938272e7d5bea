#include "tools/formats/params_check.h"

#include <algorithm>

#include "formats/names.h"
#include "launch/launch_properties.h"
#include "tools/system/ascii_case.h"
#include "tools/system/input_error.h"

namespace tools {

namespace {

// The launch properties as the Extractor fills them.
class LaunchProperties {
 public:
  void addDynamic(const std::string& name, const std::string& value) {
    requireRoom(name, value);
    addDynamicProperty(buffer_.data(), name.c_str(), value.c_str());
  }
  void addStatic(const std::string& name, const std::string& value) {
    requireRoom(name, value);
    addStaticProperty(buffer_.data(), name.c_str(), value.c_str());
  }

 private:
  void requireRoom(const std::string& name, const std::string& value) const {
    if (!propertyFits(buffer_.data(), buffer_.size(), name.c_str(), value.c_str())) {
      throw InputError("the property " + name + " does not fit: all properties together have " +
                       std::to_string(LAUNCH_PROPERTIES_SIZE) + " bytes; shorten some");
    }
  }

  std::vector<char> buffer_ = std::vector<char>(LAUNCH_PROPERTIES_SIZE);
};

}  // namespace

void requireRoomForProperties(const Properties& properties, const Tail& tail) {
  LaunchProperties launch;
  for (const auto& [name, value] : properties) {
    launch.addDynamic(name, value);
  }
  launch.addStatic("update_url", tail.updateUrl);
  launch.addStatic("install_type", tail.installType);
  launch.addStatic("min_splash_ms", std::to_string(tail.minSplashMs));
  launch.addStatic("qvsig_public_key", tail.publicKeyHex);
  launch.addStatic("can_override_splash", tail.canOverrideSplash ? "1" : "0");
  launch.addStatic("app_name", tail.appName);
  launch.addStatic("wrapper_app_version", tail.appVersion);
  launch.addStatic("wrapper_gu_version", tail.guVersion);
  launch.addStatic("silent_parameter", tail.silentParameter);
  launch.addStatic("java_version", tail.requiredJavaVersion);
  launch.addStatic("show_no_ui", "true");  // in silent runs
}

bool asksForSignatures(const Properties& properties) {
  // A later "false" does not revoke an earlier "true".
  return std::any_of(properties.begin(), properties.end(), [](const auto& property) {
    return property.first == "require_signature" && property.second == "true";
  });
}

static std::string faultOfJreName(const std::string& name, const std::string& appName) {
  if (name.find_first_of("/-") != std::string::npos) {
    return "which contains a '/' or a '-' and cannot name the runtime's folders";
  }
  if (isSameButForCase(name, UPDATER_NAME)) {
    return "which is the name of the updater's folders";
  }
  if (isSameButForCase(name, appName)) {
    return "which is the name of the application's folders";
  }
  return "";
}

std::vector<std::string> faultsOfParams(const Properties& properties, const Tail& tail) {
  std::vector<std::string> faults;
  try {
    encodeParams(properties);
    requireRoomForProperties(properties, tail);
  } catch (const InputError& error) {
    faults.push_back(std::string("the params file: ") + error.what());
  }
  std::string jreName = DEFAULT_JRE_NAME;
  for (const auto& [name, value] : properties) {
    // The last one counts, but a '/' is refused in any of them.
    if (name == "jre_name") {
      jreName = value;
      if (value.find('/') != std::string::npos) {
        break;
      }
    }
  }
  const std::string fault = faultOfJreName(jreName, tail.appName);
  if (!fault.empty()) {
    faults.push_back("jre_name in the params file is \"" + jreName + "\", " + fault);
  }
  return faults;
}

}  // namespace tools
