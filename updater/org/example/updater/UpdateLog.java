package org.example.updater;

import java.io.Closeable;
import java.io.File;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.StandardOpenOption;
import java.text.SimpleDateFormat;
import java.util.Arrays;
import java.util.Date;
import java.util.Locale;

/**
 * A file {@code Updater-TIME.log} in the folder {@code logs} of the master folder. The latest twenty
 * stay. A line that cannot be written is lost: a log stops nothing.
 */
final class UpdateLog implements Closeable {
  private static final String PREFIX = "Updater-";
  private static final int MOST_FILES = 20;

  private final OutputStream out;

  UpdateLog(File master) {
    out = create(new File(master, "logs"));
  }

  private static OutputStream create(File folder) {
    folder.mkdir();
    if (!Files.isDirectory(folder.toPath(), LinkOption.NOFOLLOW_LINKS)) {
      return null;
    }
    removeOld(folder);
    String time = new SimpleDateFormat("yyyy-MM-dd-HH-mm-ss-SSS", Locale.ROOT).format(new Date());
    for (int i = 0; i < 100; i++) {
      String name = PREFIX + time + (i == 0 ? "" : "-" + i) + ".log";
      try {
        return Files.newOutputStream(
            new File(folder, name).toPath(),
            StandardOpenOption.CREATE_NEW,
            StandardOpenOption.WRITE);
      } catch (IOException e) {
        // Another updater has this name, or nothing can be written here.
      }
    }
    return null;
  }

  /** The names sort by time. */
  private static void removeOld(File folder) {
    String[] names =
        folder.list((in, name) -> name.matches(PREFIX + "\\d{4}(-\\d{2}){5}-\\d{3}(-\\d+)?\\.log"));
    if (names == null) {
      return;
    }
    Arrays.sort(names);
    for (int i = 0; i < names.length - (MOST_FILES - 1); i++) {
      new File(folder, names[i]).delete();
    }
  }

  /** Writes a line; control characters from elsewhere cannot end it. */
  synchronized void say(String line) {
    String time = new SimpleDateFormat("HH:mm:ss.SSS", Locale.ROOT).format(new Date());
    byte[] bytes =
        (time + " [Updater] " + onOneLine(line) + "\n").getBytes(StandardCharsets.UTF_8);
    try {
      if (out != null) {
        out.write(bytes);
      }
    } catch (IOException e) {
      // As said above.
    }
  }

  static String onOneLine(String text) {
    return text.replaceAll("\\p{Cntrl}+", " ");
  }

  @Override
  public void close() {
    try {
      if (out != null) {
        out.close();
      }
    } catch (IOException e) {
      // As said above.
    }
  }
}
