#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/threads.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

constexpr long kAttributesSignature = 0x54484441;  // _PTHREAD_ATTR_SIG, which attributes start with
constexpr size_t kSmallestStack = 8192;            // PTHREAD_STACK_MIN of <i386/limits.h>
constexpr size_t kPage = 4096;

static int makeThreadAttributes(DarwinThreadAttributes* attributes) {
  *attributes = {kAttributesSignature, kDarwinStackSize, kDarwinJoinable, {}};
  return 0;
}

static int dropThreadAttributes(DarwinThreadAttributes* attributes) {
  attributes->signature = 0;
  return 0;
}

static bool areMade(const DarwinThreadAttributes* attributes) {
  return attributes->signature == kAttributesSignature;
}

static int setStackSize(DarwinThreadAttributes* attributes, size_t size) {
  if (!areMade(attributes) || size < kSmallestStack || size % kPage != 0) {
    return darwin::kEINVAL;
  }
  attributes->stackSize = size;
  return 0;
}

static int getStackSize(const DarwinThreadAttributes* attributes, size_t* size) {
  *size = attributes->stackSize;
  return areMade(attributes) ? 0 : darwin::kEINVAL;
}

static int setDetachState(DarwinThreadAttributes* attributes, int state) {
  if (!areMade(attributes) || (state != kDarwinJoinable && state != kDarwinDetached)) {
    return darwin::kEINVAL;
  }
  attributes->detachState = state;
  return 0;
}

static int getDetachState(const DarwinThreadAttributes* attributes, int* state) {
  *state = attributes->detachState;
  return areMade(attributes) ? 0 : darwin::kEINVAL;
}

static constexpr Supplied kAttributes[] = {
    function<dropThreadAttributes>("_pthread_attr_destroy"),
    function<getDetachState>("_pthread_attr_getdetachstate"),
    function<getStackSize>("_pthread_attr_getstacksize"),
    function<makeThreadAttributes>("_pthread_attr_init"),
    function<setDetachState>("_pthread_attr_setdetachstate"),
    function<setStackSize>("_pthread_attr_setstacksize"),
};
const SupplyTable kThreadAttributeTable = tableOf(kAttributes);

}  // namespace macrun
