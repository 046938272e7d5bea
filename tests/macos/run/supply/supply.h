#ifndef QUORVANE_TESTS_MACOS_RUN_SUPPLY_SUPPLY_H
#define QUORVANE_TESTS_MACOS_RUN_SUPPLY_SUPPLY_H

#include <cstddef>

namespace macrun {

// A symbol that the runner has: a function that is called, or data that is read.
struct Supplied {
  const char* name;  // with the underscore that every name in C has
  void* (*address)();
  bool isFunction;
};

// The symbols of one module.
struct SupplyTable {
  const Supplied* first;
  size_t count;
};

template <size_t N>
constexpr SupplyTable tableOf(const Supplied (&entries)[N]) {
  return {entries, N};
}

template <auto Function>
void* functionAddress() {
  return reinterpret_cast<void*>(Function);
}

template <auto Data>
void* dataAddress() {
  return const_cast<void*>(static_cast<const void*>(Data));
}

template <auto Function>
constexpr Supplied function(const char* name) {
  return {name, functionAddress<Function>, true};
}

// `Data` is the address of a variable.
template <auto Data>
constexpr Supplied data(const char* name) {
  return {name, dataAddress<Data>, false};
}

// Returns the symbol that a table has, or nullptr.
const Supplied* findSupplied(const char* name);

}  // namespace macrun

#endif
