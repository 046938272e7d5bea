package org.example.updater;

import static org.junit.Assert.assertArrayEquals;
import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertNull;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import java.io.File;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Random;
import org.junit.After;
import org.junit.Before;
import org.junit.Test;

public class DownloadTest extends BothClients {
  private static final String NAME = "Quorvane-Sample-7-archive.p2.l2";

  private final List<String> log = new ArrayList<>();
  private final byte[] content = new byte[800_000];
  private TestSite site;
  private UpdateFolder updates;
  private String settings = "pause_ms=1\nanswer_ms=2000\nslow_ms=1000\n";

  @Before
  public void open() throws Exception {
    new Random(1).nextBytes(content);
    site = new TestSite();
    updates = new UpdateFolder(folder.folder("master"));
  }

  @After
  public void close() {
    site.close();
  }

  private File fetch() throws Exception {
    Settings chosen = new Settings(settings);
    return new Download(
            updates,
            new Web(http(), chosen.answerMillis()),
            chosen,
            Progress.NONE,
            site.url(NAME),
            "Sample",
            7)
        .fetch(new Retries(3, chosen, new Random(), log::add));
  }

  private void expectWhole(File file) throws Exception {
    assertArrayEquals(content, Files.readAllBytes(file.toPath()));
    assertEquals(Arrays.asList(file.getName()), Arrays.asList(updates.downloads().list()));
  }

  private void expectRefusal(Class<? extends Problem> kind, String words) {
    String message = assertThrows(kind, this::fetch).getMessage();
    assertTrue(message, message.contains(words));
    assertFalse(new File(updates.downloads(), "Sample-7.archive").exists());
  }

  private File part() {
    return new File(updates.downloads(), "Sample-7.part");
  }

  private void putPart(byte[] bytes, String validator) throws Exception {
    assertTrue(updates.make(updates.downloads()));
    Files.write(part().toPath(), bytes);
    Files.write(
        new File(updates.downloads(), "Sample-7.validator").toPath(), validator.getBytes("UTF-8"));
  }

  @Test
  public void bringsTheSitesBytes() throws Exception {
    site.put(NAME, TestSite.bytes(content));
    expectWhole(fetch());
    assertEquals("identity", site.last().header("Accept-Encoding"));
  }

