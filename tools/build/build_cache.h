#ifndef QUORVANE_TOOLS_BUILD_BUILD_CACHE_H
#define QUORVANE_TOOLS_BUILD_BUILD_CACHE_H

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tools/system/temporary_folder.h"

// What builds made and the next ones can use again, each under the digest of all that it was made
// from. Several builds may use one cache at the same time, and several threads one object.

namespace tools {

// Returns the user's folder for it, which need not exist: that of XDG_CACHE_HOME, or the system's
// place below HOME. Empty if there is neither.
std::string userCacheFolder();

class BuildCache {
 public:
  // Uses the folder `folder`, created if missing; if it is empty nothing is found and nothing kept.
  // A folder that cannot be used, or that others may write to, is named on standard error and
  // treated as none: what is found in it would be signed.
  explicit BuildCache(const std::string& folder);

  // Makes a file or a folder at the path that it gets, which does not exist.
  using Make = std::function<void(const std::string& path)>;

  // Returns the path of what `make` makes from `inputs`, a text that says all that the result
  // depends on. If an earlier build made it and it is whole, it is not made again. It may be read
  // as long as the cache object lives. The oldest entries of the kind, a word, are removed if there
  // are too many. Throws what `make` throws.
  std::string take(const std::string& kind, const std::string& inputs, const Make& make);

  // Makes it without looking for it and keeping it.
  std::string makeAnew(const Make& make);

 private:
  std::string holdUnkept(std::unique_ptr<TemporaryFolder> made);
  std::string keep(std::unique_ptr<TemporaryFolder> made, const std::string& entry);
  void prune(const std::string& kind) const;

  std::string folder_;
  std::mutex mutex_;  // of what follows
  std::vector<std::unique_ptr<TemporaryFolder>> unkept_;
};

}  // namespace tools

#endif
