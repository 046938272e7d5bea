package org.example.hello;

/** Prints how it was started. */
public final class Hello {
  private Hello() {}

  public static void main(String[] arguments) {
    System.out.println("Hello from Java.");
    Surroundings.describe(arguments)
        .forEach((name, value) -> System.out.printf("  %-15s %s%n", name, value));
  }
}
