#ifndef QUORVANE_TOOLS_BUILD_BUILD_RUNTIME_H
#define QUORVANE_TOOLS_BUILD_BUILD_RUNTIME_H

#include <functional>
#include <string>
#include <vector>

#include "tools/build/build_cache.h"
#include "tools/java/jdk.h"
#include "tools/keys/signing.h"
#include "tools/project/project_file.h"

namespace tools {

// A Java runtime to pack.
struct Runtime {
  std::string home;   // its Java home
  std::string shown;  // what messages call it
  std::string version;
  bool isSignedAnew = false;  // its code has signatures that are others in every build
};

// What a build says while it makes runtimes.
struct RuntimeSteps {
  std::function<void(const std::string&)> step;
  std::function<void(const std::string&)> detail;
};

// Makes the runtimes of a build's targets.
class RuntimeMaker {
 public:
  // What is made is kept in `cache`, which lives longer.
  RuntimeMaker(RuntimeSteps steps, BuildCache* cache) : steps_(std::move(steps)), cache_(cache) {}

  // Returns the runtime of a target's project: the existing one, or one that is made. Says two
  // steps. Throws InputError.
  Runtime runtimeOf(const Project& project);

 private:
  std::vector<std::string> foundModules(const Jdk& jdk, const std::vector<std::string>& jars);
  const std::vector<std::string>& modulesFor(const Project& project, const Jdk& jdk);
  std::string jmodsOf(const Project& project);
  Runtime linked(const Project& project);

  RuntimeSteps steps_;
  BuildCache* cache_;
  std::vector<std::string> modules_;  // the same for all targets
};

// Returns the path of the runtime's archive as an update site named by its name and version has it,
// signed if there is a key. It is made only if it is not in the cache, and may be read as long as
// that lives. That of a runtime that is signed anew is not kept: nothing would find it again.
// Throws InputError.
std::string packedRuntime(const Runtime& runtime, const std::string& name, const SigningKey* key,
                          BuildCache* cache);

}  // namespace tools

#endif
