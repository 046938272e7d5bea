// What executables see of the C library: Darwin's layouts, numbers and rules.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "tests/macos/run/test/guest.h"
#include "tests/support/files.h"

using Lines = std::vector<std::string>;

class System : public test::Guest {
 protected:
  // A file of 5 bytes, a folder with a file and a folder in it, links to both, a loop.
  void makeFiles() {
    test::writeFile(folder_ / "file", "bytes", 0604);
    test::writeFile(folder_ / "folder/inner", "inner bytes");
    mkdir((folder_ / "folder/deep").c_str(), 0755);
    mkdir((folder_ / "empty").c_str(), 0755);
    ASSERT_EQ(0, symlink("file", (folder_ / "link").c_str()));
    ASSERT_EQ(0, symlink("folder", (folder_ / "folder-link").c_str()));
    ASSERT_EQ(0, symlink("loop", (folder_ / "loop").c_str()));
    const timespec times[] = {{1, 0}, {1500000000, 123456789}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, (folder_ / "file").c_str(), times, 0));
  }

  Lines files(const std::string& order) {
    makeFiles();
    return linesOfGuest("files.cpp", {order, folder_.path()});
  }

  Lines children(const std::vector<std::string>& arguments) {
    return linesOfGuest("children.cpp", arguments);
  }
};

TEST_F(System, AFilesStatusHasDarwinsLayout) {
  const Lines lines = files("statuses");
  ASSERT_EQ(5u, lines.size());
  EXPECT_EQ("file: mode 100604 links 1 size 5 owner 1 changed 1500000000.123456789", lines[0]);
  EXPECT_EQ(0u, lines[1].find("folder: mode 40755 links 3 ")) << lines[1];
  EXPECT_EQ(0u, lines[2].find("link: mode 120777 links 1 size 4 owner 1 ")) << lines[2];
  EXPECT_EQ("missing: error 2", lines[3]);
  EXPECT_EQ("same file 1", lines[4]);
}

TEST_F(System, ErrorsHaveDarwinsNumbers) {
  const Lines expected{"open missing 2",     "exclusive 17",        "link to file 62",
                       "link as folder 62",  "file as folder 20",   "loop 62",
                       "too long 63",        "rmdir not empty 66",  "unlink folder 1",
                       "unlinkat folder 1",  "rename exclusive 17", "close 9",
                       "Directory not empty"};
  EXPECT_EQ(expected, files("errors"));
}

TEST_F(System, AFoldersEntriesHaveDarwinsLayout) {
  Lines lines = files("folder");
  std::sort(lines.begin(), lines.end());
  const Lines expected{"entry deep length 4 kind 4", "entry inner length 5 kind 8"};
  EXPECT_EQ(expected, lines);
}

TEST_F(System, TreesAreWalkedWithDarwinsNumbers) {
  Lines lines = files("tree");
  std::sort(lines.begin(), lines.end());
  const Lines expected{
      "fts /folder/inner kind 8 level 2 size 11", "visit /folder kind 3 level 0 folder 1",
      "visit /folder/deep kind 3 level 1 folder 1", "visit /folder/inner kind 0 level 1 folder 0"};
  EXPECT_EQ(expected, lines);
}

TEST_F(System, FilesAreMadeSwappedAndRemoved) {
  const Lines expected{"written 4 flags 1", "size 5 mode 640", "swap 0", "size 5", "removed 0 0"};
  EXPECT_EQ(expected, files("changes"));
  EXPECT_EQ("texts", test::readFile(folder_ / "file"));
  EXPECT_FALSE(test::exists(folder_ / "new"));
  EXPECT_FALSE(test::exists(folder_ / "empty"));
}

TEST_F(System, ThreadsShareLocksWithStaticInitialisers) {
  const Lines expected{"own value 1 main 0", "own value 1 main 0", "number 2000 once 1 main 1",
                       "recursive 0 0", "busy 16"};
  EXPECT_EQ(expected, linesOfGuest("threads.cpp"));
}

TEST_F(System, AThreadHas512KilobytesOfStackAndNoMore) {
  const Lines fits{"usual 524288 odd 22", "used 1"};
  EXPECT_EQ(fits, linesOfGuest("threads.cpp", {"460"}));
  const test::Result tooMuch = runGuest({build("threads.cpp"), "560"});
  EXPECT_TRUE(tooMuch.signal == SIGSEGV || tooMuch.signal == SIGBUS) << tooMuch.out;
}

TEST_F(System, AThreadHasTheStackThatItIsGiven) {
  const Lines fits{"usual 524288 odd 22", "set 0", "used 1"};
  EXPECT_EQ(fits, linesOfGuest("threads.cpp", {"4000", "4194304"}));
}

