#ifndef QUORVANE_LAUNCHER_SHELL_URL_EVENTS_H
#define QUORVANE_LAUNCHER_SHELL_URL_EVENTS_H

// URLs that the application is asked to open. The latest one wins.

// Registers the process's URL handler for open-URL events, replacing any other. The first call
// creates the handler and writes one line to the system log. Called by createApplication(), or by
// the application's delegate whenever the application finishes launching; the URL that started the
// application is delivered after that. Main thread.
void registerOSXEventListener();

// Returns the latest requested URL as UTF-8 text, or null if there was none or
// registerOSXEventListener() has not run. The text stays valid forever, even after a later URL has
// replaced it; the caller does not free it. Writes the result to the system log. Any thread.
const char* getRequestedURL();

#endif
