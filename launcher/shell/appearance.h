#ifndef QUORVANE_LAUNCHER_SHELL_APPEARANCE_H
#define QUORVANE_LAUNCHER_SHELL_APPEARANCE_H

// Sets the appearance of the application's windows as Java's window toolkit does for an application
// object that it makes itself; it leaves an existing one alone. "system" follows the system's
// setting, any other name is that of an appearance, and an unknown one means light. Null means
// light too, unless the key NSRequiresAquaSystemAppearance in the bundle's Info.plist decides. Does
// nothing if the platform has no appearances. Main thread, after createApplication().
void setApplicationAppearance(const char* name);

#endif
