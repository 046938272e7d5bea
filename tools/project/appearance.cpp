#include "tools/project/appearance.h"

#include <filesystem>

#include "tools/images/default_images.h"
#include "tools/images/icns.h"
#include "tools/project/presentation_check.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

const std::string& shownNameOf(const Project& project) {
  return project.displayName.empty() ? project.name : project.displayName;
}

static Picture pictureOf(const std::string& path) {
  std::optional<Picture> picture = decodePng(readWhole(path));
  if (!picture) {
    throw InputError(path + " is not a valid PNG image");
  }
  return std::move(*picture);
}

static std::string iconBytes(const std::string& path) {
  return fs::path(path).extension() == ".png" ? encodeIcns(pictureOf(path)) : readWhole(path);
}

// The icon as a picture. An .icns file may hold none that is a PNG: then it is the default one.
static Picture iconPicture(const Project& project) {
  if (project.icon.empty()) {
    return defaultIcon();
  }
  if (fs::path(project.icon).extension() == ".png") {
    return pictureOf(project.icon);
  }
  std::optional<Picture> picture = largestIn(readWhole(project.icon));
  return picture ? std::move(*picture) : defaultIcon();
}

Appearance appearanceOf(const Project& project) {
  Appearance appearance;
  appearance.icon = project.icon.empty() ? encodeIcns(defaultIcon()) : iconBytes(project.icon);
  for (const DocumentType& type : project.documentTypes) {
    appearance.documentIcons.push_back(type.icon.empty() ? "" : iconBytes(type.icon));
  }
  appearance.splash = project.splash.empty()
                          ? encodePng(drawSplash(iconPicture(project), shownNameOf(project)))
                          : readWhole(project.splash);
  return appearance;
}

// The icons get names of their own: two document types may have icons of the same name.
static void addDocumentTypes(const Project& project, const Appearance& appearance, Bundle* bundle) {
  bundle->documentTypes = project.documentTypes;
  for (size_t i = 0; i < bundle->documentTypes.size(); ++i) {
    if (appearance.documentIcons[i].empty()) {
      continue;
    }
    const std::string name = "document-" + std::to_string(i + 1) + ".icns";
    bundle->documentTypes[i].icon = name;
    bundle->resources.push_back({name, appearance.documentIcons[i]});
  }
}

void describeBundle(const Project& project, const Appearance& appearance,
                    const std::string& identifierSuffix, Bundle* bundle) {
  // The application runs in its installer's process, with its own name in the menu.
  bundle->name = shownNameOf(project);
  bundle->identifier = project.identifier + identifierSuffix;
  bundle->appIdentifier = project.identifier;
  bundle->version = project.version;
  bundle->displayVersion = project.displayVersion;
  bundle->executableName = project.name;
  bundle->category = wholeCategory(project.category);
  bundle->copyright = project.copyright;
  bundle->urlSchemes = project.urlSchemes;
  bundle->more = project.infoPlist;
  // Named after the executable: that is how the updater finds it among those of document types.
  bundle->icon = project.name + ".icns";
  bundle->resources.push_back({bundle->icon, appearance.icon});
  addDocumentTypes(project, appearance, bundle);
}

}  // namespace tools
