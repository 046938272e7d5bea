#include "tests/macos/run/supply/imports.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "tests/macos/run/cocoa/symbols.h"
#include "tests/macos/run/run.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/gate.h"
#include "tests/macos/run/supply/supply.h"
#include "tests/macos/run/supply/trace.h"

namespace macrun {

struct Import {
  std::string library;
  void* address;
  bool isSupplied;
  bool isFunction;
};

static std::map<std::string, Import> imports;

struct Found {
  void* address;
  bool isFunction;
};

static Found findSymbol(const char* name) {
  if (const Supplied* supplied = findSupplied(name)) {
    return {supplied->address(), supplied->isFunction};
  }
  bool isFunction = false;
  void* address = findCocoaSymbol(name, &isFunction);
  return {address, isFunction};
}

// A call goes through a gate where the symbol is missing or calls are traced.
static void* reachable(const char* name, const Found& found, bool isWeak) {
  if (found.address == nullptr) {
    return isWeak ? nullptr : makeGate(name, nullptr);
  }
  return found.isFunction && isTracing() ? makeGate(name, found.address) : found.address;
}

void* importAddress(const char* name, const char* library, bool isWeak) {
  const auto known = imports.find(name);
  if (known != imports.end()) {
    return known->second.address;
  }
  const Found found = findSymbol(name);
  Import& import = imports[name];
  import.library = library;
  import.isSupplied = found.address != nullptr;
  import.isFunction = found.isFunction;
  // The map keeps the name for the gate.
  import.address = reachable(imports.find(name)->first.c_str(), found, isWeak);
  return import.address;
}

void refuseMissingClasses() {
  for (const auto& [name, import] : imports) {
    if (import.address != nullptr && !import.isSupplied && isClassName(name.c_str())) {
      refuse("missing class %s (needed by %s)", name.c_str(), executablePath());
    }
  }
}

void traceDataImports() {
  for (const auto& [name, import] : imports) {
    if (import.isSupplied && !import.isFunction) {
      traceUse("import", name.c_str());
    }
  }
}

void printImports() {
  for (const auto& [name, import] : imports) {
    const char* library = strrchr(import.library.c_str(), '/');
    printf("%s %s %s %s", import.isSupplied ? "supplied" : "missing",
           import.isFunction || !import.isSupplied ? "function" : "data", name.c_str(),
           library != nullptr ? library + 1 : import.library.c_str());
    if (import.isFunction && isTracing()) {
      printf(" %s", isInTrace("import", name.c_str()) ? "used" : "unused");
    }
    printf("\n");
  }
}

}  // namespace macrun
