package org.example.updater;

import java.io.File;
import java.util.Arrays;

/**
 * The version folders of a master folder, named "Quorvane-" + component + "-" + version +
 * "-complete". A folder whose installation was not completed has no third '-'.
 */
final class VersionFolders {
  private VersionFolders() {}

  /**
   * Returns the complete folder with the highest version, the first by name among equals, or null.
   */
  static File newest(File master, String component) {
    File newest = null;
    long best = -1;
    File[] listed = master.listFiles();
    File[] folders = listed == null ? new File[0] : listed;
    Arrays.sort(folders);
    for (File folder : folders) {
      String[] parts = folder.getName().split("-", 4);
      if (parts.length == 4 && parts[1].equals(component) && number(parts[2]) > best) {
        best = number(parts[2]);
        newest = folder;
      }
    }
    return newest;
  }

  /** Returns the version in a complete folder's name. */
  static String versionOf(File folder) {
    return folder.getName().split("-", 4)[2];
  }

  /** The number that a text begins with, else 0, as the native side reads it. */
  private static long number(String text) {
    String digits = text.replaceFirst("^(\\d{0,18}).*$", "$1");
    return digits.isEmpty() ? 0 : Long.parseLong(digits);
  }
}
