package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.List;

/**
 * Removes versions that are no longer needed. Only real folders whose names an installation gives are
 * looked at. One is moved aside first: what is half removed is never a version.
 */
final class OldVersions {
  private static final String PLUGIN = ".plugin";

  private final UpdateFolder folder;
  private final int keep;
  private final UpdateLog log;

  OldVersions(UpdateFolder folder, int keep, UpdateLog log) {
    this.folder = folder;
    this.keep = keep;
    this.log = log;
  }

  /**
   * Removes the versions of a component but the newest {@code keep} that can be used, the newest of
   * all, the newest that has proved to start, and what is in use. What is damaged does not count, and
   * stays: the same version may come again.
   */
  void remove(String component) {
    Markers markers = new Markers(folder, component);
    long proved = 0;
    long usable = 0;
    List<File> all = VersionFolders.newestFirst(folder.master, component);
    for (File candidate : all) {
      long version = VersionFolders.numberOf(candidate);
      if (!isInstalled(candidate, component, version) || Damage.isIn(candidate)) {
        continue;
      }
      boolean isUsable = !markers.isSkipped(version);
      boolean isProved = isUsable && !markers.isOnTrial(version);
      boolean stays =
          candidate == all.get(0) || isUsable && usable < keep || isProved && proved == 0;
      usable += isUsable ? 1 : 0;
      proved += isProved ? 1 : 0;
      if (!stays && InUse.unlessUsed(folder, candidate, () -> moveAside(candidate))) {
        markers.forget(version);
        log.say("Removed version " + version + " of " + component + ".");
      }
    }
    removeAsides();
  }

  private static boolean isInstalled(File candidate, String component, long version) {
    return candidate.getName().equals("Quorvane-" + component + "-" + version + "-complete")
        && Files.isDirectory(candidate.toPath(), LinkOption.NOFOLLOW_LINKS);
  }

  /** A runtime has a bundle of the same name beside it. */
  private boolean moveAside(File version) {
    if (!folder.make(folder.removed()) || OpenFiles.isMapped(version)) {
      return false;
    }
    try {
      move(version);
      File plugin = new File(version.getPath() + PLUGIN);
      if (Files.isDirectory(plugin.toPath(), LinkOption.NOFOLLOW_LINKS)) {
        move(plugin);
      }
      return true;
    } catch (IOException e) {
      log.say("Cannot remove " + version + ": " + e);
      return !version.exists();
    }
  }

  private void move(File from) throws IOException {
    Path aside = Files.createTempDirectory(folder.removed().toPath(), "old-");
    Files.move(from.toPath(), aside.resolve(from.getName()), StandardCopyOption.ATOMIC_MOVE);
  }

  /** Also what an interrupted removal has left. */
  private void removeAsides() {
    File[] asides = folder.removed().listFiles((in, name) -> name.startsWith("old-"));
    for (File aside : asides == null ? new File[0] : asides) {
      try {
        removeTree(aside.toPath());
      } catch (IOException e) {
        log.say("Cannot remove " + aside + ": " + e);
      }
    }
  }

  private static void removeTree(Path root) throws IOException {
    Files.walkFileTree(
        root,
        new SimpleFileVisitor<Path>() {
          @Override
          public FileVisitResult visitFile(Path file, BasicFileAttributes attributes)
              throws IOException {
            Files.delete(file);
            return FileVisitResult.CONTINUE;
          }

          @Override
          public FileVisitResult postVisitDirectory(Path folder, IOException failure)
              throws IOException {
            if (failure != null) {
              throw failure;
            }
            Files.delete(folder);
            return FileVisitResult.CONTINUE;
          }
        });
  }
}
