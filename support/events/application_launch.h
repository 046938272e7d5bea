#ifndef QUORVANE_SUPPORT_EVENTS_APPLICATION_LAUNCH_H
#define QUORVANE_SUPPORT_EVENTS_APPLICATION_LAUNCH_H

// The beginning of the Cocoa application, whoever creates its object first. Logs nothing. Main
// thread.

// Keeps the arguments of the command line from being taken for files to open. Whoever sets the
// user default NSTreatUnknownArgumentsAsOpen for themselves keeps their choice. Before the
// application object exists.
void keepArgumentsFromBeingOpened();

// Lets the application finish its launch, unless that has been done: by an earlier call, or by the
// event loop that runs. Once the application object exists.
void finishLaunching();

#endif
