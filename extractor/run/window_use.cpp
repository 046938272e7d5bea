#include "extractor/run/window_use.h"

WindowUse chooseWindowUse(bool isQuiet, bool (*isAvailable)(), bool isRequired) {
  if (isQuiet) {
    return WindowUse::None;
  }
  if (isAvailable()) {
    return WindowUse::Open;
  }
  return isRequired ? WindowUse::Refuse : WindowUse::GoWithout;
}
