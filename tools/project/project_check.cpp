#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

#include "formats/names.h"
#include "formats/tail_fields.h"
#include "tools/formats/tail_writer.h"
#include "tools/formats/value_check.h"
#include "tools/keys/key_file.h"
#include "tools/objects/target.h"
#include "tools/project/components.h"
#include "tools/project/presentation_check.h"
#include "tools/project/project_file.h"
#include "tools/project/section_check.h"
#include "tools/system/ascii_case.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

// Checks a project section by section, and what its keys say of each other.
class ProjectCheck : private SectionCheck {
 public:
  explicit ProjectCheck(const Project& project) : SectionCheck(project), project_(project) {}

  void run() const {
    checkNames();
    checkVersions();
    checkTargets();
    checkContent();
    checkUpdater();
    checkUpdates();
    checkRuntime();
    checkInstaller();
    checkSigning();
    checkApple();
  }

  void checkNames() const {
    require("application", "name", project_.name, "\"Hello\"");
    requireName("application", project_.name);
    require("runtime", "name", project_.runtimeName, "\"Mac64JRE\"");
    requireName("runtime", project_.runtimeName);
    if (isSameButForCase(project_.name, UPDATER_NAME) ||
        isSameButForCase(project_.name, project_.runtimeName)) {
      fail("application", "name is \"" + project_.name +
                              "\", which names another component's folders; choose another one");
    }
    if (isSameButForCase(project_.runtimeName, UPDATER_NAME)) {
      fail("runtime", "name is \"" + project_.runtimeName +
                          "\", which names the updater's folders; choose another one");
    }
    require("application", "identifier", project_.identifier, "\"org.example.hello\"");
    const std::string& id = project_.identifier;
    const bool isIdentifier = std::all_of(id.begin(), id.end(), [](unsigned char c) {
      return (c < 0x80 && isalnum(c) != 0) || c == '.' || c == '-';
    });
    if (!isIdentifier) {
      fail("application", "identifier is \"" + id +
                              "\"; it may contain letters, digits, '.' and '-', for example "
                              "org.example.hello");
    }
  }

 private:
  void checkVersions() const {
    require("application", "version", project_.version, "\"1\"");
    requireNumber("application", project_.version);
    requireNumber("updater", project_.updaterVersion);
    requireNumber("runtime", project_.runtimeVersion);
  }

  void checkTargets() const {
    std::set<std::string> known;
    for (const std::string& target : project_.targets) {
      if (!targetOf(target)) {
        fail("application", "targets has \"" + target + "\"; known are " + allTargetTexts());
      }
      if (!known.insert(target).second) {
        fail("application", "targets has \"" + target + "\" twice; remove one");
      }
    }
  }

  void checkContent() const {
    if (project_.jar.empty() == project_.appFolder.empty()) {
      fail("application", project_.jar.empty()
                              ? "needs 'jar', the application's only jar, or 'folder', its files"
                              : "has both 'jar' and 'folder'; remove one of them");
    }
    requireFile("application", "jar", project_.jar);
    requireFolder("application", "folder", project_.appFolder);
    checkLaunch();
    requireNoFault("application", faultOfPresentation(project_));
    requireNoFault("info_plist", faultOfInfoPlist(project_));
  }

  void checkLaunch() const {
    const std::string launchFile = project_.appFolder + "/QuorvaneLaunch";
    const bool stands = !project_.appFolder.empty() && fs::exists(launchFile);
    const bool isDescribed = !project_.mainClass.empty() || !project_.classPath.empty() ||
                             !project_.arguments.empty() || !project_.jvmOptions.empty() ||
                             project_.maximumHeapMegabytes != 0;
    if (stands && isDescribed) {
      fail("application",
           "describes how to start, and " + launchFile +
               " does too; remove that file, or main_class, class_path, arguments, jvm_options and "
               "maximum_heap_mb");
    }
    if (!stands) {
      require("application", "main_class", project_.mainClass, "\"org.example.Main\"");
    }
    if (!project_.jar.empty() && !project_.classPath.empty()) {
      fail("application", "has 'class_path' beside 'jar', which is the class path; remove it");
    }
    requireText("application", "main_class", project_.mainClass);
    requireTexts("application", "class_path", project_.classPath);
    requireTexts("application", "arguments", project_.arguments);
    requireTexts("application", "jvm_options", project_.jvmOptions);
    if (project_.maximumHeapMegabytes < 0) {
      fail("application", "maximum_heap_mb is " + std::to_string(project_.maximumHeapMegabytes) +
                              "; it must not be negative");
    }
  }

