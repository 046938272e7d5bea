#ifndef QUORVANE_TESTS_MACOS_RUN_DARWIN_END_H
#define QUORVANE_TESTS_MACOS_RUN_DARWIN_END_H

namespace macrun {

// What exit() does there: runs the executable's own exit handlers from the latest to the earliest,
// flushes every stream and ends the process. GNUstep's handlers do not run: Apple's frameworks have
// none that an executable would notice. Any thread.
[[noreturn]] void exitExecutable(int status);

}  // namespace macrun

#endif
