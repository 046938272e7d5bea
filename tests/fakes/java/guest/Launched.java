package guest;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;

/**
 * A program that an application's launch starts. In the folder that the environment variable
 * LAUNCHED_RECORD names it leaves what it got: "arguments", each ended with a zero byte;
 * "properties", the bytes of the file that its first argument names; "process", on a line each its
 * process id, its executable, its class path and its system property guest.property. "arguments"
 * appears last. An argument "exit:N" ends it with that status, "kill" by a signal.
 */
public final class Launched {
  private Launched() {}

  public static void main(String[] arguments) throws IOException, InterruptedException {
    Path folder = Path.of(System.getenv("LAUNCHED_RECORD"));
    Files.copy(Path.of(arguments[0]), folder.resolve("properties"));
    Files.writeString(folder.resolve("process"), process());
    Path temporary = folder.resolve("arguments.part");
    Files.write(temporary, ended(arguments));
    Files.move(temporary, folder.resolve("arguments"), StandardCopyOption.ATOMIC_MOVE);
    for (String argument : arguments) {
      if (argument.startsWith("exit:")) {
        System.exit(Integer.parseInt(argument.substring("exit:".length())));
      } else if (argument.equals("kill")) {
        new ProcessBuilder("kill", "-KILL", String.valueOf(ProcessHandle.current().pid())).start();
        Thread.sleep(60_000);
      }
    }
  }

  private static String process() {
    ProcessHandle self = ProcessHandle.current();
    return String.join("\n", String.valueOf(self.pid()), self.info().command().orElse("unknown"),
        System.getProperty("java.class.path"), System.getProperty("guest.property", "not set"), "");
  }

  private static byte[] ended(String[] texts) {
    ByteArrayOutputStream bytes = new ByteArrayOutputStream();
    for (String text : texts) {
      bytes.writeBytes(text.getBytes(StandardCharsets.UTF_8));
      bytes.write(0);
    }
    return bytes.toByteArray();
  }
}
