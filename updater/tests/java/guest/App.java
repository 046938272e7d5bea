package guest;

import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.concurrent.TimeUnit;

/**
 * An application: says its version, then does what the file "does" in its folder says, each line a
 * step: "exit N", "sleep MILLIS", "started", "await ready" (of a newer version), "throw", "halt N".
 */
public final class App {
  private App() {}

  public static void main(String[] arguments) throws Exception {
    Path folder = Paths.get(System.getProperty("quorvane.app_dir"));
    System.out.println("App version " + System.getProperty("quorvane.app_version"));
    System.out.flush();
    for (String step : Files.readAllLines(folder.resolve("does"))) {
      take(step.split(" "));
    }
  }

  private static void take(String[] step) throws Exception {
    switch (step[0]) {
      case "exit":
        System.exit(Integer.parseInt(step[1]));
        break;
      case "halt":
        Runtime.getRuntime().halt(Integer.parseInt(step[1]));
        break;
      case "sleep":
        Thread.sleep(Long.parseLong(step[1]));
        break;
      case "started":
        Files.createFile(Paths.get(System.getProperty("quorvane.started_file")));
        break;
      case "await":
        await(step[1]);
        break;
      case "throw":
        throw new IllegalStateException("thrown on purpose");
      default:
        break;
    }
  }

  private static void await(String state) throws Exception {
    Path file = Paths.get(System.getProperty("quorvane.update_file"));
    long end = System.nanoTime() + TimeUnit.SECONDS.toNanos(60);
    while (System.nanoTime() < end) {
      if (Files.exists(file) && new String(Files.readAllBytes(file)).contains("state=" + state)) {
        System.out.println("App sees " + new String(Files.readAllBytes(file)).replace('\n', ' '));
        return;
      }
      Thread.sleep(20);
    }
    System.out.println("App saw no update");
  }
}
