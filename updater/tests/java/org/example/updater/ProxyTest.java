package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertThrows;

import java.io.IOException;
import java.net.URL;
import java.nio.charset.StandardCharsets;
import java.util.Collections;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;

/** Requests through the proxy that the runtime's properties name. */
public class ProxyTest extends BothClients {
  /** Only a proxy knows it: names below this one exist nowhere. */
  private static final String SITE = "http://updates.invalid/";

  private TestSite proxy;

  @Before
  public void open() throws Exception {
    proxy = new TestSite();
    System.setProperty("http.proxyHost", "127.0.0.1");
    System.setProperty("http.proxyPort", Integer.toString(new URL(proxy.address()).getPort()));
  }

  @After
  public void close() {
    System.clearProperty("http.proxyHost");
    System.clearProperty("http.proxyPort");
    proxy.close();
  }

  private Http.Answer get(String url) throws Exception {
    return new Web(http(), 5000).get(new URL(url), Collections.emptyMap());
  }

  @Test
  public void theProxyIsAskedForTheSite() throws Exception {
    proxy.put("a/b", TestSite.text("through the proxy"));
    try (Http.Answer answer = get(SITE + "a/b")) {
      assertEquals(200, answer.status());
      byte[] bytes = new byte[100];
      int length = answer.body().read(bytes);
      assertEquals("through the proxy", new String(bytes, 0, length, StandardCharsets.US_ASCII));
    }
    assertEquals("updates.invalid", proxy.last().header("Host"));
  }

  @Test
  public void theProxyIsAskedForWhatARedirectLeadsTo() throws Exception {
    proxy.put("a", TestSite.status(302, "Location", "http://other.invalid/b"));
    proxy.put("b", TestSite.text("moved"));
    try (Http.Answer answer = get(SITE + "a")) {
      assertEquals(200, answer.status());
    }
    assertEquals("other.invalid", proxy.last().header("Host"));
  }

  @Test
  public void aHostThatIsExceptedIsAskedItself() throws Exception {
    try (TestSite site = new TestSite()) {
      site.put("a", TestSite.text("itself"));
      try (Http.Answer answer = get(site.address() + "a")) {
        assertEquals(200, answer.status());
      }
      assertEquals(1, site.requests.size());
      assertEquals(0, proxy.requests.size());
    }
  }

  @Test
  public void aProxyThatRefusesAnswersForTheSite() throws Exception {
    proxy.put("a", TestSite.status(403));
    try (Http.Answer answer = get(SITE + "a")) {
      assertEquals(403, answer.status());
    }
  }

  @Test
  public void aProxyThatIsGoneIsAFailure() {
    proxy.close();
    assertThrows(IOException.class, () -> get(SITE + "a"));
  }
}
