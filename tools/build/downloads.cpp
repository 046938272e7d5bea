#include "tools/build/downloads.h"

#include "tools/system/texts.h"

namespace tools {

std::string shownVersion(const Project& project) {
  return project.displayVersion.empty() ? project.version : project.displayVersion;
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
