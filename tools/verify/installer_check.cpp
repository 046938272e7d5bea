#include "tools/verify/installer_check.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "formats/names.h"
#include "formats/site_names.h"
#include "tools/bundle/bundle_reader.h"
#include "tools/formats/marker_search.h"
#include "tools/formats/params_check.h"
#include "tools/formats/tail_writer.h"
#include "tools/formats/update_site.h"
#include "tools/formats/value_check.h"
#include "tools/keys/public_key.h"
#include "tools/system/input_error.h"
#include "tools/system/whole_file.h"
#include "tools/verify/component_check.h"
#include "tools/verify/signature_check.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

std::string valueOf(const Properties& properties, const char* name, const char* otherwise) {
  std::string value = otherwise;
  for (const auto& [key, text] : properties) {
    value = key == name ? text : value;
  }
  return value;
}

class BundleCheck {
 public:
  BundleCheck(const std::string& bundle, const std::string& site,
              const std::function<void(const std::string&)>& begin)
      : bundle_(bundle), resources_(bundle + "/Contents/Resources"), site_(site), begin_(begin) {}

  BundleReport run() {
    begin("reading executable and Tail record");
    const std::string executable = attempt([&] { return executableOfBundle(bundle_); });
    readExecutable(executable);
    if (!executable.empty()) {
      attempt([&] { return checkBundleSignature(bundle_, executable, &report_); });
    }
    if (!readTail(executable)) {
      return report_;
    }
    attempt([&] { return compareTail(); });
    readKey();
    if (value(TAIL_GU_VERSION).empty()) {
      report_.facts.push_back("a launcher bundle: it carries no updater, so it installs nothing");
      describeTarget();
      requireNothingBehind();
      if (!site_.empty()) {
        problem("it takes no updates, so there is nothing to check the site against");
      }
      return report_;
    }
    checkUpdateUrl();
    readProperties();
    attempt([&] { return readComponents(); });
    if (!site_.empty()) {
      checkSite();
    }
    describeTarget();
    return report_;
  }

 private:
  const std::string& value(TailFieldNumber place) const { return found_.values[place]; }

  void begin(const std::string& step) const {
    if (begin_) {
      begin_(step);
    }
  }

  void problem(const std::string& what) { report_.problems.push_back(what); }

  // Runs a step and reports the InputError that ends it.
  template <typename Step>
  std::string attempt(Step step) {
    try {
      return step();
    } catch (const InputError& error) {
      problem(error.what());
      return "";
    }
  }

  void readExecutable(const std::string& path) {
    if (!path.empty()) {
      takeProgram({path, {}}, [&] { return readObjectFile(path); });
    }
  }

  template <typename Read>
  void takeProgram(ObjectFile file, Read read) {
    attempt([&] {
      file.parts = read();
      fit_.requireProgram(file);
      return "";
    });
  }

  // What the component cannot do without; the first file that does not fit stands for all.
  void takeRuntime(ComponentCheck* runtime) {
    attempt([&] {
      for (const ObjectFile& file : runtime->objects()) {
        fit_.require(file);
      }
      return "";
    });
  }

  // What may be beside files for other systems.
  void takeChoice(ComponentCheck* component) {
    attempt([&] {
      fit_.requireChoice(component->objects(), component->name());
      return "";
    });
  }

  void takeUpdater(ComponentCheck* updater) {
    const std::string tool = updater->name() + "/lzma64";
    if (updater->hasContent("lzma64")) {
      takeProgram({tool, {}}, [&] { return updater->objectAt("lzma64"); });
    }
    attempt([&] {
      std::vector<ObjectFile> files = updater->objects();
      files.erase(std::remove_if(files.begin(), files.end(),
                                 [&](const ObjectFile& file) { return file.name == tool; }),
                  files.end());
      fit_.requireChoice(files, updater->name());
      return "";
    });
  }

  void describeTarget() {
    const std::string minimum = systemVersionText(fit_.minimumSystem());
    if (report_.problems.empty()) {
      report_.facts.push_back("made for " + fit_.text() +
                              (minimum.empty() ? "" : ", from macOS " + minimum + " on"));
    }
  }

