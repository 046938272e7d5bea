package org.example.updater;

import java.io.IOException;
import java.net.MalformedURLException;
import java.net.URL;
import java.util.LinkedHashMap;
import java.util.Map;

/** Requests to a site, redirects among them: only to http and https, and never away from https. */
final class Web {
  private static final int MOST_REDIRECTS = 5;

  private final Http http;
  private final int answerMillis;

  Web(Http http, int answerMillis) {
    this.http = http;
    this.answerMillis = answerMillis;
  }

  /** Asks for the bytes as they are on the site. The caller closes the answer. */
  Http.Answer get(URL address, Map<String, String> more)
      throws IOException, InterruptedException, Problem {
    Map<String, String> headers = new LinkedHashMap<>(more);
    headers.put("Accept-Encoding", "identity");
    headers.put("User-Agent", "Quorvane-Updater");
    URL url = requireWeb(address, null);
    for (int i = 0; i <= MOST_REDIRECTS; i++) {
      Http.Answer answer = http.get(url, headers, answerMillis);
      String target = isRedirect(answer.status()) ? answer.header("Location") : null;
      if (target == null) {
        return answer;
      }
      answer.close();
      url = requireWeb(parse(url, target), url);
    }
    throw new Problem("More than " + MOST_REDIRECTS + " redirects from " + address + ".");
  }

  private static boolean isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
  }

  private static URL parse(URL base, String target) throws Problem {
    try {
      return new URL(base, target);
    } catch (MalformedURLException e) {
      throw new Problem("A redirect from " + base + " leads to no address: " + target);
    }
  }

  private static URL requireWeb(URL url, URL from) throws Problem {
    boolean isSafe = url.getProtocol().equalsIgnoreCase("https");
    if (!isSafe && !url.getProtocol().equalsIgnoreCase("http") || url.getHost().isEmpty()) {
      throw new Problem("Neither http nor https: " + url);
    }
    if (from != null && !isSafe && from.getProtocol().equalsIgnoreCase("https")) {
      throw new Problem("A redirect leads away from https: " + from + " to " + url);
    }
    return url;
  }
}
