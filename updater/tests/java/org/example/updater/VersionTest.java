package org.example.updater;

import static org.junit.Assert.assertEquals;

import org.junit.Test;

public class VersionTest {
  @Test
  public void digitsAreAVersion() {
    assertEquals(0, Version.of("0"));
    assertEquals(42, Version.of("42"));
    assertEquals(999999999999999999L, Version.of("999999999999999999"));
  }

  @Test
  public void anythingElseIsNone() {
    String[] texts = {
      "", " 1", "1 ", "01", "+1", "-1", "1.0", "0x1", "1\0", "1e3", "1000000000000000000", "\u0661",
      "../1", "<html>"
    };
    for (String text : texts) {
      assertEquals(text, Version.NONE, Version.of(text));
    }
  }
}
