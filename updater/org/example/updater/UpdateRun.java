package org.example.updater;

import java.io.File;
import java.io.FileDescriptor;
import java.io.FileOutputStream;
import java.io.IOException;
import java.io.PrintStream;
import java.io.UnsupportedEncodingException;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.StandardOpenOption;
import java.util.Arrays;
import java.util.HashSet;
import java.util.List;
import java.util.Random;
import java.util.Set;

/**
 * The main class of the process that looks for updates and installs them. It is one of its own, so
 * that an application that ends does not end it, and nothing of it is in the application's way.
 *
 * <p>Arguments: the launch properties file and one of the words below. Standard output tells the
 * process that waits for it how it gets on, see {@link PipedProgress}.
 */
public final class UpdateRun {
  /** Nobody waits: all components, when the time has come. */
  static final String BACKGROUND = "background";
  /** The application's start waits: all components, with little patience. */
  static final String BEFORE_START = "before_start";
  /** No application is installed yet: that alone. */
  static final String FIRST = "first";

  static final String UPDATER = "Quorvane";
  private static final long LONGEST_WAIT_MILLIS = 30 * 60_000;
  private static final Set<OpenOption> LOCK_FILE =
      new HashSet<>(
          Arrays.asList(
              StandardOpenOption.CREATE, StandardOpenOption.WRITE, LinkOption.NOFOLLOW_LINKS));

  private final LaunchProperties properties;
  private final File ownFolder;
  private final Settings settings;
  private final UpdateFolder folder;
  private final String mode;
  private final PipedProgress progress;
  private final Random random = new Random();

  public static void main(String[] arguments)
      throws InterruptedException, UnsupportedEncodingException {
    PipedProgress progress =
        new PipedProgress(
            new PrintStream(new FileOutputStream(FileDescriptor.out), true, "UTF-8"));
    try {
      if (arguments.length != 2) {
        throw new Problem("This takes the launch properties file and a word.");
      }
      new UpdateRun(arguments, progress).run();
      progress.end("");
    } catch (Problem e) {
      progress.end(e.getMessage());
      System.exit(1);
    }
  }

  private UpdateRun(String[] arguments, PipedProgress progress) throws Problem {
    properties = LaunchProperties.read(new File(arguments[0]));
    ownFolder = new File(properties.required("app_dir")).getAbsoluteFile();
    settings = new Settings(ownFolder);
    folder = new UpdateFolder(ownFolder.getParentFile());
    mode = arguments[1];
    this.progress = progress;
  }

  private void run() throws Problem, InterruptedException {
    if (!folder.make(folder.root)) {
      throw new Problem("The folder " + folder.root + " cannot be made.");
    }
    try (FileChannel channel = FileChannel.open(folder.lock().toPath(), LOCK_FILE)) {
      folder.openToAll(folder.lock(), false);
      FileLock lock = waitFor(channel);
      if (lock != null && isDue()) {
        InUse.hold(folder, ownFolder);
        RunningRuntime.hold(folder);
        update();
      }
    } catch (IOException e) {
      throw new Problem("The lock " + folder.lock() + " cannot be taken: " + e.getMessage());
    }
  }

  /** Another process that looks for updates does it for all; only the first installation waits. */
  private FileLock waitFor(FileChannel channel) throws IOException, InterruptedException {
    long end = System.nanoTime() + LONGEST_WAIT_MILLIS * 1_000_000L;
    FileLock lock = channel.tryLock();
    while (lock == null && mode.equals(FIRST) && System.nanoTime() < end) {
      progress.say("Waiting for another installation of the same application…");
      Thread.sleep(200);
      lock = channel.tryLock();
    }
    return lock;
  }

  private boolean isDue() throws Problem {
    if (mode.equals(FIRST)) {
      return VersionFolders.newest(folder.master, properties.required("app_name")) == null;
    }
    long now = System.currentTimeMillis();
    return new UpdateState(folder).nextCheck(now) <= now || mode.equals(BEFORE_START);
  }

  private void update() throws Problem, InterruptedException {
    UpdateState state = new UpdateState(folder);
    try (UpdateLog log = new UpdateLog(folder.master)) {
      long pause = settings.intervalMillis();
      try {
        pause = Math.max(look(state, log), pause);
      } catch (Problem e) {
        log.say(e.getMessage());
        throw e;
      } catch (RuntimeException | Error e) {
        log.say("The update failed: " + e);
        throw e;
      } finally {
        setNext(state, pause, log);
      }
    }
  }

  /** Installations that started together do not look together for ever. */
  private void setNext(UpdateState state, long pause, UpdateLog log) {
    long shifted = (long) (pause * (0.9 + 0.2 * random.nextDouble()));
    if (!mode.equals(FIRST)) {
      state.setNextCheck(System.currentTimeMillis() + Math.max(shifted, 1));
    }
    try {
      state.save();
    } catch (IOException e) {
      log.say("The state cannot be saved: " + e);
    }
  }

  /** Returns how long the site asked to be left alone. */
  private long look(UpdateState state, UpdateLog log) throws Problem, InterruptedException {
    String name = properties.required("app_name");
    UpdateSource source = UpdateSource.of(properties, settings);
    log.say("Looking for updates of " + name + " at " + source.url + " (" + mode + ").");
    Updates updates =
        new Updates(folder, settings, state, source, progress, log, attempts(), random);
    if (mode.equals(FIRST)) {
      updates.update(name);
      return 0;
    }
    // What the application may need comes before it.
    List<String> components = Arrays.asList(properties.required("jre_name"), UPDATER, name);
    long pause = 0;
    for (String component : components) {
      try {
        updates.update(component);
      } catch (Later e) {
        log.say(e.getMessage() + " No update now.");
        pause = e.millis;
        break;
      } catch (Problem e) {
        log.say("No update of " + component + ". " + e.getMessage());
      }
    }
    OldVersions old = new OldVersions(folder, settings.keep(), log);
    components.forEach(old::remove);
    return pause;
  }

  /** How often a request may fail in a row. */
  private int attempts() {
    return mode.equals(BEFORE_START) ? 2 : 5;
  }
}
