#ifndef QUORVANE_TESTS_FAKES_MENU_BAR_H
#define QUORVANE_TESTS_FAKES_MENU_BAR_H

// Whether the application's main menu is on the screen. On the main thread.
bool isMenuShown();

#endif
