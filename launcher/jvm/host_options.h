#ifndef QUORVANE_LAUNCHER_JVM_HOST_OPTIONS_H
#define QUORVANE_LAUNCHER_JVM_HOST_OPTIONS_H

#include <cstddef>

// JVM options that are meant for the program that hosts the JVM. On every platform they mean what
// they mean to the command "java" on macOS.
//
//   -XstartOnFirstThread   Java's main() runs on the process's first thread; no event loop is run
//   -Xdock:name=NAME       the application's name in its menu and in the Dock
//   -Xdock:icon=FILE       the application's icon in the Dock
//
// These three are not passed on to the JVM. The host also evaluates two others:
//
//   -XssSIZE                                  the stack of Java's main thread
//   -Dapple.awt.application.appearance=NAME   the appearance of the application's windows

// The smallest and the largest stack of Java's main thread, in bytes.
constexpr size_t JAVA_STACK_LEAST = size_t{8} << 20;
constexpr size_t JAVA_STACK_MOST = size_t{1} << 30;

// The values of the options; the last one of a kind counts. The texts are parts of the options.
struct HostOptions {
  bool startOnFirstThread = false;
  const char* dockName = nullptr;    // null when not given
  const char* dockIcon = nullptr;    // null when not given
  const char* appearance = nullptr;  // null when not given
  size_t stackSize = JAVA_STACK_LEAST;
};

// Reads the `count` options at `options`, each of which may be null. Any thread; logs nothing.
HostOptions readHostOptions(int count, const char* const* options);

// Returns whether the option is one of those not passed on to the JVM.
[[nodiscard]] bool isForHostOnly(const char* option);

// Returns the number of bytes that an option such as "-Xss2m" asks for: digits, then nothing or one
// of k, m, g and t in either case. 0 if it does not have that form. A number that is too large for
// its type becomes the largest.
size_t stackSizeIn(const char* option);

#endif
