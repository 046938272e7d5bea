package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertTrue;

import java.io.File;
import java.net.URL;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Collections;
import java.util.List;
import org.junit.After;
import org.junit.Before;
import org.junit.Rule;
import org.junit.Test;

/** The updater's real processes, with a stand-in for the installer's executable. */
public class UpdatesTest {
  @Rule public final TestFolder folder = new TestFolder();

  private Scene scene;

  @Before
  public void open() throws Exception {
    scene = new Scene(folder);
  }

  @After
  public void close() throws Exception {
    scene.close();
  }

  private void expectLogged(String words) throws Exception {
    assertTrue(words + " is not in " + scene.log(), scene.log().contains(words));
  }

  private void expectStart(long version) throws Exception {
    Scene.Run run = scene.runApplication();
    assertEquals(run.err, 0, run.status);
    assertTrue(run.out, run.out.contains("App version " + version));
  }

  private void look() throws Exception {
    scene.look();
  }

  @Test
  public void theFirstStartFetchesTheApplicationAndStartsIt() throws Exception {
    scene.publish(3, "installs exit 7");
    Scene.Run run = scene.runApplication();
    assertEquals(run.err, 7, run.status);
    assertTrue(run.out, run.out.matches("(?s).*Installing version 3 of Sample.*App version 3\n"));
    expectLogged("Installed version 3 of Sample: Installed Sample 3");
    assertEquals(Collections.emptyList(), Arrays.asList(scene.updates.downloads().list()));
  }

  @Test
  public void aSilentFirstStartPrintsNothing() throws Exception {
    scene.isSilent = true;
    scene.environment.put("JAVA_TOOL_OPTIONS", null); // the runtime says that it has found them
    scene.publish(3, "installs");
    Scene.Run run = scene.runApplication();
    assertEquals("App version 3\n", run.out);
    assertEquals("", run.err);
  }

  @Test
  public void aFirstStartWithoutASiteSaysWhy() throws Exception {
    scene.site.close();
    Scene.Run run = scene.runApplication();
    assertEquals(1, run.status);
    assertTrue(run.err, run.err.contains("No version of Sample is installed in " + scene.master));
    assertTrue(run.err, run.err.contains("cannot be asked"));
    expectLogged("cannot be asked");
  }

  @Test
  public void twoFirstStartsFetchOnce() throws Exception {
    scene.publish(3, "installs");
    scene.holdInstaller(true);
    Scene.Started one = scene.startApplication();
    Scene.await("the installation", () -> !scene.installs().isEmpty());
    Scene.Started other = scene.startApplication();
    Scene.await("the wait", () -> other.process.isAlive() && scene.site.count("archive") == 1);
    Thread.sleep(500);
    scene.holdInstaller(false);
    assertTrue(one.end().out.contains("App version 3"));
    assertTrue(other.end().out.contains("App version 3"));
    assertEquals(1, scene.installs().size());
  }

  @Test
  public void anUpdateComesWhileTheApplicationRunsAndIsUsedNextTime() throws Exception {
    scene.install(1, "await ready");
    scene.publish(2, "installs");
    Scene.Run first = scene.runApplication();
    assertTrue(first.out, first.out.contains("App sees version=2 state=ready"));
    scene.awaitEndOfLook();
    expectStart(2);
  }

  @Test
  public void anApplicationThatEndsAtOnceIsUpdatedAllTheSame() throws Exception {
    scene.install(1, "exit 0");
    scene.publish(2, "installs");
    expectStart(1);
    Scene.await("the update", () -> scene.installed().contains(2L));
  }

  @Test
  public void aLongRunLooksAgainWhenItIsTime() throws Exception {
    scene.install(1, "await ready");
    Scene.Started run = scene.startApplication();
    Scene.await("two looks", () -> scene.site.count("Quorvane-Sample-version") >= 2);
    scene.publish(2, "installs");
    assertTrue(run.end().out.contains("App sees version=2"));
  }

  @Test
  public void noLookIsMadeBeforeItIsTime() throws Exception {
    scene.settings += "interval=3600\n";
    scene.install(1, "exit 0");
    expectStart(1);
    Scene.await("a look", () -> scene.site.count("version") == 3);
    scene.awaitEndOfLook();
    expectStart(1);
    expectStart(1);
    Thread.sleep(1000);
    assertEquals(3, scene.site.count("version"));
  }

