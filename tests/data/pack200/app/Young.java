package app;

import java.util.function.Supplier;

/** Has an instruction that the pack200 format does not know. */
final class Young {
  private Young() {}

  static String text(String text) {
    Supplier<String> supplier = () -> text;
    return supplier.get();
  }
}
