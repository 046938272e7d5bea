#include "tools/delivery/neutral_surroundings.h"

#include <time.h>

#include <cstdlib>

#include "tools/system/input_error.h"

namespace tools {

// A Mac has the second one.
static locale_t utf8Locale() {
  for (const char* name : {"C.UTF-8", "en_US.UTF-8"}) {
    if (locale_t found = newlocale(LC_CTYPE_MASK, name, nullptr)) {
      return found;
    }
  }
  throw InputError("this system has neither the locale C.UTF-8 nor en_US.UTF-8; install one");
}

static const char kZone[] = "UTC0";

NeutralSurroundings::NeutralSurroundings() : utf8_(utf8Locale()), before_(uselocale(utf8_)) {
  if (const char* zone = getenv("TZ")) {
    zone_ = zone;
  }
  isZoneChanged_ = zone_ != kZone;
  if (isZoneChanged_) {
    setenv("TZ", kZone, 1);
    tzset();
  }
}

NeutralSurroundings::~NeutralSurroundings() {
  if (isZoneChanged_) {
    zone_ ? setenv("TZ", zone_->c_str(), 1) : unsetenv("TZ");
    tzset();
  }
  uselocale(before_);
  freelocale(utf8_);
}

}  // namespace tools
