#include "tools/project/presentation_check.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "tools/formats/value_check.h"
#include "tools/images/icns.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

static const char kCategoryStart[] = "public.app-category.";

// Those that Apple lists for LSApplicationCategoryType.
static const char* const kCategories[] = {"action-games",
                                          "adventure-games",
                                          "arcade-games",
                                          "board-games",
                                          "business",
                                          "card-games",
                                          "casino-games",
                                          "developer-tools",
                                          "dice-games",
                                          "education",
                                          "educational-games",
                                          "entertainment",
                                          "family-games",
                                          "finance",
                                          "games",
                                          "graphics-design",
                                          "healthcare-fitness",
                                          "kids-games",
                                          "lifestyle",
                                          "medical",
                                          "music",
                                          "music-games",
                                          "news",
                                          "photography",
                                          "productivity",
                                          "puzzle-games",
                                          "racing-games",
                                          "reference",
                                          "role-playing-games",
                                          "simulation-games",
                                          "social-networking",
                                          "sports",
                                          "sports-games",
                                          "strategy-games",
                                          "travel",
                                          "trivia-games",
                                          "utilities",
                                          "video",
                                          "weather",
                                          "word-games"};

std::string wholeCategory(const std::string& category) {
  return category.empty() || startsWith(category, kCategoryStart) ? category
                                                                  : kCategoryStart + category;
}

static std::string faultOfCategory(const std::string& category) {
  const bool isKnown =
      std::any_of(std::begin(kCategories), std::end(kCategories), [&](const char* known) {
        return wholeCategory(category) == kCategoryStart + std::string(known);
      });
  return category.empty() || isKnown
             ? ""
             : "category is \"" + category + "\"; it is one of Apple's: " +
                   joined({std::begin(kCategories), std::end(kCategories)}, ", ");
}

// A line for users: the menu, the Finder and the window "About" show it.
static std::string faultOfShownText(const std::string& key, const std::string& text) {
  const bool hasControl =
      std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; });
  std::string fault = faultOfPlistText(text);
  if (fault.empty() && hasControl) {
    fault = "has a control character; it is one line of text";
  }
  return fault.empty() ? "" : key + " " + fault;
}

static std::string faultOfName(const std::string& name) {
  constexpr size_t kLongest = 255;
  const bool isBlank = !name.empty() && name.find_first_not_of(' ') == std::string::npos;
  return isBlank || name.size() > kLongest
             ? "display_name must have 1 to 255 bytes, and not only blanks"
             : faultOfShownText("display_name", name);
}

static std::string faultOfDisplayVersion(const std::string& version) {
  constexpr size_t kLongest = 60;
  return version.size() > kLongest
             ? "display_version has " + std::to_string(version.size()) +
                   " bytes; downloads are named after it, so it must have at most 60"
             : faultOfShownText("display_version", version);
}

static bool consistsOf(const std::string& text, const char* further) {
  return std::all_of(text.begin(), text.end(), [further](unsigned char c) {
    return (c < 0x80 && isalnum(c) != 0) || (c != 0 && strchr(further, c) != nullptr);
  });
}

static std::string faultOfSchemes(const std::vector<std::string>& schemes) {
  for (const std::string& scheme : schemes) {
    const bool isScheme =
        !scheme.empty() && islower(static_cast<unsigned char>(scheme[0])) != 0 &&
        consistsOf(scheme, "+-.") &&
        std::none_of(scheme.begin(), scheme.end(), [](unsigned char c) { return isupper(c) != 0; });
    if (!isScheme) {
      return "url_schemes has \"" + scheme +
             "\"; a scheme is what stands before the colon, in small letters, digits, '+', '-' and "
             "'.', and begins with a letter";
    }
    if (scheme == "file") {
      return "url_schemes has \"file\"; files that the application opens are document_types";
    }
  }
  return "";
}

static std::string faultOfExtensions(const DocumentType& type) {
  for (const std::string& extension : type.extensions) {
    const bool isPlain = !extension.empty() && extension[0] != '.' &&
                         extension.find_first_of("/:") == std::string::npos &&
                         faultOfShownText("", extension).empty();
    if (!isPlain) {
      return "has the extension \"" + extension +
             "\"; write it without the dot before it, for example \"txt\"";
    }
  }
  for (const std::string& content : type.contentTypes) {
    if (content.find('.') == std::string::npos || !consistsOf(content, ".-")) {
      return "has the content type \"" + content +
             "\"; that is an identifier like org.example.letter or public.plain-text";
    }
  }
  return "";
}

static std::string faultOfDocumentType(const DocumentType& type) {
  const char* const roles[] = {"Editor", "Viewer", "Shell", "QLGenerator", "None"};
  const bool isRole = std::find(std::begin(roles), std::end(roles), type.role) != std::end(roles);
  std::string fault = faultOfExtensions(type);
  if (!fault.empty()) {
    return fault;
  }
  if (type.extensions.empty() && type.contentTypes.empty()) {
    return "needs 'extensions' or 'content_types'";
  }
  if (!isRole) {
    return "has the role \"" + type.role + "\"; it is Editor, Viewer, Shell, QLGenerator or None";
  }
  const std::string ofIcon = type.icon.empty() ? "" : faultOfIcon(type.icon);
  return ofIcon.empty() ? "" : "has an icon, and " + ofIcon;
}

