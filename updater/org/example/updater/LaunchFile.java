package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.List;

/** The launch file of a version folder: fields of text, each ended with a zero byte. */
final class LaunchFile {
  private static final String NAME = "QuorvaneLaunch";

  final String mainClass;
  final String appName;
  final String icon;
  final long maximumHeapMegabytes;
  final long initialHeapMegabytes;
  final List<String> classPath;
  final List<String> arguments;
  final List<String> jvmOptions;
  final boolean mustFork;

  private final File file;
  private final String[] fields;
  private int next;

  static boolean isIn(File versionFolder) {
    return new File(versionFolder, NAME).exists();
  }

  static LaunchFile of(File versionFolder) throws Problem {
    File file = new File(versionFolder, NAME);
    try {
      return new LaunchFile(
          file, new String(Files.readAllBytes(file.toPath()), StandardCharsets.UTF_8));
    } catch (IOException e) {
      throw new Problem("The launch file cannot be read: " + e);
    }
  }

  private LaunchFile(File file, String bytes) throws Problem {
    this.file = file;
    fields = bytes.split("\0", -1);
    long version = number();
    mainClass = text();
    skip(1); // class after an update
    appName = text();
    icon = text();
    skip(1); // whether a URL is required
    maximumHeapMegabytes = number();
    initialHeapMegabytes = number();
    classPath = texts();
    arguments = texts();
    skip(version >= 4 ? 3 : version >= 3 ? 1 : 0); // compatibility, post-install, pre-uninstall
    jvmOptions = version >= 5 ? texts() : new ArrayList<String>();
    mustFork = version >= 6 && number() == 1;
  }

  private String text() throws Problem {
    if (next >= fields.length - 1) {
      throw new Problem("The launch file " + file + " is cut short.");
    }
    return fields[next++];
  }

  private void skip(int count) throws Problem {
    for (int i = 0; i < count; i++) {
      text();
    }
  }

  private long number() throws Problem {
    String text = text();
    try {
      return Long.parseLong(text);
    } catch (NumberFormatException e) {
      throw new Problem(
          "The launch file " + file + " holds \"" + text + "\" where a number belongs.");
    }
  }

  private List<String> texts() throws Problem {
    List<String> texts = new ArrayList<>();
    for (long count = number(); count > 0; count--) {
      texts.add(text());
    }
    return texts;
  }
}
