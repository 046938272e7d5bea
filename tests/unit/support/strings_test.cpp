#include "support/strings.h"

#include <gtest/gtest.h>

#include <cstdlib>

TEST(IndexOf, FindsTheNthOccurrenceCountingFromOne) {
  EXPECT_EQ(3, indexOf("a:b:c", ':', 2));
}

TEST(IndexOf, IsMinusOneWhenThereAreFewerOccurrences) {
  EXPECT_EQ(-1, indexOf("a:b:c", ':', 3));
}
