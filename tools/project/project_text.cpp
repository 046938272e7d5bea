#include "tools/project/project_text.h"

#include <toml++/toml.h>

#include <cctype>
#include <filesystem>
#include <sstream>

#include "tools/system/input_error.h"
#include "tools/system/texts.h"

namespace fs = std::filesystem;

namespace tools {

static bool isLetterOrDigit(char c) {
  return static_cast<unsigned char>(c) < 0x80 && isalnum(static_cast<unsigned char>(c)) != 0;
}

static bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Splits at the characters that separate words in a file name. Bytes of other alphabets belong to a
// word.
static std::vector<std::string> wordsOf(const std::string& text) {
  std::vector<std::string> words(1);
  for (const char c : text) {
    if (isLetterOrDigit(c) || static_cast<unsigned char>(c) >= 0x80 || c == '.') {
      words.back().push_back(c);
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) {
    words.pop_back();
  }
  return words;
}

std::string suggestedName(const std::string& path) {
  fs::path file = fs::path(path).lexically_normal();
  file = file.has_filename() ? file : file.parent_path();
  const bool isJar = file.extension() == ".jar";
  std::string name;
  for (std::string word : wordsOf(isJar ? file.stem() : file.filename())) {
    word.erase(0, word.find_first_not_of('.'));
    if (word.empty() || (!name.empty() && isDigit(word[0]))) {
      break;  // a version and what follows it
    }
    word[0] = static_cast<char>(toupper(static_cast<unsigned char>(word[0])));
    name += (name.empty() ? "" : " ") + word;
  }
  return name;
}

std::string suggestedIdentifier(const std::string& mainClass, const std::string& name) {
  const size_t dot = mainClass.rfind('.');
  std::string identifier =
      dot == std::string::npos ? "org.example." + name : mainClass.substr(0, dot);
  std::string plain;
  for (const char c : identifier) {
    if (isLetterOrDigit(c) || c == '.' || c == '_' || c == '-') {
      plain.push_back(c == '_' ? '-' : static_cast<char>(tolower(c)));
    }
  }
  return plain.back() == '.' ? plain + "application" : plain;
}

static std::string quoted(const std::string& text) {
  std::ostringstream out;
  out << toml::toml_formatter(
      toml::value<std::string>(text),
      toml::toml_formatter::default_flags & ~toml::format_flags::allow_literal_strings);
  try {
    if (toml::parse("text = " + out.str())["text"].value_or("") == text) {
      return out.str();
    }
  } catch (const toml::parse_error&) {
    // said below
  }
  throw InputError("the text " + text + " is not UTF-8, which a project file requires; rename it");
}

static std::string quotedList(const std::vector<std::string>& texts) {
  std::vector<std::string> list;
  for (const std::string& text : texts) {
    list.push_back(quoted(text));
  }
  return "[" + joined(list, ", ") + "]";
}

static std::string contentText(const NewProject& project) {
  if (!project.jar.empty()) {
    return "jar = " + quoted(project.jar) + "\n";
  }
  return "folder = " + quoted(project.folder) + "  # everything in it is installed\n" +
         "class_path = " + quotedList(project.classPath) + "\n";
}

static std::string applicationText(const NewProject& project) {
  return "# What 'quorvane-pack build' makes installers from. Paths are relative to this file.\n"
         "\n"
         "[application]\n"
         "name = " +
         quoted(project.name) +
         "  # folders are named after it: no '/' and no '-'\n"
         "version = \"1\"  # a whole number; an installer with a larger one updates\n"
         "identifier = " +
         quoted(project.identifier) + "  # a reversed Internet domain name of yours\n" +
         contentText(project) + "main_class = " + quoted(project.mainClass) + "\n" +
         "# arguments = [\"--first\", \"second\"]\n"
         "# jvm_options = [\"-Dkey=value\"]\n"
         "# maximum_heap_mb = 1024\n"
         "# icon = \"icon.png\"  # 1024 × 1024 pixels, or an .icns file\n"
         "# console = true  # standard output is the application's alone\n"
         "# targets = [\"macos-arm64\", \"macos-x86_64\", \"linux-x86_64\"]\n"
         "# display_name = \"Größe & Maß\"  # what users see; any characters\n"
         "# display_version = \"1.4.2\"\n"
         "# category = \"productivity\"  # one of Apple's application categories\n"
         "# copyright = \"© 2026 Example Ltd.\"\n"
         "# url_schemes = [\"hello\"]  # URLs that open the application: hello:...\n"
         "# document_types = [{name = \"Letter\", extensions = [\"letter\"], role = \"Editor\"}]\n"
         "\n"
         "# [info_plist]  # further entries of the bundles' Info.plist\n"
         "# NSCameraUsageDescription = \"Scans the codes on your letters\"\n";
}

static const char kOtherSections[] = R"(
# [updates]  # how installed applications look for new versions in the folder "site"
# check = "background"  # or "before_start", or "never"
# interval = 86400  # seconds between two checks
# url = "https://updates.example.org/hello/beta/"  # instead of update_url below
# keep = 2  # how many versions to keep installed

# [updater]  # your own updater, which then does all that
# folder = "updater"
# version = "1"

[runtime]  # by default made with jlink from the modules that jdeps finds
# modules = ["java.base", "java.desktop"]
# jdk = "/usr/lib/jvm/java-17-openjdk-amd64"
# jmods = "macos-jdk/Contents/Home/jmods"  # for another system; the same Java version as the JDK
# folder = "runtime"  # an existing runtime, instead of all these
# version = "170015"  # a whole number, by default from the runtime's own version

# [runtime.macos-arm64]  # for that target: jmods, folder, or the archive of a JDK
# jdk_archive = "jdk-17-macos-arm64.tar.gz"  # as its maker publishes it
# jdk_sha256 = "..."  # the 64 digits that its maker publishes

[installer]
# install_type = "perm_user"  # "perm_all" installs for all users
# update_url = "https://updates.example.org/hello/"  # where you put the folder "site"
# silent_parameter = "-silent"  # the argument that installs without a window
# splash = "splash.png"  # by default drawn from icon and name
# minimum_splash_ms = 1500
# required_java = "8"  # oldest system Java that an online installer adopts
# require_signature = true

[signing]
)";

static const char kAppleSection[] = R"(
# [signing.apple]  # signatures of bundles for macOS; ad-hoc ones by default
# certificate = "developer-id.p12"  # or PEM, then with 'key' unless both are in one file
# password_file = "password"  # or the variable QUORVANE_APPLE_PASSWORD
# team = "TEAM123456"  # by default that of the certificate
# notary_key = "notary.json"  # an API key: each build is then notarised
# timestamp = true
# identity = "Developer ID Application: NAME"  # on a Mac, instead: in the keychain
# notary_profile = "PROFILE"  # on a Mac, instead of 'notary_key'

# [signing.apple.entitlements]  # more of them than a JVM needs, or fewer
# "com.apple.security.device.camera" = true
)";

std::string projectText(const NewProject& project) {
  return applicationText(project) + kOtherSections + "key = " + quoted(project.key) +
         "  # keep it safe and do not publish it\n" + kAppleSection;
}

}  // namespace tools
