package org.example.updater;

import java.net.MalformedURLException;
import java.net.URL;
import java.nio.charset.StandardCharsets;

/** The addresses of the files on a site. */
final class Site {
  private final String base;

  /** Throws where {@code address} is none on the web. */
  Site(String address) throws Problem {
    base = address.endsWith("/") ? address : address + "/";
    versionText("any");
  }

  URL versionText(String component) throws Problem {
    return file("Quorvane-" + component + "-version.txt");
  }

  URL archive(String component, long version) throws Problem {
    return file("Quorvane-" + component + "-" + version + "-archive.p2.l2");
  }

  private URL file(String name) throws Problem {
    try {
      URL url = new URL(base + escaped(name));
      if (url.getProtocol().matches("(?i)https?") && !url.getHost().isEmpty()) {
        return url;
      }
    } catch (MalformedURLException e) {
      // Said below.
    }
    throw new Problem("The update URL is no address on the web: " + base);
  }

  /** A name may hold what an address may not. */
  private static String escaped(String name) {
    StringBuilder text = new StringBuilder();
    for (byte b : name.getBytes(StandardCharsets.UTF_8)) {
      char c = (char) (b & 0xff);
      boolean isPlain = c < 0x80 && (Character.isLetterOrDigit(c) || "-._~".indexOf(c) >= 0);
      text.append(isPlain ? String.valueOf(c) : String.format("%%%02X", (int) c));
    }
    return text.toString();
  }
}
