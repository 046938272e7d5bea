#include <fts.h>
#include <ftw.h>

#include <cstdint>
#include <string>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// nftw(): what it reports and its flags have other numbers in <ftw.h>; struct FTW is the same.
using DarwinVisitor = int (*)(const char*, const DarwinStatus*, int, FTW*);

constexpr int kMostOpenFolders = 10240;  // OPEN_MAX of <sys/syslimits.h>

static int toDarwinVisit(int kind) {
  switch (kind) {
    case FTW_F:
      return 0;
    case FTW_D:
      return 1;
    case FTW_DNR:
      return 2;
    case FTW_DP:
      return 3;
    case FTW_NS:
      return 4;
    case FTW_SL:
      return 5;
    default:
      return 6;  // FTW_SLN
  }
}

static thread_local DarwinVisitor visitor;

static int visit(const char* path, const struct stat* status, int kind, FTW* place) {
  const DarwinStatus darwin = toDarwinStatus(*status);
  return visitor(path, &darwin, toDarwinVisit(kind), place);
}

static int walkTree(const char* path, DarwinVisitor wanted, int openFolders, int flags) {
  if (openFolders < 1 || openFolders > kMostOpenFolders) {
    return failWith(darwin::kEINVAL);
  }
  if (!isPathShort(path)) {
    return -1;
  }
  const int linux = ((flags & 1) != 0 ? FTW_PHYS : 0) | ((flags & 2) != 0 ? FTW_MOUNT : 0) |
                    ((flags & 4) != 0 ? FTW_DEPTH : 0) | ((flags & 8) != 0 ? FTW_CHDIR : 0);
  const DarwinVisitor outer = visitor;
  visitor = wanted;
  const int result = translating([&] { return nftw(path, visit, openFolders, linux); });
  visitor = outer;
  return result;
}

// fts: the record of a file, FTSENT in <fts.h>. The kinds (FTS_D and the others) and the options up
// to 0x80 have Linux's numbers.
struct DarwinTreeEntry {
  DarwinTreeEntry *cycle, *parent, *next;
  long number;
  void* pointer;
  char *accessPath, *path;
  int error, linkHandle;
  unsigned short pathLength, nameLength;
  uint64_t fileNumber;
  int32_t device;
  uint16_t links;
  short level;
  unsigned short kind, flags, instruction;
  DarwinStatus* status;
  char name[1];
};
static_assert(offsetof(DarwinTreeEntry, error) == 56 &&
              offsetof(DarwinTreeEntry, fileNumber) == 72 &&
              offsetof(DarwinTreeEntry, level) == 86 && offsetof(DarwinTreeEntry, kind) == 88 &&
              offsetof(DarwinTreeEntry, status) == 96 && offsetof(DarwinTreeEntry, name) == 104);
static_assert(FTS_D == 1 && FTS_F == 8 && FTS_SL == 12 && FTS_SLNONE == 13 && FTS_SKIP == 4);
static_assert(FTS_LOGICAL == 2 && FTS_NOCHDIR == 4 && FTS_PHYSICAL == 0x10 && FTS_XDEV == 0x40);

// What the executable holds as an FTS*, which it never looks into. One entry, valid until the next
// is read, as <fts.h> promises.
struct DarwinTree {
  FTS* tree;
  FTSENT* current;
  DarwinStatus status;
  std::string entry;
};

static DarwinTree* openTree(char* const* paths, int options,
                            int (*compare)(const void*, const void*)) {
  constexpr int kKnown = 0xFF;
  if (compare != nullptr || (options & ~kKnown) != 0) {
    giveUp("fts_open: an order or options %#x are not supported", static_cast<unsigned>(options));
  }
  FTS* tree = translating([&] { return fts_open(paths, options, nullptr); });
  return tree == nullptr ? nullptr : new DarwinTree{tree, nullptr, {}, {}};
}

static DarwinTreeEntry* toDarwinEntry(DarwinTree* tree) {
  const FTSENT& entry = *tree->current;
  tree->entry.assign(sizeof(DarwinTreeEntry) + entry.fts_namelen, 0);
  auto* darwin = reinterpret_cast<DarwinTreeEntry*>(tree->entry.data());
  darwin->number = entry.fts_number;
  darwin->pointer = entry.fts_pointer;
  darwin->accessPath = entry.fts_accpath;
  darwin->path = entry.fts_path;
  darwin->error = toDarwinError(entry.fts_errno);
  darwin->pathLength = entry.fts_pathlen;
  darwin->nameLength = entry.fts_namelen;
  darwin->fileNumber = entry.fts_ino;
  darwin->device = static_cast<int32_t>(entry.fts_dev);
  darwin->links = static_cast<uint16_t>(entry.fts_nlink);
  darwin->level = entry.fts_level;
  darwin->kind = entry.fts_info;
  if (entry.fts_statp != nullptr) {
    tree->status = toDarwinStatus(*entry.fts_statp);
    darwin->status = &tree->status;
  }
  memcpy(darwin->name, entry.fts_name, entry.fts_namelen);
  return darwin;
}

static DarwinTreeEntry* readTree(DarwinTree* tree) {
  tree->current = translating([&] { return fts_read(tree->tree); });
  return tree->current == nullptr ? nullptr : toDarwinEntry(tree);
}

static int instructTree(DarwinTree* tree, DarwinTreeEntry*, int instruction) {
  return translating([&] { return fts_set(tree->tree, tree->current, instruction); });
}

static int closeTree(DarwinTree* tree) {
  const int result = translating([&] { return fts_close(tree->tree); });
  delete tree;
  return result;
}

static constexpr Supplied kTrees[] = {
    function<closeTree>("_fts_close$INODE64"), function<openTree>("_fts_open$INODE64"),
    function<readTree>("_fts_read$INODE64"),   function<instructTree>("_fts_set$INODE64"),
    function<walkTree>("_nftw$INODE64"),
};
const SupplyTable kTreeTable = tableOf(kTrees);

}  // namespace macrun
