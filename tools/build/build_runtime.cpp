#include "tools/build/build_runtime.h"

#include <filesystem>
#include <sstream>

#include "tools/bundle/installer_writer.h"
#include "tools/delivery/file_digest.h"
#include "tools/java/java_runtime.h"
#include "tools/java/jdk_archive.h"
#include "tools/project/components.h"
#include "tools/system/input_error.h"
#include "tools/system/temporary_folder.h"
#include "tools/system/texts.h"
#include "tools/system/whole_file.h"

namespace fs = std::filesystem;

namespace tools {

// What the JDK's program `name` depends on; empty if that cannot be told.
static std::string identityOf(const Jdk& jdk, const std::string& name) {
  const std::string release = jdk.home() + "/release";
  const std::string program = jdk.home() + "/bin/" + name;
  if (!fs::is_regular_file(release) || !fs::is_regular_file(program)) {
    return "";
  }
  return std::string(QUORVANE_VERSION) + "\nrelease " + digestOfFile(release) + "\nprogram " +
         digestOfFile(program);
}

// The modules that jdeps finds for the jars. It takes seconds.
std::vector<std::string> RuntimeMaker::foundModules(const Jdk& jdk,
                                                    const std::vector<std::string>& jars) {
  const std::string program = identityOf(jdk, "jdeps");
  if (program.empty()) {
    return modulesOf(jdk, jars);
  }
  std::string inputs = "names 1 " + program;
  for (const std::string& jar : jars) {
    inputs += "\njar " + digestOfFile(jar) + " " + fs::path(jar).filename().string();
  }
  const std::string list = cache_->take("names", inputs, [&](const std::string& path) {
    writeWhole(path, joined(modulesOf(jdk, jars), "\n") + "\n");
  });
  std::vector<std::string> modules;
  std::istringstream lines(readWhole(list));
  for (std::string line; std::getline(lines, line);) {
    modules.push_back(line);
  }
  return modules;
}

const std::vector<std::string>& RuntimeMaker::modulesFor(const Project& project, const Jdk& jdk) {
  if (modules_.empty()) {
    modules_ = project.runtimeModules.empty() ? foundModules(jdk, jarsOf(project))
                                              : project.runtimeModules;
  }
  return modules_;
}

// The folder of modules of the target's JDK; empty for the modules of the JDK here.
std::string RuntimeMaker::jmodsOf(const Project& project) {
  if (project.jdkArchive.empty()) {
    return project.jmods;
  }
  requireDigest(project.jdkArchive, project.jdkSha256);
  const std::string folder =
      cache_->take("modules", "modules 1 " + project.jdkSha256, [&](const std::string& path) {
        fs::create_directory(path);
        unpackModules(project.jdkArchive, path);
      });
  return modulesIn(folder, project.jdkArchive);
}

static bool hasModuleFiles(const std::string& folder) {
  std::error_code ignored;
  return fs::is_regular_file(folder + "/java.base.jmod", ignored);
}

// All that a runtime made of the files in `jmods` depends on.
static std::string inputsOf(const std::string& jlink, const std::vector<std::string>& modules,
                            const std::string& jmods) {
  return "runtime 1 " + jlink + "\njmods " + digestOfContent(jmods) + "\noptions " +
         joined(LINK_OPTIONS, " ") + "\nmodules " + joined(modules, ",");
}

Runtime RuntimeMaker::linked(const Project& project) {
  const Jdk jdk = Jdk::find(project.jdk);
  steps_.step("finding the modules that the runtime needs");
  const std::vector<std::string>& modules = modulesFor(project, jdk);
  steps_.detail(joined(modules, ", "));
  steps_.step("making the runtime with " + jdk.home() + "/bin/jlink, which takes a while");
  const std::string jmods = jmodsOf(project);
  const BuildCache::Make make = [&](const std::string& path) {
    linkRuntime(jdk, modules, jmods, path);
  };
  // Without these files jlink takes what the JDK itself is made of.
  const std::string files = jmods.empty() ? jdk.home() + "/jmods" : jmods;
  const std::string jlink = identityOf(jdk, "jlink");
  Runtime runtime;
  runtime.home = hasModuleFiles(files) && !jlink.empty()
                     ? cache_->take("runtime", inputsOf(jlink, modules, files), make)
                     : cache_->makeAnew(make);
  const std::string& origin = project.jdkArchive.empty() ? project.jmods : project.jdkArchive;
  runtime.shown = "the runtime made from " + (origin.empty() ? jdk.home() : origin);
  return runtime;
}

Runtime RuntimeMaker::runtimeOf(const Project& project) {
  Runtime runtime;
  if (project.runtimeHome.empty()) {
    runtime = linked(project);
  } else {
    steps_.step("checking the runtime");
    steps_.step("using the runtime " + project.runtimeHome);
    runtime.home = javaHomeIn(project.runtimeHome);
    runtime.shown = runtime.home;
  }
  runtime.version =
      project.runtimeVersion.empty() ? runtimeNumber(runtime.home) : project.runtimeVersion;
  if (runtime.version.empty()) {
    throw InputError(project.file + ": [runtime] needs the key 'version', because " + runtime.home +
                     "/release has none");
  }
  return runtime;
}

std::string packedRuntime(const Runtime& runtime, const std::string& name, const SigningKey* key,
                          BuildCache* cache) {
  const BuildCache::Make make = [&](const std::string& path) {
    const TemporaryFolder site;
    fs::copy_file(writeSiteRuntime(site.path(), name, runtime.version, runtime.home, key), path);
  };
  if (runtime.isSignedAnew) {
    return cache->makeAnew(make);
  }
  const std::string inputs =
      "archive 1 " QUORVANE_VERSION "\nname " + name + "\nversion " + runtime.version + "\nkey " +
      (key == nullptr ? "none" : key->publicKeyHex()) + "\nhome " + digestOfContent(runtime.home);
  return cache->take("archive", inputs, make);
}

}  // namespace tools
