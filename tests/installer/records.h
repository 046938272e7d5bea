#ifndef QUORVANE_TESTS_INSTALLER_RECORDS_H
#define QUORVANE_TESTS_INSTALLER_RECORDS_H

#include <string>

#include "tools/keys/signing.h"

// The bytes of archives, written record by record, so that a test can also write what the packager
// refuses to.

namespace test {

// One record: a plain file, a folder.
std::string fileRecord(const std::string& path, const std::string& bytes);
std::string folderRecord(const std::string& path);

// One of the keys for tests alone; tests/support/test_keys.h names them.
tools::SigningKey testKey(const std::string& name);

// `records` closed by a signature record over them.
std::string signedBy(const tools::SigningKey& key, const std::string& records);

// A plain file record that carries the archive `records` in compressed form under the name
// `name`.p2.l2, as an installer carries its components.
std::string nestedRecord(const std::string& name, const std::string& records);

// `bytes` in the LZMA-alone format.
std::string compressed(const std::string& bytes);

}  // namespace test

#endif
