#include "tests/macos/run/cocoa/symbols.h"

#import <AppKit/AppKit.h>
#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>
#include <link.h>
#include <objc/runtime.h>

#include <cstring>

#include "tests/macos/run/supply/tables.h"

namespace macrun {

static const char kClassPrefix[] = "_OBJC_CLASS_$_";
static const char kMetaclassPrefix[] = "_OBJC_METACLASS_$_";

// Returns what follows the prefix, or NULL where `name` does not start with it.
static const char* afterPrefix(const char* name, const char* prefix) {
  const size_t length = strlen(prefix);
  return strncmp(name, prefix, length) == 0 ? name + length : NULL;
}

static void* findClass(const char* name) { return reinterpret_cast<void*>(objc_getClass(name)); }

static void* findMetaclass(const char* name) {
  id found = objc_getClass(name);
  return found == nil ? NULL : reinterpret_cast<void*>(object_getClass(found));
}

bool isClassName(const char* name) {
  return afterPrefix(name, kClassPrefix) != NULL || afterPrefix(name, kMetaclassPrefix) != NULL;
}

static bool isFunctionAt(void* address) {
  Dl_info info;
  void* symbol = NULL;
  return dladdr1(address, &info, &symbol, RTLD_DL_SYMENT) != 0 && symbol != NULL &&
         ELF64_ST_TYPE(static_cast<const ElfW(Sym)*>(symbol)->st_info) == STT_FUNC;
}

void* findCocoaSymbol(const char* name, bool* isFunction) {
  *isFunction = false;
  if (const char* className = afterPrefix(name, kClassPrefix)) {
    return findClass(className);
  }
  if (const char* className = afterPrefix(name, kMetaclassPrefix)) {
    return findMetaclass(className);
  }
  if (strcmp(name, "___CFConstantStringClassReference") == 0) {
    return findClass("NSConstantString");
  }
  if (afterPrefix(name, "_NS") == NULL) {
    return NULL;
  }
  void* found = dlsym(RTLD_DEFAULT, name + 1);
  *isFunction = found != NULL && isFunctionAt(found);
  return found;
}

// GNUstep has these inside its headers only.
static const NSRect zeroRect = {{0, 0}, {0, 0}};
static const NSSize zeroSize = {0, 0};
static const NSPoint zeroPoint = {0, 0};

static const void* defaultAllocator = NULL;  // kCFAllocatorDefault is null there too

static const Supplied kCocoa[] = {
    function<CFBundleCreate>("_CFBundleCreate"),
    function<CFBundleLoadExecutableAndReturnError>("_CFBundleLoadExecutableAndReturnError"),
    function<CGWindowLevelForKey>("_CGWindowLevelForKey"),
    data<&NSApp>("_NSApp"),
    function<NSLog>("_NSLog"),
    data<&zeroPoint>("_NSZeroPoint"),
    data<&zeroRect>("_NSZeroRect"),
    data<&zeroSize>("_NSZeroSize"),
    data<&defaultAllocator>("_kCFAllocatorDefault"),
};
const SupplyTable kCocoaTable = tableOf(kCocoa);

}  // namespace macrun
