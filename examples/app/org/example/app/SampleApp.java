package org.example.app;

import java.util.Arrays;

/**
 * Says on the console and in a window which version of it runs.
 *
 * <p>Arguments: "--console" opens no window; "--close-after" and a number close the window after
 * that many milliseconds, "--until-update" closes it when there is a newer version. Others are shown.
 */
public final class SampleApp {
  private SampleApp() {}

  public static void main(String[] arguments) {
    String version = System.getProperty("quorvane.app_version", "of the source tree");
    System.out.println("Sample version " + version + " on Java "
        + System.getProperty("java.specification.version"));
    for (String argument : arguments) {
      System.out.println("Argument: " + argument);
    }
    String url = System.getProperty("quorvane.url_req");
    if (url != null) {
      System.out.println("Asked to open: " + url);
    }
    System.out.flush();
    if (!Arrays.asList(arguments).contains("--console")) {
      openWindow(version, closeAfter(arguments), Arrays.asList(arguments).contains("--until-update"));
    }
  }

  private static void openWindow(String version, int milliseconds, boolean untilUpdate) {
    try {
      SampleWindow.open("Sample version " + version, milliseconds, untilUpdate);
    } catch (Error | RuntimeException e) {
      System.err.println("No window: " + e);
    }
  }

  /** Returns the number behind "--close-after", or 0 for a window that stays. */
  private static int closeAfter(String[] arguments) {
    int option = Arrays.asList(arguments).indexOf("--close-after");
    boolean hasNumber = option >= 0 && option + 1 < arguments.length;
    return hasNumber ? Integer.parseInt(arguments[option + 1]) : 0;
  }
}
