package org.example.updater;

import java.io.ByteArrayOutputStream;
import java.io.Closeable;
import java.io.File;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * A master folder with an updater, a site, and a stand-in for the installer's executable, which takes
 * an archive for a text: "installs STEPS" for the application of that behaviour (see guest.App), or
 * "status N WORDS" for its own end.
 */
final class Scene implements Closeable {
  static final String NAME = "Sample";

  final TestSite site = new TestSite();
  final File master;
  final UpdateFolder updates;
  private final TestFolder folder;
  private final File ownFolder;
  private final List<Process> started = new ArrayList<>();
  String settings = "pause_ms=1\nspread_ms=0\nslow_ms=2000\nanswer_ms=2000\ninterval=1\n";
  boolean isSilent;
  private String program = System.getProperty("java.home") + "/bin/java";
  /** Variables for what the scene starts. Without DISPLAY it shows no windows; null takes one away. */
  final Map<String, String> environment = new HashMap<>();
  /** JVM options that the launch hands over as those that last worked. */
  final List<String> remembered = new ArrayList<>();
  /** Options for the runtime of what the scene starts. */
  final List<String> options = new ArrayList<>();

  Scene(TestFolder folder) throws IOException {
    this.folder = folder;
    master = folder.folder("Quorvane-Sample");
    updates = new UpdateFolder(master);
    ownFolder = folder.folder("Quorvane-Sample/Quorvane-Quorvane-1-complete");
    Files.copy(Paths.get(System.getProperty("test.jar")), ownFolder.toPath().resolve("updater.jar"));
    writeLaunchFile(ownFolder, "org.example.updater.GenericUpdater", "updater.jar");
    copyGuest(folder.folder("template").toPath());
    writeLaunchFile(folder.file("template"), "guest.App", "classes");
    write(
        folder.file("installer"),
        "#!/bin/sh\n"
            + "[ \"$1\" = --install ] || exit 99\n"
            + "cat \"$4\" | { read -r word rest; cd '" + folder.path() + "'\n"
            + "echo \"$2 $3 $word\" >> installs\n"
            + "while [ -e hold ]; do sleep 0.05; done\n"
            + "if [ \"$word\" = status ]; then echo \"${rest#* }\"; exit ${rest%% *}; fi\n"
            + "[ \"$word\" = installs ] || { echo 'The archive is damaged'; exit 5; }\n"
            + "rm -rf new.$$; cp -R template new.$$\n"
            + "printf '%s' \"$rest\" | tr ',' '\\n' > new.$$/does\n"
            + "rm -rf \"Quorvane-Sample/Quorvane-$2-$3-complete\"\n"
            + "mv new.$$ \"Quorvane-Sample/Quorvane-$2-$3-complete\"\n"
            + "echo \"Installed $2 $3\"; }\n");
    installer().setExecutable(true);
  }

  /** The image that is shown while the updater starts. */
  File splash() {
    return new File(ownFolder, "nativesplash.png");
  }

  File installer() {
    return folder.file("installer");
  }

  private static void copyGuest(Path to) throws IOException {
    Path from = Paths.get(System.getProperty("test.guest"));
    try (Stream<Path> all = Files.walk(from)) {
      for (Path one : (Iterable<Path>) all::iterator) {
        Path copy = to.resolve("classes").resolve(from.relativize(one).toString());
        if (Files.isDirectory(one)) {
          Files.createDirectories(copy);
        } else {
          Files.copy(one, copy);
        }
      }
    }
  }

  private static void writeLaunchFile(File in, String main, String classPath) throws IOException {
    write(
        new File(in, "QuorvaneLaunch"),
        String.join("\0", "6", main, "", NAME, "", "0", "0", "0", "1", classPath, "0", "", "", "",
            "0", "0", ""));
  }

  static void write(File file, String text) throws IOException {
    Files.write(file.toPath(), text.getBytes(StandardCharsets.UTF_8));
  }

