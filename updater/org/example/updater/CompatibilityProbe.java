package org.example.updater;

import java.io.File;

/**
 * Says whether the runtime that runs it will do, with the exit status: 72 when it will. The first
 * argument names the launch properties file, which holds the Java version that the application
 * needs.
 */
public final class CompatibilityProbe {
  private static final int COMPATIBLE = 72;
  private static final int INCOMPATIBLE = 1;

  private CompatibilityProbe() {}

  public static void main(String[] arguments) {
    System.exit(isCompatible(arguments) ? COMPATIBLE : INCOMPATIBLE);
  }

  private static boolean isCompatible(String[] arguments) {
    try {
      if (arguments.length == 0) {
        throw new Problem("The first argument must name the launch properties file.");
      }
      int required = major(LaunchProperties.read(new File(arguments[0])).packaged("java_version"));
      int running = major(System.getProperty("java.specification.version"));
      if (running < required) {
        throw new Problem("Java " + required + " is needed, this is Java " + running + ".");
      }
      return true;
    } catch (Problem e) {
      System.err.println("[Updater] This runtime will not do. " + e.getMessage());
      return false;
    }
  }

  /** The 8 of "8", "8.0.1" and "1.8"; 0 of a text that names no version. */
  private static int major(String version) {
    String number = version.replaceFirst("^1\\.", "").replaceFirst("^(\\d{0,6}).*$", "$1");
    return number.isEmpty() ? 0 : Integer.parseInt(number);
  }
}
