package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.util.Arrays;
import java.util.HashSet;
import java.util.List;
import java.util.Set;

/**
 * What is known of single versions of a component, as files in the updates folder: that one which
 * an update brought has not started yet, with how often that failed; or that it is not used any more.
 */
final class Markers {
  private static final int MOST_FAILURES = 2;

  private final UpdateFolder folder;
  private final String name;
  private final Set<String> files;

  Markers(UpdateFolder folder, String name) {
    this.folder = folder;
    this.name = name;
    String[] found = folder.root.list();
    files = found == null ? new HashSet<>() : new HashSet<>(Arrays.asList(found));
  }

  private File trial(long version) {
    return new File(folder.root, "trial-" + name + "-" + version);
  }

  private File skipped(long version) {
    return new File(folder.root, "skipped-" + name + "-" + version);
  }

  boolean isOnTrial(long version) {
    return files.contains(trial(version).getName());
  }

  boolean isSkipped(long version) {
    return files.contains(skipped(version).getName());
  }

  /**
   * Returns the first of the folders that is whole and whose version is not skipped, else the first
   * that is whole, or null.
   */
  File choose(List<File> newestFirst) {
    File skipped = null;
    for (File candidate : newestFirst) {
      boolean isSkipped = isSkipped(VersionFolders.numberOf(candidate));
      if ((!isSkipped || skipped == null) && !Damage.isIn(candidate)) {
        if (!isSkipped) {
          return candidate;
        }
        skipped = candidate;
      }
    }
    return skipped;
  }

  /** Returns whether there is a version below this one to go back to. */
  boolean hasOneBefore(long version) {
    for (File candidate : VersionFolders.newestFirst(folder.master, name)) {
      long number = VersionFolders.numberOf(candidate);
      if (number < version && !isSkipped(number) && !Damage.isIn(candidate)) {
        return true;
      }
    }
    return false;
  }

  void putOnTrial(long version) throws IOException {
    folder.replace(trial(version), "0\n");
    files.add(trial(version).getName());
  }

  void hasStarted(long version) {
    trial(version).delete();
  }

  /** Counts a start that failed, and returns whether the version is skipped from now on. */
  boolean hasFailed(long version) throws IOException {
    long failures = Math.max(0, Version.of(UpdateFolder.textOf(trial(version)).trim())) + 1;
    if (failures < MOST_FAILURES) {
      folder.replace(trial(version), failures + "\n");
      return false;
    }
    folder.replace(skipped(version), "");
    trial(version).delete();
    return true;
  }

  /** Forgets what is known of a version that is no longer there. */
  void forget(long version) {
    trial(version).delete();
    skipped(version).delete();
    folder.notice(name, version).delete();
    folder.started(name, version).delete();
  }
}
