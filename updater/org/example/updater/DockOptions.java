package org.example.updater;

import java.io.File;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;

/**
 * How a Java that is a process of its own presents itself in the Dock of macOS, where it would bear the
 * name and the icon of "java". Nowhere else are there such options.
 */
final class DockOptions {
  private DockOptions() {}

  /**
   * The options for the application of {@code launchFile} in {@code folder}, which {@code program}, an
   * executable in a bundle, has launched.
   */
  static List<String> of(LaunchFile launchFile, File folder, File program) {
    List<String> options = new ArrayList<>();
    if (!System.getProperty("os.name").startsWith("Mac")) {
      return options;
    }
    if (!launchFile.appName.isEmpty()) {
      options.add("-Xdock:name=" + launchFile.appName);
    }
    File icon = icon(launchFile, folder, program);
    if (icon != null) {
      options.add("-Xdock:icon=" + icon);
    }
    return options;
  }

  /**
   * The application's own icon, or else the bundle's, which is named after the program; null where neither has
   * one. Other icons in a bundle are those of documents.
   */
  private static File icon(LaunchFile launchFile, File folder, File program) {
    File own = new File(folder, launchFile.icon);
    if (!launchFile.icon.isEmpty() && own.isFile()) {
      return own;
    }
    File contents = program.getAbsoluteFile().getParentFile().getParentFile();
    File resources = new File(contents, "Resources");
    File named = new File(resources, program.getName() + ".icns");
    if (named.isFile()) {
      return named;
    }
    File[] icons = resources.listFiles((in, name) -> name.endsWith(".icns"));
    return icons == null || icons.length == 0 ? null : Collections.min(Arrays.asList(icons));
  }
}
