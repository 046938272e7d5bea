package org.example.updater;

import static org.junit.Assert.assertEquals;

import java.io.ByteArrayOutputStream;
import java.io.PrintStream;
import org.junit.Test;

public class ProgressTextTest {
  private static final long SECOND = 1_000_000_000L;

  private final ProgressText text = new ProgressText();

  @Test
  public void bytesSpeedAndTimeLeftAreShown() {
    text.take("bytes 7 0 10000000 My App", 0);
    assertEquals("My App 7: 0.0 of 10.0 MB", text.text());
    text.take("bytes 7 5000000 10000000 My App", 2 * SECOND);
    assertEquals("My App 7: 5.0 of 10.0 MB, 2.5 MB/s, 2 s left", text.text());
    assertEquals(0.5, text.fraction(), 0.001);
  }

  @Test
  public void whatWasThereBeforeSaysNothingAboutTheSpeed() {
    text.take("bytes 7 8000000 10000000 App", 0);
    text.take("bytes 7 9000000 10000000 App", SECOND);
    assertEquals("App 7: 9.0 of 10.0 MB, 1.0 MB/s, 1 s left", text.text());
  }

  @Test
  public void anUnknownSizeHasNoFraction() {
    text.take("bytes 7 1000000 -1 App", 0);
    assertEquals("App 7: 1.0 MB", text.text());
    assertEquals(-1, text.fraction(), 0);
  }

  @Test
  public void wordsAreShownAsTheyAre() {
    text.take("say Installing version 7 of App…", 0);
    assertEquals("Installing version 7 of App…", text.text());
    assertEquals(-1, text.fraction(), 0);
  }

  @Test
  public void linesThatAreNoneOfThemChangeNothing() {
    text.take("say Waiting", 0);
    for (String line : new String[] {"", "say ", "bytes", "bytes 1 2 3", "bytes x y z App", "other"}) {
      text.take(line, 0);
      assertEquals("Waiting", text.text());
    }
  }

  private static String shown(boolean isTerminal) {
    ByteArrayOutputStream bytes = new ByteArrayOutputStream();
    ProgressLine line = new ProgressLine(new PrintStream(bytes), isTerminal);
    line.show("long text", 0.5);
    line.show("short", 1);
    line.close();
    return bytes.toString();
  }

  @Test
  public void aTerminalShowsOneLineThatChanges() {
    assertEquals("\rlong text\rshort    " + System.lineSeparator(), shown(true));
  }

  @Test
  public void elsewhereOnlyTheLastStateIsPrinted() {
    assertEquals("short" + System.lineSeparator(), shown(false));
  }
}
