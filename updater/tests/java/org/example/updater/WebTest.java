package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import java.io.ByteArrayInputStream;
import java.io.InputStream;
import java.net.URL;
import java.util.ArrayList;
import java.util.Collections;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import org.junit.Test;

/** Redirects, with a stand-in for the network. */
public class WebTest {
  private final Map<String, String> redirects = new HashMap<>();
  private final List<String> asked = new ArrayList<>();

  private final Http http =
      (url, headers, millis) -> {
        asked.add(url.toString());
        String target = redirects.get(url.toString());
        return new Http.Answer() {
          @Override
          public int status() {
            return target == null ? 200 : 302;
          }

          @Override
          public String header(String name) {
            return name.equals("Location") ? target : null;
          }

          @Override
          public InputStream body() {
            return new ByteArrayInputStream(new byte[0]);
          }

          @Override
          public void close() {}
        };
      };

  private int get(String url) throws Exception {
    return new Web(http, 1000).get(new URL(url), Collections.emptyMap()).status();
  }

  private void expectRefusal(String from, String to) {
    redirects.put(from, to);
    assertThrows(to, Problem.class, () -> get(from));
    assertEquals(Collections.singletonList(from), asked);
  }

  @Test
  public void redirectsAreFollowed() throws Exception {
    redirects.put("http://a/x", "/y");
    redirects.put("http://a/y", "https://b/z");
    assertEquals(200, get("http://a/x"));
    assertEquals("https://b/z", asked.get(2));
  }

  @Test
  public void aRedirectAwayFromHttpsIsRefused() {
    expectRefusal("https://a/x", "http://a/x");
  }

  @Test
  public void aRedirectToAFileIsRefused() {
    expectRefusal("http://a/x", "file:///etc/passwd");
  }

  @Test
  public void aRedirectIntoAJarIsRefused() {
    expectRefusal("http://a/x", "jar:http://a/x.jar!/x");
  }

  @Test
  public void aRedirectToNoAddressIsRefused() {
    expectRefusal("http://a/x", "gopher-nonsense://");
  }

  @Test
  public void redirectsInACircleEnd() {
    redirects.put("http://a/x", "http://a/x");
    assertThrows(Problem.class, () -> get("http://a/x"));
    assertTrue("requests: " + asked.size(), asked.size() <= 10);
  }

  @Test
  public void namesAreEscapedInAddresses() throws Exception {
    assertEquals(
        "http://a/b/Quorvane-My%20App%3F%23%C3%A9-7-archive.p2.l2",
        new Site("http://a/b").archive("My App?#\u00e9", 7).toString());
  }

  @Test
  public void anAddressThatIsNoneOnTheWebIsRefused() {
    for (String text : new String[] {"", "file:///tmp", "ftp://a/", "a/b", "http:///x"}) {
      assertThrows(text, Problem.class, () -> new Site(text));
    }
  }
}