  @Test
  public void bringsWhatHasNoLength() throws Exception {
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 0);
          exchange.getResponseBody().write(content);
        });
    expectWhole(fetch());
  }

  @Test
  public void goesOnAfterEveryEighthAtWhichTheConnectionBreaks() throws Exception {
    site.put(NAME, TestSite.ranges(content, "\"a\"", 100_000));
    expectWhole(fetch());
    // A client may lose what had arrived and was not yet handed on when the connection broke.
    assertTrue("requests " + site.requests.size(), site.requests.size() >= 8);
    int before = 0;
    for (TestSite.Request request : site.requests) {
      String range = request.header("Range");
      int start = range == null ? 0 : Integer.parseInt(range.replaceAll("bytes=(\\d+)-", "$1"));
      assertTrue(start + " after " + before, start >= before && start <= before + 100_000);
      assertEquals(start == 0 ? null : "\"a\"", request.header("If-Range"));
      before = start;
    }
    assertTrue("last " + before, before >= 700_000);
  }

  @Test
  public void goesOnWithWhatAnEarlierProcessLeft() throws Exception {
    putPart(Arrays.copyOf(content, 700_000), "\"a\"");
    site.put(NAME, TestSite.ranges(content, "\"a\"", 800_000));
    expectWhole(fetch());
    assertEquals("bytes=700000-", site.last().header("Range"));
  }

  @Test
  public void beginsAgainWhenTheSiteHasAnother() throws Exception {
    putPart(new byte[700_000], "\"old\"");
    site.put(NAME, TestSite.ranges(content, "\"new\"", 800_000));
    expectWhole(fetch());
  }

  @Test
  public void beginsAgainWhereNothingTellsWhatThePartIsOf() throws Exception {
    putPart(new byte[700_000], "");
    site.put(NAME, TestSite.ranges(content, "\"a\"", 800_000));
    expectWhole(fetch());
    assertNull(site.last().header("Range"));
  }

  @Test
  public void aWeakTagIsNotReliedOn() throws Exception {
    site.put(NAME, TestSite.ranges(content, "W/\"a\"", 400_000));
    assertThrows(Later.class, this::fetch);
    assertNull(site.last().header("Range"));
  }

  @Test
  public void anotherPartThanWasAskedForIsNotTaken() throws Exception {
    String[] ranges = {"bytes 0-799999/800000", "bytes */800000", "bytes x", "bytes 700001-799999/800000"};
    for (String range : ranges) {
      site.requests.clear();
      putPart(Arrays.copyOf(content, 700_000), "\"a\"");
      site.put(
          NAME,
          exchange -> {
            if (site.requests.size() > 1) {
              TestSite.bytes(content).answer(exchange);
              return;
            }
            exchange.getResponseHeaders().set("Content-Range", range);
            exchange.sendResponseHeaders(206, 100_000);
            exchange.getResponseBody().write(new byte[100_000]);
          });
      File whole = fetch();
      expectWhole(whole);
      assertTrue(whole.delete());
    }
  }

  @Test
  public void aPartThatIsLongerThanTheArchiveIsThrownAway() throws Exception {
    putPart(new byte[900_000], "\"a\"");
    site.put(
        NAME,
        exchange -> {
          if (exchange.getRequestHeaders().getFirst("Range") != null) {
            exchange.sendResponseHeaders(416, -1);
          } else {
            TestSite.bytes(content).answer(exchange);
          }
        });
    expectWhole(fetch());
  }

  @Test
  public void aTruncatedArchiveIsNotWhole() {
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, content.length);
          exchange.getResponseBody().write(content, 0, 10);
          exchange.getResponseBody().flush();
        });
    assertThrows(Later.class, this::fetch);
    assertEquals(3, site.requests.size());
  }

  @Test
  public void aPageInPlaceOfAnArchiveIsRefused() {
    site.put(NAME, TestSite.text("<html>Sign in</html>", "Content-Type", "text/html; charset=utf-8"));
    expectRefusal(Problem.class, "a text in place of an archive");
    assertEquals(1, site.requests.size());
  }

  @Test
  public void anEncodingThatWasNotAskedForIsRefused() {
    site.put(NAME, TestSite.bytes(content, "Content-Encoding", "gzip"));
    expectRefusal(Problem.class, "encoding");
  }

  @Test
  public void anArchiveThatSaysItIsTooLargeIsRefusedAtOnce() {
    settings += "largest_mb=1";
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 5_000_000_000L);
          exchange.getResponseBody().flush();
          Thread.sleep(10_000);
        });
    long start = System.nanoTime();
    expectRefusal(Problem.class, "too large");
    assertTrue(System.nanoTime() - start < 5_000_000_000L);
    assertFalse(part().exists());
  }

  @Test
  public void anArchiveWithoutEndIsRefused() {
    settings += "largest_mb=1";
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 0);
          while (true) {
            exchange.getResponseBody().write(content);
          }
        });
    expectRefusal(Problem.class, "too large");
    assertFalse(part().exists());
  }

  @Test
  public void anArchiveForWhichTheDiskHasNoRoomIsRefused() {
    settings += "largest_mb=1048576";
    long most = folder.path().toFile().getTotalSpace() + 1;
    org.junit.Assume.assumeTrue("the disk is too large", most < 1L << 40);
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, most);
          exchange.getResponseBody().flush();
        });
    expectRefusal(Problem.class, "The disk is too full");
  }

  @Test
  public void anArchiveThatDripsIsGivenUp() {
    settings = "pause_ms=1\nslow_ms=300\nanswer_ms=500\n";
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 100_000);
          for (int i = 0; i < 100_000; i++) {
            exchange.getResponseBody().write(1);
            exchange.getResponseBody().flush();
            Thread.sleep(20);
          }
        });
    long start = System.nanoTime();
    expectRefusal(Later.class, "Less than 1024 bytes came in 300 ms.");
    assertTrue(System.nanoTime() - start < 20_000_000_000L);
  }

  @Test
  public void anArchiveThatStopsIsGivenUp() {
    settings = "pause_ms=1\nslow_ms=300\nanswer_ms=500\n";
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 100_000);
          exchange.getResponseBody().write(1);
          exchange.getResponseBody().flush();
          Thread.sleep(60_000);
        });
    expectRefusal(Later.class, "Less than 1024 bytes");
  }

  @Test
  public void anArchiveThatTakesTooLongIsGivenUp() {
    settings += "longest_ms=500";
    site.put(
        NAME,
        exchange -> {
          exchange.sendResponseHeaders(200, 100_000_000);
          while (true) {
            exchange.getResponseBody().write(new byte[4096]);
            exchange.getResponseBody().flush();
            Thread.sleep(20);
          }
        });
    long start = System.nanoTime();
    assertThrows(Later.class, this::fetch);
    assertTrue(System.nanoTime() - start < 20_000_000_000L);
  }

  @Test
  public void aMissingArchiveIsAProblem() {
    expectRefusal(Problem.class, "404");
    assertEquals(1, site.requests.size());
  }

  @Test
  public void whatIsThereAlreadyIsNotAskedForAgain() throws Exception {
    assertTrue(updates.make(updates.downloads()));
    Files.write(new File(updates.downloads(), "Sample-7.archive").toPath(), content);
    expectWhole(fetch());
    assertEquals(0, site.requests.size());
  }

  @Test
  public void aLinkInPlaceOfThePartIsNotFollowed() throws Exception {
    assertTrue(updates.make(updates.downloads()));
    Files.write(folder.file("precious").toPath(), new byte[10]);
    Files.createSymbolicLink(part().toPath(), folder.file("precious").toPath());
    site.put(NAME, TestSite.bytes(content));
    fetch();
    assertEquals(10, folder.file("precious").length());
  }
}
