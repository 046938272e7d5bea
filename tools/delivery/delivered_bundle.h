#ifndef QUORVANE_TOOLS_DELIVERY_DELIVERED_BUNDLE_H
#define QUORVANE_TOOLS_DELIVERY_DELIVERED_BUNDLE_H

#include <string>

namespace tools {

// Unpacks the download `archive` into the existing empty folder `folder` and returns the path of
// the bundle in it. Throws InputError as unpackDelivery() does, or if the download is not one
// bundle and nothing else.
std::string unpackBundle(const std::string& archive, const std::string& folder);

}  // namespace tools

#endif
