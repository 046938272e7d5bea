#include "tests/fakes/menu_bar.h"

#import <AppKit/AppKit.h>

// The bar at the top belongs to the active application.
bool isMenuShown() { return [NSApp isActive] && [NSMenu menuBarVisible]; }
