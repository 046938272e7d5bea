package org.example.updater;

import java.io.File;

/** Where updates come from, and the executable that knows the key they are signed with. */
final class UpdateSource {
  final String url;
  final File executable;

  private UpdateSource(String url, File executable) {
    this.url = url;
    this.executable = executable;
  }

  /** Returns the address that updates come from, or the empty text. */
  static String urlOf(LaunchProperties properties, Settings settings) {
    String given = properties.given("update_url");
    String url = given == null ? properties.packaged("update_url") : given;
    url = settings.url().isEmpty() ? url : settings.url();
    return url.equals("D") ? "" : url;
  }

  static UpdateSource of(LaunchProperties properties, Settings settings) throws Problem {
    String url = urlOf(properties, settings);
    if (url.isEmpty()) {
      throw new Problem("No update URL is set.");
    }
    String path = properties.packaged("launched_from_dynprops");
    File executable = new File(path).getAbsoluteFile();
    if (path.isEmpty() || !executable.isFile()) {
      throw new Problem(
          "The installer " + path + " is no longer there: nothing can be verified or installed.");
    }
    return new UpdateSource(url, executable);
  }
}
