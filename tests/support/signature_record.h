#ifndef QUORVANE_TESTS_SUPPORT_SIGNATURE_RECORD_H
#define QUORVANE_TESTS_SUPPORT_SIGNATURE_RECORD_H

#include <string>

namespace test {

// Returns where the signature record of the signed archive `whole` begins.
size_t signatureRecordOf(const std::string& whole);

// Whether `changed` holds the signed bytes of the signed archive `whole` and, right behind them, a
// record that says what that of `whole` does: a type that is not a folder's, the record's name, any
// length, which nothing uses, the same number of signed bytes and the same signature, however its
// digits are spelled.
bool saysTheSame(const std::string& changed, const std::string& whole);

}  // namespace test

#endif
