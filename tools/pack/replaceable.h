#ifndef QUORVANE_TOOLS_PACK_REPLACEABLE_H
#define QUORVANE_TOOLS_PACK_REPLACEABLE_H

#include <functional>
#include <string>

namespace tools {

// Throws InputError when something stands at `path` that is not of the kind that a command writes
// there: `read`, which looks at it, then throws InputError. `kind` is what messages call the kind.
void requireReplaceable(const std::string& path, const char* kind,
                        const std::function<void()>& read);

}  // namespace tools

#endif
