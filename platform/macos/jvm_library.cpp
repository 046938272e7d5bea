#include "platform/jvm_library.h"

const char* platformJvmLibraryName() {
  return nullptr;
}
