#ifndef QUORVANE_EXTRACTOR_RUNTIME_ADOPTABLE_HOME_H
#define QUORVANE_EXTRACTOR_RUNTIME_ADOPTABLE_HOME_H

// Returns whether the folder `home`, empty for "/", may be copied as a Java runtime: it is neither
// a folder that systems put programs of all kinds into ("/", "/usr", "/usr/local", "/opt") nor the
// user's home folder or one above that, whatever path or link leads there; and in the copy's final
// layout the JVM library is where a launch looks for it. If not, logs a line with the reason. Main
// thread.
[[nodiscard]] bool isAdoptableHome(const char* home);

#endif
