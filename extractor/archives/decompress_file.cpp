#include "extractor/archives/decompress_file.h"

#include "support/files/file_kind.h"
#include "support/process/exit_status.h"
#include "support/process/spawner.h"

bool decompressFile(const char* lzmaTool, const char* compressed, const char* archive,
                    Failure* failure) {
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), lzmaTool);
  addSpawnerArg(spawner.get(), "d");
  addSpawnerArg(spawner.get(), compressed);
  addSpawnerArg(spawner.get(), archive);
  const SpawnEnd end = runSpawnerToItsEnd(spawner.get());
  if (end.status == 0 && !end.isBySignal && isRegularFile(archive)) {
    return true;
  }
  *failure = end.status == EXIT_STATUS_LZMA_DISK_FULL ? Failure::DiskFull : Failure::NotUnpacked;
  return false;
}
