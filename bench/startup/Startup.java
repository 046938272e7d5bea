/** Prints the monotonic clock as it was when main began. */
public final class Startup {
  private Startup() {}

  public static void main(String[] arguments) {
    long now = System.nanoTime();
    System.out.println("main " + now);
  }
}
