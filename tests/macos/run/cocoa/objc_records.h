#ifndef QUORVANE_TESTS_MACOS_RUN_COCOA_OBJC_RECORDS_H
#define QUORVANE_TESTS_MACOS_RUN_COCOA_OBJC_RECORDS_H

#include <objc/runtime.h>

#include <cstddef>
#include <cstdint>
#include <map>

#include "tests/macos/run/image/image.h"
#include "tests/macos/run/stop.h"

// The records that a compiler writes for the "modern" runtime. The source of LLVM's tool that
// prints them (llvm-objdump, "struct class64_t" and the others) describes each field.

namespace macrun {

struct MethodRecord {
  const char *name, *types;
  IMP implementation;
};

struct ListHeader {
  uint32_t entrySize, count;
};

struct VariableRecord {
  uint64_t* offset;
  const char *name, *types;
  uint32_t alignment, size;  // the alignment as a power of two
};

struct ProtocolRecord {
  const void* isa;
  const char* name;
};

struct ProtocolList {
  uint64_t count;
};

struct ClassData {
  uint32_t flags, start, size, reserved;
  const void* layout;
  const char* name;
  const ListHeader* methods;
  const ProtocolList* protocols;
  const ListHeader* variables;
  const void *weakLayout, *properties;
};

struct ClassRecord {
  ClassRecord* metaclass;
  void* superclass;
  void *cache, *methodTable;
  const ClassData* data;
};
static_assert(sizeof(ClassRecord) == 40 && sizeof(ClassData) == 72 && sizeof(MethodRecord) == 24 &&
              sizeof(VariableRecord) == 32);

struct CategoryRecord {
  const char* name;
  void* extended;
  const ListHeader *instanceMethods, *classMethods;
};

// The runtime's classes for the image's records, of classes and of metaclasses.
typedef std::map<const void*, Class> KnownClasses;

// Refuses an image whose Objective-C records lead out of it. Returns `record`.
template <class Record>
Record* inImage(const Image& image, Record* record, uint64_t count = 1) {
  if (count > UINT32_MAX || !isInside(image, record, sizeof(Record) * count)) {
    refuse("an Objective-C record lies outside the executable");
  }
  return record;
}

// The entries after a list's header, which is not null.
template <class Record>
const Record* entriesOf(const Image& image, const ListHeader* list) {
  if (inImage(image, list)->entrySize != sizeof(Record)) {
    refuse("a list of Objective-C records has entries of %u bytes", list->entrySize);
  }
  return inImage(image, reinterpret_cast<const Record*>(list + 1), list->count);
}

// The slots of a section that holds pointers.
template <class Pointer>
Pointer* slotsOf(const Image& image, const char* section, size_t* count) {
  const Bytes bytes = sectionBytes(image, section);
  *count = static_cast<size_t>(bytes.end - bytes.at) / sizeof(Pointer);
  return reinterpret_cast<Pointer*>(const_cast<uint8_t*>(bytes.at));
}

}  // namespace macrun

#endif