  @Test
  public void neverMeansThatTheSiteIsNotAsked() throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, "sleep 2500");
    scene.publish(2, "installs");
    expectStart(1);
    Thread.sleep(500);
    assertEquals(0, scene.site.requests.size());
  }

  @Test
  public void beforeStartMeansThatTheStartUsesTheUpdate() throws Exception {
    scene.settings += "check=before_start\n";
    scene.install(1, "");
    scene.publish(2, "installs");
    expectStart(2);
  }

  @Test
  public void beforeStartWithoutASiteStartsWhatIsInstalled() throws Exception {
    scene.settings += "check=before_start\n";
    scene.install(1, "");
    scene.site.close();
    expectStart(1);
  }

  private void expectNotTaken(String line) throws Exception {
    scene.install(5, "");
    look();
    assertEquals(Arrays.asList(5L), scene.installed());
    expectLogged(line);
    expectStart(5);
  }

  @Test
  public void anOlderVersionIsNotTaken() throws Exception {
    scene.publish(4, "installs");
    expectNotTaken("Sample is up to date: version 5, on the site 4.");
    assertEquals(0, scene.site.count("archive"));
  }

  @Test
  public void theSameVersionIsNotTaken() throws Exception {
    scene.publish(5, "installs");
    expectNotTaken("Sample is up to date: version 5, on the site 5.");
  }

  @Test
  public void whatTheInstallerRefusesIsNotTaken() throws Exception {
    scene.publish(6, "status 4 The signature is wrong");
    expectNotTaken("refused version 6 of Sample with status 4: The signature is wrong");
    assertFalse(new File(scene.updates.downloads(), "Sample-6.archive").exists());
  }

  @Test
  public void whatIsDamagedIsNotTakenNorAskedForAtOnceAgain() throws Exception {
    scene.settings += "interval=3600\n";
    scene.publish(6, "rubbish");
    expectNotTaken("refused version 6 of Sample with status 5: The archive is damaged");
    look();
    assertEquals(1, scene.site.count("archive"));
    expectLogged("was refused before");
    scene.publish(7, "installs");
    look();
    assertTrue(scene.installed().contains(7L));
  }

  @Test
  public void aPageInPlaceOfTheArchiveIsNotTaken() throws Exception {
    scene.publish(6, "");
    scene.site.put(
        Scene.archiveName(6), TestSite.text("<html>", "Content-Type", "text/html"));
    expectNotTaken("The site sent a text in place of an archive");
    assertEquals(0, scene.installs().size());
  }

  @Test
  public void aHostileVersionTextIsNotTaken() throws Exception {
    scene.publishVersion("../../6\0\u001b[2J");
    expectNotTaken("The version text holds no version");
  }

  @Test
  public void anArchiveThatIsCutShortIsNotTaken() throws Exception {
    scene.publish(6, "installs");
    scene.site.put(
        Scene.archiveName(6),
        exchange -> {
          exchange.sendResponseHeaders(200, 1000);
          exchange.getResponseBody().write(new byte[10]);
        });
    expectNotTaken("broke off");
  }

  @Test
  public void anArchiveThatIsTooLargeIsNotTaken() throws Exception {
    scene.settings += "largest_mb=1\n";
    scene.publish(6, "installs");
    scene.site.put(Scene.archiveName(6), TestSite.bytes(new byte[2_000_000]));
    expectNotTaken("The archive is too large");
  }

  @Test
  public void anArchiveThatDripsIsNotTaken() throws Exception {
    scene.settings += "slow_ms=200\n";
    scene.publish(6, "installs");
    scene.site.put(
        Scene.archiveName(6),
        exchange -> {
          exchange.sendResponseHeaders(200, 100_000);
          for (int i = 0; i < 1000; i++) {
            exchange.getResponseBody().write(1);
            exchange.getResponseBody().flush();
            Thread.sleep(20);
          }
        });
    expectNotTaken("Less than 1024 bytes came in 200 ms.");
  }

  @Test
  public void withoutASiteTheInstalledVersionStarts() throws Exception {
    scene.site.close();
    expectNotTaken("cannot be asked");
  }

  @Test
  public void aSiteThatIsBusyIsLeftAloneAsLongAsItAsks() throws Exception {
    scene.site.put(
        "Quorvane-Mac64JRE-version.txt", TestSite.status(503, "Retry-After", "3600"));
    expectNotTaken("It asks for a pause of 3600 s.");
    assertEquals(1, scene.site.requests.size());
    long now = System.currentTimeMillis();
    long left = new UpdateState(scene.updates).nextCheck(now) - now;
    assertTrue("left: " + left, left > 3_000_000);
  }

  @Test
  public void whatCannotBeWrittenIsNotTaken() throws Exception {
    scene.publish(6, "installs");
    scene.site.put(Scene.archiveName(6), TestSite.bytes(new byte[1_000_000]));
    scene.install(5, "");
    scene.lookWithFilesUpTo(100);
    assertEquals(Arrays.asList(5L), scene.installed());
    expectLogged("cannot be written to");
    expectStart(5);
  }

  @Test
  public void withoutTheInstallerNothingIsAskedFor() throws Exception {
    scene.publish(6, "installs");
    assertTrue(scene.installer().delete());
    expectNotTaken("is no longer there: nothing can be verified or installed.");
    assertEquals(0, scene.site.requests.size());
  }

  @Test
  public void anInstallerThatOnlyLaunchesIsStoppedAndNothingIsTaken() throws Exception {
    scene.publish(6, "installs");
    scene.install(5, "");
    Scene.write(
        scene.installer(),
        "#!/bin/sh\n[ -n \"$QUORVANE_UPDATER_INSTALLS\" ] || exit 98\n"
            + "exec '" + System.getProperty("java.home") + "/bin/java' -cp '"
            + System.getProperty("test.jar") + "' org.example.updater.GenericUpdater x \"$0\" \"$@\"\n");
    look();
    assertEquals(Arrays.asList(5L), scene.installed());
    expectLogged("The installer refused version 6 of Sample with status 2");
  }

  @Test
  public void anInstallerThatIsBusyGetsTheSameArchiveNextTime() throws Exception {
    scene.install(5, "");
    scene.publish(6, "status 6 Another installer is at work");
    look();
    expectLogged("with status 6: Another installer is at work");
    look();
    assertEquals(1, scene.site.count("archive"));
    assertEquals(2, scene.installs().size());
  }

  @Test
  public void nothingThatUpdatesIsLoadedBeforeTheApplicationNorAnyLambda() throws Exception {
    File record = folder.file("classes");
    scene.options.add("-Xlog:class+load:file=" + record.getPath().replace(":", "\\:"));
    scene.install(1, "");
    expectStart(1);
    List<String> before = new ArrayList<>();
    for (String line : Files.readAllLines(record.toPath())) {
      if (line.contains("guest.App")) {
        break;
      }
      before.add(line);
    }
    assertTrue(before.stream().anyMatch(line -> line.contains("GenericUpdater")));
    String[] late = {
      "UpdateProcess", "UpdateRun", "Updates ", "UpdateState", "Site", "Download", "Http", "Notice",
      "Trial", "OldVersions", "SplashWindow", "Lambda$"
    };
    for (String name : late) {
      List<String> found = new ArrayList<>(before);
      found.removeIf(line -> !line.contains("org.example.updater." + name)
          && !(name.equals("Lambda$") && line.contains("org.example.updater") && line.contains(name)));
      assertEquals(Collections.emptyList(), found);
    }
  }

  @Test
  public void aRuntimeOfTheBaseModuleAloneBringsUpdatesToo() throws Exception {
    scene.options.addAll(Arrays.asList("--limit-modules", "java.base"));
    scene.install(5, "");
    scene.publish(6, "installs");
    look();
    assertTrue(scene.log(), scene.installed().contains(6L));
  }

  @Test
  public void aProxyAmongTheRememberedOptionsIsUsed() throws Exception {
    URL proxy = new URL(scene.site.address());
    scene.remembered.add("-Dhttp.proxyHost=" + proxy.getHost());
    scene.remembered.add("-Dhttp.proxyPort=" + proxy.getPort());
    scene.settings += "url=http://updates.invalid/\n";
    scene.publish(3, "installs");
    expectStart(3);
    assertEquals("updates.invalid", scene.site.last().header("Host"));
  }

  @Test
  public void theRuntimeAndTheUpdaterAreUpdatedToo() throws Exception {
    scene.install(1, "");
    for (String name : new String[] {"Quorvane", "Mac64JRE"}) {
      scene.site.put("Quorvane-" + name + "-version.txt", TestSite.text("17\n"));
      scene.site.put("Quorvane-" + name + "-17-archive.p2.l2", TestSite.text("installs"));
    }
    look();
    assertEquals(Arrays.asList("Mac64JRE 17 installs", "Quorvane 17 installs"), scene.installs());
    assertEquals(17, VersionFolders.newestVersion(scene.master, "Quorvane"));
  }

  private void damage(long version) throws Exception {
    Scene.write(new File(scene.versionFolder(version), "QuorvaneLaunch"), "6\0guest.A");
  }

  @Test
  public void aDamagedVersionGivesWayToTheOneBefore() throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, "");
    scene.install(2, "");
    damage(2);
    Scene.Run run = scene.runApplication();
    assertTrue(run.err, run.out.contains("App version 1"));
    assertTrue(run.err, run.err.contains("Version 2 of Sample is damaged; version 1 is used."));
  }

  @Test
  public void aDamagedVersionIsBroughtAgain() throws Exception {
    scene.install(1, "");
    scene.install(2, "");
    damage(2);
    scene.publish(2, "installs");
    look();
    expectLogged("Installed version 2 of Sample");
    expectStart(2);
  }

  @Test
  public void theOnlyVersionIsFetchedWhereItIsDamaged() throws Exception {
    scene.install(3, "");
    damage(3);
    scene.publish(3, "installs");
    expectStart(3);
    assertEquals(Arrays.asList("Sample 3 installs"), scene.installs());
  }

  @Test
  public void aDamagedVersionWithoutASiteSaysWhatIsWrong() throws Exception {
    scene.install(3, "");
    damage(3);
    scene.site.close();
    Scene.Run run = scene.runApplication();
    assertEquals(1, run.status);
    assertTrue(run.err, run.err.contains("No version of Sample that can start is installed in "));
  }

  @Test
  public void aDamagedRuntimeAndADamagedUpdaterAreBroughtAgain() throws Exception {
    scene.install(1, "");
    scene.installRuntime(17);
    Scene.write(new File(scene.runtime(17), "lib/server/libjvm.so"), "");
    folder.folder("Quorvane-Sample/Quorvane-Quorvane-17-complete");
    for (String name : new String[] {"Quorvane", "Mac64JRE"}) {
      scene.site.put("Quorvane-" + name + "-version.txt", TestSite.text("17\n"));
      scene.site.put("Quorvane-" + name + "-17-archive.p2.l2", TestSite.text("installs"));
    }
    look();
    assertEquals(Arrays.asList("Mac64JRE 17 installs", "Quorvane 17 installs"), scene.installs());
  }

  @Test
  public void whatIsWholeIsNotBroughtAgain() throws Exception {
    scene.install(1, "");
    scene.installRuntime(17);
    for (String name : new String[] {"Quorvane", "Mac64JRE"}) {
      String version = name.equals("Quorvane") ? "1" : "17";
      scene.site.put("Quorvane-" + name + "-version.txt", TestSite.text(version));
    }
    scene.publish(1, "installs");
    look();
    assertEquals(Collections.emptyList(), scene.installs());
  }

  @Test
  public void aDamagedVersionCountsForNothingAndStays() throws Exception {
    for (int version = 1; version <= 5; version++) {
      scene.install(version, "");
    }
    damage(1);
    damage(4);
    look();
    assertEquals(Arrays.asList(5L, 4L, 3L, 1L), scene.installed());
  }

  @Test
  public void killedAtAnyStepTheNextLookFinishes() throws Exception {
    String archive = "installs" + String.join("", Collections.nCopies(400_000, " "));
    scene.install(1, "");
    for (int step = 0; step < 4; step++) {
      long version = step + 2;
      scene.publish(version, archive);
      stallAt(step, version, archive);
      UpdateState state = new UpdateState(scene.updates);
      state.setNextCheck(0);
      state.save();
      Scene.Started run = scene.startLook();
      awaitStep(step, version);
      run.process.destroyForcibly().waitFor();
      scene.holdInstaller(false);
      expectStart(version - 1 + (step == 3 ? newInstalled(version) : 0));
      scene.publish(version, archive);
      if (step == 2) {
        scene.site.put(
            Scene.archiveName(version),
            TestSite.ranges(archive.getBytes("US-ASCII"), "\"t\"", archive.length()));
      }
      scene.awaitEndOfLook();
      look();
      // The start looks as well, later perhaps: one of the two finds the other at work.
      Scene.await("version " + version, () -> scene.installed().contains(version));
      expectStart(version);
    }
    assertTrue(scene.site.requests.stream().anyMatch(r -> "bytes=100000-".equals(r.header("Range"))));
  }

  /** The stand-in outlives the updater, as the installer may. */
  private int newInstalled(long version) throws Exception {
    Scene.await("the stand-in's end", () -> scene.installed().contains(version));
    return 1;
  }

  private void stallAt(int step, long version, String archive) throws Exception {
    TestSite.Page stall = exchange -> Thread.sleep(20_000);
    if (step == 0) {
      scene.site.put("Quorvane-Sample-version.txt", stall);
    } else if (step == 1) {
      scene.site.put(Scene.archiveName(version), stall);
    } else if (step == 2) {
      scene.site.put(
          Scene.archiveName(version),
          exchange -> {
            exchange.getResponseHeaders().set("ETag", "\"t\"");
            exchange.sendResponseHeaders(200, archive.length());
            exchange.getResponseBody().write(archive.getBytes("US-ASCII"), 0, 100_000);
            exchange.getResponseBody().flush();
            Thread.sleep(20_000);
          });
    } else {
      scene.holdInstaller(true);
    }
  }

  private void awaitStep(int step, long version) throws Exception {
    if (step == 0) {
      Scene.await("the question", () -> scene.site.count("Sample-version") == 1);
    } else if (step == 1) {
      Scene.await("the request", () -> scene.site.count("Sample-" + version + "-archive") == 1);
    } else if (step == 2) {
      File part = new File(scene.updates.downloads(), "Sample-" + version + ".part");
      Scene.await("a part", () -> part.length() == 100_000);
    } else {
      Scene.await("the installer", () -> scene.installs().contains("Sample " + version + " installs"));
    }
  }

  @Test
  public void eightStartsDuringAnUpdateDownloadOnce() throws Exception {
    scene.install(1, "await ready");
    scene.publish(2, "installs");
    scene.holdInstaller(true);
    List<Scene.Started> all = new ArrayList<>();
    for (int i = 0; i < 8; i++) {
      all.add(scene.startApplication());
    }
    for (Scene.Started one : all) {
      Scene.await("the start", () -> one.out().contains("App version 1"));
    }
    Scene.await("the installer", () -> !scene.installs().isEmpty());
    Thread.sleep(1500);
    scene.holdInstaller(false);
    for (Scene.Started one : all) {
      assertTrue(one.end().out.contains("App sees version=2 state=ready"));
    }
    assertEquals(1, scene.site.count("archive"));
    assertEquals(1, scene.installs().size());
  }

  @Test
  public void aVersionThatFailsTwiceIsLeftForTheOneBeforeUntilANewerComes() throws Exception {
    scene.install(1, "");
    scene.publish(2, "installs exit 3");
    look();
    assertEquals(3, scene.runApplication().status);
    assertEquals(3, scene.runApplication().status);
    Scene.await("its log", () -> scene.log().contains("failed to start twice in a row"));
    Scene.Run back = scene.runApplication();
    assertEquals(0, back.status);
    assertTrue(back.out.contains("App version 1"));
    assertTrue(back.err.contains("Version 2 of Sample failed to start twice in a row; version 1"));
    scene.awaitEndOfLook();
    look();
    assertEquals(1, scene.installs().size());
    scene.publish(3, "installs");
    // The last start's own look may begin only now: it has seen what the site had before, and keeps
    // this one out.
    for (int i = 0; i < 20 && !scene.installed().contains(3L); ++i) {
      look();
      scene.awaitEndOfLook();
    }
    expectStart(3);
  }

  @Test
  public void theLogOfTheSecondFailureEndsWithWhatFollowsFromIt() throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, "");
    scene.publish(2, "installs throw");
    look();
    scene.runApplication();
    scene.runApplication();
    String[] lines = scene.log().split("\n");
    assertTrue(
        lines[lines.length - 1].endsWith(
            "Version 2 of Sample failed to start twice in a row; the version before it is used until"
                + " a newer one exists."));
  }

  private Markers runtimes() {
    return new Markers(scene.updates, "Mac64JRE");
  }

  /** The application runs with runtime 17, which is on trial, beside one of version 16. */
  private void tryRuntime(String steps) throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, steps);
    scene.installRuntime(16);
    scene.runWithRuntime(17);
    runtimes().putOnTrial(17);
  }

  @Test
  public void aNewRuntimeIsOnTrialWhereThereIsAnotherAndAnUpdaterIsNot() throws Exception {
    scene.install(1, "");
    scene.installRuntime(16);
    for (String name : new String[] {"Quorvane", "Mac64JRE"}) {
      scene.site.put("Quorvane-" + name + "-version.txt", TestSite.text("17\n"));
      scene.site.put("Quorvane-" + name + "-17-archive.p2.l2", TestSite.text("installs"));
    }
    look();
    assertTrue(scene.log(), runtimes().isOnTrial(17));
    assertFalse(new Markers(scene.updates, "Quorvane").isOnTrial(17));
  }

  @Test
  public void aRuntimeWithWhichTheApplicationFailsTwiceIsLeftUntilANewerComes() throws Exception {
    tryRuntime("exit 3");
    assertEquals(3, scene.runApplication().status);
    assertFalse(runtimes().isSkipped(17));
    assertEquals(3, scene.runApplication().status);
    assertTrue(scene.log(), runtimes().isSkipped(17));
    expectLogged("Version 17 of Mac64JRE failed to start twice in a row");
    assertFalse(new Markers(scene.updates, "Sample").isSkipped(1));
    for (String version : new String[] {"17", "18"}) {
      scene.site.put("Quorvane-Mac64JRE-version.txt", TestSite.text(version));
      scene.site.put(
          "Quorvane-Mac64JRE-" + version + "-archive.p2.l2", TestSite.text("status 4 not now"));
      look();
    }
    assertEquals(Arrays.asList("Mac64JRE 18 status"), scene.installs());
  }

  @Test
  public void aRuntimeWithWhichTheApplicationStartsIsKept() throws Exception {
    tryRuntime("exit 0");
    Scene.write(scene.updates.started("Sample", 1), "of an earlier start");
    assertEquals(0, scene.runApplication().status);
    assertFalse(runtimes().isOnTrial(17) || runtimes().isSkipped(17));
  }

  @Test
  public void theStartedFileOfAnEarlierStartProvesNothingForANewRuntime() throws Exception {
    tryRuntime("exit 3");
    Scene.write(scene.updates.started("Sample", 1), "of an earlier start");
    assertEquals(3, scene.runApplication().status);
    assertTrue(runtimes().isOnTrial(17));
  }

  @Test
  public void theOnlyRuntimeIsNotOnTrial() throws Exception {
    tryRuntime("exit 3");
    assertTrue(scene.runtime(16).renameTo(folder.file("away")));
    for (int i = 0; i < 3; i++) {
      assertEquals(3, scene.runApplication().status);
    }
    assertFalse(runtimes().isSkipped(17));
  }

  private void expectStaysAfterTwo(String steps) throws Exception {
    scene.settings += "check=never\ntrial_ms=700\n";
    scene.install(1, "");
    scene.publish(2, "installs " + steps);
    look();
    scene.runApplication();
    scene.runApplication();
    assertTrue(scene.runApplication().out.contains("App version 2"));
  }

  @Test
  public void aVersionThatSaidItIsUpIsKept() throws Exception {
    expectStaysAfterTwo("started,exit 3");
  }

  @Test
  public void aVersionThatLivedLongEnoughIsKept() throws Exception {
    expectStaysAfterTwo("sleep 1500,exit 3");
  }

  @Test
  public void aVersionThatTheUserEndsIsKept() throws Exception {
    expectStaysAfterTwo("halt 143");
  }

  @Test
  public void aVersionThatFailsOnceIsKept() throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, "");
    scene.publish(2, "installs exit 3");
    look();
    assertEquals(3, scene.runApplication().status);
    Scene.write(new File(scene.versionFolder(2), "does"), "exit 0");
    expectStart(2);
    Scene.write(new File(scene.versionFolder(2), "does"), "exit 3");
    for (int i = 0; i < 3; i++) {
      assertEquals(3, scene.runApplication().status);
    }
  }

  @Test
  public void aVersionThatNoUpdateBroughtIsNeverLeft() throws Exception {
    scene.settings += "check=never\n";
    scene.install(1, "");
    scene.install(2, "exit 3");
    for (int i = 0; i < 3; i++) {
      assertEquals(3, scene.runApplication().status);
    }
  }

  @Test
  public void theNewestTwoVersionsStayAndNothingElseIsTouched() throws Exception {
    for (int version = 1; version <= 4; version++) {
      scene.install(version, "");
    }
    List<String> others =
        Arrays.asList("Quorvane-Other-1-complete", "Quorvane-Sample-1", "Quorvane-Sample-01-complete",
            "Quorvane-Sample-2-complete-x", "notes", "QuorvaneKept-1");
    for (String other : others) {
      assertTrue(new File(scene.master, other).mkdir());
    }
    File outside = folder.folder("outside");
    Files.createSymbolicLink(
        new File(scene.master, "Quorvane-Sample-0-complete").toPath(), outside.toPath());
    Files.createSymbolicLink(
        new File(scene.versionFolder(1), "link").toPath(), outside.toPath());
    Scene.write(new File(outside, "precious"), "");
    look();
    assertFalse(scene.versionFolder(1).exists());
    assertFalse(scene.versionFolder(2).exists());
    assertTrue(scene.versionFolder(3).isDirectory() && scene.versionFolder(4).isDirectory());
    for (String other : others) {
      assertTrue(other, new File(scene.master, other).isDirectory());
    }
    assertTrue(new File(outside, "precious").exists());
    assertTrue(Files.isSymbolicLink(
        new File(scene.master, "Quorvane-Sample-0-complete").toPath()));
    assertEquals(0, scene.updates.removed().list().length);
    expectLogged("Removed version 1 of Sample.");
  }

  @Test
  public void aVersionInUseStays() throws Exception {
    scene.settings += "check=never\nkeep=1\n";
    scene.install(1, "sleep 60000");
    Scene.Started inProcess = scene.startApplication();
    Scene.await("the start", () -> inProcess.out().contains("App version 1"));
    scene.install(2, "");
    look();
    assertTrue(scene.versionFolder(1).exists());
    inProcess.process.destroyForcibly().waitFor();
    look();
    assertFalse(scene.versionFolder(1).exists());
  }

  @Test
  public void aVersionThatAChildRunsStaysWithoutItsParent() throws Exception {
    scene.settings += "check=never\nkeep=1\n";
    scene.install(1, "");
    scene.publish(2, "installs sleep 60000");
    look();
    Scene.Started parent = scene.startApplication();
    Scene.await("the start", () -> parent.out().contains("App version 2"));
    ProcessHandle child = parent.process.toHandle().children().findFirst().get();
    try {
      parent.process.destroyForcibly().waitFor();
      scene.install(3, "");
      scene.install(4, "");
      new Markers(scene.updates, "Sample").hasStarted(2);
      look();
      assertTrue(scene.log(), scene.versionFolder(2).exists());
    } finally {
      child.destroyForcibly();
    }
    child.onExit().get();
    look();
    assertFalse(scene.versionFolder(2).exists());
  }

  @Test
  public void aVersionToGoBackToStaysHoweverFewAreKept() throws Exception {
    scene.settings += "keep=1\n";
    scene.install(1, "");
    scene.publish(2, "installs");
    look();
    assertEquals(Arrays.asList(2L, 1L), scene.installed());
  }

  @Test
  public void onlyTheLatestTwentyLogsStay() throws Exception {
    scene.install(1, "");
    for (int i = 10; i < 40; i++) {
      File logs = new File(scene.master, "logs");
      logs.mkdir();
      Scene.write(new File(logs, "Updater-2020-01-01-00-00-" + i + "-000.log"), "");
      Scene.write(new File(logs, "Wrapper-2020-01-01-00-00-" + i + "-000.log"), "");
    }
    look();
    String[] names = new File(scene.master, "logs").list();
    assertEquals(20, Arrays.stream(names).filter(name -> name.startsWith("Updater-")).count());
    assertEquals(30, Arrays.stream(names).filter(name -> name.startsWith("Wrapper-")).count());
  }
}
