#ifndef QUORVANE_LAUNCHER_SHELL_APP_SHELL_H
#define QUORVANE_LAUNCHER_SHELL_APP_SHELL_H

// How the application presents itself. The process may belong to another program, such as an
// installer: the application that runs in it has its own name. Main thread.

// What to present; null for the bundle's or the platform's default. The texts are UTF-8.
struct Presentation {
  const char* name;        // in the menu, and of the process
  const char* icon;        // path of the image in the Dock
  const char* appearance;  // "system", or the name of one of the platform's appearances
};

// Sets the presentation for loadOSXUINib(), which may be called later or not at all, and gives the
// process its name. The texts must live as long as the process. Call it while no other thread reads
// the process's name. Logs nothing.
void presentApplication(const Presentation& presentation);

// The first call loads the stock application menu. Every call puts the application's name (from the
// presentation, else the main bundle's CFBundleName, else the process name) into the titles of its
// first submenu, wherever the menu's own title contains "%@". A menu without items is left
// unchanged. Then it applies icon and appearance: as in an application that Java's window toolkit
// makes itself, windows are light unless the presentation or the key NSRequiresAquaSystemAppearance
// in the bundle's Info.plist says otherwise. The parameter is not used. Without an application
// object it does nothing. Logs nothing.
void loadOSXUINib(const char* unused);

#endif
