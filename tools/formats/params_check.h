#ifndef QUORVANE_TOOLS_FORMATS_PARAMS_CHECK_H
#define QUORVANE_TOOLS_FORMATS_PARAMS_CHECK_H

#include <string>
#include <vector>

#include "tools/formats/params_writer.h"
#include "tools/formats/tail_writer.h"

// How the product treats an installer's properties.

namespace tools {

// Throws InputError if the properties, and those that installers add from the Tail record, do not
// fit what an installer passes to the application.
void requireRoomForProperties(const Properties& properties, const Tail& tail);

// Whether an installer with these properties refuses unsigned archives.
bool asksForSignatures(const Properties& properties);

// Returns what is wrong with the properties of an installer with this Tail record, a line each.
[[nodiscard]] std::vector<std::string> faultsOfParams(const Properties& properties,
                                                      const Tail& tail);

}  // namespace tools

#endif
