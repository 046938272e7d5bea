#ifndef QUORVANE_TOOLS_VERIFY_SIGNATURE_CHECK_H
#define QUORVANE_TOOLS_VERIFY_SIGNATURE_CHECK_H

#include <string>

#include "tools/verify/installer_check.h"

namespace tools {

// Reports what is signed of the bundle folder `bundle` with the executable `executable`, by whom,
// and what is not as it was signed; nothing for another system than macOS. Whose certificate it
// was, and whether it signed this, is told by rcodesign if it is on the PATH. Returns an empty
// text. Throws InputError if something cannot be read.
std::string checkBundleSignature(const std::string& bundle, const std::string& executable,
                                 BundleReport* report);

}  // namespace tools

#endif
