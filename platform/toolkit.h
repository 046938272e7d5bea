#ifndef QUORVANE_PLATFORM_TOOLKIT_H
#define QUORVANE_PLATFORM_TOOLKIT_H

// Tells the toolkit about the process before anything else uses it; `argv` is main()'s argument
// vector. Nothing on macOS. Main thread, while it is the only one. Nothing is logged.
void prepareToolkit(char** argv);

#endif
