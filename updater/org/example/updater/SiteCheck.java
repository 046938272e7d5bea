package org.example.updater;

import java.io.IOException;
import java.net.URL;
import java.nio.charset.StandardCharsets;
import java.util.HashMap;
import java.util.Map;

/**
 * Asks a site for the version of a component: one request, which a site answers with a few bytes, or
 * with none where nothing has changed since the last time.
 */
final class SiteCheck {
  private static final int LARGEST_TEXT = 64 * 1024;

  private final Site site;
  private final Web web;
  private final UpdateState state;
  private final Settings settings;

  SiteCheck(Site site, Web web, UpdateState state, Settings settings) {
    this.site = site;
    this.web = web;
    this.state = state;
    this.settings = settings;
  }

  /** Returns the version on the site, or {@link Version#NONE} where it has none. */
  long version(String component, Retries retries) throws Problem, InterruptedException {
    URL url = site.versionText(component);
    while (true) {
      String failure;
      long asked = 0;
      try (Http.Answer answer = web.get(url, conditions(component, url))) {
        int status = answer.status();
        if (status == 304) {
          return Version.of(state.get(component, "version"));
        }
        if (status == 200) {
          return remember(component, url, answer);
        }
        if (status == 404 || status == 410) {
          return Version.NONE;
        }
        failure = "The site answered " + status + " to " + url + ".";
        if (!Retries.isWorthIt(status)) {
          throw new Problem(failure);
        }
        asked = Retries.asked(answer.header("Retry-After"), System.currentTimeMillis());
      } catch (IOException e) {
        failure = "The site cannot be asked: " + url + ": " + e.getMessage();
      }
      retries.pauseAfter(failure, asked);
    }
  }

  /** Nothing has to be sent again that is remembered from this address. */
  private Map<String, String> conditions(String component, URL url) {
    Map<String, String> headers = new HashMap<>();
    boolean isKnown =
        state.get(component, "url").equals(url.toString())
            && Version.of(state.get(component, "version")) != Version.NONE;
    String tag = state.get(component, "etag");
    String time = state.get(component, "modified");
    if (isKnown && !tag.isEmpty()) {
      headers.put("If-None-Match", tag);
    } else if (isKnown && !time.isEmpty()) {
      headers.put("If-Modified-Since", time);
    }
    return headers;
  }

  private long remember(String component, URL url, Http.Answer answer) throws IOException, Problem {
    long version = parse(url, textOf(url, answer));
    state.set(component, "url", url.toString());
    state.set(component, "version", Long.toString(version));
    remember(component, "etag", answer.header("ETag"));
    remember(component, "modified", answer.header("Last-Modified"));
    return version;
  }

  private void remember(String component, String key, String value) {
    if (isHeaderText(value)) {
      state.set(component, key, value);
    } else {
      state.remove(component, key);
    }
  }

  /** Whether a header's value can be sent back as it came. */
  static boolean isHeaderText(String value) {
    return value != null && value.length() <= 200 && value.matches("[ -~]+");
  }

  private String textOf(URL url, Http.Answer answer) throws IOException, Problem {
    byte[] text = new byte[LARGEST_TEXT + 1];
    int length = 0;
    byte[] buffer = new byte[8192];
    try (Body body =
        new Body(answer, settings.slowMillis(), 1, Math.min(settings.slowMillis(), 60_000))) {
      int count = body.read(buffer);
      while (count >= 0) {
        if (length + count > LARGEST_TEXT) {
          throw new Problem("The version text is larger than " + LARGEST_TEXT + " bytes: " + url);
        }
        System.arraycopy(buffer, 0, text, length, count);
        length += count;
        count = body.read(buffer);
      }
    }
    return new String(text, 0, length, StandardCharsets.ISO_8859_1);
  }

  /** The version is the first line. */
  private static long parse(URL url, String text) throws Problem {
    int end = text.indexOf('\n');
    String line = end < 0 ? text : text.substring(0, end);
    long version = Version.of(line.endsWith("\r") ? line.substring(0, line.length() - 1) : line);
    if (version == Version.NONE) {
      String shown = UpdateLog.onOneLine(line.substring(0, Math.min(line.length(), 40)));
      throw new Problem("The version text holds no version: " + url + " begins with \"" + shown + "\".");
    }
    return version;
  }
}
