#ifndef QUORVANE_LAUNCHER_SHELL_DEFAULT_MENU_H
#define QUORVANE_LAUNCHER_SHELL_DEFAULT_MENU_H

// Gives the application a main menu with the items of the platform's stock application menu; their
// titles contain "%@" where the application's name belongs. For platforms without the stock menu
// file. Logs nothing. Main thread, after createApplication().
void installDefaultMenu();

#endif
