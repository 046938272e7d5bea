#include "tests/macos/run/cocoa/objc_image.h"

#include "tests/macos/run/cocoa/objc_records.h"

namespace macrun {

// Classes and categories with a +load, and message references of an older kind.
static void refuseWhatIsNotSupported(const Image& image) {
  static const char* const kSections[] = {"__objc_nlclslist", "__objc_nlcatlist", "__objc_msgrefs"};
  for (size_t i = 0; i < sizeof kSections / sizeof kSections[0]; ++i) {
    if (findSection(image, kSections[i]) != NULL) {
      refuse("section %s is not supported", kSections[i]);
    }
  }
}

static void registerSelectors(const Image& image) {
  size_t count = 0;
  const char** names = slotsOf<const char*>(image, "__objc_selrefs", &count);
  for (size_t i = 0; i < count; ++i) {
    const SEL selector = sel_registerName(inImage(image, names[i]));
    names[i] = reinterpret_cast<const char*>(selector);
  }
}

void registerObjc(const Image& image) {
  if (findSection(image, "__objc_imageinfo") == NULL) {
    return;
  }
  refuseWhatIsNotSupported(image);
  registerSelectors(image);
  convertStrings(image);
  registerClasses(image);
}

}  // namespace macrun