TEST_F(System, AChildIsAnExecutableForMacosWithItsOwnName) {
  const Lines expected{"spawn 0", "child exited 5", "missing 2"};
  EXPECT_EQ(expected, children({"spawn", folder_ / "output"}));
  EXPECT_EQ("another name says from the child\n", test::readFile(folder_ / "output"));
}

TEST_F(System, SignalsThatEndChildrenHaveDarwinsNumbers) {
  const Lines expected{"6 signal 6", "10 signal 10", "31 signal 31"};
  EXPECT_EQ(expected, children({"ends"}));
}

TEST_F(System, SignalsAreCaughtUnderDarwinsNumbers) {
  const Lines expected{"set 0", "caught 30", "kept 1 1 1", "old 1", "none 22"};
  EXPECT_EQ(expected, children({"catch"}));
}

TEST_F(System, AnIgnoredSignalIsResetForAChildThatAsksForIt) {
  const Lines expected{"inherited exited 3", "reset signal 13"};
  EXPECT_EQ(expected, children({"reset"}));
}

TEST_F(System, TheShellRunsExecutablesForMacosToo) {
  const Lines expected{"read  says through the shell", "pclose exited 5", "system signal 30"};
  EXPECT_EQ(expected, children({"shell"}));
}

TEST_F(System, AProcessBecomesAnotherWithAnEmptyEnvironment) {
  const std::string guest = build("children.cpp");
  const test::Result result = runGuest({guest, "exec"});
  EXPECT_EQ(5, result.status) << result.err;
  EXPECT_EQ(guest + " says with an empty environment\n", result.out);
}

TEST_F(System, AReplacedPreloadedLibraryStaysAndSoDoesTheRunner) {
  const std::string guest = build("children.cpp");
  test::Command command{{QUORVANE_BIN "/macrun", guest, "shell"}};
  command.environment["LD_PRELOAD"] = QUORVANE_BIN "/libmacexec.so:/nonexistent.so";
  const test::Result result = test::run(command);
  EXPECT_NE(std::string::npos, result.out.find("pclose exited 5")) << result.out;
  EXPECT_NE(std::string::npos, result.err.find("/nonexistent.so")) << "the other one is gone";
}

TEST_F(System, AFileThatMayNotBeExecutedIsRefusedAsByTheSystem) {
  const std::string copy = folder_ / "copy";
  test::writeFile(copy, test::readFile(build("children.cpp")), 0644);
  test::Command command{{"/bin/sh", "-c", "'" + copy + "' say no"}};
  command.environment["LD_PRELOAD"] = QUORVANE_BIN "/libmacexec.so";
  EXPECT_EQ(126, test::run(command).status);
  chmod(copy.c_str(), 0755);
  EXPECT_EQ(5, test::run(command).status);
}

TEST_F(System, StreamsCharactersClocksAndAccountsAreDarwins) {
  const std::string guest = build("streams.cpp");
  const test::Result result = runGuest({guest, folder_ / "text"});
  EXPECT_EQ("to standard error\n", result.err);
  const Lines lines = test::linesOf(result.out);
  const Lines expected{"bytes 21 lines 3 end 1",
                       "line two",
                       "at 8",
                       "letters 52 digits 10 spaces 6 printable 95 hexadecimal 22 upper 26",
                       "aB",
                       "later 1 now 1",
                       "1970-01-02"};
  ASSERT_EQ(8u, lines.size());
  EXPECT_EQ(expected, Lines(lines.begin(), lines.end() - 1));
  EXPECT_EQ(0u, lines[7].find("account 1 home /")) << lines[7];
}

TEST_F(System, AVolumesRecordHasDarwinsLayout) {
  struct statvfs volume;
  ASSERT_EQ(0, statvfs(folder_.path().c_str(), &volume));
  const Lines lines = files("volume");
  ASSERT_EQ(3u, lines.size());
  EXPECT_EQ("page " + std::to_string(sysconf(_SC_PAGESIZE)), lines[0]);
  EXPECT_EQ("block " + std::to_string(volume.f_frsize) + " blocks " +
                std::to_string(std::min<uint64_t>(volume.f_blocks, UINT32_MAX)) + " name " +
                std::to_string(volume.f_namemax) + " flags " + std::to_string(volume.f_flag & 3),
            lines[1]);
  EXPECT_EQ("missing -1 error 2", lines[2]);
}

TEST_F(System, SecondNamesOfFilesAreMadeInFolders) {
  EXPECT_EQ((Lines{"linked 0 links 2", "again -1 error 17", "followed 1 same 1"}), files("links"));
}

TEST_F(System, DigestsAreMadeInPiecesOfAnySize) {
  const std::string digest = "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1";
  const std::string message = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
  EXPECT_EQ((Lines{digest, "results 3 size 104"}), linesOfGuest("digests.cpp", {message, "100"}));
  EXPECT_EQ((Lines{digest, "results 58 size 104"}), linesOfGuest("digests.cpp", {message, "1"}));
}
