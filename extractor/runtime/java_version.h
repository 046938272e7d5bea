#ifndef QUORVANE_EXTRACTOR_RUNTIME_JAVA_VERSION_H
#define QUORVANE_EXTRACTOR_RUNTIME_JAVA_VERSION_H

// The version of a system runtime's Java. Main thread.

// Runs the Java executable `java` and returns the version in its path, a new text that the caller
// owns: the part between the first two dots, so 8 for a runtime in a folder named jdk1.8.0_151.jdk.
// Returns "0" if it cannot be run or its path has fewer than two dots.
char* getJavaVersion(const char* java);

// Returns whether the version of `java` is at least `requiredVersion`, both read as whole numbers;
// an empty requirement always passes. Logs the comparison, or that a version is missing.
[[nodiscard]] bool jreMatchesVersionRequirement(const char* java, const char* requiredVersion);

#endif
