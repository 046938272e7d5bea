package org.example.updater;

import static org.junit.Assert.assertEquals;
import static org.junit.Assert.assertFalse;
import static org.junit.Assert.assertTrue;

import java.io.File;
import java.nio.MappedByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.StandardOpenOption;
import org.junit.Assume;
import org.junit.Before;
import org.junit.Rule;
import org.junit.Test;

/** Which versions are removed, of a runtime above all, which has a bundle beside it. */
public class OldVersionsTest {
  private static final String NAME = "Mac64JRE";

  @Rule public final TestFolder folder = new TestFolder();

  private UpdateFolder updates;

  @Before
  public void make() throws Exception {
    updates = new UpdateFolder(folder.folder("master"));
    for (int version = 1; version <= 3; version++) {
      Files.createDirectories(runtime(version).toPath().resolve("lib/server"));
      Files.createDirectories(runtime(version).toPath().resolve("bin"));
      for (String file : new String[] {"bin/java", "lib/server/libjvm.so"}) {
        Files.write(runtime(version).toPath().resolve(file), new byte[1]);
      }
      Files.createDirectories(plugin(version).toPath().resolve("Contents"));
    }
  }

  private File runtime(int version) {
    return new File(updates.master, "Quorvane-" + NAME + "-" + version + "-complete");
  }

  private File plugin(int version) {
    return new File(runtime(version).getPath() + ".plugin");
  }

  private void remove() {
    try (UpdateLog log = new UpdateLog(updates.master)) {
      new OldVersions(updates, 2, log).remove(NAME);
    }
  }

  @Test
  public void anOldRuntimeGoesWithItsBundle() {
    remove();
    assertFalse(runtime(1).exists());
    assertFalse(plugin(1).exists());
    assertTrue(runtime(2).exists() && plugin(2).exists());
    assertTrue(runtime(3).exists() && plugin(3).exists());
  }

  @Test
  public void aRuntimeThatAProcessHasLoadedStays() throws Exception {
    Assume.assumeTrue("no /proc", new File("/proc/self/maps").exists());
    File library = new File(runtime(1), "lib/server/libjvm.so");
    Files.write(library.toPath(), new byte[4096]);
    try (FileChannel channel = FileChannel.open(library.toPath(), StandardOpenOption.READ)) {
      MappedByteBuffer mapped = channel.map(FileChannel.MapMode.READ_ONLY, 0, 4096);
      remove();
      assertTrue(runtime(1).exists() && plugin(1).exists());
      assertEquals(0, mapped.get(0));
    }
  }

  @Test
  public void aRuntimeThatThisProcessHoldsStays() {
    assertTrue(InUse.hold(updates, runtime(1)));
    remove();
    assertTrue(runtime(1).exists());
  }

  @Test
  public void whatAnInterruptedRemovalLeftGoes() throws Exception {
    File left = new File(updates.removed(), "old-1/Quorvane-" + NAME + "-0-complete");
    Files.createDirectories(left.toPath());
    Files.write(new File(left, "file").toPath(), new byte[1]);
    remove();
    assertEquals(0, updates.removed().list().length);
  }

  @Test
  public void aVersionThatDoesNotStartCountsForNothing() throws Exception {
    updates.replace(new File(updates.root, "skipped-" + NAME + "-3"), "");
    remove();
    assertTrue(runtime(1).exists() && runtime(2).exists() && runtime(3).exists());
  }

  @Test
  public void aRuntimeThatLostItsLibraryCountsForNothing() throws Exception {
    Files.write(runtime(3).toPath().resolve("lib/server/libjvm.so"), new byte[0]);
    remove();
    assertTrue(runtime(1).exists() && runtime(2).exists() && runtime(3).exists());
  }

  @Test
  public void aRuntimeThatKeepsItsLibraryElsewhereCounts() throws Exception {
    for (int version = 1; version <= 3; version++) {
      Files.delete(runtime(version).toPath().resolve("lib/server/libjvm.so"));
      Files.delete(runtime(version).toPath().resolve("lib/server"));
    }
    remove();
    assertFalse(runtime(1).exists());
    assertTrue(runtime(2).exists() && runtime(3).exists());
  }
}