  void checkUpdater() const {
    requireFolder("updater", "folder", project_.updaterFolder);
    if (project_.updaterFolder.empty()) {
      checkOwnUpdater();
      return;
    }
    require("updater", "version", project_.updaterVersion, "\"1\"");
    requireFile("updater", "folder", project_.updaterFolder + "/QuorvaneLaunch");
  }

  // A change to [updates] reaches users only with an updater of a larger version.
  void checkOwnUpdater() const {
    const std::string& version = project_.updaterVersion;
    if (!version.empty() && std::stoll(version) <= OWN_UPDATER_VERSION) {
      fail("updater", "version is \"" + version + "\"; the packager's own updater is " +
                          std::to_string(OWN_UPDATER_VERSION) +
                          ", so use a larger number, or none");
    }
  }

  void checkUpdates() const {
    if (!project_.updaterFolder.empty() && isSet(project_.updates)) {
      fail("updates",
           "is for the packager's own updater, and [updater] names another one in 'folder'; remove "
           "either");
    }
    const std::string fault = faultOf(project_.updates);
    if (!fault.empty()) {
      fail("updates", fault);
    }
    const std::string common = faultOfCommonUrl(project_.updates.url);
    if (!common.empty()) {
      fail("updates", "url is \"" + project_.updates.url + "\"; " + common);
    }
  }

  void checkRuntime() const {
    requireFolder("runtime", "jdk", project_.jdk);
    const bool isLinked = !project_.runtimeModules.empty() || !project_.jdk.empty() ||
                          !project_.jmods.empty() || !project_.jdkArchive.empty();
    if (!project_.runtimeHome.empty() && isLinked) {
      fail("runtime",
           "has both 'folder', an existing runtime, and 'modules', 'jdk', 'jmods' or "
           "'jdk_archive', which make a new one; remove one of them");
    }
    checkSource("runtime", {project_.runtimeHome, project_.jmods, project_.jdkArchive,
                            project_.jdkSha256, project_.runtimeVersion});
    for (const auto& [target, source] : project_.targetRuntimes) {
      // What other builds use need not be on this machine.
      const std::vector<std::string>& made = project_.targets;
      if (std::find(made.begin(), made.end(), target) != made.end()) {
        checkTargetSource("runtime." + target, source);
      }
    }
  }

  void checkTargetSource(const std::string& section, const RuntimeSource& source) const {
    if (source.folder.empty() && source.jmods.empty() && source.jdkArchive.empty()) {
      fail(section.c_str(), "needs 'jmods' or 'jdk_archive', to make a runtime, or 'folder'");
    }
    if (!source.folder.empty() && (!source.jmods.empty() || !source.jdkArchive.empty())) {
      fail(section.c_str(),
           "has both 'folder', an existing runtime, and 'jmods' or 'jdk_archive', which make a "
           "new one; remove one of them");
    }
    requireNumber(section.c_str(), source.version);
    checkSource(section.c_str(), source);
  }

  void checkSource(const char* section, const RuntimeSource& source) const {
    requireFolder(section, "folder", source.folder);
    requireFolder(section, "jmods", source.jmods);
    requireFile(section, "jdk_archive", source.jdkArchive);
    if (!source.jmods.empty() && !source.jdkArchive.empty()) {
      fail(section, "has both 'jmods' and 'jdk_archive'; remove one of them");
    }
    if (source.jdkArchive.empty() != source.jdkSha256.empty()) {
      fail(section, source.jdkSha256.empty()
                        ? "needs the key 'jdk_sha256' beside 'jdk_archive': the SHA-256 of that "
                          "file, which its maker publishes"
                        : "has 'jdk_sha256' without 'jdk_archive'; remove it");
    }
    const bool isDigest =
        source.jdkSha256.size() == 64 &&
        source.jdkSha256.find_first_not_of("0123456789abcdef") == std::string::npos;
    if (!source.jdkSha256.empty() && !isDigest) {
      fail(section, "jdk_sha256 is \"" + source.jdkSha256 +
                        "\"; it is 64 hexadecimal digits, in lower case");
    }
  }

