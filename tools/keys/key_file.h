#ifndef QUORVANE_TOOLS_KEYS_KEY_FILE_H
#define QUORVANE_TOOLS_KEYS_KEY_FILE_H

#include <string>

// Key files.

namespace tools {

// Returns the content of the file `path`, or of standard input if `path` is "-". Throws InputError
// if it cannot be read or is too long for a key.
std::string readKeyText(const std::string& path);

// Writes a private key to a new file that only its owner can read and write, whatever the umask.
// Throws InputError, leaving nothing behind, if `path` exists, even as a broken link, or cannot be
// written.
void writePrivateKey(const std::string& path, const std::string& pem);

// Writes a public key to a new file, like writePrivateKey() but readable by others.
void writePublicKey(const std::string& path, const std::string& hex);

// Returns why a private key must not be the file `path` if the folder `folder` is packed, for
// appending to its name in a message, or an empty text.
[[nodiscard]] std::string faultOfKeyPlace(const std::string& path, const std::string& folder);

// Warns on standard error if others than its owner have any permission on the key file `path`; does
// nothing for "-", standard input.
void warnOfOpenKey(const std::string& path);

// Returns whether others than its owner have any permission on the file `path`; false if it cannot
// be examined.
bool isOpenToOthers(const std::string& path);

}  // namespace tools

#endif
