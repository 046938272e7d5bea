#include <cstring>

#import <Foundation/Foundation.h>

#include "tests/macos/run/cocoa/objc_image.h"
#include "tests/macos/run/cocoa/objc_records.h"

namespace macrun {

static void addMethods(const Image& image, Class target, const ListHeader* list) {
  if (list == NULL) {
    return;
  }
  const MethodRecord* records = entriesOf<MethodRecord>(image, list);
  for (uint32_t i = 0; i < list->count; ++i) {
    const SEL selector = sel_registerName(inImage(image, records[i].name));
    if (!class_addMethod(target, selector, records[i].implementation, records[i].types)) {
      class_replaceMethod(target, selector, records[i].implementation, records[i].types);
    }
  }
}

static void addVariables(const Image& image, Class made, const ClassData* data) {
  if (data->variables == NULL) {
    return;
  }
  const VariableRecord* records = entriesOf<VariableRecord>(image, data->variables);
  for (uint32_t i = 0; i < data->variables->count; ++i) {
    const VariableRecord& record = records[i];
    inImage(image, record.offset);
    if (!class_addIvar(made, inImage(image, record.name), record.size,
                       static_cast<unsigned char>(record.alignment),
                       inImage(image, record.types))) {
      refuse("%s: variable %s cannot be added", data->name, record.name);
    }
  }
}

// The image's code finds a variable through its offset, which depends on the real superclass's
// size. For a class right under NSObject, which never grows, a compiler may have written it into
// the code.
static void placeVariables(Class made, const ClassData* data) {
  if (data->variables == NULL) {
    return;
  }
  const bool isFixed = class_getSuperclass(made) == objc_getClass("NSObject");
  const VariableRecord* records = reinterpret_cast<const VariableRecord*>(data->variables + 1);
  for (uint32_t i = 0; i < data->variables->count; ++i) {
    const VariableRecord& record = records[i];
    const Ivar variable = class_getInstanceVariable(made, record.name);
    const uint64_t offset = static_cast<uint64_t>(ivar_getOffset(variable));
    if (isFixed && offset != *record.offset) {
      refuse("%s: variable %s lies at %llu here and at %llu in the code", data->name, record.name,
             static_cast<unsigned long long>(offset),
             static_cast<unsigned long long>(*record.offset));
    }
    *record.offset = offset;
  }
}

// Protocols that the runtime knows, GNUstep's; it cannot be told about others.
static void addProtocols(const Image& image, Class made, const ProtocolList* list) {
  if (list == NULL) {
    return;
  }
  const uint64_t count = inImage(image, list)->count;
  ProtocolRecord* const* records = reinterpret_cast<ProtocolRecord* const*>(list + 1);
  inImage(image, records, count);
  for (uint64_t i = 0; i < count; ++i) {
    Protocol* known = objc_getProtocol(inImage(image, inImage(image, records[i])->name));
    if (known != nil) {
      class_addProtocol(made, known);
    }
  }
}

static Class registerClass(const Image& image, ClassRecord* record, KnownClasses* known);

static Class superclassOf(const Image& image, const ClassRecord* record, KnownClasses* known) {
  if (isInside(image, record->superclass, 1)) {
    return registerClass(image, static_cast<ClassRecord*>(record->superclass), known);
  }
  const Class super = reinterpret_cast<Class>(record->superclass);
  // The runtime knows a class's size only when its links are resolved, which this does; a message
  // would too, and would initialise the class before the toolkit is ready.
  class_getSuperclass(super);
  return super;
}

// Makes the class, which the runtime does not know yet.
static Class makeClass(const Image& image, const ClassRecord* record, KnownClasses* known) {
  const ClassData* data = inImage(image, record->data);
  const char* name = inImage(image, data->name);
  const Class made = objc_allocateClassPair(superclassOf(image, record, known), name, 0);
  if (made == Nil) {
    refuse("class %s exists already", name);
  }
  const ClassData* classSide = inImage(image, inImage(image, record->metaclass)->data);
  addVariables(image, made, data);
  addMethods(image, made, data->methods);
  addMethods(image, object_getClass((id)made), classSide->methods);
  addProtocols(image, made, data->protocols);
  objc_registerClassPair(made);
  placeVariables(made, data);
  return made;
}

// The class of the platform's own that goes before the executable's, or Nil: what macOS does in it
// is nothing, and what GNUstep lacks is in the runner's.
static Class classSuppliedInsteadOf(const Image& image, const ClassRecord* record) {
  const char* name = inImage(image, inImage(image, record->data)->name);
  return strcmp(name, "ApplicationBase") == 0 ? (Class)objc_lookUpClass(name) : Nil;
}

static Class registerClass(const Image& image, ClassRecord* record, KnownClasses* known) {
  inImage(image, record);
  const KnownClasses::const_iterator found = known->find(record);
  if (found != known->end()) {
    if (found->second == Nil) {
      refuse("a class is its own superclass");
    }
    return found->second;
  }
  (*known)[record] = Nil;  // until it is made
  const Class supplied = classSuppliedInsteadOf(image, record);
  const Class made = supplied != Nil ? supplied : makeClass(image, record, known);
  (*known)[record] = made;
  (*known)[record->metaclass] = object_getClass((id)made);
  return made;
}

static void extendClass(const Image& image, const CategoryRecord* category,
                        const KnownClasses& known) {
  const KnownClasses::const_iterator found = known.find(inImage(image, category)->extended);
  const Class extended =
      found != known.end() ? found->second : reinterpret_cast<Class>(category->extended);
  addMethods(image, extended, category->instanceMethods);
  addMethods(image, object_getClass((id)extended), category->classMethods);
}

// The code refers to the image's own classes by the addresses of their records.
static void redirectReferences(const Image& image, const char* section, const KnownClasses& known) {
  size_t count = 0;
  void** slots = slotsOf<void*>(image, section, &count);
  for (size_t i = 0; i < count; ++i) {
    const KnownClasses::const_iterator found = known.find(slots[i]);
    if (found != known.end()) {
      slots[i] = reinterpret_cast<void*>(found->second);
    }
  }
}

void registerClasses(const Image& image) {
  KnownClasses known;
  size_t count = 0;
  ClassRecord** classes = slotsOf<ClassRecord*>(image, "__objc_classlist", &count);
  for (size_t i = 0; i < count; ++i) {
    registerClass(image, classes[i], &known);
  }
  CategoryRecord** categories = slotsOf<CategoryRecord*>(image, "__objc_catlist", &count);
  for (size_t i = 0; i < count; ++i) {
    extendClass(image, categories[i], known);
  }
  redirectReferences(image, "__objc_classrefs", known);
  redirectReferences(image, "__objc_superrefs", known);
}

}  // namespace macrun
