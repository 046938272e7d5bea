// What the launcher hands to a JVM, seen by a JVM library that only reports.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iostream>

#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::containsInOrder;
using test::messagesOf;
using Texts = std::vector<std::string>;

static const char kFirstPlace[] = "lib/server/";
static const char kSecondPlace[] = "Contents/Home/lib/server/";
static const char kThirdPlace[] = "Contents/Home/jre/lib/server/";

// The main thread, which sets up the menu while the launch thread runs, logs in between.
static bool isLaunchThreads(const std::string& line) {
  return line.rfind("[JNI", 0) == 0 || line.rfind("[Utils]", 0) == 0;
}

class FakeJvm : public testing::Test {
 protected:
  FakeJvm() { bundle.writeTailFile(test::Tail()); }

  void install(const std::string& place, const std::string& name) {
    bundle.installLibrary(QUORVANE_FAKE_JVM, place + name);
  }

  void installAtFirstPlace() { bundle.installLibrary(QUORVANE_FAKE_JVM, test::jvmLibraryPlace()); }

  // Runs with a JVM library in which `fault` goes wrong.
  void run(const Texts& words, const std::string& fault = "") {
    if (!test::exists(bundle.runtime())) {
      installAtFirstPlace();
    }
    const std::string reportFile = bundle.home / "report";
    result =
        bundle.run(words, {{"QUORVANE_FAKE_JVM_REPORT", reportFile}, {"QUORVANE_FAKE_JVM", fault}});
    messages = messagesOf(result.out);
    report = test::exists(reportFile) ? test::linesOf(test::readFile(reportFile)) : Texts();
  }

  // The reported options, each between brackets.
  Texts options() const {
    Texts options;
    std::copy_if(report.begin(), report.end(), std::back_inserter(options),
                 [](const std::string& line) { return line[0] == '['; });
    return options;
  }

  void TearDown() override {
    if (HasFailure()) {
      std::cout << "standard output:\n" << result.out << "standard error:\n" << result.err;
    }
  }

  // The launch thread's last message.
  std::string lastMessage() const {
    const auto last = std::find_if(messages.rbegin(), messages.rend(), isLaunchThreads);
    return last == messages.rend() ? "" : *last;
  }
  std::string lastReport() const { return report.empty() ? "" : report.back(); }

  test::LauncherBundle bundle;
  test::Result result;
  Texts messages;
  Texts report;
};

