#ifndef QUORVANE_TOOLS_BUILD_PACKING_H
#define QUORVANE_TOOLS_BUILD_PACKING_H

#include <map>
#include <string>

#include "tools/build/build_cache.h"
#include "tools/build/build_runtime.h"
#include "tools/bundle/component_content.h"
#include "tools/keys/signing.h"
#include "tools/system/workers.h"

namespace tools {

// Packs the components of a build's targets side by side, each no more than once. The results are
// paths of archives, which may be read as long as the cache lives. Main thread.
class Packing {
 public:
  // `key` is null without signatures. All live longer than the workers.
  Packing(Workers* workers, BuildCache* cache, const SigningKey* key)
      : workers_(workers), cache_(cache), key_(key) {}

  // Starts to pack a component, which throws InputError if something cannot be read. That of an
  // earlier build is taken from the cache; if the code in it is signed anew in each build, nothing
  // would find it again, and it is not kept.
  Workers::Result start(const ComponentContent& content, bool isSignedAnew);

  // Starts to pack a runtime, as packedRuntime() does.
  Workers::Result start(const Runtime& runtime, const std::string& name);

 private:
  Workers* workers_;
  BuildCache* cache_;
  const SigningKey* key_;
  std::map<std::string, Workers::Result> started_;  // by identity
};

}  // namespace tools

#endif
