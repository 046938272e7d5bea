#ifndef QUORVANE_TOOLS_KEYS_KEY_FILE_H
#define QUORVANE_TOOLS_KEYS_KEY_FILE_H

#include <string>

// Files that hold a key.

namespace tools {

// Returns the content of the file `path`, or of standard input when `path` is "-". Throws
// InputError when it cannot be read or is longer than any key.
std::string readKeyText(const std::string& path);

// Writes a private key to a new file that its owner alone may read and write, whatever the umask.
// Throws InputError when `path` exists, even as a dangling link, or cannot be written; nothing is
// left behind then.
void writePrivateKey(const std::string& path, const std::string& pem);

// Writes a public key to a new file, like writePrivateKey() but for others to read.
void writePublicKey(const std::string& path, const std::string& hex);

// Returns why a private key must not be the file `path` when the folder `folder` is packed, for a
// message behind its name, or an empty text.
[[nodiscard]] std::string faultOfKeyPlace(const std::string& path, const std::string& folder);

// Says on standard error when others than its owner may do anything with the key file `path`;
// nothing of "-", standard input.
void warnOfOpenKey(const std::string& path);

// Returns whether others than its owner may do anything with the file `path`; false when it cannot
// be looked at.
bool isOpenToOthers(const std::string& path);

}  // namespace tools

#endif
