#include "tools/delivery/delivered_bundle.h"

#include <filesystem>
#include <vector>

#include "tools/delivery/delivery_reader.h"
#include "tools/system/input_error.h"

namespace fs = std::filesystem;

namespace tools {

std::string unpackBundle(const std::string& archive, const std::string& folder) {
  unpackDelivery(archive, folder);
  std::vector<fs::path> items;
  for (const auto& entry : fs::directory_iterator(folder)) {
    items.push_back(entry.path());
  }
  const bool isBundle = items.size() == 1 && items[0].extension() == ".app" &&
                        fs::is_directory(fs::symlink_status(items[0]));
  if (!isBundle) {
    throw InputError(archive + " is not a download of a bundle: it does not hold one NAME.app");
  }
  return items[0];
}

}  // namespace tools
