#include "launcher/jvm/host_options.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

static HostOptions read(const std::vector<const char*>& options) {
  return readHostOptions(static_cast<int>(options.size()), options.data());
}

TEST(HostOptions, OfNoOptionsAreAStackOfEightMegabytesAndNothingElse) {
  const HostOptions host = readHostOptions(0, nullptr);
  EXPECT_FALSE(host.startOnFirstThread);
  EXPECT_EQ(nullptr, host.dockName);
  EXPECT_EQ(nullptr, host.dockIcon);
  EXPECT_EQ(nullptr, host.appearance);
  EXPECT_EQ(size_t{8} << 20, host.stackSize);
}

TEST(HostOptions, OfAKindTheLastOneCounts) {
  const HostOptions host = read(
      {"-Xdock:name=one", "-Xdock:icon=a", "-Dapple.awt.application.appearance=x", "-Xss16m",
       "-Xdock:name=", "-Xdock:icon=b=c", "-Dapple.awt.application.appearance=system", "-Xss32m"});
  EXPECT_STREQ("", host.dockName);
  EXPECT_STREQ("b=c", host.dockIcon);
  EXPECT_STREQ("system", host.appearance);
  EXPECT_EQ(size_t{32} << 20, host.stackSize);
}

TEST(HostOptions, MayHoldEmptySlots) {
  EXPECT_TRUE(read({nullptr, "", "-XstartOnFirstThread", nullptr}).startOnFirstThread);
}

TEST(HostOptions, ThatOnlyResembleOneAreNotTaken) {
  const HostOptions host = read({"-XstartOnFirstThreads", "-xstartOnFirstThread", "Xdock:name=a",
                                 "-Xdock:names=a", "-Dapple.awt.application.name=a"});
  EXPECT_FALSE(host.startOnFirstThread);
  EXPECT_EQ(nullptr, host.dockName);
  EXPECT_EQ(nullptr, host.appearance);
}

TEST(HostOptions, KeepAStackBetweenEightMegabytesAndOneGigabyte) {
  EXPECT_EQ(JAVA_STACK_LEAST, read({"-Xss64m", "-Xss1m"}).stackSize);
  EXPECT_EQ(JAVA_STACK_MOST, read({"-Xss2g"}).stackSize);
  EXPECT_EQ(JAVA_STACK_MOST, read({"-Xss99999999999999999999999"}).stackSize);
  EXPECT_EQ(size_t{9} << 20, read({"-Xss9437184"}).stackSize);
}

TEST(HostOptions, PassOverAStackSizeThatIsNotANumber) {
  EXPECT_EQ(size_t{64} << 20, read({"-Xss64m", "-Xss", "-Xssmuch", "-Xss-9m"}).stackSize);
}

TEST(HostOptions, ThatAreForTheHostAloneAreNotTheJvms) {
  EXPECT_TRUE(isForHostOnly("-XstartOnFirstThread"));
  EXPECT_TRUE(isForHostOnly("-Xdock:name=a"));
  EXPECT_TRUE(isForHostOnly("-Xdock:icon="));
  EXPECT_FALSE(isForHostOnly("-Xss64m"));
  EXPECT_FALSE(isForHostOnly("-Dapple.awt.application.appearance=system"));
  EXPECT_FALSE(isForHostOnly("-Dname=-Xdock:name=a"));
  EXPECT_FALSE(isForHostOnly(""));
}

TEST(StackSize, IsReadWithEveryUnitInEitherCase) {
  EXPECT_EQ(1024u, stackSizeIn("-Xss1k"));
  EXPECT_EQ(2048u, stackSizeIn("-Xss2K"));
  EXPECT_EQ(size_t{3} << 20, stackSizeIn("-Xss3m"));
  EXPECT_EQ(size_t{4} << 20, stackSizeIn("-Xss4M"));
  EXPECT_EQ(size_t{5} << 30, stackSizeIn("-Xss5g"));
  EXPECT_EQ(size_t{6} << 30, stackSizeIn("-Xss6G"));
  EXPECT_EQ(size_t{7} << 40, stackSizeIn("-Xss7t"));
  EXPECT_EQ(123456u, stackSizeIn("-Xss123456"));
  EXPECT_EQ(8u, stackSizeIn("-Xss008"));
}

TEST(StackSize, ThatIsTooLargeForItsTypeIsTheLargest) {
  EXPECT_EQ(SIZE_MAX, stackSizeIn("-Xss18446744073709551616"));
  EXPECT_EQ(SIZE_MAX, stackSizeIn("-Xss18446744073709551615t"));
  EXPECT_EQ(SIZE_MAX, stackSizeIn("-Xss17592186044416m"));
}

TEST(StackSize, OfAnythingElseIsNone) {
  for (const char* option : {"-Xss", "-Xssm", "-Xss1mb", "-Xss1 m", "-Xss 1m", "-Xss+1m", "-Xss-1m",
                             "-Xss1.5m", "-Xss0x10m", "-Xsss1m", "-Xms1m", ""}) {
    EXPECT_EQ(0u, stackSizeIn(option)) << option;
  }
}
