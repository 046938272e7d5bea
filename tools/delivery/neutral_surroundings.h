#ifndef QUORVANE_TOOLS_DELIVERY_NEUTRAL_SURROUNDINGS_H
#define QUORVANE_TOOLS_DELIVERY_NEUTRAL_SURROUNDINGS_H

#include <locale.h>

#include <optional>
#include <string>

namespace tools {

// As long as it lives, this thread's character set is UTF-8 and this process's time zone UTC,
// whatever the user's are: libarchive converts names and a zip's times by these. The one before is
// restored at the end. Only the first one of a process changes the zone: while it lives, in the
// main thread, further ones may live in any. Throws InputError if the system has no such locale.
class NeutralSurroundings {
 public:
  NeutralSurroundings();
  ~NeutralSurroundings();
  NeutralSurroundings(const NeutralSurroundings&) = delete;
  NeutralSurroundings& operator=(const NeutralSurroundings&) = delete;

 private:
  locale_t utf8_;
  locale_t before_;
  std::optional<std::string> zone_;  // the value of TZ, if it was set
  bool isZoneChanged_ = false;
};

}  // namespace tools

#endif
