#include "tests/installer/installer.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/support/account.h"
#include "tests/support/files.h"
#include "tests/support/product_system.h"
#include "tools/formats/launch_file_writer.h"

namespace fs = std::filesystem;

namespace test {

static const char kParamsMarkerInHex[] =
    "59bdc952aa35adbb10efde672c47e0b5d4821f8152a102442aebaa7b793b9345"
    "aed2097a3e2f2efaff1df09b197c15b81e6dc610417e5ced51b1191c3ce294d8";

static std::string bytesOf(const std::string& hex) {
  std::string bytes;
  for (size_t i = 0; i < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

static std::string launchFile(const std::string& mainClass, const std::string& jar) {
  tools::LaunchFile file;
  file.mainClass = mainClass;
  file.appName = "Demo";
  file.classPath = {jar};
  file.compatibilityClass = "updater.Probe";
  return tools::encodeLaunchFile(file);
}

// Each installer of a test has a copy, and each run looks for a marker in all of it: nine tenths of
// a development build are debug information.
static std::string extractorWithoutDebugInformation() {
  return productIsElsewhere() ? product("extractor") : QUORVANE_STRIPPED_EXTRACTOR;
}

std::string Installer::updaterLaunchFile() {
  return launchFile("updater.Main", "updater.jar");
}

std::string Installer::applicationLaunchFile() {
  return launchFile("demo.Main", "demo.jar");
}

std::string Installer::updaterRecords() {
  return fileRecord("QuorvaneLaunch", updaterLaunchFile()) +
         fileRecord("updater.jar", "the updater");
}

std::string Installer::runtimeRecords() {
  return folderRecord("Contents/MacOS") +
         fileRecord("Contents/Home/bin/java", readFile(QUORVANE_BIN "/fake_java")) +
         fileRecord("Contents/Home/bin/unpack200", "#!/bin/sh\nexec cp \"$1\" \"$2\"\n") +
         fileRecord("Contents/Home/" + jvmLibraryPlace(), readFile(QUORVANE_FAKE_JVM)) +
         fileRecord("Contents/Home/release", runtimeRelease());
}

std::string Installer::runtimeRelease() {
  return "the release of the runtime";
}

std::string Installer::applicationRecords(const std::string& version) {
  return fileRecord("QuorvaneLaunch", applicationLaunchFile()) +
         fileRecord("demo.jar", "application " + version);
}

Installer::Installer() {
  tail.appVersion = "3";
  tail.jreVersion = "1407";
  tail.guVersion = "5";
  tail.updateUrl = "http://192.0.2.10/";
  updater = {fileRecord("lzma64", readFile(product("lzma64"))),
             nestedRecord("updater", updaterRecords()), fileRecord("nativesplash.png", "no image"),
             fileRecord("version.txt", "5")};
  runtime = nestedRecord("runtime", runtimeRecords());
  application = {nestedRecord("application", applicationRecords("3")),
                 fileRecord("version.txt", "3")};
}

void Installer::makeOnline(const std::string& updateUrl) {
  tail.appVersion.clear();
  tail.jreVersion.clear();
  tail.updateUrl = updateUrl;
  runtime.clear();
  application.clear();
}

void Installer::sign(const tools::SigningKey& key) {
  tail.publicKey = key.publicKeyHex();
  updater[1] = nestedRecord("updater", signedBy(key, updaterRecords()));
  if (!runtime.empty()) {
    runtime = nestedRecord("runtime", signedBy(key, runtimeRecords()));
  }
  if (!application.empty()) {
    application[0] =
        nestedRecord("application", signedBy(key, applicationRecords(tail.appVersion)));
  }
}

std::string Installer::tailRecord() const {
  std::string record = fieldsOf(tail);
  for (const std::string& archive : updater) {
    record += archive;
  }
  record += runtime;
  for (const std::string& archive : application) {
    record += archive;
  }
  return record;
}

void Installer::write() const {
  fs::create_directories(fs::path(executable()).parent_path());
  fs::create_directories(resources());
  fs::remove(executable());
  fs::copy_file(extractorWithoutDebugInformation(), executable());
  const std::string record = tailRecord();
  if (tailPlace == TailPlace::Resource) {
    writeFile(resources() + "/Tail", record);
  } else if (tailPlace == TailPlace::Executable) {
    writeFile(executable(), readFile(executable()) + tailMarker() + record, 0755);
  }
  std::string pairs = bytesOf(kParamsMarkerInHex) +
                      field(paramsCount.empty() ? std::to_string(properties.size()) : paramsCount);
  for (const auto& [name, value] : properties) {
    pairs += field(name) + field(value);
  }
  if (paramsPlace == ParamsPlace::ExcludedFromSigning || paramsPlace == ParamsPlace::Both) {
    writeFile(params(), pairs);
  }
  if (paramsPlace == ParamsPlace::LocVersion || paramsPlace == ParamsPlace::Both) {
    writeFile(resources() + "/params.lproj/locversion.plist", pairs);
  }
}

void Installer::installUpdater(const std::string& version) const {
  const std::string folder = installed.component("Quorvane", version);
  writeFile(folder + "/QuorvaneLaunch", updaterLaunchFile());
  writeFile(folder + "/updater.jar", "updater " + version);
}

void Installer::installRuntime(const std::string& version) const {
  const std::string folder = installed.component("Mac64JRE", version);
  fs::create_directories(folder + "/bin");
  fs::create_directories(folder + "/lib/server");
  fs::copy_file(QUORVANE_BIN "/fake_java", folder + "/bin/java");
  fs::copy_file(QUORVANE_FAKE_JVM, folder + "/" + jvmLibraryPlace());
  writeFile(folder + "/release", runtimeRelease());
}

void Installer::installApplication(const std::string& version) const {
  const std::string folder = installed.component("Demo", version);
  writeFile(folder + "/QuorvaneLaunch", applicationLaunchFile());
  writeFile(folder + "/demo.jar", "application " + version);
}

void Installer::installCarried() const {
  installUpdater("5");
  installRuntime();
  installApplication("3");
}

Command Installer::command(const std::vector<std::string>& words) const {
  Command command;
  command.arguments = words;
  command.arguments.insert(command.arguments.begin(), executable());
  command.environment = home.environment();
  command.environment["FAKE_JAVA_RECORD"] = javaReport();
  command.environment["QUORVANE_FAKE_JVM_REPORT"] = jvmReport();
  command.unset = displayVariables();
  command.folder = folder_.path();
  if (isOrdinary_) {
    command.prepare = [] { become(ordinaryAccount()); };
  }
  return command;
}

Result Installer::run(const std::vector<std::string>& words,
                      const std::map<std::string, std::string>& environment, bool display) const {
  Command command = this->command(words);
  for (const auto& [name, value] : environment) {
    command.environment[name] = value;
  }
  if (display) {
    command.unset.clear();
  }
  return test::run(command);
}

bool Installer::isReachableForOrdinary() {
  return canReach(ordinaryAccount(), QUORVANE_TEST_FILES "/folder");
}

void Installer::becomeOrdinary() {
  isOrdinary_ = true;
  const Account account = ordinaryAccount();
  home.becomeHomeOf(account);
  giveTo(account, folder_.path());
}

bool Installer::launched() const {
  return exists(jvmReport()) &&
         readFile(jvmReport()).find("FindClass updater/Main") != std::string::npos;
}

static std::vector<std::string> namesWith(const std::string& folder, const std::string& text) {
  std::vector<std::string> names = exists(folder) ? namesIn(folder) : std::vector<std::string>{};
  names.erase(std::remove_if(names.begin(), names.end(),
                             [&text](const std::string& name) {
                               return name.find(text) == std::string::npos;
                             }),
              names.end());
  return names;
}

std::vector<std::string> Installer::versionFolders() const {
  return namesWith(master(), "-complete");
}

std::vector<std::string> Installer::tempFolders() const {
  return namesWith(master(), "QuorvaneTemp-");
}

}  // namespace test
