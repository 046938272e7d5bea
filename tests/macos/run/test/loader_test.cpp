#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "tests/macos/run/test/guest.h"
#include "tests/support/files.h"

using Lines = std::vector<std::string>;

class Loader : public test::Guest {};

static bool has(const Lines& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

TEST_F(Loader, GivesArgumentsEnvironmentAndApplesWordsToMain) {
  const std::string guest = build("arguments.cpp");
  const test::Result result = runGuest({guest, "one", "", "--two"});
  EXPECT_EQ(7, result.status) << result.err;
  const Lines expected{"count 4",
                       "argument " + guest,
                       "argument one",
                       "argument ",
                       "argument --two",
                       "end of arguments 1, environment 1",
                       "apple executable_path=" + guest,
                       "executable " + std::string(realpath(guest.c_str(), nullptr)),
                       "variable (none)",
                       "handler 2",
                       "handler 1"};
  EXPECT_EQ(expected, test::linesOf(result.out));
}

TEST_F(Loader, AdjustsPointersIntoTheImageAndFillsInImportedOnes) {
  const Lines expected{
      "twice 194 other", "abs 97 other", "twice again 194 -", "toupper 65 other", "length 4",
      "corners 3",       "sum 6"};
  EXPECT_EQ(expected, linesOfGuest("fixups.cpp", {"triangle"}));
}

TEST_F(Loader, PassesExceptionsThroughFramesOfEveryKind) {
  const Lines expected{"left many registers", "left large stack", "caught thrown at 5",
                       "caught again thrown at 5", "caught 42"};
  EXPECT_EQ(expected, linesOfGuest("exceptions.cpp"));
}

TEST_F(Loader, AMissingImportIsHarmlessUntilItIsCalled) {
  const Lines expected{"before", "after"};
  EXPECT_EQ(expected, linesOfGuest("missing.cpp"));
}

TEST_F(Loader, ACallOfAMissingImportNamesItAndTheExecutable) {
  const std::string guest = build("missing.cpp");
  const test::Result result = runGuest({guest, "call"});
  EXPECT_EQ(SIGABRT, result.signal);
  EXPECT_EQ("before\n", result.out);
  EXPECT_EQ("macrun: missing import _fmtmsg (needed by " +
                std::string(realpath(guest.c_str(), nullptr)) + ")\n",
            result.err);
}

TEST_F(Loader, ListsWhatIsSuppliedMissingUsedAndUnused) {
  const std::string guest = build("missing.cpp");
  runGuest({guest});
  const Lines trace = traceLines();
  EXPECT_TRUE(has(trace, "run " + std::string(realpath(guest.c_str(), nullptr))));
  EXPECT_EQ(1, std::count(trace.begin(), trace.end(), "import _puts"));
  EXPECT_FALSE(has(trace, "import _strcmp"));
  const Lines listed = test::linesOf(runGuest({"--imports", guest}).out);
  EXPECT_TRUE(has(listed, "missing function _fmtmsg libSystem.B.dylib"));
  EXPECT_TRUE(has(listed, "supplied function _puts libSystem.B.dylib used"));
  EXPECT_TRUE(has(listed, "supplied function _strcmp libSystem.B.dylib unused"));
  EXPECT_EQ(trace, traceLines()) << "listing is no use";
}

TEST_F(Loader, TracesEachSelectorOnce) {
  linesOfGuest("objects.mm");
  const Lines trace = traceLines();
  EXPECT_EQ(1, std::count(trace.begin(), trace.end(), "selector add:"));
  EXPECT_EQ(1, std::count(trace.begin(), trace.end(), "selector stringWithFormat:"));
}

TEST_F(Loader, RunsThePartForThisProcessorOfAFatFile) {
  const std::string thin = test::readFile(build("fixups.cpp"));
  const std::string fat = folder_ / "fat";
  std::string header("\xCA\xFE\xBA\xBE\0\0\0\1\1\0\0\7\0\0\0\3\0\0\x40\0", 20);
  for (int shift = 24; shift >= 0; shift -= 8) {
    header += static_cast<char>(thin.size() >> shift);
  }
  header += std::string("\0\0\0\xE", 4);
  header.resize(0x4000);
  test::writeFile(fat, header + thin, 0755);
  const test::Result result = runGuest({fat, "square"});
  EXPECT_NE(std::string::npos, result.out.find("corners 4\n")) << result.err;
}

TEST_F(Loader, ShowsItsUsageWithoutAnExecutable) {
  const test::Result result = runGuest({});
  EXPECT_EQ(2, result.status);
  EXPECT_EQ(0u, result.err.find("usage: macrun EXECUTABLE ARGUMENTS...")) << result.err;
}
