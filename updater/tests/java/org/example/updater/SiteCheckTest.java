package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertNull;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import java.util.ArrayList;
import java.util.List;
import java.util.Random;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;

public class SiteCheckTest extends BothClients {
  private static final String TEXT = "Quorvane-Sample-version.txt";

  private final List<String> log = new ArrayList<>();
  private TestSite site;
  private UpdateState state;
  private String settings = "pause_ms=1\nanswer_ms=2000\nslow_ms=1000";

  @Before
  public void open() throws Exception {
    site = new TestSite();
    state = new UpdateState(new UpdateFolder(folder.folder("master")));
  }

  @After
  public void close() {
    site.close();
  }

  private long version() throws Exception {
    Settings chosen = new Settings(settings);
    return new SiteCheck(
            new Site(site.address()), new Web(http(), chosen.answerMillis()), state, chosen)
        .version("Sample", new Retries(3, chosen, new Random(), log::add));
  }

  private Problem refusal() {
    return assertThrows(Problem.class, this::version);
  }

  @Test
  public void theFirstLineIsTheVersion() throws Exception {
    for (String text : new String[] {"12", "12\n", "12\r\n", "12\nmore\n"}) {
      site.put(TEXT, TestSite.text(text));
      assertEquals(12, version());
    }
  }

  @Test
  public void aHostileTextIsRefused() {
    String[] texts = {
      "", "\n12", "12 ", "-1", "../../12", "1e9", "0012", "1234567890123456789", "12\0", "\0",
      "\u00ff\u00fe1", "<html><body>Sign in</body></html>", "12;rm -rf /", "\u001b[2J12"
    };
    for (String text : texts) {
      site.put(TEXT, TestSite.text(text));
      String message = refusal().getMessage();
      assertTrue(message, message.contains("holds no version"));
      assertTrue(message, message.matches("[^\\p{Cntrl}]*"));
    }
  }

  @Test
  public void aTextWithoutEndIsNotReadToItsEnd() {
    site.put(
        TEXT,
        exchange -> {
          exchange.sendResponseHeaders(200, 0);
          while (true) {
            exchange.getResponseBody().write(new byte[65536]);
          }
        });
    assertTrue(refusal().getMessage().contains("larger than 65536"));
  }

  @Test
  public void aTextThatDripsWithoutEndIsGivenUp() {
    settings = "pause_ms=1\nslow_ms=300\nanswer_ms=500";
    site.put(
        TEXT,
        exchange -> {
          exchange.sendResponseHeaders(200, 0);
          while (true) {
            exchange.getResponseBody().write('1');
            exchange.getResponseBody().flush();
            Thread.sleep(20);
          }
        });
    long start = System.nanoTime();
    refusal();
    assertTrue(System.nanoTime() - start < 20_000_000_000L);
    assertTrue(log.toString(), log.get(0).contains("It took longer than 300 ms."));
  }

  @Test
  public void aSiteThatDoesNotAnswerIsGivenUp() {
    settings = "pause_ms=1\nanswer_ms=200";
    site.put(TEXT, exchange -> Thread.sleep(60_000));
    long start = System.nanoTime();
    assertThrows(Later.class, this::version);
    assertTrue(System.nanoTime() - start < 20_000_000_000L);
  }

  @Test
  public void whatHasNotChangedIsNotSentAgain() throws Exception {
    site.put(TEXT, TestSite.text("12\n", "ETag", "\"abc\""));
    assertEquals(12, version());
    assertNull(site.last().header("If-None-Match"));
    site.put(TEXT, TestSite.status(304));
    assertEquals(12, version());
    assertEquals("\"abc\"", site.last().header("If-None-Match"));
  }

  @Test
  public void aSiteWithoutTagsIsAskedByTime() throws Exception {
    String time = "Thu, 01 Jan 1970 00:01:40 GMT";
    site.put(TEXT, TestSite.text("12\n", "Last-Modified", time));
    version();
    site.put(TEXT, TestSite.status(304));
    assertEquals(12, version());
    assertEquals(time, site.last().header("If-Modified-Since"));
  }

  @Test
  public void whatAnotherSiteSaidIsForgotten() throws Exception {
    state.set("Sample", "url", "http://127.0.0.1:1/" + TEXT);
    state.set("Sample", "version", "99");
    state.set("Sample", "etag", "\"abc\"");
    site.put(TEXT, TestSite.text("12\n"));
    assertEquals(12, version());
    assertNull(site.last().header("If-None-Match"));
    assertEquals("", state.get("Sample", "etag"));
  }

  @Test
  public void whatIsRememberedOutlivesTheProcess() throws Exception {
    site.put(TEXT, TestSite.text("12\n", "ETag", "\"a\\b:= #\""));
    version();
    state.save();
    state = new UpdateState(new UpdateFolder(folder.file("master")));
    site.put(TEXT, TestSite.status(304));
    assertEquals(12, version());
    assertEquals("\"a\\b:= #\"", site.last().header("If-None-Match"));
  }

  @Test
  public void aComponentThatTheSiteLacksHasNoVersion() throws Exception {
    assertEquals(Version.NONE, version());
    assertEquals(1, site.requests.size());
  }

  @Test
  public void aRefusingSiteIsNotAskedAgain() {
    site.put(TEXT, TestSite.status(403));
    assertTrue(refusal().getMessage().contains("403"));
    assertEquals(1, site.requests.size());
  }

  @Test
  public void aFailingSiteIsAskedAgain() throws Exception {
    site.put(
        TEXT,
        exchange -> {
          if (site.requests.size() < 3) {
            exchange.sendResponseHeaders(503, -1);
          } else {
            TestSite.text("12").answer(exchange);
          }
        });
    assertEquals(12, version());
    assertEquals(3, site.requests.size());
  }

  @Test
  public void aSiteThatAsksForAPauseIsLeftAlone() {
    for (int status : new int[] {429, 503}) {
      site.requests.clear();
      site.put(TEXT, TestSite.status(status, "Retry-After", "7200"));
      assertEquals(7_200_000, assertThrows(Later.class, this::version).millis);
      assertEquals(1, site.requests.size());
    }
  }

  @Test
  public void aSiteThatIsGoneIsAProblem() {
    site.close();
    Later problem = assertThrows(Later.class, this::version);
    assertTrue(problem.getMessage(), problem.getMessage().contains("cannot be asked"));
    assertEquals(2, log.size());
  }
}
