// The launcher with a real Java runtime.

#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"

using test::containsInOrder;
using test::messagesOf;
using Texts = std::vector<std::string>;

class Java : public testing::Test {
 protected:
  Java() {
    bundle.appendTail(test::Tail());
    bundle.installRuntime();
  }

  // Runs the class with the tests' classes on the class path.
  void run(const std::string& mainClass, const Texts& arguments, const Texts& options = {}) {
    Texts words = options;
    words.insert(words.end(), {"-cp", QUORVANE_TEST_CLASSES, mainClass});
    words.insert(words.end(), arguments.begin(), arguments.end());
    result = bundle.run(words);
    messages = messagesOf(result.out);
  }

  bool printed(const std::string& line) const {
    return std::find(messages.begin(), messages.end(), line) != messages.end();
  }

  void TearDown() override {
    if (HasFailure()) {
      std::cout << "standard output:\n" << result.out << "standard error:\n" << result.err;
    }
  }

  std::string lastMessage() const { return messages.empty() ? "" : messages.back(); }

  test::LauncherBundle bundle;
  test::Result result;
  Texts messages;
};

TEST_F(Java, AProgramSeesItsArgumentsItsPropertiesAndItsClassPath) {
  run("guest.Program", {"one", "two words", "", "-v"}, {"-Dguest.property=a value"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(
      messages, {"[Utils] Closing logging file.", "[Guest] arguments 4", "[Guest] <one>",
                 "[Guest] <two words>", "[Guest] <>", "[Guest] <-v>", "[Guest] property a value",
                 "[Guest] class path " QUORVANE_TEST_CLASSES, "[JNILauncher] Run complete.",
                 "[JNILauncher] Destroying runtime.", "[JNILauncher] Done!"}));
}

TEST_F(Java, ArgumentsInUtf8ArriveAsTheyAre) {
  run("guest.Program",
      {"\xC3\xA9\xC3\x9F", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", "\xE2\x82\xAC"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(
      messages, {"[Guest] <\xC3\xA9\xC3\x9F>", "[Guest] <\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E>",
                 "[Guest] <\xE2\x82\xAC>"}));
}

// What the JVM takes is modified UTF-8, which has another form for characters beyond the basic
// plane.
TEST_F(Java, ArgumentsThatAreNoModifiedUtf8DoNoHarm) {
  run("guest.Program", {"\xFF\xFE", "\xC3", "\xE6\x97", "\xF0\x9F\x98\x80", "last"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(printed("[Guest] arguments 5"));
  EXPECT_TRUE(printed("[Guest] <last>"));
}

TEST_F(Java, MainThreadOfTheProgramIsJavasMainThread) {
  run("guest.Program", {"thread"});
  EXPECT_TRUE(printed("[Guest] thread main"));
}

TEST_F(Java, AProgramsOwnExitStatusIsTheProcesss) {
  run("guest.Program", {"exit"});
  EXPECT_EQ(7, result.status);
  EXPECT_EQ("[Guest] hook", lastMessage());
}

TEST_F(Java, AnExceptionInMainIsPrintedAndTheStatusIsZero) {
  run("guest.Program", {"throw"});
  EXPECT_EQ(0, result.status);
  EXPECT_NE(std::string::npos,
            result.err.find("java.lang.IllegalStateException: thrown on purpose"));
  EXPECT_TRUE(containsInOrder(
      messages, {"[JNILauncher] Run complete.", "[Guest] hook", "[JNILauncher] Done!"}));
}

TEST_F(Java, AStackOverflowInMainIsPrintedLikeAnyException) {
  run("guest.Program", {"overflow"});
  EXPECT_EQ(0, result.status);
  EXPECT_NE(std::string::npos, result.err.find("java.lang.StackOverflowError"));
}

TEST_F(Java, OtherThreadsOfTheProgramAreWaitedForAfterMainReturned) {
  run("guest.Program", {"linger"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(containsInOrder(messages, {"[JNILauncher] Destroying runtime.", "[Guest] lingered",
                                         "[Guest] hook", "[JNILauncher] Done!"}));
}

TEST_F(Java, DaemonThreadsAreNotWaitedFor) {
  run("guest.Program", {"daemon"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("[JNILauncher] Done!", lastMessage());
}

TEST_F(Java, ATerminationSignalRunsTheShutdownHooks) {
  run("guest.Program", {"term"});
  EXPECT_EQ(128 + SIGTERM, result.status);
  EXPECT_EQ("[Guest] hook", lastMessage());
}

TEST_F(Java, AnOptionThatTheJvmDoesNotKnowIsIgnored) {
  run("guest.Program", {}, {"-XX:NoSuchOptionAnywhere=1", "-Xno-such-option"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(printed("[Guest] arguments 0"));
}

TEST_F(Java, AnOptionThatTheJvmRefusesEndsWithFailure) {
  run("guest.Program", {}, {"-Xmxmuch"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(printed("[JNILauncher] Create Java VM Failed!"));
}

TEST_F(Java, AJvmThatGivesUpByItselfEndsTheProcessWithItsStatus) {
  run("guest.Program", {}, {"-Xmx1"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(printed("Too small maximum heap"));
}

TEST_F(Java, AVariableThatIsNoUtf8ReachesTheProgramsChildrenAsItIs) {
  result = bundle.run({"-cp", QUORVANE_TEST_CLASSES, "guest.Program", "variable"},
                      {{"GUEST_WORD", "<a\xFF>"}});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_NE(std::string::npos, result.out.find("<a\xFF>\n"));
}

TEST_F(Java, AClassThatDoesNotExistEndsWithFailure) {
  run("guest.Nobody", {});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Searching for clazz failed!", lastMessage());
}

TEST_F(Java, AClassNameOfAnyTextDoesNoHarm) {
  for (const char* name : {"", "guest..Program", "[", "\xFF\xC3", "guest/Program;"}) {
    run(name, {});
    EXPECT_EQ(1, result.status) << name;
    EXPECT_EQ("[JNILauncher] Searching for clazz failed!", lastMessage()) << name;
  }
}

TEST_F(Java, AClassWithoutMainEndsWithFailureAndSaysWhy) {
  run("guest.NoMain", {});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("[JNILauncher] Searching for main method failed!", lastMessage());
  EXPECT_NE(std::string::npos, result.err.find("java.lang.NoSuchMethodError"));
}

TEST_F(Java, ManyStartsInARowAllEndWithTheProgramsStatus) {
  for (int i = 0; i < 5; ++i) {
    run("guest.Program", {"exit"});
    ASSERT_EQ(7, result.status) << result.err;
  }
}

// As under `java`: the JVM's own handler takes the place of the launcher's ignoring.
TEST_F(Java, StartsItsChildrenWithTheDefaultActionForSigpipe) {
  run("guest.Program", {"signals"});
  const auto line = std::find_if(messages.begin(), messages.end(), [](const std::string& message) {
    return message.rfind("SigIgn:", 0) == 0;
  });
  ASSERT_NE(messages.end(), line);
  EXPECT_EQ(0u, strtoull(line->c_str() + 7, nullptr, 16) >> (SIGPIPE - 1) & 1) << *line;
}
