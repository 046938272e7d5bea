package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.concurrent.atomic.LongAdder;

/**
 * Many installations that start at the same moment and look at one small site: first where nothing is
 * new, then where a version is. The site serves four requests at once, each in 20 ms, and sends the
 * others away with 503. Prints what it saw.
 *
 * <p>Arguments: the number of installations, the spread of their looks in ms, the archive's size.
 */
public final class Crowd {
  private static final int AT_ONCE = 4;
  private static final long WORK_MILLIS = 20;

  private final int clients;
  private final Settings settings;
  private final byte[] archive;
  private final TestSite site = new TestSite();
  private final Path folder;
  private final AtomicInteger serving = new AtomicInteger();
  private final LongAdder requests = new LongAdder();
  private final LongAdder turnedAway = new LongAdder();
  private final LongAdder failed = new LongAdder();
  private final Map<Long, LongAdder> perSecond = new ConcurrentHashMap<>();
  private volatile long start;

  private Crowd(int clients, int spread, int size) throws IOException {
    this.clients = clients;
    settings = new Settings("spread_ms=" + spread + "\npause_ms=1000\npatience_ms=60000");
    archive = new byte[size];
    new Random(1).nextBytes(archive);
    folder = Files.createTempDirectory("crowd-");
  }

  public static void main(String[] arguments) throws Exception {
    int[] numbers = new int[3];
    for (int i = 0; i < numbers.length; i++) {
      numbers[i] = Integer.parseInt(arguments[i]);
    }
    Crowd crowd = new Crowd(numbers[0], numbers[1], numbers[2]);
    try {
      crowd.run();
    } finally {
      crowd.site.close();
      Trees.remove(crowd.folder);
    }
  }

  private void run() throws Exception {
    site.put("Quorvane-Sample-2-archive.p2.l2", limited(TestSite.ranges(archive, "\"2\"", archive.length)));
    TestSite.Page one = TestSite.text("1\n", "ETag", "\"one\"");
    site.put("Quorvane-Sample-version.txt", limited(one));
    look("the first look, nothing new");
    TestSite.Page unchanged = TestSite.status(304);
    site.put("Quorvane-Sample-version.txt", limited(unchanged));
    look("the next one, nothing changed");
    site.put("Quorvane-Sample-version.txt", limited(TestSite.text("2\n", "ETag", "\"two\"")));
    look("a new version of " + archive.length + " bytes");
  }

  private TestSite.Page limited(TestSite.Page page) {
    return exchange -> {
      requests.increment();
      long second = (System.nanoTime() - start) / 1_000_000_000L;
      perSecond.computeIfAbsent(second, any -> new LongAdder()).increment();
      if (serving.incrementAndGet() > AT_ONCE) {
        turnedAway.increment();
        serving.decrementAndGet();
        TestSite.status(503, "Retry-After", "2").answer(exchange);
        return;
      }
      try {
        Thread.sleep(WORK_MILLIS);
        page.answer(exchange);
      } finally {
        serving.decrementAndGet();
      }
    };
  }

  private void look(String what) throws InterruptedException {
    requests.reset();
    turnedAway.reset();
    failed.reset();
    perSecond.clear();
    start = System.nanoTime();
    List<Thread> threads = new ArrayList<>();
    for (int i = 0; i < clients; i++) {
      int number = i;
      Thread thread = new Thread(null, () -> client(number), "client", 256 * 1024);
      threads.add(thread);
      thread.start();
    }
    for (Thread thread : threads) {
      thread.join();
    }
    long busiest = perSecond.values().stream().mapToLong(LongAdder::sum).max().orElse(0);
    System.out.printf(
        "%s: %d installations, %d requests, %d in the busiest second, %d answered with 503,"
            + " %d installations without success, %.1f s%n",
        what, clients, requests.sum(), busiest, turnedAway.sum(), failed.sum(),
        (System.nanoTime() - start) / 1e9);
  }

  /** As BackgroundCheck and UpdateRun do it, but for the processes. */
  private void client(int number) {
    Random random = new Random(number);
    try {
      Thread.sleep((long) (random.nextDouble() * settings.spreadMillis()));
      UpdateFolder updates = new UpdateFolder(new File(folder.toFile(), "client-" + number));
      updates.master.mkdir();
      UpdateState state = new UpdateState(updates);
      Web web = new Web(new ConnectionHttp(), settings.answerMillis());
      Site files = new Site(site.address());
      long version =
          new SiteCheck(files, web, state, settings)
              .version("Sample", new Retries(5, settings, random, line -> {}));
      state.save();
      if (version == 2) {
        File whole =
            new Download(
                    updates, web, settings, Progress.NONE, files.archive("Sample", 2), "Sample", 2)
                .fetch(new Retries(5, settings, random, line -> {}));
        if (whole.length() != archive.length) {
          failed.increment();
        }
        whole.delete();
      }
    } catch (Problem | IOException | InterruptedException | RuntimeException e) {
      failed.increment();
    }
  }
}
