package org.example.updater;

import java.io.File;
import java.io.IOException;
import java.util.Random;

/** Brings a component to the version on the site: looks, downloads, and has it installed. */
final class Updates {
  private static final long SHORTEST_REFUSAL_MILLIS = 60_000;
  private static final long LONGEST_REFUSAL_MILLIS = 30L * 24 * 60 * 60 * 1000;

  private final UpdateFolder folder;
  private final Settings settings;
  private final UpdateState state;
  private final UpdateSource source;
  private final PipedProgress progress;
  private final UpdateLog log;
  private final int attempts;
  private final Random random;
  private final Site site;
  private final Web web;

  Updates(
      UpdateFolder folder,
      Settings settings,
      UpdateState state,
      UpdateSource source,
      PipedProgress progress,
      UpdateLog log,
      int attempts,
      Random random)
      throws Problem {
    this.folder = folder;
    this.settings = settings;
    this.state = state;
    this.source = source;
    this.progress = progress;
    this.log = log;
    this.attempts = attempts;
    this.random = random;
    site = new Site(source.url);
    web = new Web(Http.ofRuntime(), settings.answerMillis());
  }

  private Retries retries() {
    return new Retries(attempts, settings, random, log::say);
  }

  void update(String component) throws Problem, InterruptedException {
    long wanted = new SiteCheck(site, web, state, settings).version(component, retries());
    long installed = VersionFolders.newestVersion(folder.master, component);
    removeOtherDownloads(component, wanted);
    if (wanted == Version.NONE) {
      log.say("The site has no version of " + component + ".");
      if (installed == Version.NONE) {
        throw new Problem("The site " + source.url + " has no version of " + component + ".");
      }
    } else if (wanted <= installed) {
      log.say(component + " is up to date: version " + installed + ", on the site " + wanted + ".");
    } else if (new Markers(folder, component).isSkipped(wanted)) {
      log.say("Version " + wanted + " of " + component + " did not start; it is not taken again.");
    } else {
      requireNotRefused(component, wanted);
      boolean isOnTrial = installed != Version.NONE && !component.equals(UpdateRun.UPDATER);
      bring(component, wanted, isOnTrial);
    }
  }

  private void bring(String component, long version, boolean isOnTrial)
      throws Problem, InterruptedException {
    Notice notice = new Notice(folder, component);
    notice.say(version, "downloading");
    boolean isReady = false;
    try {
      File archive =
          new Download(
                  folder, web, settings, progress, site.archive(component, version), component, version)
              .fetch(retries());
      log.say("Downloaded version " + version + " of " + component + ", " + archive.length() + " bytes.");
      progress.installing(component, version);
      if (isOnTrial) {
        putOnTrial(component, version);
      }
      install(component, version, archive);
      isReady = true;
    } finally {
      notice.say(version, isReady ? "ready" : "failed");
    }
  }

  /** Before it is there: no start can meet it without. */
  private void putOnTrial(String component, long version) throws Problem {
    try {
      new Markers(folder, component).putOnTrial(version);
    } catch (IOException e) {
      throw new Problem("The updates folder cannot be written to: " + e);
    }
  }

  private void install(String component, long version, File archive)
      throws Problem, InterruptedException {
    NativeInstall result = new NativeInstall(source.executable, component, version, archive);
    String what = "version " + version + " of " + component;
    if (result.status == NativeInstall.INSTALLED || result.status == NativeInstall.NOT_NEWER) {
      archive.delete();
      if (VersionFolders.newestVersion(folder.master, component) < version) {
        refuse(component, version);
        throw new Problem("The installer did not install " + what + ": " + result.line);
      }
      state.remove(component, "refused");
      log.say("Installed " + what + ": " + result.line);
      return;
    }
    boolean isBad =
        result.status == NativeInstall.NOT_SIGNED || result.status == NativeInstall.DAMAGED;
    if (isBad) {
      archive.delete();
    }
    if (result.status != NativeInstall.BUSY) {
      refuse(component, version);
    }
    throw new Problem(
        "The installer refused " + what + " with status " + result.status + ": " + result.line);
  }

  /** What was refused is not downloaded at every check: the pause doubles each time. */
  private void refuse(String component, long version) {
    long times = isRefused(component, version) ? state.getNumber(component, "refused_times") + 1 : 1;
    long pause =
        Math.max(SHORTEST_REFUSAL_MILLIS, settings.intervalMillis()) << Math.min(times, 20);
    state.set(component, "refused", Long.toString(version));
    state.set(component, "refused_times", Long.toString(times));
    state.set(
        component,
        "refused_until",
        Long.toString(System.currentTimeMillis() + Math.min(pause, LONGEST_REFUSAL_MILLIS)));
  }

  private boolean isRefused(String component, long version) {
    return state.get(component, "refused").equals(Long.toString(version));
  }

  /** Somebody who waits for a first installation is not told to come back next week. */
  private void requireNotRefused(String component, long version) throws Problem {
    long left = state.getNumber(component, "refused_until") - System.currentTimeMillis();
    boolean isInstalled = VersionFolders.newest(folder.master, component) != null;
    if (isInstalled && isRefused(component, version) && left > 0
        && left <= LONGEST_REFUSAL_MILLIS) {
      throw new Problem(
          "Version " + version + " was refused before; it is tried again in " + left / 1000 + " s.");
    }
  }

  private void removeOtherDownloads(String component, long version) {
    File[] files =
        folder
            .downloads()
            .listFiles(
                (in, name) ->
                    name.startsWith(component + "-") && !name.startsWith(component + "-" + version + "."));
    for (File file : files == null ? new File[0] : files) {
      file.delete();
    }
  }
}
