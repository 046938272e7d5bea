#ifndef QUORVANE_ARCHIVE_TRUST_H
#define QUORVANE_ARCHIVE_TRUST_H

struct Rsa_key;

// What an archive's signature is checked with, and whether it has to have one. A key alone is
// trust, too: what is signed is verified with it, and what is not signed is accepted.
struct Trust {
  // Not explicit, so that a key may be given where this is asked for.
  Trust(Rsa_key* publicKey = nullptr, bool signatureIsRequired = false)
      : key(publicKey), isRequired(signatureIsRequired) {}

  Rsa_key* key;     // null if there is none; owned by the caller
  bool isRequired;  // whether an archive without a signature is one whose signature is wrong
};

#endif
