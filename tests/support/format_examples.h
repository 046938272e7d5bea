#ifndef QUORVANE_TESTS_SUPPORT_FORMAT_EXAMPLES_H
#define QUORVANE_TESTS_SUPPORT_FORMAT_EXAMPLES_H

#include <string>

namespace test {

// Returns the text of the block in docs/formats.md that begins with ``` and `kind`, a blank and
// `name`; the test fails when there is none.
std::string formatBlock(const std::string& kind, const std::string& name);

// Returns `bytes` as the document shows them: sixteen a line with their offset and characters.
std::string hexDump(const std::string& bytes);

}  // namespace test

#endif
