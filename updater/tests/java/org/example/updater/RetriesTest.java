package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertThrows;
import static org.junit.Assert.assertTrue;

import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Random;
import java.util.Set;
import org.junit.Test;

public class RetriesTest {
  private final List<String> log = new ArrayList<>();

  private Retries retries(int inARow, String settings) {
    return new Retries(inARow, new Settings(settings), new Random(), log::add);
  }

  @Test
  public void retryAfterIsReadAsSecondsAndAsADate() {
    assertEquals(120_000, Retries.asked("120", 0));
    assertEquals(5_000, Retries.asked("Thu, 01 Jan 1970 00:01:40 GMT", 95_000));
    assertEquals(0, Retries.asked("Thu, 01 Jan 1970 00:01:40 GMT", 200_000));
  }

  @Test
  public void retryAfterThatMakesNoSenseAsksForNothing() {
    for (String text : new String[] {null, "", "soon", "-5", "1.5", "Thu, 01"}) {
      assertEquals(0, Retries.asked(text, 0));
    }
    assertTrue(Retries.asked("999999999999999999", 0) > 0);
  }

  @Test
  public void pausesDoubleAndLieWithinHalfOfThat() throws Exception {
    Retries retries = retries(100, "pause_ms=1\npatience_ms=40");
    long[] expected = {1, 2, 4, 8, 16, 32, 40, 40};
    for (long pause : expected) {
      retries.pauseAfter("failed.", 0);
      for (int i = 0; i < 100; i++) {
        long next = retries.nextPause();
        assertTrue(next + " of " + pause, next >= pause / 2 && next <= pause * 3 / 2);
      }
    }
  }

  @Test
  public void pausesOfSeveralInstallationsDiffer() throws Exception {
    Set<Long> pauses = new HashSet<>();
    for (int seed = 0; seed < 10; seed++) {
      pauses.add(nextOfFreshRetries(seed));
    }
    assertTrue(pauses.toString(), pauses.size() > 5);
  }

  private long nextOfFreshRetries(int seed) throws Exception {
    Retries retries = new Retries(9, new Settings("pause_ms=100"), new Random(seed), log::add);
    Thread.currentThread().interrupt();
    assertThrows(InterruptedException.class, () -> retries.pauseAfter("failed.", 0));
    return retries.nextPause();
  }

  @Test
  public void attemptsEndWhenTooManyInARowBringNothing() throws Exception {
    Retries retries = retries(3, "pause_ms=0");
    retries.pauseAfter("one.", 0);
    retries.pauseAfter("two.", 0);
    retries.progressed();
    retries.pauseAfter("three.", 0);
    retries.pauseAfter("four.", 0);
    Later end = assertThrows(Later.class, () -> retries.pauseAfter("five.", 0));
    assertEquals("five.", end.getMessage());
  }

  @Test
  public void attemptsEndAtLastEvenIfEachBringsALittle() throws Exception {
    Retries retries = retries(3, "pause_ms=0");
    int made = 0;
    try {
      for (; made < 1000; made++) {
        retries.progressed();
        retries.pauseAfter("failed.", 0);
      }
    } catch (Later e) {
      // As it should.
    }
    assertTrue("attempts: " + made, made < 300);
  }

  @Test
  public void aSiteThatAsksForALongPauseIsLeftAlone() {
    Later later =
        assertThrows(
            Later.class, () -> retries(5, "patience_ms=1000").pauseAfter("busy.", 3_600_000));
    assertEquals(3_600_000, later.millis);
  }

  @Test
  public void aShortPauseThatIsAskedForIsKept() throws Exception {
    long start = System.nanoTime();
    retries(5, "pause_ms=0").pauseAfter("busy.", 300);
    assertTrue(System.nanoTime() - start >= 300_000_000L);
  }
}
