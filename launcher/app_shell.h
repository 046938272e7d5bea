#ifndef QUORVANE_LAUNCHER_APP_SHELL_H
#define QUORVANE_LAUNCHER_APP_SHELL_H

// Loads the stock application menu and puts the application's name (the main bundle's CFBundleName,
// else the process name) into the titles of its first submenu, wherever a title holds "%@". A menu
// without items is left as it is. The parameter is not used. Logs nothing. Main thread, after
// createApplication().
void loadOSXUINib(const char* unused);

#endif
