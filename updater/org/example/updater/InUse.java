package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.TimeUnit;
import java.util.function.BooleanSupplier;

/**
 * Which version folders are in use: every process that runs from one holds a shared lock on the file
 * of its name until it ends. A child process, which holds no lock, has a file with its number there:
 * it may outlive the process that started it.
 */
final class InUse {
  private static final Set<OpenOption> OPTIONS =
      new HashSet<>(
          Arrays.asList(
              StandardOpenOption.CREATE,
              StandardOpenOption.READ,
              StandardOpenOption.WRITE,
              LinkOption.NOFOLLOW_LINKS));

  /** Closing any channel of a file gives up all of the process's locks on it: these stay open. */
  private static final Map<String, FileChannel> HELD = new HashMap<>();

  private InUse() {}

  /**
   * Marks a version folder as in use until the process ends. Returns false when it is gone, or about
   * to be removed. Where nothing can be locked it counts as held.
   */
  static synchronized boolean hold(UpdateFolder folder, File versionFolder) {
    String name = versionFolder.getName();
    if (!HELD.containsKey(name) && folder.make(folder.inUse())) {
      File file = new File(folder.inUse(), name);
      try {
        boolean isNew = !file.exists();
        FileChannel channel = FileChannel.open(file.toPath(), OPTIONS);
        if (isNew) {
          folder.openToAll(file, false);
        }
        if (channel.tryLock(0, Long.MAX_VALUE, true) == null) {
          channel.close();
          return false;
        }
        HELD.put(name, channel);
      } catch (IOException e) {
        // Goes on without.
      }
    }
    return versionFolder.isDirectory();
  }

  /** Notes that a child process runs from what is held, and returns what takes the note away. */
  static synchronized Runnable noteChild(UpdateFolder folder, Process child) {
    Set<File> notes = new HashSet<>();
    for (String name : HELD.keySet()) {
      File note = new File(folder.inUse(), name + "." + Processes.numberOf(child));
      try {
        if (note.createNewFile()) {
          notes.add(note);
        }
      } catch (IOException e) {
        // The lock holds as long as this process lives.
      }
    }
    return () -> notes.forEach(File::delete);
  }

  /** Does {@code removal} unless the version folder is in use; nobody can begin to use it meanwhile. */
  static synchronized boolean unlessUsed(
      UpdateFolder folder, File versionFolder, BooleanSupplier removal) {
    String name = versionFolder.getName();
    if (HELD.containsKey(name) || hasChild(folder, name) || !folder.make(folder.inUse())) {
      return false;
    }
    File file = new File(folder.inUse(), name);
    try (FileChannel channel = FileChannel.open(file.toPath(), OPTIONS);
        FileLock lock = channel.tryLock()) {
      if (lock == null || !removal.getAsBoolean()) {
        return false;
      }
      file.delete();
      return true;
    } catch (IOException | OverlappingFileLockException e) {
      return false;
    }
  }

  private static boolean hasChild(UpdateFolder folder, String name) {
    String[] notes = folder.inUse().list((in, note) -> note.startsWith(name + "."));
    for (String note : notes == null ? new String[0] : notes) {
      long process = Version.of(note.substring(name.length() + 1));
      if (process != Version.NONE && Processes.isAlive(process)) {
        return true;
      }
      new File(folder.inUse(), note).delete();
    }
    return false;
  }

  /** What Java 8 cannot say about processes, and later ones can. */
  private static final class Processes {
    static long numberOf(Process process) {
      try {
        return (Long) Process.class.getMethod("pid").invoke(process);
      } catch (ReflectiveOperationException | RuntimeException e) {
        return numberOnJava8(process);
      }
    }

    private static long numberOnJava8(Process process) {
      try {
        java.lang.reflect.Field field = process.getClass().getDeclaredField("pid");
        field.setAccessible(true);
        return field.getInt(process);
      } catch (ReflectiveOperationException | RuntimeException e) {
        return 0;
      }
    }

    /** Whether such a process exists, whoever's it is; true where that cannot be found out. */
    static boolean isAlive(long number) {
      try {
        Process ps =
            new ProcessBuilder("ps", "-p", Long.toString(number))
                .redirectErrorStream(true)
                .redirectOutput(new File("/dev/null"))
                .start();
        return !ps.waitFor(10, TimeUnit.SECONDS) || ps.exitValue() == 0;
      } catch (IOException e) {
        return true;
      } catch (InterruptedException e) {
        Thread.currentThread().interrupt();
        return true;
      }
    }
  }
}
