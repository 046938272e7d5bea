package org.example.updater;

import java.io.File;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;

/**
 * The version folders of a master folder, named "Quorvane-" + component + "-" + version +
 * "-complete". A folder whose installation was not completed has no third '-'.
 */
final class VersionFolders {
  private VersionFolders() {}

  /**
   * Returns the complete folder with the highest version that is not damaged, the first by name among
   * equals, or null.
   */
  static File newest(File master, String component) {
    for (File folder : newestFirst(master, component)) {
      if (!Damage.isIn(folder)) {
        return folder;
      }
    }
    return null;
  }

  /** Returns the complete folders, damaged ones too, the highest version first, equal ones by name. */
  static List<File> newestFirst(File master, String component) {
    List<File> found = new ArrayList<>();
    File[] listed = master.listFiles();
    File[] folders = listed == null ? new File[0] : listed;
    Arrays.sort(folders);
    for (File folder : folders) {
      if (isOf(folder, component)) {
        int place = found.size();
        while (place > 0 && numberOf(found.get(place - 1)) < numberOf(folder)) {
          place--;
        }
        found.add(place, folder);
      }
    }
    return found;
  }

  /** Returns the version of that folder, or {@link Version#NONE}. */
  static long newestVersion(File master, String component) {
    File newest = newest(master, component);
    return newest == null ? Version.NONE : numberOf(newest);
  }

  /** Returns whether a folder's name is that of a version of the component. */
  static boolean isOf(File folder, String component) {
    String[] parts = folder.getName().split("-", 4);
    return parts.length == 4 && parts[1].equals(component);
  }

  /** Returns the component in a complete folder's name. */
  static String componentOf(File folder) {
    return folder.getName().split("-", 4)[1];
  }

  /** Returns the version in a complete folder's name. */
  static String versionOf(File folder) {
    return folder.getName().split("-", 4)[2];
  }

  /** The same as a number. */
  static long numberOf(File folder) {
    return number(versionOf(folder));
  }

  /** The number that a text begins with, else 0, as the native side reads it. */
  private static long number(String text) {
    int end = 0;
    while (end < text.length() && end < 18 && text.charAt(end) >= '0' && text.charAt(end) <= '9') {
      end++;
    }
    return end == 0 ? 0 : Long.parseLong(text.substring(0, end));
  }
}
