#ifndef QUORVANE_PLATFORM_TOOLKIT_H
#define QUORVANE_PLATFORM_TOOLKIT_H

// What a toolkit needs around the creation of the application object, beyond Cocoa's own calls.
// Nothing on macOS. Main thread, while it is the only one; called by launcher/application.mm and by
// openWindowSystem(). Nothing is logged.

// Called before the toolkit is used for the first time, with main()'s argument vector.
void prepareToolkit(char** argv);

// Called right before and right after the shared application object is created.
void beforeApplicationCreation();
void afterApplicationCreation();

#endif
