// The application shell in a real window system: menu, URL events from other processes, and what
// the toolkit learns of the process.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/files.h"
#include "tests/support/picture.h"
#include "tests/support/process.h"
#include "tests/support/product_system.h"
#include "tests/support/test_home.h"

namespace fs = std::filesystem;

static const std::string kDriver = test::product("app_driver");

static std::string infoWithName(const std::string& name) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
         "<key>CFBundleName</key><string>" +
         name + "</string></dict></plist>\n";
}

class AppShell : public testing::Test {
 protected:
  test::Result run(const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& variables = {}) const {
    test::Command command;
    command.arguments = arguments;
    command.environment = home_.environment();
    for (const auto& [name, value] : variables) {
      command.environment[name] = value;
    }
    command.folder = home_.path();
    return test::run(command);
  }

  // Runs a shell script in which $1 is the folder of the tests' programs, and `start MODE...`
  // starts the driver and waits until it runs its event loop.
  test::Result runScript(const std::string& script) const {
    const std::string start = R"(
      start() {
        "$app_driver" "$@" > out 2> err & app=$!
        until grep -q running out; do
          kill -0 "$app" 2> /dev/null || { cat err >&2; exit 1; }
          sleep 0.05
        done
      }
      app_driver=$2
    )";
    return run({"/bin/bash", "-c", start + script, "script", QUORVANE_BIN, kDriver});
  }

  // The driver as the executable of a bundle with this Info.plist; returns its path.
  std::string placeInBundle(const std::string& info) const {
    const std::string contents = home_ / "Sample.app/Contents";
    fs::create_directories(contents + "/MacOS");
    fs::copy_file(kDriver, contents + "/MacOS/sample");
    test::writeFile(contents + "/Info.plist", info);
    return contents + "/MacOS/sample";
  }

  static std::vector<std::string> menuFor(const std::string& process, const std::string& name) {
    return {process,    "Application", "About " + name, "-", "Hide " + name, "Hide Others",
            "Show All", "-",           "Quit " + name};
  }

  std::vector<std::string> menuOf(const std::string& executable) const {
    const test::Result result = run({executable, "menu"});
    EXPECT_EQ(0, result.status) << result.err;
    return test::linesOf(result.out);
  }

  test::TestHome home_;
};

TEST_F(AppShell, MenuTitlesHoldTheBundlesName) {
  EXPECT_EQ(menuFor("sample", "Hello World"), menuOf(placeInBundle(infoWithName("Hello World"))));
}

TEST_F(AppShell, MenuTitlesHoldTheBundlesNameAsItIsEvenIfItLooksLikeAFormat) {
  EXPECT_EQ(menuFor("sample", "100%@ %s %n"), menuOf(placeInBundle(infoWithName("100%@ %s %n"))));
}

TEST_F(AppShell, MenuTitlesOfABundleWithoutNameHoldTheProcessName) {
  EXPECT_EQ(menuFor("sample", "sample"),
            menuOf(placeInBundle("<plist version=\"1.0\"><dict></dict></plist>")));
}

TEST_F(AppShell, MenuTitlesOfABundleWithAnUnreadableInfoFileHoldTheProcessName) {
  EXPECT_EQ(menuFor("sample", "sample"), menuOf(placeInBundle("<plist><dict><key>CFB")));
}

TEST_F(AppShell, MenuTitlesOutsideABundleHoldTheProcessName) {
  EXPECT_EQ(menuFor("app_driver", "app_driver"), menuOf(kDriver));
}

TEST_F(AppShell, MenuTitlesOfAnApplicationWithANameOfItsOwnHoldThatOneAndTheProcessHasItToo) {
  std::vector<std::string> expected = menuFor("Guest 100%@", "Guest 100%@");
  expected.push_back("Guest 100%@");
  const test::Result result = run({placeInBundle(infoWithName("Installer of Guest")), "named"});
  EXPECT_EQ(expected, test::linesOf(result.out)) << result.err;
}

TEST_F(AppShell, TheIconIsTheOneThatThePresentationNames) {
  test::writeQuartersPng(home_ / "icon.png", 46, 46);
  EXPECT_EQ("46\n", run({kDriver, "icon", home_ / "icon.png"}).out);
}

TEST_F(AppShell, AnIconThatCannotBeReadChangesNothing) {
  const std::string usual = run({kDriver, "icon", ""}).out;
  test::writeFile(home_ / "broken.png", "no image");
  EXPECT_EQ(usual, run({kDriver, "icon", home_ / "broken.png"}).out);
  EXPECT_EQ(usual, run({kDriver, "icon", home_ / "missing.png"}).out);
}

TEST_F(AppShell, TheMenuStandsInAWindowOnTheDisplay) {
  const test::Result result = runScript(R"(
    (exec -a menu_on_display "$app_driver" loop) > /dev/null 2>&1 & app=$!
    for _ in $(seq 400); do
      xdotool search --onlyvisible --name '^menu_on_display$' > /dev/null 2>&1 && { echo found; break; }
      sleep 0.05
    done
    kill -9 "$app")");
  EXPECT_EQ("found\n", result.out) << result.err;
}

TEST_F(AppShell, AUrlSentToTheRunningApplicationArrives) {
  const test::Result result = runScript(R"(
    start url quorvane://open/it
    "$1/url_sender" app_driver quorvane://open/it
    wait "$app"; echo "status $?"; tail -1 out; cat err >&2)");
  EXPECT_EQ("1\nstatus 0\nquorvane://open/it\n", result.out) << result.err;
  EXPECT_NE(std::string::npos,
            result.err.find("[Quorvane] [URL] Request received to open URL quorvane://open/it"))
      << result.err;
}

