#ifndef QUORVANE_TESTS_SUPPORT_JAR_BYTES_H
#define QUORVANE_TESTS_SUPPORT_JAR_BYTES_H

#include <string>
#include <utility>
#include <vector>

namespace test {

// The bytes of a jar with these files, given by path and content. Nothing in it is compressed, and
// the same files give the same bytes.
std::string jarOf(const std::vector<std::pair<std::string, std::string>>& files);

// The bytes of a jar with a class of no content, and with these lines in its manifest's main
// section if there are any.
std::string jarOfClass(const std::string& className, const std::string& manifestLines = "");

}  // namespace test

#endif
