#include <objc/message.h>
#include <objc/runtime.h>

#import <Foundation/Foundation.h>

#include <atomic>
#include <cstdint>

#include "tests/macos/run/supply/tables.h"
#include "tests/macos/run/supply/trace.h"

// Sending messages: what <objc/message.h> and the compiler's calls into the runtime name, over
// GCC's runtime. The assembly code keeps the arguments and asks here for the method.

namespace macrun {

extern "C" {
void macrunSend();
void macrunSendForStructure();
void macrunSendToSuper();
}

constexpr size_t kMostSelectors = 4096;

static std::atomic<SEL> sentSelectors[kMostSelectors];

// Returns whether the selector is sent for the first time.
static bool isNew(SEL selector) {
  size_t i = (reinterpret_cast<uintptr_t>(selector) >> 4) % kMostSelectors;
  for (size_t tries = 0; tries < kMostSelectors; ++tries, i = (i + 1) % kMostSelectors) {
    SEL known = sentSelectors[i];
    if (known == NULL && sentSelectors[i].compare_exchange_strong(known, selector)) {
      return true;
    }
    if (known == selector) {
      return false;
    }
  }
  return true;
}

static void traceSelector(SEL selector) {
  if (isTracing() && isNew(selector)) {
    traceUse("selector", sel_getName(selector));
  }
}

extern "C" IMP macrunFindMethod(id receiver, SEL selector) {
  traceSelector(selector);
  return objc_msg_lookup(receiver, selector);
}

// What the compiler passes for a message to super: the class that the method belongs to.
struct SuperMessage {
  id receiver;
  Class current;
};

extern "C" IMP macrunFindSuperMethod(const SuperMessage* message, SEL selector) {
  traceSelector(selector);
  objc_super super = {message->receiver, class_getSuperclass(message->current)};
  return objc_msg_lookup_super(&super, selector);
}

static id allocateObject(id receiver) { return [receiver alloc]; }

static id makeObject(id receiver) { return [[receiver alloc] init]; }

static id retainObject(id object) { return [object retain]; }

static void releaseObject(id object) { [object release]; }

static id autoreleaseObject(id object) { return [object autorelease]; }

// What a class that is not yet used has for its cache there; nobody looks into it here.
static const uint64_t emptyCache[2] = {};

// The records of methods that these take and return are GNUstep's; nobody looks into them.
static const Supplied kMessages[] = {
    data<&emptyCache>("__objc_empty_cache"),
    function<class_getClassMethod>("_class_getClassMethod"),
    function<method_getImplementation>("_method_getImplementation"),
    function<method_setImplementation>("_method_setImplementation"),
    function<allocateObject>("_objc_alloc"),
    function<makeObject>("_objc_alloc_init"),
    function<autoreleaseObject>("_objc_autorelease"),
    function<objc_getClass>("_objc_getClass"),
    function<macrunSend>("_objc_msgSend"),
    function<macrunSendToSuper>("_objc_msgSendSuper2"),
    function<macrunSendForStructure>("_objc_msgSend_stret"),
    function<releaseObject>("_objc_release"),
    function<retainObject>("_objc_retain"),
    function<object_getClass>("_object_getClass"),
    function<sel_getName>("_sel_getName"),
    function<sel_registerName>("_sel_registerName"),
};
const SupplyTable kMessageTable = tableOf(kMessages);

}  // namespace macrun
