#include "tools/build/packing.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace tools {

static std::string packed(const ComponentContent& content, const std::string& identity,
                          bool isSignedAnew, const SigningKey* key, BuildCache* cache) {
  const BuildCache::Make make = [&](const std::string& path) {
    const std::string archive = path + ".p2.l2";
    writeComponent(content, identity, archive, key);
    fs::rename(archive, path);
  };
  if (isSignedAnew) {
    return cache->makeAnew(make);
  }
  const std::string inputs = "component 1 " QUORVANE_VERSION "\nkey " +
                             (key == nullptr ? "none" : key->publicKeyHex()) + "\n" + identity;
  return cache->take("component", inputs, make);
}

Workers::Result Packing::start(const ComponentContent& content, bool isSignedAnew) {
  // Targets mostly have the same application.
  const std::string identity = identityOf(content);
  Workers::Result& result = started_[identity];
  if (!result.valid()) {
    result = workers_->start([content, identity, isSignedAnew, key = key_, cache = cache_] {
      return packed(content, identity, isSignedAnew, key, cache);
    });
  }
  return result;
}

Workers::Result Packing::start(const Runtime& runtime, const std::string& name) {
  return workers_->start([runtime, name, key = key_, cache = cache_] {
    return packedRuntime(runtime, name, key, cache);
  });
}

}  // namespace tools
