#ifndef QUORVANE_TESTS_SUPPORT_PRODUCT_SYSTEM_H
#define QUORVANE_TESTS_SUPPORT_PRODUCT_SYSTEM_H

#include <cstddef>
#include <string>
#include <vector>

// The executables under test, and the system that they are built for. That is this one, but where
// QUORVANE_PRODUCT names a folder with those built for macOS: tests/macos/suites runs the tests so,
// and loads into every process what starts such an executable. An expectation that differs between
// the two systems asks here.

namespace test {

// The path of an executable of the product, or of a driver of it (tests/fakes).
std::string product(const std::string& name);

// Whether what product() names is built for macOS.
bool productIsForMacos();

// Whether product() names executables of another build than the tests' own, so that what a test has
// linked is not what it is to test.
bool productIsElsewhere();

// The number that the product logs for an error of this system's <cerrno>.
int productErrno(int error);

// What the product prints to standard error where it needs a window system and there is none: a
// line without its end.
std::string productMissingDisplay();

// The longest path that the product's system takes, with the zero byte at its end.
size_t longestPath();

// The JVM library's place in a runtime for the product's system, seen from the runtime's folder.
std::string jvmLibraryPlace();

// The tests' Java runtime, with its JVM library where a product for that system finds it.
std::string testRuntime();

// What to take out of the environment of a program that needs no display: every process of a
// session on macOS has one, so that nothing is taken from those.
std::vector<std::string> displayVariables();

}  // namespace test

#endif
