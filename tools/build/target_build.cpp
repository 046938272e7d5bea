#include "tools/build/target_build.h"

#include <filesystem>

#include "formats/names.h"
#include "tools/delivery/file_digest.h"
#include "tools/formats/update_site.h"
#include "tools/project/presentation_check.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

static Tail tailOf(const Project& project, const SigningKey* key) {
  Tail tail;
  tail.appName = project.name;
  tail.minSplashMs = project.minimumSplashMs;
  tail.publicKeyHex = key == nullptr ? "" : key->publicKeyHex();
  tail.canOverrideSplash = project.canOverrideSplash;
  tail.installType = project.installType;
  tail.silentParameter = project.silentParameter;
  tail.requiredJavaVersion = project.requiredJava;
  tail.updateUrl = project.updateUrl;
  return tail;
}

static Properties propertiesOf(const Project& project) {
  Properties properties = project.properties;
  properties.emplace_back("jre_name", project.runtimeName);
  if (project.requireSignature) {
    properties.emplace_back("require_signature", "true");
  }
  if (project.isForConsole) {
    properties.emplace_back("console", "true");
  }
  return properties;
}

void requireEncodable(const TargetBuild& build, const SigningKey* key) {
  const Project& project = build.project;
  aboutFile(project.file + ": [installer]", [&] { return encodeTail(tailOf(project, key)); });
  aboutFile(project.file + ": [installer.properties]",
            [&] { return encodeParams(propertiesOf(project)); });
}

// Makes a folder and those above it up to the existing folder `base`. The modes do not depend on
// the umask.
static void makeFolders(const std::string& base, const std::string& path) {
  std::error_code error;
  fs::path folder = base;
  for (const fs::path& part : fs::path(path)) {
    folder /= part;
    fs::create_directory(folder, error);
    if (!error) {
      fs::permissions(folder, fs::perms{0755}, error);
    }
    if (error) {
      throw InputError("cannot create " + folder.string() + ": " + error.message());
    }
  }
}

TargetMaker::TargetMaker(const TargetBuild& build, const Components& components,
                         TargetSigning* signing, const BuildSurroundings& surroundings)
    : build_(build),
      project_(build_.project),
      components_(components),
      signing_(signing),
      around_(surroundings) {}

void TargetMaker::startComponents() {
  if (!signing_->isPossible()) {
    packComponents();
  }
}

// Archives are packed once: the code in them is signed before.
void TargetMaker::packComponents() {
  const bool isSignedAnew = signing_->hasCertificate();
  const ArchiveContent application = signing_->content(components_.application(), "application");
  const ArchiveContent updater = signing_->content(components_.updater(), "updater");
  lzmaTool_ = signing_->program(build_.executables + "/lzma64");
  const auto start = [&](const ComponentContent& content) {
    return around_.packing->start(content, isSignedAnew);
  };
  // The largest first.
  siteApplication_ = start(siteApplication(application, project_.name, project_.version));
  application_ = start({application, {}});
  siteUpdater_ = start(siteUpdater(updater, lzmaTool_, project_.name, components_.updaterVersion(),
                                   around_.appearance.splash));
  updater_ = start({updater, {}});
}

void TargetMaker::startRuntime(const Runtime& runtime, SystemVersion minimumSystem) {
  minimumSystem_ = minimumSystem;
  runtimeVersion_ = runtime.version;
  if (signing_->isPossible()) {
    around_.step("signing the code of application, updater and runtime");
    packComponents();
  }
  Runtime packed = runtime;
  packed.home = signing_->runtime(runtime.home);
  packed.isSignedAnew = packed.home != runtime.home && signing_->hasCertificate();
  runtime_ = around_.packing->start(packed, project_.runtimeName);
}

std::vector<IndexEntry> TargetMaker::finish() {
  makeSite();
  makeOfflineInstaller();
  makeOnlineInstaller();
  if (around_.options.makesLauncher) {
    makeLauncher();
  }
  around_.step("writing the downloads");
  std::vector<IndexEntry> entries;
  for (const auto& [kind, digest] : downloads_) {
    IndexEntry entry = downloadEntry(kind);
    entry.sha256 = digest.get();
    entry.size = static_cast<long long>(fs::file_size(around_.output / entry.name));
    entries.push_back(entry);
  }
  return entries;
}

