#ifndef QUORVANE_EXTRACTOR_RUNTIME_JAVA_VERSION_H
#define QUORVANE_EXTRACTOR_RUNTIME_JAVA_VERSION_H

// Which Java a system runtime is. Main thread.

// Runs the Java executable `java` and returns the version that its path tells, in a new text that
// the caller owns: what stands between the first two dots, so 8 for a runtime in a folder named
// jdk1.8.0_151.jdk. Returns "0" when it cannot be run or its path has fewer than two dots.
char* getJavaVersion(const char* java);

// Returns whether the version of `java` is at least `requiredVersion`, both taken as whole numbers;
// an empty requirement always passes. Logs the comparison, or that a version is missing.
[[nodiscard]] bool jreMatchesVersionRequirement(const char* java, const char* requiredVersion);

#endif
