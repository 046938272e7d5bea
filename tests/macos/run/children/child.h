#ifndef QUORVANE_TESTS_MACOS_RUN_CHILDREN_CHILD_H
#define QUORVANE_TESTS_MACOS_RUN_CHILDREN_CHILD_H

// Between the library that starts the runner in the place of a Mach-O file, and the runner.

namespace macrun {

// The variable that names the file. The runner takes it out of its environment; the arguments are
// the program's own, argv[0] included.
constexpr char kExecutableVariable[] = "MACRUN_EXECUTABLE";

}  // namespace macrun

#endif
