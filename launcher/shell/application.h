#ifndef QUORVANE_LAUNCHER_SHELL_APPLICATION_H
#define QUORVANE_LAUNCHER_SHELL_APPLICATION_H

// The process's Cocoa application object behind a plain C++ interface. Main thread only. A program
// calls the functions it needs in this order, each once; none of them logs.

// Tells the toolkit about the process before anything else uses it: call it first in main(), with
// main()'s argument vector. The arguments after argv[0] belong to Java; the toolkit must not take
// them for files to open or for its own settings.
void prepareApplication(char** argv);

// Creates the shared application object with its delegate, which receives URLs and files to open
// (launcher/shell/url_events.h) and requests to quit. If no window system is available, says so in
// one line on standard error and ends the process with status 1. The Java thread is started after
// this call, never before it.
void createApplication();

// Returns a new autorelease pool for the calling thread, to be passed to drainAutoreleasePool().
void* createAutoreleasePool();

// Releases what the pool holds, and the pool itself.
void drainAutoreleasePool(void* pool);

// Lets the application finish its launch and handles the events that arrive within `seconds`, for a
// process that does not run the event loop.
void letEventsArrive(double seconds);

// Brings the application in front of all others.
void activateApplication();

// Runs the event loop; returns only when the application is told to stop.
void runApplication();

#endif
