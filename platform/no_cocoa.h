// Forced into every plain C++ file. Cocoa is reached only through the plain headers of the .mm
// files; with these names poisoned, including a Cocoa header anywhere else does not compile.
#pragma GCC poison NSObject NSString NSApplication NSAutoreleasePool NSWindow NSURL CFBundleRef