TEST_F(AppShell, TheUrlThatStartedTheApplicationIsNotLost) {
  const test::Result result = runScript(R"(
    "$1/url_sender" app_driver quorvane://open/at-start & sender=$!
    sleep 0.3
    "$app_driver" url quorvane://open/at-start 2> /dev/null; echo "status $?"
    wait "$sender")");
  EXPECT_EQ((std::vector<std::string>{"running", "quorvane://open/at-start", "status 0"}), [&] {
    std::vector<std::string> lines = test::linesOf(result.out);
    // The sender's answer comes whenever it comes.
    lines.erase(std::remove(lines.begin(), lines.end(), "1"), lines.end());
    return lines;
  }()) << result.err;
}

TEST_F(AppShell, OfTwoUrlsSentTheSecondIsKept) {
  const test::Result result = runScript(R"(
    start url quorvane://open/second
    "$1/url_sender" app_driver quorvane://open/first quorvane://open/second
    wait "$app"; echo "status $?"; tail -1 out)");
  EXPECT_EQ("1\n1\nstatus 0\nquorvane://open/second\n", result.out) << result.err;
}

TEST_F(AppShell, WordsBehindTheExecutableAreKeptFromTheToolkit) {
  test::writeFile(home_ / "document.txt", "");
  const test::Result result =
      run({kDriver, "arguments", "-NSOpen", "document.txt", "document.txt"});
  EXPECT_EQ(kDriver + "\n", result.out);
}

TEST_F(AppShell, HandlersThatTheToolkitInstallsWhileItFinishesLaunchingAreReplaced) {
  const test::Result result = run({QUORVANE_BIN "/mac_launch_driver"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("ToolkitHandler\nURLHandler\nToolkitHandler\nURLHandler\nquorvane://open/it\n",
            result.out);
}

TEST_F(AppShell, ThatArgumentsAreNoFilesIsSettledBeforeTheApplicationExists) {
  EXPECT_EQ("NO\n", run({kDriver, "defaults"}).out);
  EXPECT_EQ("NO\n", run({kDriver, "window-defaults"}).out);  // as an alert creates it
}

TEST_F(AppShell, ChildProcessesDoNotInheritTheToolkitsTuning) {
  EXPECT_EQ("unset\nunset\n", run({kDriver, "environment"}).out);
}

TEST_F(AppShell, AVariableThatTheUserHasSetStays) {
  const test::Result result =
      run({kDriver, "environment"}, {{"MAGICK_CODER_MODULE_PATH", "/users/own"}});
  EXPECT_EQ("/users/own\nunset\n", result.out);
}

TEST_F(AppShell, ATerminationSignalEndsTheProcess) {
  const test::Result result = runScript(R"(
    start loop
    kill "$app"
    timeout 20 tail --pid="$app" -f /dev/null && wait "$app"; echo "status $?"
    kill -9 "$app" 2> /dev/null)");
  EXPECT_EQ("status 143\n", result.out) << result.err;
}

TEST_F(AppShell, QuittingEndsTheProcessWithZero) {
  const test::Result result = run({kDriver, "quit"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("running\n", result.out);
}

TEST_F(AppShell, QuittingWithJavaServesTheMainThreadUntilJavaHasEnded) {
  const test::Result result = run({kDriver, "quitJava"});
  EXPECT_EQ(40, result.status) << result.err;
  EXPECT_NE(std::string::npos, result.out.find("main thread\n")) << result.out;
}

TEST_F(AppShell, QuittingAgainWhileJavaEndsEndsTheProcessAtOnce) {
  const test::Result result = run({kDriver, "quitTwice"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_NE(std::string::npos, result.out.find("hangs\n")) << result.out;
}

TEST_F(AppShell, AnotherProgramMayQuitTheApplication) {
  const test::Result result = runScript(R"(
    start loop
    "$1/url_sender" app_driver quit
    timeout 50 tail --pid="$app" -f /dev/null && wait "$app"; echo "status $?"
    kill -9 "$app" 2> /dev/null)");
  EXPECT_EQ("status 0\n", result.out) << result.err;
}

TEST_F(AppShell, AFileToOpenArrivesAsItsUrl) {
  const test::Result result = runScript(R"(
    start url file:///tmp/a%20file
    "$1/url_sender" app_driver "/tmp/a file"
    wait "$app"; echo "status $?"; tail -1 out)");
  EXPECT_EQ("1\nstatus 0\nfile:///tmp/a%20file\n", result.out) << result.err;
}

TEST_F(AppShell, TheMenuStaysWhenAnotherWindowTakesTheFocus) {
  EXPECT_EQ((std::vector<std::string>{"running", "active, menu shown", "inactive, menu shown"}),
            test::linesOf(run({kDriver, "deactivate"}).out));
}

TEST_F(AppShell, WithoutADisplayItSaysSoInOneLineAndEndsWithOne) {
  const test::Result result = run({kDriver, "loop"}, {{"DISPLAY", ""}});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(test::productMissingDisplay() + "\n", result.err);
}

TEST_F(AppShell, WithADisplayThatIsNotThereItSaysSoInOneLineAndEndsWithOne) {
  const test::Result result = run({kDriver, "loop"}, {{"DISPLAY", ":65000"}});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(test::productMissingDisplay() + "\n", result.err);
}

TEST_F(AppShell, WithADisplayThatRefusesTheToolkitItSaysSoInOneLineAndEndsWithOne) {
  const test::Result result = run({kDriver, "loop"}, {{"DISPLAY", "127.0.0.1:65000"}});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(test::productMissingDisplay() + "\n", result.err);
}
