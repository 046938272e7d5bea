#include "tests/fakes/menu_bar.h"

#import <AppKit/AppKit.h>

// The main menu is a window like any other.
bool isMenuShown() { return [[[NSApp mainMenu] window] isVisible]; }
