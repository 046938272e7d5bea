#ifndef QUORVANE_LAUNCHER_SHELL_APPEARANCE_H
#define QUORVANE_LAUNCHER_SHELL_APPEARANCE_H

// Sets the appearance of the application's windows as Java's window toolkit does where it makes the
// application object itself, which it leaves alone when it finds one: "system" follows the system's
// setting, any other name is that of an appearance, and an unknown one means light. Null is light
// too, unless the key NSRequiresAquaSystemAppearance in the bundle's Info.plist decides. Does
// nothing where the platform knows no appearances. Main thread, after createApplication().
void setApplicationAppearance(const char* name);

#endif
