// The redraw thread: what it asks of the main thread, and who lets go of the view.
#import "support/splash/redrawer.h"

#include <gtest/gtest.h>

#include <functional>

#import <objc/runtime.h>

#import "support/splash/splash_state.h"
#import "support/splash/splash_view.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"

// Stands in for the view and counts on which thread it is marked.
@interface MarkedView : NSObject {
 @public
  int onMain;
  int elsewhere;
}
- (void)setNeedsDisplay:(BOOL)flag;
@end

@implementation MarkedView
- (void)setNeedsDisplay:(BOOL)flag {
  (void)flag;
  int* count = [NSThread isMainThread] ? &onMain : &elsewhere;
  __atomic_add_fetch(count, 1, __ATOMIC_RELAXED);
}
@end

static void runMainLoop(NSTimeInterval seconds) {
  [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]];
}

// Waits up to 20 seconds, without running the main thread's run loop.
static void waitUntil(const std::function<bool()>& condition) {
  for (int i = 0; i < 2000 && !condition(); ++i) {
    [NSThread sleepForTimeInterval:0.01];
  }
}

class RedrawerTest : public testing::Test {
 protected:
  RedrawerTest()
      : pool_([[NSAutoreleasePool alloc] init]),
        view_([[MarkedView alloc] init]),
        redrawer_([[Redrawer alloc] init]),
        thread_([[NSThread alloc] initWithTarget:redrawer_
                                        selector:@selector(runThread:)
                                          object:view_]) {}
  ~RedrawerTest() override {
    end();
    [thread_ release];
    [redrawer_ release];
    [view_ release];
    [pool_ release];
  }

  void end() {
    [thread_ cancel];
    waitUntil([this] { return [thread_ isFinished]; });
    EXPECT_TRUE([thread_ isFinished]);
  }

  NSAutoreleasePool* pool_;
  MarkedView* view_;
  Redrawer* redrawer_;
  NSThread* thread_;
};

TEST_F(RedrawerTest, TheViewIsMarkedAgainAndAgainOnTheMainThreadOnly) {
  [thread_ start];
  for (int i = 0; i < 400 && view_->onMain < 5; ++i) {
    runMainLoop(0.05);
  }
  end();
  EXPECT_GE(view_->onMain, 5);
  EXPECT_EQ(view_->elsewhere, 0);
}

TEST_F(RedrawerTest, TheViewIsMarkedNoMoreThanAboutThirtyTimesASecond) {
  NSDate* begin = [NSDate date];
  [thread_ start];
  runMainLoop(0.5);
  EXPECT_LE(view_->onMain, -[begin timeIntervalSinceNow] / 0.03 + 1);
}

TEST_F(RedrawerTest, WhileTheMainThreadIsBusyNoMoreThanOneMarkWaits) {
  [thread_ start];
  [NSThread sleepForTimeInterval:0.6];
  end();
  EXPECT_EQ(view_->onMain + view_->elsewhere, 0);
  runMainLoop(0.2);
  EXPECT_EQ(view_->onMain, 1);
  EXPECT_EQ(view_->elsewhere, 0);
}

static bool hasEndedElsewhere = false;
static IMP endOfViews = nullptr;

static void endView(id view, SEL name) {
  hasEndedElsewhere = hasEndedElsewhere || ![NSThread isMainThread];
  ((void (*)(id, SEL))(void*)endOfViews)(view, name);
}

static bool isThreadEnding = false;
static bool mayThreadEnd = false;

static bool isSet(const bool* flag) { return __atomic_load_n(flag, __ATOMIC_ACQUIRE); }
static void set(bool* flag) { __atomic_store_n(flag, true, __ATOMIC_RELEASE); }

// Holds the thread up at its end, where it still has its view.
@interface EndListener : NSObject
- (void)threadWillEnd:(NSNotification*)notification;
@end

@implementation EndListener
- (void)threadWillEnd:(NSNotification*)notification {
  (void)notification;
  set(&isThreadEnding);
  waitUntil([] { return isSet(&mayThreadEnd); });
}
@end

TEST(RedrawThreadTest, TheViewDoesNotEndOnTheRedrawThread) {
  const test::OwnDisplay display;
  setenv("DISPLAY", display.name().c_str(), 1);
  endOfViews = class_getMethodImplementation([NSView class], @selector(dealloc));
  ASSERT_TRUE(class_addMethod([SplashView class], @selector(dealloc), (IMP)(void*)endView, "v@:"));
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  test::capture([] {
    init();
    setProgress(-1);
  });
  waitUntil([] { return [redrawThread isExecuting]; });
  EndListener* listener = [[EndListener alloc] init];
  [[NSNotificationCenter defaultCenter] addObserver:listener
                                           selector:@selector(threadWillEnd:)
                                               name:NSThreadWillExitNotification
                                             object:redrawThread];
  cleanup();
  [pool release];
  waitUntil([] { return isSet(&isThreadEnding); });
  EXPECT_TRUE(isThreadEnding);
  runMainLoop(0.2);  // whatever else holds the view lets go of it
  set(&mayThreadEnd);
  [NSThread sleepForTimeInterval:0.2];
  [[NSNotificationCenter defaultCenter] removeObserver:listener];
  [listener release];
  EXPECT_FALSE(hasEndedElsewhere);
}

// Minus a hundred is no progress at all; what is below is none yet.
TEST(SplashProgress, OfMinusAHundredHidesTheBarAndLessShowsAnEmptyOne) {
  const test::OwnDisplay display;
  setenv("DISPLAY", display.name().c_str(), 1);
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  double heights[4] = {};
  test::capture([&heights] {
    init();
    const int values[] = {-100, 50, -100, -101};
    for (int i = 0; i < 4; ++i) {
      setProgress(values[i]);
      heights[i] = [win frame].size.height;
    }
    cleanup();
  });
  EXPECT_GT(heights[1], heights[0]);
  EXPECT_EQ(heights[2], heights[0]);
  EXPECT_EQ(heights[3], heights[1]);
  [pool release];
}
