#ifndef QUORVANE_TESTS_MACOS_RUN_COCOA_SYMBOLS_H
#define QUORVANE_TESTS_MACOS_RUN_COCOA_SYMBOLS_H

namespace macrun {

// Returns the address of what no table has: an Objective-C class, or a symbol of the frameworks
// that GNUstep's libraries define under the same name. nullptr where there is none. Sets
// `isFunction`.
void* findCocoaSymbol(const char* name, bool* isFunction);

// Whether the symbol is that of a class or metaclass.
bool isClassName(const char* name);

}  // namespace macrun

#endif
