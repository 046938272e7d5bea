#ifndef QUORVANE_TOOLS_KEYS_PEM_H
#define QUORVANE_TOOLS_KEYS_PEM_H

#include <string>

// The PEM form of keys: Base64 of the DER form between two lines that name its kind.

namespace tools {

// Returns whether `content` is PEM text.
bool isPem(const std::string& content);

// Returns the DER form of the private key in the PEM text `content`. Throws InputError, naming
// `source`, if it has none, or one protected by a passphrase.
std::string privateKeyFromPem(const std::string& content, const std::string& source);

// Returns `der` as PEM text of the kind `label`, in lines of 64 characters.
std::string pemOf(const std::string& label, const std::string& der);

}  // namespace tools

#endif
