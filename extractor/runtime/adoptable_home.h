#ifndef QUORVANE_EXTRACTOR_RUNTIME_ADOPTABLE_HOME_H
#define QUORVANE_EXTRACTOR_RUNTIME_ADOPTABLE_HOME_H

// Returns whether the folder `home`, empty for "/", may be copied as a Java runtime: it is neither
// a folder that systems put programs of all kinds into ("/", "/usr", "/usr/local", "/opt") nor the
// user's home folder or one above that, whatever path or link leads there; and after the copy has
// been laid out its JVM library lies where a launch looks for it. Logs a line that says why not.
// Main thread.
[[nodiscard]] bool isAdoptableHome(const char* home);

#endif
