#include <dirent.h>

#include <cstring>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// struct dirent with 64-bit file numbers: __DARWIN_STRUCT_DIRENTRY in <sys/dirent.h>. Its kinds
// (DT_…) have Linux's numbers.
struct DarwinEntry {
  uint64_t number, position;
  uint16_t recordLength, nameLength;
  uint8_t kind;
  char name[1024];
};
static_assert(offsetof(DarwinEntry, kind) == 20 && offsetof(DarwinEntry, name) == 21 &&
              sizeof(DarwinEntry) == 1048);
static_assert(DT_FIFO == 1 && DT_DIR == 4 && DT_REG == 8 && DT_LNK == 10 && DT_SOCK == 12);

// What the executable holds as a DIR*, which it never looks into.
struct DarwinFolder {
  DIR* folder;
  DarwinEntry entry;
};

static DarwinFolder* wrapFolder(DIR* folder) {
  return folder == nullptr ? nullptr : new DarwinFolder{folder, {}};
}

static DarwinFolder* openFolder(const char* path) {
  return isPathShort(path) ? wrapFolder(translating([&] { return opendir(path); })) : nullptr;
}

static DarwinFolder* folderOfHandle(int handle) {
  return wrapFolder(translating([&] { return fdopendir(handle); }));
}

static DarwinEntry* readFolder(DarwinFolder* folder) {
  const dirent* entry = translating([&] { return readdir(folder->folder); });
  if (entry == nullptr) {
    return nullptr;
  }
  DarwinEntry& darwin = folder->entry;
  const size_t length = strlen(entry->d_name);
  darwin.number = entry->d_ino;
  darwin.position = 0;
  darwin.kind = entry->d_type;
  darwin.nameLength = static_cast<uint16_t>(length);
  darwin.recordLength =
      static_cast<uint16_t>((offsetof(DarwinEntry, name) + length + 4) & ~size_t{3});
  memcpy(darwin.name, entry->d_name, length + 1);
  return &darwin;
}

static int closeFolder(DarwinFolder* folder) {
  const int result = translating([&] { return closedir(folder->folder); });
  delete folder;
  return result;
}

static int handleOfFolder(DarwinFolder* folder) {
  return translating([&] { return dirfd(folder->folder); });
}

static void rewindFolder(DarwinFolder* folder) {
  rewinddir(folder->folder);
}

static constexpr Supplied kFolders[] = {
    function<closeFolder>("_closedir"),
    function<handleOfFolder>("_dirfd"),
    function<folderOfHandle>("_fdopendir$INODE64"),
    function<openFolder>("_opendir$INODE64"),
    function<readFolder>("_readdir$INODE64"),
    function<rewindFolder>("_rewinddir$INODE64"),
};
const SupplyTable kFolderTable = tableOf(kFolders);

}  // namespace macrun