// Where bundles are made: in the output only if they are to stay.
std::string TargetMaker::bundlesBase() const {
  return around_.options.keepsBundles ? around_.output.unfinished() : work_.path();
}

static std::string bundlesFolder(const Target& target, const BundleKind& kind) {
  return "bundles/" + targetText(target) + "/" + kind.name;
}

// The path of the bundle of that kind. Its name is the application's: what it is, its download's
// name says.
std::string TargetMaker::bundlePath(const BundleKind& kind) const {
  return bundlesBase() + "/" + bundlesFolder(build_.target, kind) + "/" + project_.name + ".app";
}

Bundle TargetMaker::bundleOf(const BundleKind& kind) const {
  makeFolders(bundlesBase(), bundlesFolder(build_.target, kind));
  Bundle bundle;
  bundle.path = bundlePath(kind);
  describeBundle(project_, around_.appearance, kind.identifierSuffix, &bundle);
  if (minimumSystem_ != 0) {
    bundle.minimumSystem = systemVersionText(minimumSystem_);
  }
  bundle.executable = build_.executables + "/" + kind.executable;
  return bundle;
}

Installer TargetMaker::installerOf(const BundleKind& kind) const {
  Installer installer;
  installer.bundle = bundleOf(kind);
  installer.tail = tailOf(project_, around_.key);
  installer.tail.guVersion = components_.updaterVersion();
  installer.properties = propertiesOf(project_);
  installer.lzmaTool = lzmaTool_;
  installer.updaterArchive = updater_.get();
  installer.bundle.plainHttpHost = plainHttpHostOf(project_);
  installer.splash = around_.appearance.splash;
  return installer;
}

void TargetMaker::makeSite() {
  const std::string site = around_.output / build_.site;
  makeFolders(around_.output.unfinished(), build_.site);
  around_.step("packing the runtime, which takes the most time");
  runtimeArchive_ = copySiteComponent(site, project_.runtimeName, runtimeVersion_, runtime_.get());
  around_.step("packing application and updater for the update site");
  copySiteComponent(site, project_.name, project_.version, siteApplication_.get());
  copySiteComponent(site, UPDATER_NAME, components_.updaterVersion(), siteUpdater_.get());
}

void TargetMaker::makeOfflineInstaller() {
  around_.step("writing the offline installer");
  Installer installer = installerOf(OFFLINE_INSTALLER);
  installer.tail.appVersion = project_.version;
  installer.tail.jreVersion = runtimeVersion_;
  installer.runtimeArchive = runtimeArchive_;
  installer.applicationArchive = application_.get();
  writeInstaller(installer);
  signing_->finish(installer.bundle.path);
  startDownload(OFFLINE_INSTALLER);
}

void TargetMaker::makeOnlineInstaller() {
  around_.step("writing the online installer");
  const Installer installer = installerOf(ONLINE_INSTALLER);
  writeInstaller(installer);
  signing_->finish(installer.bundle.path);
  startDownload(ONLINE_INSTALLER);
}

void TargetMaker::makeLauncher() {
  around_.step("writing the launcher bundle");
  const Bundle bundle = bundleOf(LAUNCHER_BUNDLE);
  writeBundle(bundle);
  writeTailFile(tailPathInBundle(bundle.path), tailOf(project_, around_.key));
  signing_->finish(bundle.path);
  startDownload(LAUNCHER_BUNDLE);
}

// Starts to write the download of a finished bundle.
void TargetMaker::startDownload(const BundleKind& kind) {
  const std::string path = around_.output / downloadName(project_, build_.target, kind);
  const DeliveryFormat format = deliveryFormatOf(build_.target);
  const auto write = [bundle = bundlePath(kind), path, format] {
    writeDelivery(bundle, path, format);
    return digestOfFile(path);
  };
  downloads_.emplace_back(kind, around_.workers->start(write));
}

// The entry without what is known when the download is written.
IndexEntry TargetMaker::downloadEntry(const BundleKind& kind) const {
  IndexEntry entry;
  entry.name = downloadName(project_, build_.target, kind);
  entry.target = targetText(build_.target);
  entry.kind = kind.name;
  entry.version = project_.version;
  entry.displayVersion = project_.displayVersion;
  return entry;
}

}  // namespace tools
