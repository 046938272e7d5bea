#ifndef QUORVANE_TOOLS_KEYS_PUBLIC_KEY_H
#define QUORVANE_TOOLS_KEYS_PUBLIC_KEY_H

#include <memory>
#include <string>

#include "crypto/signature.h"

namespace tools {

struct FreePublicKey {
  void operator()(Rsa_key* key) const { freePublicKey(key); }
};
using PublicKey = std::unique_ptr<Rsa_key, FreePublicKey>;

// Reads a public key from the text in a Tail record or printed by 'key show', with the product's
// own reader, whose log it hides. Returns none if that reader refuses it.
PublicKey publicKeyFromHex(const std::string& hex);

}  // namespace tools

#endif
