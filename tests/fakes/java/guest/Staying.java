package guest;

/** A program that stays until its process is ended, and says so when its shutdown hook runs. */
public final class Staying {
  private Staying() {}

  public static void main(String[] arguments) throws InterruptedException {
    Runtime.getRuntime().addShutdownHook(new Thread(() -> print("[Guest] hook")));
    print("[Guest] stays");
    while (true) {
      Thread.sleep(60_000);
    }
  }

  private static void print(String line) {
    System.out.println(line);
    System.out.flush();
  }
}
