#ifndef QUORVANE_EXTRACTOR_RUNTIME_LAY_OUT_RUNTIME_H
#define QUORVANE_EXTRACTOR_RUNTIME_LAY_OUT_RUNTIME_H

struct ExtractorRun;

// Returns whether the Java home `home` holds a Java executable. Any thread.
[[nodiscard]] bool holdsJava(const char* home);

// Returns whether the Java home `home` is known to hold none; not so where the system cannot tell.
// Any thread.
[[nodiscard]] bool lacksJava(const char* home);

// Whether something visible that initOSXJRE() takes along to the plain folder still lies in the
// bundle's Contents/Home. Any thread.
[[nodiscard]] bool isMoveCutShort(const char* bundle);

// Prepares the bundle `bundle`, a version folder, with initOSXJRE(). An earlier runtime of the same
// version, or what else is in its place, in `earlierHome`, null when nothing is to be looked for,
// is replaced, in one step where the system can do that. What it holds and the new one lacks is its
// user's or the application's and is added to the new one before, but for copies of its java. Where
// it cannot be taken away, or the system cannot tell what the bundle brings, it stays, and a later
// run goes on. Where the new one is known to have no Java, but the earlier one may have one, or
// where the new one did not get to its place whole, or lacks something of the earlier one, that
// comes back, linked into the bundle. Returns whether the new one was laid out. Main thread.
[[nodiscard]] bool layOutRuntime(const ExtractorRun& run, const char* bundle,
                                 const char* earlierHome);

#endif
