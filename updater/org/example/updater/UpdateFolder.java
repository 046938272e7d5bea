package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.SeekableByteChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.PosixFilePermission;
import java.util.Arrays;
import java.util.EnumSet;
import java.util.HashSet;
import java.util.Set;

/**
 * The folder {@code QVApps/updates} of a master folder: everything that the updater remembers, and
 * what it downloads. Its files are replaced whole, and no link in it is followed, since every user
 * may write into a master folder for all users.
 */
final class UpdateFolder {
  private static final int LARGEST_FILE = 64 * 1024;
  private static final Set<OpenOption> READ =
      new HashSet<>(Arrays.asList(StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS));

  final File master;
  final File root;

  UpdateFolder(File master) {
    this.master = master;
    root = new File(master, "QVApps/updates");
  }

  /** Only one process at a time looks for updates: the one that holds a lock on this file. */
  File lock() {
    return new File(root, "lock");
  }

  File state() {
    return new File(root, "state.properties");
  }

  /** Downloads, whole ones and parts. */
  File downloads() {
    return new File(root, "downloads");
  }

  /** A file for each version folder, on which its users hold a shared lock. */
  File inUse() {
    return new File(root, "in-use");
  }

  /** Version folders on their way out. */
  File removed() {
    return new File(root, "removed");
  }

  /** What a running version of the application reads to learn of a newer one. */
  File notice(String name, long version) {
    return new File(root, "notice-" + name + "-" + version + ".properties");
  }

  /** What a version of the application may create to say that it is up. */
  File started(String name, long version) {
    return new File(root, "started-" + name + "-" + version);
  }

  /** Makes this folder and {@code folder} in it; false where that cannot be done. */
  boolean make(File folder) {
    return makeOne(root.getParentFile()) && makeOne(root) && (folder == root || makeOne(folder));
  }

  private boolean makeOne(File folder) {
    if (folder.mkdir()) {
      openToAll(folder, true);
    }
    return Files.isDirectory(folder.toPath(), LinkOption.NOFOLLOW_LINKS);
  }

  /** What another user of an installation for all users has to write is open to all, like it. */
  void openToAll(File file, boolean isFolder) {
    try {
      Set<PosixFilePermission> rights = Files.getPosixFilePermissions(master.toPath());
      if (rights.contains(PosixFilePermission.OTHERS_WRITE)) {
        rights = EnumSet.allOf(PosixFilePermission.class);
        if (!isFolder) {
          rights.remove(PosixFilePermission.OWNER_EXECUTE);
          rights.remove(PosixFilePermission.GROUP_EXECUTE);
          rights.remove(PosixFilePermission.OTHERS_EXECUTE);
        }
        Files.setPosixFilePermissions(file.toPath(), rights);
      }
    } catch (IOException | UnsupportedOperationException e) {
      // Another user then has to do without it.
    }
  }

  /** Puts a file of this text in place of the one that may be there, in one step. */
  void replace(File file, String text) throws IOException {
    if (!make(root)) {
      throw new IOException("The folder " + root + " cannot be made.");
    }
    Path aside = Files.createTempFile(root.toPath(), "new-", "");
    try {
      Files.write(aside, text.getBytes(StandardCharsets.UTF_8));
      openToAll(aside.toFile(), false);
      Files.move(aside, file.toPath(), StandardCopyOption.ATOMIC_MOVE);
    } finally {
      Files.deleteIfExists(aside);
    }
  }

  /** The text of a small regular file, or the empty text where there is none. */
  static String textOf(File file) {
    if (!file.isFile()) {
      return "";
    }
    try (SeekableByteChannel in =
        Files.newByteChannel(
            file.toPath(), READ)) {
      ByteBuffer bytes = ByteBuffer.allocate((int) Math.min(in.size(), LARGEST_FILE));
      while (bytes.hasRemaining() && in.read(bytes) > 0) {}
      return new String(bytes.array(), 0, bytes.position(), StandardCharsets.UTF_8);
    } catch (IOException e) {
      return "";
    }
  }
}
