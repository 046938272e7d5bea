#include "extractor/runtime/jre_temp.h"

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/owned.h"
#include "support/process/spawner.h"

void regenerateClassData(const ExtractorRun& run) {
  const Block<char> java(getJavaExecutable(run.jreTemp));
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), java.get());
  addSpawnerArg(spawner.get(), "-Xshare:dump");
  runSpawnerAndWait(spawner.get());
}

void requireJavaInTemp(ExtractorRun& run) {
  if (holdsJava(childPath(run.jreTemp, "Contents/Home").c_str())) {
    return;
  }
  // An archive that is rejected takes the folder with it.
  const Failure failure =
      isFolder(run.jreTemp) ? Failure::ArchiveDamaged : Failure::SignatureRefused;
  removeTree(run.jreTemp);
  failRun(failure,
          "[Extractor] The JRE archive was rejected or holds no bin/java, it is not installed\n");
}
