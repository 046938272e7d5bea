#ifndef QUORVANE_TESTS_MACOS_RUN_COCOA_TOOLKIT_H
#define QUORVANE_TESTS_MACOS_RUN_COCOA_TOOLKIT_H

namespace macrun {

// Sets GNUstep up for this process as the product's own Linux build does. Main thread, before any
// other message: classes read the defaults when they are first used.
void prepareCocoa(char** argv);

}  // namespace macrun

#endif
