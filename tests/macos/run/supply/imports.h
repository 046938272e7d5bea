#ifndef QUORVANE_TESTS_MACOS_RUN_SUPPLY_IMPORTS_H
#define QUORVANE_TESTS_MACOS_RUN_SUPPLY_IMPORTS_H

namespace macrun {

// Returns the address of a symbol that the executable imports from `library`. Where there is none,
// the address is that of code that names the symbol and aborts, or nullptr for a symbol that the
// executable can do without.
void* importAddress(const char* name, const char* library, bool isWeak);

// Refuses an executable that imports a class which is not there: a message to it could not be told
// from any other. Data that is missing cannot be told from functions.
void refuseMissingClasses();

// Writes the data that the executable imports into the trace: nobody sees when it is read.
void traceDataImports();

// Prints every import since the start, one a line, sorted: "supplied" or "missing", "function" or
// "data", the name, the library; and "used" or "unused" for a function where the environment names
// a trace file.
void printImports();

}  // namespace macrun

#endif
