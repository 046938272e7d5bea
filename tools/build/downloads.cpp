#include "tools/build/downloads.h"

#include <algorithm>

#include "tools/system/texts.h"

namespace tools {

// Control characters are refused where the project is checked.
std::string shownVersion(const Project& project) {
  std::string version = project.displayVersion.empty() ? project.version : project.displayVersion;
  std::replace_if(
      version.begin(), version.end(), [](char c) { return c == '/' || c == '\\' || c == ':'; },
      '_');
  return version;
}

DeliveryFormat deliveryFormatOf(const Target& target) {
  return target.system == System::macos ? DeliveryFormat::zip : DeliveryFormat::tarGz;
}

static std::string endOf(const Target& target, const BundleKind& kind) {
  return "-" + targetText(target) + kind.downloadSuffix + deliverySuffix(deliveryFormatOf(target));
}

std::string downloadName(const Project& project, const Target& target, const BundleKind& kind) {
  return project.name + "-" + shownVersion(project) + endOf(target, kind);
}

bool isOfflineDownload(const std::string& name, const Target& target) {
  return endsWith(name, endOf(target, OFFLINE_INSTALLER));
}

}  // namespace tools
