#include "tools/build/target_build.h"

#include <filesystem>

#include "tools/bundle/installer_writer.h"
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

namespace {

// Makes the results of one target.
class TargetMaker {
 public:
  TargetMaker(const TargetBuild& build, const Runtime& runtime,
              const BuildSurroundings& surroundings)
      : build_(build),
        project_(build.project),
        runtime_(runtime),
        around_(surroundings),
        components_(surroundings.components) {}

  std::vector<IndexEntry> run() {
    signParts();
    makeSite();
    makeOfflineInstaller();
    makeOnlineInstaller();
    if (around_.options.makesLauncher) {
      makeLauncher();
    }
    around_.step("writing the downloads");
    std::vector<IndexEntry> entries = {makeDownload(OFFLINE_INSTALLER),
                                       makeDownload(ONLINE_INSTALLER)};
    if (around_.options.makesLauncher) {
      entries.push_back(makeDownload(LAUNCHER_BUNDLE));
    }
    return entries;
  }

 private:
  // Archives are packed once: the code in them is signed before.
  void signParts() {
    TargetSigning* signing = around_.signing;
    if (signing->isPossible()) {
      around_.step("signing the code of application, updater and runtime");
    }
    application_ = signing->content(components_.application(), "application");
    updater_ = signing->content(components_.updater(), "updater");
    lzmaTool_ = signing->program(build_.executables + "/lzma64");
    const std::string home = signing->runtime(runtime_.home);
    runtime_.isSignedAnew = home != runtime_.home && signing->hasCertificate();
    runtime_.home = home;
  }

  // Where bundles are made: in the output only if they are to stay.
  std::string bundlesBase() const {
    return around_.options.keepsBundles ? around_.output.unfinished() : around_.work;
  }

  std::string bundlesFolder(const BundleKind& kind) const {
    return "bundles/" + targetText(build_.target) + "/" + kind.name;
  }

  // The path of the bundle of that kind. Its name is the application's: what it is, its download's
  // name says.
  std::string bundlePath(const BundleKind& kind) const {
    return bundlesBase() + "/" + bundlesFolder(kind) + "/" + project_.name + ".app";
  }

  Bundle bundleOf(const BundleKind& kind) const {
    makeFolders(bundlesBase(), bundlesFolder(kind));
    Bundle bundle;
    bundle.path = bundlePath(kind);
    describeBundle(project_, around_.appearance, kind.identifierSuffix, &bundle);
    if (around_.minimumSystem != 0) {
      bundle.minimumSystem = systemVersionText(around_.minimumSystem);
    }
    bundle.executable = build_.executables + "/" + kind.executable;
    return bundle;
  }

  Installer installerOf(const BundleKind& kind) const {
    Installer installer;
    installer.bundle = bundleOf(kind);
    installer.tail = tailOf(project_, around_.key);
    installer.tail.guVersion = components_.updaterVersion();
    installer.properties = propertiesOf(project_);
    installer.lzmaTool = lzmaTool_;
    installer.updater = updater_;
    installer.application = application_;
    installer.bundle.plainHttpHost = plainHttpHostOf(project_);
    installer.splash = around_.appearance.splash;
    return installer;
  }

  void makeSite() {
    const std::string site = around_.output / build_.site;
    makeFolders(around_.output.unfinished(), build_.site);
    around_.step("packing the runtime, which takes the most time");
    const std::string packed =
        packedRuntime(runtime_, project_.runtimeName, around_.key, around_.cache);
    runtimeArchive_ = copySiteComponent(site, project_.runtimeName, runtime_.version, packed);
    around_.step("packing application and updater for the update site");
    const Installer installer = installerOf(ONLINE_INSTALLER);
    writeSiteApplication(site, installer, project_.version, around_.key);
    writeSiteUpdater(site, installer, around_.key);
  }

  void makeOfflineInstaller() {
    around_.step("writing the offline installer");
    Installer installer = installerOf(OFFLINE_INSTALLER);
    installer.tail.appVersion = project_.version;
    installer.tail.jreVersion = runtime_.version;
    installer.runtimeArchive = runtimeArchive_;
    writeInstaller(installer, around_.key);
    around_.signing->finish(installer.bundle.path);
  }

  void makeOnlineInstaller() {
    around_.step("writing the online installer");
    const Installer installer = installerOf(ONLINE_INSTALLER);
    writeInstaller(installer, around_.key);
    around_.signing->finish(installer.bundle.path);
  }

  void makeLauncher() {
    around_.step("writing the launcher bundle");
    const Bundle bundle = bundleOf(LAUNCHER_BUNDLE);
    writeBundle(bundle);
    writeTailFile(tailPathInBundle(bundle.path), tailOf(project_, around_.key));
    around_.signing->finish(bundle.path);
  }

  IndexEntry makeDownload(const BundleKind& kind) const {
    IndexEntry entry;
    entry.name = downloadName(project_, build_.target, kind);
    const std::string path = around_.output / entry.name;
    writeDelivery(bundlePath(kind), path, deliveryFormatOf(build_.target));
    entry.target = targetText(build_.target);
    entry.kind = kind.name;
    entry.version = project_.version;
    entry.displayVersion = project_.displayVersion;
    entry.size = static_cast<long long>(fs::file_size(path));
    entry.sha256 = digestOfFile(path);
    return entry;
  }

  const TargetBuild& build_;
  const Project& project_;
  Runtime runtime_;
  const BuildSurroundings& around_;
  const Components& components_;
  // What is packed, with signed code.
  ArchiveContent application_;
  ArchiveContent updater_;
  std::string lzmaTool_;
  std::string runtimeArchive_;
};

}  // namespace

std::vector<IndexEntry> makeTarget(const TargetBuild& build, const Runtime& runtime,
                                   const BuildSurroundings& surroundings) {
  return TargetMaker(build, runtime, surroundings).run();
}

}  // namespace tools
