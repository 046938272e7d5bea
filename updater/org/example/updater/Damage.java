package org.example.updater;

import java.io.File;

/**
 * Whether a version folder surely cannot start what is in it, as the installer's executable sees it,
 * which is asked to install the same version again. Where that finds no damage it refuses.
 */
final class Damage {
  private static final String[] HOMES = {"", "Contents/Home/", "Contents/Home/jre/"};

  private Damage() {}

  static boolean isIn(File folder) {
    return LaunchFile.isIn(folder) || !holdsRuntime(folder)
        ? lacksMainClass(folder)
        : lacksLibrary(folder);
  }

  private static boolean lacksMainClass(File folder) {
    try {
      return LaunchFile.of(folder).mainClass.isEmpty();
    } catch (Problem e) {
      return true;
    }
  }

  private static boolean holdsRuntime(File folder) {
    for (String home : HOMES) {
      if (new File(folder, home + "bin/java").isFile()) {
        return true;
      }
    }
    return false;
  }

  /** Runtimes that keep their library elsewhere have no folder of this name. */
  private static boolean lacksLibrary(File folder) {
    boolean hasFolder = false;
    for (String home : HOMES) {
      File libraries = new File(folder, home + "lib/server");
      if (hasContent(new File(libraries, "libjvm.dylib"))
          || hasContent(new File(libraries, "libjvm.so"))) {
        return isEmpty(new File(folder, home + "lib/modules"));
      }
      hasFolder |= libraries.isDirectory();
    }
    return hasFolder;
  }

  private static boolean hasContent(File file) {
    return file.isFile() && file.length() > 0;
  }

  private static boolean isEmpty(File file) {
    return file.isFile() && file.length() == 0;
  }
}
