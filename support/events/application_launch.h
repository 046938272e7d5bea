#ifndef QUORVANE_SUPPORT_EVENTS_APPLICATION_LAUNCH_H
#define QUORVANE_SUPPORT_EVENTS_APPLICATION_LAUNCH_H

// The start of the Cocoa application, whichever code creates its object. Logs nothing. Main thread.

// Keeps command-line arguments from being taken for files to open. A user's own setting of the user
// default NSTreatUnknownArgumentsAsOpen is kept. Call before the application object exists.
void keepArgumentsFromBeingOpened();

// Lets the application finish its launch, unless an earlier call or the running event loop has done
// so. Call once the application object exists.
void finishLaunching();

#endif
