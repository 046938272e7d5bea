package org.example.updater;

import java.io.File;

/** The version folder of the Java runtime that runs this. */
final class RunningRuntime {
  private RunningRuntime() {}

  /** Marks it as in use, if it is one of the master folder's. */
  static void hold(UpdateFolder folder) {
    File at = new File(System.getProperty("java.home")).getAbsoluteFile();
    File master = folder.master.getAbsoluteFile();
    while (at != null && !master.equals(at.getParentFile())) {
      at = at.getParentFile();
    }
    if (at != null) {
      InUse.hold(folder, at);
    }
  }
}
