#ifndef QUORVANE_TESTS_SUPPORT_JAVA_RUNTIME_H
#define QUORVANE_TESTS_SUPPORT_JAVA_RUNTIME_H

#include <string>

namespace test {

// Makes the runtime folder `folder` out of the tests' Java runtime: its libraries through a link, a
// "bin" folder of its own with a copy of "java".
void makeRuntime(const std::string& folder);

// The same, with the JVM library where Java itself finds it and a launch inside a process does not.
void makeRuntimeForProcessesOnly(const std::string& folder);

// Fills the folder with files of text that look to the product like a whole runtime of today. Java
// does not run in it.
void makeRuntimeOfText(const std::string& folder);

}  // namespace test

#endif
