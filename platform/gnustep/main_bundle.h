#ifndef QUORVANE_PLATFORM_GNUSTEP_MAIN_BUNDLE_H
#define QUORVANE_PLATFORM_GNUSTEP_MAIN_BUNDLE_H

// If the executable is in Contents/MacOS of a bundle, gives the main bundle the Info dictionary of
// Contents/Info.plist, which the toolkit does not look for. Main thread, once.
void readMainBundleFromContents();

#endif
