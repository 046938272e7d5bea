package org.example.updater;

import java.io.BufferedReader;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.concurrent.TimeUnit;

/**
 * Whether a process has loaded the Java runtime of a version folder. A program that the Launcher
 * hosts, without an updater, holds no lock on it.
 */
final class OpenFiles {
  private static final File PROCESSES = new File("/proc/self/maps");
  private static final String[] LIBRARIES = {
    "lib/server/libjvm.dylib", "lib/server/libjvm.so", "jre/lib/server/libjvm.dylib",
    "lib/amd64/server/libjvm.so"
  };

  private OpenFiles() {}

  static boolean isMapped(File versionFolder) {
    for (String library : LIBRARIES) {
      File file = new File(versionFolder, library);
      if (file.isFile() && (PROCESSES.exists() ? isInProc(file) : isListed(file))) {
        return true;
      }
    }
    return false;
  }

  private static boolean isInProc(File library) {
    File[] processes = new File("/proc").listFiles((in, name) -> name.matches("\\d+"));
    for (File process : processes == null ? new File[0] : processes) {
      File maps = new File(process, "maps");
      try (BufferedReader in = Files.newBufferedReader(maps.toPath(), StandardCharsets.ISO_8859_1)) {
        if (in.lines().anyMatch(line -> line.endsWith(inLatin1(library)))) {
          return true;
        }
      } catch (IOException | RuntimeException e) {
        // It has ended, or is another user's.
      }
    }
    return false;
  }

  private static String inLatin1(File file) {
    return new String(
        file.getAbsolutePath().getBytes(StandardCharsets.UTF_8), StandardCharsets.ISO_8859_1);
  }

  /** What cannot be found out counts as in use. */
  private static boolean isListed(File library) {
    try {
      Process lsof =
          new ProcessBuilder("/usr/sbin/lsof", "-t", "--", library.getPath())
              .redirectError(new File("/dev/null"))
              .start();
      try (BufferedReader out =
          new BufferedReader(
              new InputStreamReader(lsof.getInputStream(), StandardCharsets.US_ASCII))) {
        boolean isUsed = out.readLine() != null;
        return isUsed || !lsof.waitFor(60, TimeUnit.SECONDS);
      }
    } catch (IOException e) {
      return true;
    } catch (InterruptedException e) {
      Thread.currentThread().interrupt();
      return true;
    }
  }
}
