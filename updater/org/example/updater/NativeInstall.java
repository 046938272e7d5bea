package org.example.updater;

import java.io.BufferedReader;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.util.concurrent.TimeUnit;

/**
 * Verification and installation, by the installer's own executable: it holds the key, and there is no
 * second reader of archives.
 */
final class NativeInstall {
  static final int INSTALLED = 0;
  static final int NOT_NEWER = 3;
  static final int NOT_SIGNED = 4;
  static final int DAMAGED = 5;
  static final int BUSY = 6;

  private static final File NOWHERE = new File("/dev/null");
  private static final long LONGEST_MINUTES = 60;
  private static final int LONGEST_LINE = 500;

  final int status;
  /** Its last line. */
  final String line;

  /** Runs {@code executable} for the archive and waits for its end. */
  NativeInstall(File executable, String component, long version, File archive)
      throws Problem, InterruptedException {
    ProcessBuilder builder =
        new ProcessBuilder(
            executable.getPath(),
            "--install",
            component,
            Long.toString(version),
            archive.getPath());
    builder.environment().put(GenericUpdater.UPDATER_INSTALLS, "1");
    builder.redirectError(NOWHERE).redirectInput(NOWHERE);
    try {
      Process process = builder.start();
      Deadline deadline =
          new Deadline(TimeUnit.MINUTES.toMillis(LONGEST_MINUTES), process::destroyForcibly);
      try {
        line = lastLine(process);
        status = process.waitFor();
      } finally {
        deadline.close();
      }
    } catch (IOException e) {
      throw new Problem(executable + " cannot be run: " + e.getMessage());
    }
  }

  private static String lastLine(Process process) throws IOException {
    String last = "";
    try (BufferedReader in =
        new BufferedReader(
            new InputStreamReader(process.getInputStream(), StandardCharsets.UTF_8))) {
      for (String next = in.readLine(); next != null; next = in.readLine()) {
        last = next.trim().isEmpty() ? last : next;
      }
    }
    return UpdateLog.onOneLine(last.substring(0, Math.min(last.length(), LONGEST_LINE)));
  }
}
