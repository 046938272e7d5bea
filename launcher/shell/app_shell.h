#ifndef QUORVANE_LAUNCHER_SHELL_APP_SHELL_H
#define QUORVANE_LAUNCHER_SHELL_APP_SHELL_H

// How the application presents itself. The process may be another program's, as an installer's is:
// the application that runs in it has its own name. Main thread.

// What to present, each null for what the bundle or the platform has by itself. The texts are
// UTF-8.
struct Presentation {
  const char* name;        // in the menu, and of the process
  const char* icon;        // path of the image in the Dock
  const char* appearance;  // "system", or the name of one of the platform's appearances
};

// Makes `presentation` the one of loadOSXUINib(), which may be called later or not at all, and
// gives the process its name. The texts have to stay as long as the process. Call it while the main
// thread is the only one that asks for the process's name. Logs nothing.
void presentApplication(const Presentation& presentation);

// The first call loads the stock application menu. Every call puts the application's name (the
// presentation's, else the main bundle's CFBundleName, else the process name) into the titles of
// its first submenu, wherever the menu's own title holds "%@". A menu without items is left as it
// is. Then it applies icon and appearance: as Java's window toolkit does in an application of its
// own, windows are light unless the presentation or the key NSRequiresAquaSystemAppearance in the
// bundle's Info.plist says otherwise. The parameter is not used. Without an application object it
// does nothing. Logs nothing.
void loadOSXUINib(const char* unused);

#endif
