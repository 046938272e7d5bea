package org.example.updater;

import java.io.File;

/** The version folder of the Java runtime that runs this. */
final class RunningRuntime {
  private RunningRuntime() {}

  /** Marks it as in use, if it is one of the master folder's. */
  static void hold(UpdateFolder folder) {
    File runtime = folderIn(folder);
    if (runtime != null) {
      InUse.hold(folder, runtime);
    }
  }

  /** Returns it, or null where it is none of the master folder's. */
  static File folderIn(UpdateFolder folder) {
    File at = new File(System.getProperty("java.home")).getAbsoluteFile();
    File master = folder.master.getAbsoluteFile();
    while (at != null && !master.equals(at.getParentFile())) {
      at = at.getParentFile();
    }
    return at;
  }
}
