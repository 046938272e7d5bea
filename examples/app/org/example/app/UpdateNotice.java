package org.example.app;

import java.io.IOException;
import java.io.Reader;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.Properties;

/** What the updater says about a newer version of this application. */
final class UpdateNotice {
  private UpdateNotice() {}

  /** Returns the version that the next start will use, or null while there is none. */
  static String newerVersion() {
    Path file = Paths.get(System.getProperty("quorvane.update_file", ""));
    Properties update = new Properties();
    if (Files.isRegularFile(file)) {
      try (Reader in = Files.newBufferedReader(file)) {
        update.load(in);
      } catch (IOException | IllegalArgumentException e) {
        return null; // the next look may do better
      }
    }
    return "ready".equals(update.getProperty("state")) ? update.getProperty("version") : null;
  }
}
