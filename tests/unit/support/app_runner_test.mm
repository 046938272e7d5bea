#include <gtest/gtest.h>

#include <vector>

#import "support/splash/app_runner.h"

static std::vector<int> shownPercents;
static bool isHidden = false;

@interface RecordedRunner : AppRunner
@end

@implementation RecordedRunner
- (void)setPercent:(int)percent thenSleep:(NSTimeInterval)seconds {
  (void)seconds;
  shownPercents.push_back(percent);
}
- (void)hideWindow {
  isHidden = true;
}
@end

TEST(AppRunner, HidesTheBarRunsItThroughEveryPercentAndClosesTheWindow) {
  std::vector<int> wanted = {-100, -1};
  for (int percent = 0; percent <= 100; ++percent) {
    wanted.push_back(percent);
  }
  wanted.insert(wanted.end(), {-1, -100});

  RecordedRunner* runner = [[RecordedRunner alloc] init];
  [runner runThread:nil];
  [runner release];
  EXPECT_EQ(wanted, shownPercents);
  EXPECT_TRUE(isHidden);
}