TEST_F(FakeJvm, GetsTheVersionTheClassPathAndTheOptionsAndTheProgramItsArguments) {
  run({"-Xmx1g", "-Da=b c", "-cp", "a.jar:b.jar:", "com.x.Main", "-v", "two words"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(
      (Texts{"version 0x00010004", "ignoreUnrecognized 1", "options 3",
             "[-Djava.class.path=b.jar:a.jar]", "[-Xmx1g]", "[-Da=b c]", "FindClass com/x/Main",
             "GetStaticMethodID com/x/Main main ([Ljava/lang/String;)V",
             "FindClass java/lang/String", "NewObjectArray 2 java/lang/String null",
             "SetObjectArrayElement array 0 [-v]", "SetObjectArrayElement array 1 [two words]",
             "CallStaticVoidMethod com/x/Main main array", "ExceptionOccurred", "DestroyJavaVM"}),
      report);
}

TEST_F(FakeJvm, ALaunchIsLoggedStepByStep) {
  run({"-Xmx1g", "-cp", "a.jar:b.jar", "com.x.Main", "-v"});
  const std::string library = bundle.runtime() + "/" + test::jvmLibraryPlace();
  const auto first =
      std::find(messages.begin(), messages.end(), "[JNILaunch] Identified JRE path as " + library);
  Texts launchThreadsLines;
  std::copy_if(first, messages.end(), std::back_inserter(launchThreadsLines), isLaunchThreads);
  EXPECT_EQ(
      (Texts{"[JNILaunch] Identified JRE path as " + library,
             "[JNILaunch] ------- JNI Launch call -------", "[JNILaunch] JVM Argument 0 = -Xmx1g",
             "[JNILaunch] CP Argument 0 = b.jar", "[JNILaunch] App Argument 0 = -v",
             "[JNILaunch] JNI Option 0=-Djava.class.path=b.jar", "[JNILaunch] JNI Option 1=-Xmx1g",
             "[JNILauncher] Searching for clazz com/x/Main",
             "[JNILauncher] Searching for main method com/x/Main",
             "[JNILauncher] Set argument 0 to -v",
             "[JNILauncher] About to execute static void method.", "[Utils] Closing logging file.",
             "[JNILauncher] Run complete.", "[JNILauncher] Destroying runtime.",
             "[JNILauncher] Done!"}),
      launchThreadsLines);
}

TEST_F(FakeJvm, TheApplicationIsCreatedBeforeTheLaunchThreadRuns) {
  run({"com.x.Main"});
  const std::string plugin = "/" + bundle.runtime() + ".plugin";
  EXPECT_TRUE(containsInOrder(
      messages,
      {"[Launcher] JRE name is is Mac64JRE",
       "[PickFolder] Set latest to 1407 Quorvane-Mac64JRE-1407-complete",
       "[Launcher] Located existing JRE runtime = Quorvane-Mac64JRE-1407-complete",
       "[Launcher] JRE path is " + bundle.runtime(),
       "[BundleLoader] Creating jre path URL for path " + plugin, "[BundleLoader] Created NSURL",
       "[BundleLoader] Bundle is null?", "[Launcher] About to create NSApplication",
       "[Launcher] Created NSApplication", "[JNILaunch] ------- JNI Launch call -------"}));
}

TEST_F(FakeJvm, AMainClassInAPackageIsLookedUpWithSlashes) {
  run({"com.x.Main"});
  EXPECT_TRUE(containsInOrder(report, {"FindClass com/x/Main"}));
}

TEST_F(FakeJvm, TheLaunchRunsOnAThreadThatIsNotTheMainOne) {
  run({"com.x.Main"});
  const auto line = std::find_if(messages.begin(), messages.end(), [](const std::string& message) {
    return message.find("[JNILaunch] [pid=") == 0;
  });
  ASSERT_NE(messages.end(), line);
  EXPECT_NE(std::string::npos, line->find("] [mainThread=0]"));
}

// With the application object, or while it finishes launching, as the platform wants it.
TEST_F(FakeJvm, OpenUrlEventsAreListenedForOnceTheApplicationExists) {
  run({"com.x.Main"}, "slow");
  const std::string line = "[Wrapper] Registering shared apple event manager";
  const size_t creating = result.err.find("[Launcher] About to create NSApplication");
  const size_t listening = result.err.find(line);
  ASSERT_NE(std::string::npos, creating);
  ASSERT_NE(std::string::npos, listening);
  EXPECT_LT(creating, listening);
  EXPECT_EQ(std::string::npos, result.err.find(line, listening + 1));
}

TEST_F(FakeJvm, WithoutClassPathThereIsNoClassPathOption) {
  run({"-Xmx1g", "-Xms1m", "com.x.Main"});
  EXPECT_EQ((Texts{"[-Xmx1g]", "[-Xms1m]"}), options());
}

TEST_F(FakeJvm, WithoutOptionsAndClassPathThereIsNoOption) {
  run({"com.x.Main"});
  EXPECT_TRUE(containsInOrder(report, {"options 0", "FindClass com/x/Main"}));
}

TEST_F(FakeJvm, AnEmptyClassPathGivesTheOptionWithNothingBehindTheEqualsSign) {
  run({"-cp", "", "com.x.Main"});
  EXPECT_EQ((Texts{"[-Djava.class.path=]"}), options());
}

TEST_F(FakeJvm, AClassPathOfSeparatorsOnlyGivesTheSame) {
  run({"-cp", "::", "com.x.Main"});
  EXPECT_EQ((Texts{"[-Djava.class.path=]"}), options());
}

TEST_F(FakeJvm, ASecondClassPathReplacesTheFirst) {
  run({"-Xmx1g", "-cp", "a.jar:b.jar", "com.x.Main", "-v", "-cp", "c.jar", "z"});
  EXPECT_EQ((Texts{"[-Djava.class.path=c.jar]", "[-Xmx1g]"}), options());
  EXPECT_TRUE(containsInOrder(
      report, {"NewObjectArray 2 java/lang/String null", "SetObjectArrayElement array 0 [-v]",
               "SetObjectArrayElement array 1 [z]"}));
}

TEST_F(FakeJvm, AnArgumentsCharactersBeyondTheBasicPlaneArriveAsSurrogates) {
  run({"com.x.Main", "caf\xc3\xa9 \xf0\x9f\x98\x80"});
  EXPECT_TRUE(containsInOrder(
      report, {"SetObjectArrayElement array 0 [caf\xc3\xa9 \xed\xa0\xbd\xed\xb8\x80]"}));
}

TEST_F(FakeJvm, WithoutArgumentsMainGetsAnEmptyArrayAndNotNull) {
  run({"com.x.Main"});
  EXPECT_TRUE(containsInOrder(report, {"NewObjectArray 0 java/lang/String null",
                                       "CallStaticVoidMethod com/x/Main main array"}));
}

TEST_F(FakeJvm, AThousandOptionsAndAThousandArgumentsArriveWhole) {
  Texts words;
  for (int i = 0; i < 1000; ++i) {
    words.push_back("-D" + std::to_string(i));
  }
  words.push_back("com.x.Main");
  for (int i = 0; i < 1000; ++i) {
    words.push_back("a" + std::to_string(i));
  }
  run(words);
  EXPECT_EQ(0, result.status);
  ASSERT_EQ(1000u, options().size());
  EXPECT_EQ("[-D999]", options().back());
  EXPECT_TRUE(containsInOrder(report, {"NewObjectArray 1000 java/lang/String null",
                                       "SetObjectArrayElement array 999 [a999]"}));
}

TEST_F(FakeJvm, ALongClassNameArrivesWhole) {
  const std::string name(20000, 'n');
  run({"com." + name});
  EXPECT_TRUE(containsInOrder(report, {"FindClass com/" + name}));
}

TEST_F(FakeJvm, TheNewestRuntimeIsTaken) {
  installAtFirstPlace();
  bundle.installed.addFolders({"Quorvane-Mac64JRE-99-complete", "Quorvane-Mac64JRE-1600"});
  run({"com.x.Main"});
  EXPECT_EQ(0, result.status);
}

TEST_F(FakeJvm, ANewerRuntimeThatCannotStartIsPassedOver) {
  installAtFirstPlace();
  const std::string newer = "Quorvane-Mac64JRE-9999-complete";
  const std::string modules = bundle.master(newer) + "/lib/modules";
  bundle.installed.addFile("Quorvane-Mac64JRE-8888-complete", "no folder")
      .addFolders({newer + "/lib/server"});
  fs::copy(bundle.runtime() + "/lib/server", bundle.master(newer) + "/lib/server");
  test::writeFile(modules, "");
  run({"com.x.Main"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(
      messages,
      {"[PickFolder] Folder " + newer + " cannot start: its modules file is missing or empty",
       "[PickFolder] Folder Quorvane-Mac64JRE-8888-complete cannot start: it is no folder",
       "[Launcher] Located existing JRE runtime = Quorvane-Mac64JRE-1407-complete"}));
}

TEST_F(FakeJvm, ALibraryAtTheSecondPlaceIsFound) {
  install(kSecondPlace, "libjvm.dylib");
  run({"com.x.Main"});
  EXPECT_EQ(0, result.status);
}

TEST_F(FakeJvm, ALibraryOnlyAtTheThirdPlaceIsFoundOnTheThirdTry) {
  install(kThirdPlace, "libjvm.dylib");
  run({"com.x.Main"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(messages, {"[JNILaunch] Identified JRE path as " + bundle.runtime() +
                                         "/" + kThirdPlace + "libjvm.dylib"}));
}

TEST_F(FakeJvm, AnEarlierPlaceComesFirst) {
  install(kThirdPlace, "libjvm.dylib");
  install(kSecondPlace, "libjvm.dylib");
  run({"com.x.Main"});
  EXPECT_TRUE(containsInOrder(messages, {"[JNILaunch] Identified JRE path as " + bundle.runtime() +
                                         "/" + kSecondPlace + "libjvm.dylib"}));
}

TEST_F(FakeJvm, ALibraryThatDoesNotOpenIsPassedOver) {
  test::writeFile(bundle.runtime() + "/" + kFirstPlace + "libjvm.dylib", "no library");
  install(kSecondPlace, "libjvm.dylib");
  run({"com.x.Main"});
  EXPECT_EQ(0, result.status);
}

TEST_F(FakeJvm, ThePlatformsOwnNameIsTriedWhenNoOtherOpens) {
  install(kFirstPlace, "libjvm.so");
  install(kThirdPlace, "libjvm.dylib");
  run({"com.x.Main"});
  EXPECT_TRUE(containsInOrder(messages, {"[JNILaunch] Identified JRE path as " + bundle.runtime() +
                                         "/" + kThirdPlace + "libjvm.dylib"}));
}

TEST_F(FakeJvm, ThePlatformsOwnNameIsFoundAtTheThirdPlaceToo) {
  install(kThirdPlace, "libjvm.so");
  run({"com.x.Main"});
  // macOS has no name of its own beside the common one.
  EXPECT_EQ(test::productIsForMacos() ? 1 : 0, result.status);
}

TEST_F(FakeJvm, ARuntimeWithoutLibraryEndsWithFailure) {
  fs::create_directories(bundle.runtime());
  run({"com.x.Main"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(messages, {"[JNILaunch] [ERROR] Could not load dynamic library!",
                                         "[JNILaunch] [ERROR] Unable to load JRE library!"}));
  EXPECT_EQ("[JNILaunch] [ERROR] Unable to load JRE library!", lastMessage());
}

TEST_F(FakeJvm, ALibraryThatIsNoLibraryEndsWithFailure) {
  test::writeFile(bundle.runtime() + "/" + test::jvmLibraryPlace(), "no library");
  run({"com.x.Main"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILaunch] [ERROR] Unable to load JRE library!", lastMessage());
}

TEST_F(FakeJvm, ALibraryWithoutTheEntryCountsAsAJvmThatFails) {
  bundle.installLibrary(QUORVANE_NO_JVM, test::jvmLibraryPlace());
  run({"-Xmx1g", "com.x.Main"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(
      messages, {"[JNILaunch] ------- JNI Launch call -------", "[JNILaunch] JNI Option 0=-Xmx1g",
                 "[JNILauncher] Create Java VM Failed!"}));
  EXPECT_EQ("[JNILauncher] Create Java VM Failed!", lastMessage());
}

TEST_F(FakeJvm, AJvmThatIsNotCreatedEndsWithFailure) {
  run({"com.x.Main"}, "create");
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Create Java VM Failed!", lastMessage());
  EXPECT_EQ("options 0", lastReport());
}

TEST_F(FakeJvm, AClassThatIsNotFoundEndsWithFailureAndLeavesTheJvmAsItIs) {
  run({"com.x.Main"}, "class");
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Searching for clazz failed!", lastMessage());
  EXPECT_EQ("FindClass com/x/Main", lastReport());
}

TEST_F(FakeJvm, AClassWithoutMainEndsWithFailureAndSaysWhy) {
  run({"com.x.Main"}, "main");
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Searching for main method failed!", lastMessage());
  EXPECT_EQ("ExceptionDescribe", lastReport());
}

TEST_F(FakeJvm, ArgumentsThatCannotBeMadeEndWithFailureAndSayWhy) {
  run({"com.x.Main"}, "arguments");
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Creating the arguments failed!", lastMessage());
  EXPECT_EQ("ExceptionDescribe", lastReport());
}

TEST_F(FakeJvm, AnExceptionInMainIsPrintedAndTheStatusIsZero) {
  run({"com.x.Main"}, "throw");
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(report, {"CallStaticVoidMethod com/x/Main main array",
                                       "ExceptionOccurred", "ExceptionDescribe", "DestroyJavaVM"}));
  EXPECT_EQ("[JNILauncher] Done!", lastMessage());
}

TEST_F(FakeJvm, IsNeverCreatedWithoutAClassButTheRuntimeAndTheApplicationAre) {
  run({"-Xmx1g", "-cp", "a.jar"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(containsInOrder(messages, {"[Launcher] JRE path is " + bundle.runtime(),
                                         "[Launcher] Created NSApplication"}));
  EXPECT_NE(std::string::npos, result.out.find("[ERROR] No class specified. Exiting...\n"));
  EXPECT_EQ(std::string::npos, result.err.find("No class specified"));
  EXPECT_EQ(Texts{}, report);
}

TEST_F(FakeJvm, IsNeverCreatedWhenTheCommandLineIsEmpty) {
  run({});
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("[ERROR] No class specified. Exiting...\n"));
  EXPECT_EQ(Texts{}, report);
}
