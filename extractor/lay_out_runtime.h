#ifndef QUORVANE_EXTRACTOR_LAY_OUT_RUNTIME_H
#define QUORVANE_EXTRACTOR_LAY_OUT_RUNTIME_H

struct ExtractorRun;

// Returns whether the Java home `home` holds a Java executable. Any thread.
[[nodiscard]] bool holdsJava(const char* home);

// Returns whether the Java home `home` is known to hold none; not so where the system cannot tell.
// Any thread.
[[nodiscard]] bool lacksJava(const char* home);

// Prepares the bundle `bundle`, a version folder, with initOSXJRE(). An earlier runtime of the same
// version, or what else stands in its place, in `earlierHome`, null when there is none, is taken
// out of its way first, because its entries and the new ones must not mix, in one step where the
// system can do that, and removed once the new one stands. Where the new one's Java is known not to
// have got to its place but the earlier one may have one, that comes back, linked into the bundle.
// Returns whether it did not have to. Main thread.
[[nodiscard]] bool layOutRuntime(const ExtractorRun& run, const char* bundle,
                                 const char* earlierHome);

#endif
