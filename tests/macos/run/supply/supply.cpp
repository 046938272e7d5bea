#include "tests/macos/run/supply/supply.h"

#include <cstring>

#include "tests/macos/run/supply/tables.h"

namespace macrun {

static const SupplyTable* const kTables[] = {
    &kErrorTable,        &kPathTable,
    &kOpenTable,         &kStatusTable,
    &kFolderTable,       &kTreeTable,
    &kDescriptorTable,   &kStreamTable,
    &kPrintTable,        &kCharacterTable,
    &kTextTable,         &kNumberTable,
    &kMemoryTable,       &kVolumeTable,
    &kClockTable,        &kSignalTable,
    &kSignalActionTable, &kSpawnTable,
    &kWaitTable,         &kAccountTable,
    &kThreadTable,       &kThreadAttributeTable,
    &kLockTable,         &kLibraryTable,
    &kEndTable,          &kUnwindTable,
    &kMessageTable,      &kCocoaTable,
    &kSessionTable,      &kDigestTable,
};

const Supplied* findSupplied(const char* name) {
  for (const SupplyTable* table : kTables) {
    for (size_t i = 0; i < table->count; ++i) {
      if (strcmp(table->first[i].name, name) == 0) {
        return &table->first[i];
      }
    }
  }
  return nullptr;
}

}  // namespace macrun
