package org.example.updater;

import java.io.BufferedReader;
import java.io.File;
import java.io.IOException;
import java.io.InputStreamReader;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;

/** Starts an {@link UpdateRun} as a process of the same runtime. */
final class UpdateProcess {
  private static final File NOWHERE = new File("/dev/null");

  private final LaunchProperties properties;
  private final File propertiesFile;
  private final File ownFolder;

  UpdateProcess(LaunchProperties properties, File propertiesFile, File ownFolder) {
    this.properties = properties;
    this.propertiesFile = propertiesFile.getAbsoluteFile();
    this.ownFolder = ownFolder;
  }

  /** Nobody waits for this one, nor reads what it prints. */
  Process startInBackground() throws Problem, IOException {
    return builder(UpdateRun.BACKGROUND)
        .redirectOutput(NOWHERE)
        .redirectError(NOWHERE)
        .start();
  }

  /** Runs one to its end and shows how it gets on. Returns why it failed, or the empty text. */
  String run(String mode, ProgressView view) throws Problem, InterruptedException {
    try {
      Process process = builder(mode).redirectError(ProcessBuilder.Redirect.INHERIT).start();
      String end = "The update ended without a word.";
      try (BufferedReader in =
          new BufferedReader(
              new InputStreamReader(process.getInputStream(), StandardCharsets.UTF_8))) {
        ProgressText text = new ProgressText();
        for (String line = in.readLine(); line != null; line = in.readLine()) {
          if (line.startsWith("end ")) {
            end = line.substring(4);
          } else {
            text.take(line, System.nanoTime());
            view.show(text.text(), text.fraction());
          }
        }
      } finally {
        view.close();
      }
      process.waitFor();
      return end;
    } catch (IOException e) {
      return "The update cannot be run: " + e.getMessage();
    }
  }

  private ProcessBuilder builder(String mode) throws Problem {
    // A file of that name is removed when it is a day old.
    propertiesFile.setLastModified(System.currentTimeMillis());
    List<String> command = new ArrayList<>();
    command.add(System.getProperty("java.home") + "/bin/java");
    command.add("-Djava.net.useSystemProxies=true");
    for (String option : properties.rememberedOptions()) {
      // What stands for the site, as a proxy or trusted certificates, but nothing of the machine.
      if (option.startsWith("-D")) {
        command.add(option);
      }
    }
    command.add("-Djava.awt.headless=true");
    command.add("-Xmx128m");
    command.add("-XX:TieredStopAtLevel=1");
    command.add("-cp");
    command.add(classPath());
    command.add(UpdateRun.class.getName());
    command.add(propertiesFile.getPath());
    command.add(mode);
    return new ProcessBuilder(command).redirectInput(NOWHERE);
  }

  private String classPath() throws Problem {
    StringBuilder text = new StringBuilder();
    for (String entry : LaunchFile.of(ownFolder).classPath) {
      text.append(text.length() == 0 ? "" : File.pathSeparator).append(new File(ownFolder, entry));
    }
    return text.toString();
  }
}
