#ifndef QUORVANE_TESTS_SUPPORT_STAND_IN_VM_H
#define QUORVANE_TESTS_SUPPORT_STAND_IN_VM_H

struct JavaVM_;

namespace test {

// What a JVM that runs nothing does when it is asked to end. Static functions, called on the thread
// that asks.
struct StandInVm {
  bool attaches = true;
  // Java's System.exit(status); what it does not do by returning is up to it.
  void (*systemExit)(int status) = nullptr;
};

// Returns the one stand-in for a JVM in this process. It lets a thread attach as a daemon and call
// System.exit, and knows no other method.
JavaVM_* standInVm(const StandInVm& behaviour);

}  // namespace test

#endif