  void requireSound(const char* key, const std::string& value, const std::string& fault) const {
    if (!fault.empty()) {
      fail("installer", std::string(key) + " is \"" + value + "\"; " + fault);
    }
  }

  // Each target looks into a folder of its own below the address.
  std::string faultOfCommonUrl(const std::string& url) const {
    const bool isFolder = url.find_first_of("?#") == std::string::npos;
    return isFolder || !project_.hasSiteForEachTarget
               ? ""
               : "with targets it is the address of a folder, without '?' and '#'";
  }

  void checkInstaller() const {
    requireFile("installer", "splash", project_.splash);
    requireNoFault("installer", faultOfSplash(project_));
    requireSound("update_url", project_.updateUrl, faultOfUpdateUrl(project_.updateUrl));
    requireSound("update_url", project_.updateUrl, faultOfCommonUrl(project_.updateUrl));
    requireText("installer", "update_url", project_.updateUrl, TAIL_UPDATE_URL_LIMIT);
    requireText("installer", "silent_parameter", project_.silentParameter);
    const std::string& type = project_.installType;
    if (type != INSTALL_FOR_ALL && type != INSTALL_FOR_USER && type != INSTALL_TEMPORARY) {
      fail("installer", "install_type is \"" + type + "\"; known are " + INSTALL_FOR_ALL + ", " +
                            INSTALL_FOR_USER + " and " + INSTALL_TEMPORARY);
    }
    if (project_.minimumSplashMs < 0) {
      fail("installer", "minimum_splash_ms is " + std::to_string(project_.minimumSplashMs) +
                            "; it must not be negative");
    }
    for (const char* word : {"--install", "--elevated"}) {
      if (project_.silentParameter == word) {
        fail("installer",
             "silent_parameter is \"" + project_.silentParameter +
                 "\", an argument that installers use for something else; choose another");
      }
    }
    requireSound("required_java", project_.requiredJava,
                 faultOfRequiredJava(project_.requiredJava));
    const char* const own[][2] = {{"console", "'console' in [application]"},
                                  {"jre_name", "'name' in [runtime]"},
                                  {"require_signature", "'require_signature' in [installer]"}};
    for (const auto& [name, value] : project_.properties) {
      if (name.empty()) {
        fail("installer.properties", "has a property without a name; give it one");
      }
      for (const auto& [taken, key] : own) {
        if (name == taken) {
          fail("installer.properties", "has " + name + "; set it with " + key);
        }
      }
    }
  }

  // What would publish a secret in it; empty for none.
  std::vector<std::string> packedFolders() const {
    std::vector<std::string> folders = {project_.appFolder, project_.updaterFolder,
                                        project_.runtimeHome};
    for (const auto& [target, source] : project_.targetRuntimes) {
      folders.push_back(source.folder);
    }
    return folders;
  }

  void checkApple() const {
    const std::string fault = faultOf(project_.apple);
    if (!fault.empty()) {
      fail("signing.apple", fault);
    }
    for (const std::string* secret : {&project_.apple.certificate, &project_.apple.key,
                                      &project_.apple.passwordFile, &project_.apple.notaryKey}) {
      for (const std::string& folder : packedFolders()) {
        const std::string place = secret->empty() ? "" : faultOfKeyPlace(*secret, folder);
        if (!place.empty()) {
          fail("signing.apple", "names " + *secret + ", " + place);
        }
      }
    }
  }

  void checkSigning() const {
    if (project_.requireSignature && project_.key.empty()) {
      fail("signing",
           "needs the key 'key', because installers accept only signed archives; make one with "
           "'quorvane-pack key new release.key', or set require_signature = false in [installer]");
    }
    if (project_.key.empty() || project_.key == "-") {
      return;
    }
    requireFile("signing", "key", project_.key);
    for (const std::string& folder : packedFolders()) {
      const std::string fault = faultOfKeyPlace(project_.key, folder);
      if (!fault.empty()) {
        fail("signing", "key names " + project_.key + ", " + fault);
      }
    }
  }

  const Project& project_;
};

}  // namespace

void checkNames(const Project& project) {
  ProjectCheck(project).checkNames();
}

void checkProject(const Project& project) {
  ProjectCheck(project).run();
}

}  // namespace tools
