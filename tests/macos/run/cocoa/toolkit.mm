#include "tests/macos/run/cocoa/toolkit.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>
#include <signal.h>

#include "platform/toolkit.h"
#include "platform/window_system.h"

namespace macrun {

// GNUstep ignores a broken pipe from its first use on; Apple's frameworks leave that to the
// program.
class KeptPipeSignal {
 public:
  KeptPipeSignal() { sigaction(SIGPIPE, NULL, &action_); }
  ~KeptPipeSignal() { sigaction(SIGPIPE, &action_, NULL); }
  KeptPipeSignal(const KeptPipeSignal&) = delete;
  KeptPipeSignal& operator=(const KeptPipeSignal&) = delete;

 private:
  struct sigaction action_;
};

typedef id (*SharedApplication)(id, SEL);

static SharedApplication toolkitSharedApplication = NULL;

// A Mac's executable asks AppKit for the application object. On GNUstep that takes what the product
// keeps in platform/gnustep, which calls this method in turn.
static id sharedApplication(id application, SEL selector) {
  static bool isOpening = false;
  if (NSApp != nil || isOpening) {
    return toolkitSharedApplication(application, selector);
  }
  const KeptPipeSignal kept;
  isOpening = true;
  static_cast<void>(!openWindowSystem());
  isOpening = false;
  return NSApp;
}

void prepareCocoa(char** argv) {
  const KeptPipeSignal kept;
  prepareToolkit(argv);
  // Not with a message, which would initialise the class before the defaults are set.
  const Class application = (Class)objc_getClass("NSApplication");
  Method method = class_getClassMethod(application, @selector(sharedApplication));
  toolkitSharedApplication = (SharedApplication)method_getImplementation(method);
  method_setImplementation(method, (IMP)sharedApplication);
}

}  // namespace macrun
