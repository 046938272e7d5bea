package org.example.updater;

import java.io.File;
import java.io.IOException;

/**
 * Tells running versions of the application of a newer one: each has a file of its own to look at, so
 * that a notice is never about the version that reads it.
 */
final class Notice {
  private final UpdateFolder folder;
  private final String name;

  Notice(UpdateFolder folder, String name) {
    this.folder = folder;
    this.name = name;
  }

  /** {@code state} is downloading, ready or failed. What cannot be written is no reason to stop. */
  void say(long version, String state) {
    for (File installed : VersionFolders.newestFirst(folder.master, name)) {
      long reader = VersionFolders.numberOf(installed);
      if (reader < version) {
        try {
          folder.replace(
              folder.notice(name, reader), "version=" + version + "\nstate=" + state + "\n");
        } catch (IOException e) {
          return;
        }
      }
    }
  }

  /** A version that is not used any more is no news. */
  void takeBack() {
    for (File installed : VersionFolders.newestFirst(folder.master, name)) {
      folder.notice(name, VersionFolders.numberOf(installed)).delete();
    }
  }
}