  // The record appended to the executable, or else the one in the resources.
  bool readTail(const std::string& executable) {
    const auto carriesOne = [](const std::string& path) {
      return searchMarker(openInput(path).get()).found;
    };
    const bool isBehind = !executable.empty() && carriesOne(executable);
    tailPath_ = isBehind ? executable : resources_ + "/Tail";
    if (isBehind) {
      report_.facts.push_back("the Tail record is appended to the executable, outside the seal");
    }
    const size_t before = report_.problems.size();
    attempt([&] {
      found_ = findTail(tailPath_);
      return "";
    });
    if (report_.problems.size() > before) {
      return false;
    }
    report_.facts.push_back("application name: " + value(TAIL_APP_NAME));
    return true;
  }

  Tail tail() const {
    Tail tail;
    tail.appName = value(TAIL_APP_NAME);
    tail.appVersion = value(TAIL_APP_VERSION);
    tail.jreVersion = value(TAIL_JRE_VERSION);
    tail.guVersion = value(TAIL_GU_VERSION);
    tail.minSplashMs = atol(value(TAIL_MIN_SPLASH_MS).c_str());
    tail.publicKeyHex = value(TAIL_PUBLIC_KEY);
    tail.canOverrideSplash = value(TAIL_CAN_OVERRIDE_SPLASH) == "1";
    tail.installType = value(TAIL_INSTALL_TYPE);
    tail.silentParameter = value(TAIL_SILENT_PARAMETER);
    tail.requiredJavaVersion = value(TAIL_REQUIRED_JAVA_VERSION);
    tail.updateUrl = value(TAIL_UPDATE_URL);
    return tail;
  }

  // A value not in the writer's form is read as something else.
  std::string compareTail() {
    const std::string record = encodeTail(tail());
    size_t at = 0;
    for (int i = 0; i < TAIL_VALUE_COUNT; ++i) {
      const std::string read = record.c_str() + at;
      at += read.size() + 1;
      if (read != found_.values[i]) {
        problem(std::string(TAIL_VALUE_NAMES[i]) + " in the Tail record is \"" +
                found_.values[i].substr(0, 40) + "\", which is read as " + read);
      }
    }
    return "";
  }

  void checkUpdateUrl() {
    const std::string& url = value(TAIL_UPDATE_URL);
    const std::string fault = url.empty() ? "" : faultOfUpdateUrl(url);
    if (!fault.empty()) {
      problem("update-url in the Tail record is \"" + url.substr(0, 200) + "\"; " + fault);
    }
  }

  void readKey() {
    const std::string& hex = value(TAIL_PUBLIC_KEY);
    if (hex.empty()) {
      return;
    }
    key_ = publicKeyFromHex(hex);
    if (key_ == nullptr) {
      problem("the public key in the Tail record cannot be used; make the installer again");
    }
  }

  void readProperties() {
    std::string path = resources_ + "/AppParams.excludefromsigning";
    if (!fs::exists(path)) {
      path = resources_ + "/params.lproj/locversion.plist";
    }
    Properties properties;
    attempt([&] {
      properties = decodeParams(readWhole(path));
      return "";
    });
    for (const std::string& fault : faultsOfParams(properties, tail())) {
      problem(fault);
    }
    runtimeName_ = valueOf(properties, "jre_name", DEFAULT_JRE_NAME);
    trust_.isRequired = asksForSignatures(properties);
    trust_.key = key_.get();
    report_.facts.push_back("params file: " + std::to_string(properties.size()) + " properties");
    if (trust_.isRequired && value(TAIL_PUBLIC_KEY).empty()) {
      problem("the params file requires signatures, and the Tail record has no key");
    }
    if (!trust_.isRequired) {
      report_.facts.push_back("signatures are not required: unsigned archives are accepted");
    }
  }

