#include "tools/objects/target.h"

#include <gtest/gtest.h>

using tools::Processor;
using tools::System;
using tools::Target;

TEST(Target, IsWrittenAsSystemAndProcessor) {
  EXPECT_EQ("macos-arm64", tools::targetText({System::macos, Processor::arm64}));
  EXPECT_EQ("macos-x86_64", tools::targetText({System::macos, Processor::x86_64}));
  EXPECT_EQ("linux-arm64", tools::targetText({System::linux_, Processor::arm64}));
  EXPECT_EQ("linux-x86_64", tools::targetText({System::linux_, Processor::x86_64}));
}

TEST(Target, IsReadFromItsText) {
  for (const System system : {System::macos, System::linux_}) {
    for (const Processor processor : {Processor::arm64, Processor::x86_64}) {
      const Target target{system, processor};
      EXPECT_EQ(target, tools::targetOf(tools::targetText(target)));
    }
  }
}

TEST(Target, IsNotReadFromAnotherText) {
  for (const char* text : {"", "macos", "macos-arm64 ", "MACOS-ARM64", "macos-aarch64",
                           "windows-x86_64", "linux-x86-64", "macos-universal"}) {
    EXPECT_FALSE(tools::targetOf(text)) << text;
  }
}

TEST(Target, DiffersInSystemOrProcessor) {
  const Target target{System::macos, Processor::arm64};
  EXPECT_TRUE((target != Target{System::macos, Processor::x86_64}));
  EXPECT_TRUE((target != Target{System::linux_, Processor::arm64}));
  EXPECT_FALSE((target != Target{System::macos, Processor::arm64}));
}

TEST(Target, OfThisMachineIsListed) {
  const std::string text = tools::targetText(tools::thisMachine());
  EXPECT_NE(std::string::npos, tools::allTargetTexts().find(text)) << text;
  EXPECT_EQ("macos-arm64, macos-x86_64, linux-arm64, linux-x86_64", tools::allTargetTexts());
}
