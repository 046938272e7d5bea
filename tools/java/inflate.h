#ifndef QUORVANE_TOOLS_JAVA_INFLATE_H
#define QUORVANE_TOOLS_JAVA_INFLATE_H

#include <string>
#include <string_view>

namespace tools {

// Returns what `data`, in the deflate format without a header, unpacks to. Bytes behind its end are
// ignored. Throws InputError if it is damaged or unpacks to more than `most` bytes.
[[nodiscard]] std::string inflate(std::string_view data, size_t most);

}  // namespace tools

#endif