  std::string readComponents() {
    InstallerStream stream(tailPath_,
                           static_cast<long long>(fs::file_size(tailPath_)) - found_.bytesBehind);
    readUpdater(&stream);
    if (!value(TAIL_JRE_VERSION).empty()) {
      readRuntime(&stream);
    }
    if (!value(TAIL_APP_VERSION).empty()) {
      readApplication(&stream);
    }
    found_.bytesBehind = stream.bytesLeft();
    requireNothingBehind();
    return "";
  }

  void readUpdater(InstallerStream* stream) {
    begin("reading the updater");
    ComponentCheck updater("updater", trust_, &report_);
    updater.read(stream, 1);
    updater.requireFile("lzma64");
    updater.read(stream, 3);
    updater.checkLaunchFile();
    updater.checkLaunch();
    updater.checkSplash();
    updater.checkVersion(value(TAIL_GU_VERSION));
    takeUpdater(&updater);
    updater.checkCode();
    updater.describe(value(TAIL_GU_VERSION));
  }

  void readRuntime(InstallerStream* stream) {
    begin("reading the runtime, which takes the most time");
    ComponentCheck runtime("runtime", trust_, &report_);
    runtime.read(stream, 1);
    runtime.requireFile("Contents/Home/bin/java");
    takeRuntime(&runtime);
    runtime.checkCode();
    runtime.describe(value(TAIL_JRE_VERSION));
  }

  void readApplication(InstallerStream* stream) {
    begin("reading the application");
    ComponentCheck application("application", trust_, &report_);
    application.read(stream, 2);
    application.checkLaunchFile();
    application.checkVersion(value(TAIL_APP_VERSION));
    takeChoice(&application);
    application.checkCode();
    application.describe(value(TAIL_APP_VERSION));
  }

  void checkSite() {
    if (key_ == nullptr) {
      problem("without a key in the Tail record installed applications accept no updates");
      return;
    }
    trust_.isRequired = true;
    trust_.demand = "updates must be";
    checkSiteComponent("site, updater", UPDATER_NAME, [this](ComponentCheck* updater) {
      updater->requireFile("lzma64");
      updater->checkLaunchFile();
      updater->checkLaunch();
      updater->checkSplash();
      takeUpdater(updater);
    });
    checkSiteComponent("site, runtime", runtimeName_, [this](ComponentCheck* runtime) {
      runtime->requireFile("Contents/Home/bin/java");
      takeRuntime(runtime);
    });
    checkSiteComponent("site, application", value(TAIL_APP_NAME),
                       [this](ComponentCheck* application) {
                         application->checkLaunchFile();
                         takeChoice(application);
                       });
  }

  template <typename Check>
  void checkSiteComponent(const char* what, const std::string& name, Check check) {
    attempt([&] {
      begin(std::string("reading the ") + what);
      const std::string version = readSiteVersion(site_, name);
      ComponentCheck component(what, trust_, &report_);
      component.readArchiveFile(site_ + "/" + siteArchiveName(name, version));
      component.checkIdentity(name == UPDATER_NAME ? updaterRecord(version, value(TAIL_APP_NAME))
                                                   : componentRecord(name, version));
      component.checkVersion(version, "the site");
      check(&component);
      component.checkCode();
      component.describe(version);
      return "";
    });
  }

  void requireNothingBehind() {
    if (found_.bytesBehind != 0) {
      problem(tailPath_ + " continues for " + std::to_string(found_.bytesBehind) +
              " bytes after what is read");
    }
  }

  std::string bundle_;
  std::string resources_;
  std::string site_;
  const std::function<void(const std::string&)>& begin_;
  std::string tailPath_;
  std::string runtimeName_ = DEFAULT_JRE_NAME;
  FoundTail found_;
  TargetFit fit_;
  PublicKey key_;
  ReasonedTrust trust_;
  BundleReport report_;
};

}  // namespace

BundleReport checkBundle(const std::string& bundle, const std::string& site,
                         const std::function<void(const std::string&)>& begin) {
  return BundleCheck(bundle, site, begin).run();
}

}  // namespace tools