  /** Makes a version of the runtime that runs what the scene starts from now on. */
  void runWithRuntime(long version) throws IOException, InterruptedException {
    File to = runtime(version);
    Process link =
        new ProcessBuilder(
                System.getProperty("java.home") + "/bin/jlink",
                "--add-modules",
                "java.base",
                "--output",
                to.getPath())
            .inheritIO()
            .start();
    if (link.waitFor() != 0) {
      throw new IOException("The runtime cannot be made.");
    }
    program = to + "/bin/java";
  }

  /** Makes a version of the runtime that is only looked at. */
  void installRuntime(long version) throws IOException {
    for (String file : new String[] {"bin/java", "lib/server/libjvm.so"}) {
      Path path = runtime(version).toPath().resolve(file);
      Files.createDirectories(path.getParent());
      write(path.toFile(), "stands in for one");
    }
  }

  File runtime(long version) {
    return new File(master, "Quorvane-Mac64JRE-" + version + "-complete");
  }

  File versionFolder(long version) {
    return new File(master, "Quorvane-" + NAME + "-" + version + "-complete");
  }

  /** Installs a version of the application with this behaviour. */
  void install(long version, String steps) throws IOException {
    File to = versionFolder(version);
    copyGuest(Files.createDirectories(to.toPath()));
    writeLaunchFile(to, "guest.App", "classes");
    write(new File(to, "does"), steps.replace(',', '\n'));
  }

  static String archiveName(long version) {
    return "Quorvane-" + NAME + "-" + version + "-archive.p2.l2";
  }

  /** Puts a version on the site. */
  void publish(long version, String archive) {
    site.put(archiveName(version), TestSite.text(archive, "ETag", "\"" + version + "\""));
    publishVersion(version + "\n");
  }

  void publishVersion(String text) {
    site.put("Quorvane-" + NAME + "-version.txt", TestSite.text(text));
  }

  /** What a run of the updater gave. */
  static final class Run {
    final int status;
    final String out;
    final String err;

    Run(int status, String out, String err) {
      this.status = status;
      this.out = out;
      this.err = err;
    }
  }

  final class Started {
    final Process process;
    private final File out;
    private final File err;

    Started(Process process, File out, File err) {
      this.process = process;
      this.out = out;
      this.err = err;
    }

    Run end() throws IOException, InterruptedException {
      if (!process.waitFor(90, TimeUnit.SECONDS)) {
        throw new IllegalStateException("The updater does not end.");
      }
      return new Run(process.exitValue(), textOf(out), textOf(err));
    }

    String out() throws IOException {
      return textOf(out);
    }
  }

  static String textOf(File file) throws IOException {
    return file.exists() ? new String(Files.readAllBytes(file.toPath()), StandardCharsets.UTF_8) : "";
  }

  private File properties() throws IOException {
    write(new File(ownFolder, "updates.properties"), settings);
    File file = File.createTempFile("QVLaunchProperties-", "", ownFolder);
    List<String> fields =
        new ArrayList<>(
            Arrays.asList(
                "qvstat_app_dir", ownFolder.getPath(),
                "qvstat_app_name", NAME,
                "qvstat_jre_name", "Mac64JRE",
                "qvstat_update_url", site.address(),
                "qvstat_launched_from_dynprops", installer().getPath()));
    fields.addAll(
        Arrays.asList("qvstat_jvm_options_count", Integer.toString(remembered.size())));
    for (int i = 0; i < remembered.size(); i++) {
      fields.addAll(Arrays.asList("qvstat_jvm_options_" + i, remembered.get(i)));
    }
    if (isSilent) {
      fields.addAll(Arrays.asList("qvstat_show_no_ui", "true"));
    }
    write(file, String.join("\0", fields));
    return file;
  }