static std::string faultOfDocumentTypes(const std::vector<DocumentType>& types) {
  for (size_t i = 0; i < types.size(); ++i) {
    if (types[i].name.empty() || !faultOfShownText("", types[i].name).empty()) {
      return "document_types has entry number " + std::to_string(i + 1) +
             " without a 'name' of one line, for example name = \"Letter\"";
    }
    const std::string fault = faultOfDocumentType(types[i]);
    if (!fault.empty()) {
      return "document_types: \"" + types[i].name + "\" " + fault;
    }
  }
  return "";
}

static const char kNoPng[] = " is not a valid PNG image of at most 4096 pixels a side";
static_assert(LONGEST_SIDE == 4096);

static std::string faultOfPngIcon(const std::string& path) {
  const std::optional<Picture> picture = decodePng(readWhole(path));
  if (!picture) {
    return path + kNoPng;
  }
  return picture->width == ICON_SIDE && picture->height == ICON_SIDE
             ? ""
             : path + " has " + std::to_string(picture->width) + " × " +
                   std::to_string(picture->height) + " pixels; an icon is made from 1024 × 1024";
}

std::string faultOfIcon(const std::string& path) {
  if (!fs::is_regular_file(path)) {
    return path + " is not an existing file";
  }
  const fs::path extension = fs::path(path).extension();
  if (extension == ".png") {
    return faultOfPngIcon(path);
  }
  if (extension != ".icns") {
    return path + " is neither an .icns nor a .png image by its name";
  }
  const std::string fault = faultOfIcns(readWhole(path));
  return fault.empty() ? "" : path + " " + fault;
}

std::string faultOfPresentation(const Project& project) {
  const std::string iconFault = project.icon.empty() ? "" : faultOfIcon(project.icon);
  for (const std::string& fault :
       {faultOfName(project.displayName), faultOfDisplayVersion(project.displayVersion),
        faultOfShownText("copyright", project.copyright), faultOfCategory(project.category),
        faultOfSchemes(project.urlSchemes), faultOfDocumentTypes(project.documentTypes),
        iconFault.empty() ? "" : "icon is wrong: " + iconFault}) {
    if (!fault.empty()) {
      return fault;
    }
  }
  return "";
}

std::string faultOfInfoPlist(const Project& project) {
  for (const PlistEntry& entry : project.infoPlist) {
    if (isFixedEntry(entry.key)) {
      return entry.key + " must agree with the bundle, and is set from " +
             (entry.key == "CFBundleIdentifier" ? "'identifier' in [application]; remove it"
                                                : "what the bundle holds; remove it");
    }
    const std::string fault = faultOfPlist(entry.value);
    if (!fault.empty() || !faultOfPlistText(entry.key).empty()) {
      return entry.key + " " + (fault.empty() ? faultOfPlistText(entry.key) : fault);
    }
  }
  return "";
}

std::string plainHttpHostOf(const Project& project) {
  // The address that stands for none is never requested.
  const bool isNone = project.updateUrl == "D" || project.updateUrl == NO_UPDATE_URL;
  std::string url = isNone ? "" : project.updateUrl;
  for (const auto& [name, value] : project.properties) {
    url = project.updateUrl == "D" && name == "update_url" ? value : url;
  }
  return startsWith(url, "http://") ? hostOf(url) : "";
}

std::string faultOfSplash(const Project& project) {
  const std::string& path = project.splash;
  return path.empty() || decodePng(readWhole(path)) ? "" : "splash is wrong: " + path + kNoPng;
}

// Apple's form of a version: one to three whole numbers with dots between them.
static bool isSystemVersion(const std::string& version) {
  int dots = 0;
  char before = '.';
  for (const char c : version) {
    if (c == '.' ? before == '.' : isdigit(static_cast<unsigned char>(c)) == 0) {
      return false;
    }
    dots += c == '.' ? 1 : 0;
    before = c;
  }
  return before != '.' && dots < 3;
}

// What tries an update site out asks its own machine, and no network is on the way.
static bool isThisMachine(const std::string& host) {
  return host == "localhost" || host == "[::1]" || startsWith(host, "127.");
}

void warnOfPresentation(const Project& project) {
  const std::string& version = project.displayVersion;
  if (!version.empty() && !isSystemVersion(version)) {
    fprintf(stderr,
            "quorvane-pack: %s: [application] display_version is \"%s\"; Apple asks for one to "
            "three numbers like 1.4.2, and its App Store refuses others\n",
            project.file.c_str(), version.c_str());
  }
  const std::string host = plainHttpHostOf(project);
  if (!host.empty() && !isThisMachine(host)) {
    fprintf(stderr,
            "quorvane-pack: %s: [installer] update_url is plain http, for which Info.plist gets an "
            "exception for %s: whoever controls the network sees what is installed and can hold "
            "back updates; use https\n",
            project.file.c_str(), host.c_str());
  }
}

}  // namespace tools
