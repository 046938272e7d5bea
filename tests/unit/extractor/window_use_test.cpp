#include "extractor/run/window_use.h"

#include <gtest/gtest.h>

static int questions = 0;

static bool there() {
  ++questions;
  return true;
}

static bool missing() {
  ++questions;
  return false;
}

TEST(WindowUse, OfAQuietRunIsNoneAndTheWindowSystemIsNotAskedFor) {
  for (const bool isRequired : {false, true}) {
    EXPECT_EQ(WindowUse::None, chooseWindowUse(true, there, isRequired));
    EXPECT_EQ(WindowUse::None, chooseWindowUse(true, missing, isRequired));
  }
  EXPECT_EQ(0, questions);
}

TEST(WindowUse, OfAnotherRunOpensTheWindowSystemThatIsThere) {
  EXPECT_EQ(WindowUse::Open, chooseWindowUse(false, there, true));
  EXPECT_EQ(WindowUse::Open, chooseWindowUse(false, there, false));
}

TEST(WindowUse, WithoutAWindowSystemIsRefusedWhereOneIsRequired) {
  EXPECT_EQ(WindowUse::Refuse, chooseWindowUse(false, missing, true));
}

TEST(WindowUse, WithoutAWindowSystemGoesOnWhereNoneIsRequired) {
  EXPECT_EQ(WindowUse::GoWithout, chooseWindowUse(false, missing, false));
}
