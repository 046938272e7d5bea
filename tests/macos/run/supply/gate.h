#ifndef QUORVANE_TESTS_MACOS_RUN_SUPPLY_GATE_H
#define QUORVANE_TESTS_MACOS_RUN_SUPPLY_GATE_H

namespace macrun {

// Returns the address of code that goes on to `target` with every argument as it is, and writes the
// import into the trace at its first call. With nullptr for the target, a call names the import and
// aborts. `name` has to last. Before the executable runs.
void* makeGate(const char* name, void* target);

}  // namespace macrun

#endif
