#ifndef QUORVANE_ARCHIVE_SIGNATURE_CHECK_H
#define QUORVANE_ARCHIVE_SIGNATURE_CHECK_H

#include <cstdio>

#include "archive/signature_record.h"
#include "crypto/signature.h"

// Logs every place in which the record that follows the signed bytes of `archive` differs from
// `record`, hashes the signed bytes and returns whether the signature is theirs. `archive` is the
// stream that `record` was read from, since its name may be another file's by now; where it stands
// afterwards is not said. A record that does not begin where its signed bytes end, and one that is
// cut short, are never right. How a record is spelled does not matter: its type, the length that
// nothing uses and the case of its digits are the writer's own affair.
[[nodiscard]] bool isSignatureRight(FILE* archive, const SignatureRecord& record, Rsa_key* key);

#endif
