#ifndef QUORVANE_TESTS_MACOS_RUN_SUPPLY_TABLES_H
#define QUORVANE_TESTS_MACOS_RUN_SUPPLY_TABLES_H

#include "tests/macos/run/supply/supply.h"

// What each module has.

namespace macrun {

extern const SupplyTable kErrorTable, kPathTable, kOpenTable, kStatusTable, kFolderTable,
    kTreeTable, kDescriptorTable, kStreamTable, kPrintTable, kCharacterTable, kTextTable,
    kNumberTable, kMemoryTable, kClockTable, kSignalTable, kSignalActionTable, kSpawnTable,
    kWaitTable, kAccountTable, kThreadTable, kThreadAttributeTable, kLockTable, kLibraryTable,
    kEndTable, kUnwindTable, kMessageTable, kCocoaTable, kSessionTable, kVolumeTable, kDigestTable;

}  // namespace macrun

#endif
