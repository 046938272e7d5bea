#ifndef QUORVANE_TOOLS_PACK_REPLACEABLE_H
#define QUORVANE_TOOLS_PACK_REPLACEABLE_H

#include <functional>
#include <string>

namespace tools {

// Throws InputError if `path` exists and is not of the kind that a command writes there: `read`,
// which examines it, then throws InputError. `kind` names the kind in messages.
void requireReplaceable(const std::string& path, const char* kind,
                        const std::function<void()>& read);

}  // namespace tools

#endif