  private Started start(String prefix, String main, String... arguments) throws IOException {
    List<String> command = new ArrayList<>();
    if (!prefix.isEmpty()) {
      command.addAll(Arrays.asList("sh", "-c", prefix + " exec \"$@\"", "sh"));
    }
    command.add(program);
    command.addAll(options);
    command.addAll(
        Arrays.asList(
            "-Djava.awt.headless=" + !environment.containsKey("DISPLAY"),
            "-cp",
            ownFolder + "/updater.jar",
            "org.example.updater." + main,
            properties().getPath()));
    command.addAll(Arrays.asList(arguments));
    File out = File.createTempFile("out", "", folder.path().toFile());
    File err = File.createTempFile("err", "", folder.path().toFile());
    ProcessBuilder builder = new ProcessBuilder(command).redirectOutput(out).redirectError(err);
    environment.forEach(
        (name, value) -> {
          if (value == null) {
            builder.environment().remove(name);
          } else {
            builder.environment().put(name, value);
          }
        });
    Process process = builder.start();
    started.add(process);
    return new Started(process, out, err);
  }

  /** Starts the application, as an installer does. */
  Started startApplication() throws IOException {
    return start("", "GenericUpdater");
  }

  Run runApplication() throws IOException, InterruptedException {
    return startApplication().end();
  }

  Started startLook() throws IOException {
    return start("", "UpdateRun", UpdateRun.BACKGROUND);
  }

  /** Looks for updates now, whenever it was done last. */
  Run look() throws IOException, InterruptedException {
    forgetLastLook();
    return startLook().end();
  }

  /** The same with a limit on the size of files, in blocks of 512 bytes. */
  Run lookWithFilesUpTo(int blocks) throws IOException, InterruptedException {
    forgetLastLook();
    return start("trap '' XFSZ; ulimit -f " + blocks + ";", "UpdateRun", UpdateRun.BACKGROUND).end();
  }

  private void forgetLastLook() throws IOException {
    UpdateState state = new UpdateState(updates);
    state.setNextCheck(0);
    state.save();
  }

  /** All that the updaters have logged, in the order of the files' names. */
  String log() throws IOException {
    ByteArrayOutputStream all = new ByteArrayOutputStream();
    File[] files = new File(master, "logs").listFiles();
    if (files != null) {
      Arrays.sort(files);
      for (File file : files) {
        all.write(Files.readAllBytes(file.toPath()));
      }
    }
    return new String(all.toByteArray(), StandardCharsets.UTF_8);
  }

  List<Long> installed() {
    return VersionFolders.newestFirst(master, NAME).stream()
        .map(VersionFolders::numberOf)
        .collect(Collectors.toList());
  }

  /** The stand-in's calls. */
  List<String> installs() throws IOException {
    return folder.file("installs").exists()
        ? Files.readAllLines(folder.file("installs").toPath())
        : new ArrayList<>();
  }

  /** While it is held, the stand-in does not get on. */
  void holdInstaller(boolean isHeld) throws IOException {
    if (isHeld) {
      write(folder.file("hold"), "");
    } else {
      Files.deleteIfExists(folder.file("hold").toPath());
    }
  }

  interface Condition {
    boolean holds() throws IOException;
  }

  static void await(String what, Condition condition) throws IOException, InterruptedException {
    long end = System.nanoTime() + 60_000_000_000L;
    while (!condition.holds()) {
      if (System.nanoTime() > end) {
        throw new AssertionError("This never came: " + what);
      }
      Thread.sleep(20);
    }
  }

  /** Waits until no updater looks any more. */
  void awaitEndOfLook() throws IOException, InterruptedException {
    await("the end of a look", () -> isUnlocked(updates.lock()));
  }

  private static boolean isUnlocked(File file) throws IOException {
    if (!file.exists()) {
      return true;
    }
    try (java.nio.channels.FileChannel channel =
            java.nio.channels.FileChannel.open(
                file.toPath(), java.nio.file.StandardOpenOption.WRITE);
        java.nio.channels.FileLock lock = channel.tryLock()) {
      return lock != null;
    }
  }

  @Override
  public void close() throws IOException {
    holdInstaller(false);
    site.close();
    try {
      awaitEndOfLook();
    } catch (InterruptedException e) {
      Thread.currentThread().interrupt();
    }
    started.forEach(Process::destroyForcibly);
  }
}
