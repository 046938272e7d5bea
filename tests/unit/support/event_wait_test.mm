// What an application's main thread does while it waits for a download.
#include "support/events/event_wait.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#import <AppKit/AppKit.h>

#include "platform/window_system.h"
#include "support/events/keep_alive.h"
#include "support/events/window_events.h"
#include "support/network/downloader.h"
#include "support/process/spawner.h"
#include "support/process/start_program.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

static const char kServer[] = QUORVANE_SOURCE "/tests/fakes/web_server.py";

// Writes a file at the first event that is dispatched to it, and counts the others.
@interface ListeningWindow : NSWindow {
 @public
  std::string* file;
  int events;
}
@end

@implementation ListeningWindow
- (void)sendEvent:(NSEvent*)event {
  if ([event type] == NSApplicationDefined && ++events == 1) {
    test::writeFile(*file, "now");
  }
}
@end

// What happens on the main thread while it waits.
@interface Meanwhile : NSObject
- (void)endWait;
- (void)giveUp:(NSTimer*)timer;
@end

static bool hasGivenUp = false;

@implementation Meanwhile
- (void)endWait {
  endEventWait();
}
- (void)giveUp:(NSTimer*)timer {
  hasGivenUp = true;
  test::writeFile([[timer userInfo] UTF8String], "too late");
}
@end

class EventWaitTest : public testing::Test {
 protected:
  EventWaitTest() : pool_([[NSAutoreleasePool alloc] init]) {
    setenv("DISPLAY", display_.name().c_str(), 1);
    EXPECT_TRUE(openWindowSystem());
    window_ = [[ListeningWindow alloc] initWithContentRect:NSMakeRect(0, 0, 10, 10)
                                                 styleMask:0
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO];
    window_->file = &release_;
    meanwhile_ = [[Meanwhile alloc] init];
  }
  ~EventWaitTest() override {
    [window_ release];
    [meanwhile_ release];
    [pool_ release];
  }

  void postEvent() {
    [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:[window_ windowNumber]
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
  }

  // Downloads a page whose second half comes only once the file `release_` is there.
  void downloadHeld() {
    test::Background server({{kServer}});
    const std::string url =
        "http://127.0.0.1:" + server.waitForLine("listening ") + "/held?size=1000&path=" + release_;
    test::capture([&] { downloadFile(url.c_str(), target_.c_str()); });
    EXPECT_EQ(test::readFile(target_).size(), 1000U);
  }

  // So that a test without success ends by itself.
  void giveUpAfter(NSTimeInterval seconds) {
    [NSTimer scheduledTimerWithTimeInterval:seconds
                                     target:meanwhile_
                                   selector:@selector(giveUp:)
                                   userInfo:[NSString stringWithUTF8String:release_.c_str()]
                                    repeats:NO];
  }

  test::OwnDisplay display_;
  test::TempFolder folder_;
  std::string release_ = folder_ / "release";
  std::string target_ = folder_ / "file";
  NSAutoreleasePool* pool_;
  ListeningWindow* window_;
  Meanwhile* meanwhile_;
};

TEST_F(EventWaitTest, EventsAreAnsweredWhileADownloadIsWaitedFor) {
  giveUpAfter(20);
  postEvent();
  postEvent();
  downloadHeld();
  EXPECT_FALSE(hasGivenUp);
  EXPECT_EQ(window_->events, 2);
}

TEST_F(EventWaitTest, EventsAreAnsweredWhileAChildMayFail) {
  const std::string script = "while [ ! -e '" + release_ + "' ]; do sleep 0.02; done; exit 3";
  std::string words[] = {"sh", "-c", script};
  char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t child = 0;
  ASSERT_EQ(0, startProgram(&child, "/bin/sh", arguments));
  postEvent();
  EXPECT_TRUE(childFailsWithin(child, 20));
  EXPECT_EQ(window_->events, 1);
  test::writeFile(release_, "at last");
}

TEST_F(EventWaitTest, EventsAreAnsweredDuringLongStepsButNotMoreThanAboutThirtyTimesASecond) {
  const useconds_t kLonger = 40000;
  bool isSeen = false;
  // A busy machine may take longer than the interval for the two calls.
  for (int i = 0; i < 100 && !isSeen; ++i) {
    usleep(kLonger);
    window_->events = 0;
    postEvent();
    answerEvents();
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(window_->events, 1);
    postEvent();
    answerEvents();
    isSeen = std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(20);
    if (isSeen) {
      EXPECT_EQ(window_->events, 1);
    }
  }
  EXPECT_TRUE(isSeen);
}

TEST_F(EventWaitTest, EventsAreNotAnsweredOnAnotherThread) {
  usleep(40000);
  postEvent();
  std::thread([] { answerEvents(); }).join();
  EXPECT_EQ(window_->events, 0);
  answerEvents();
  EXPECT_EQ(window_->events, 1);
}

TEST_F(EventWaitTest, EventsAreAwaitedAsLongAsAsked) {
  handleEvents(0);
  const auto begin = std::chrono::steady_clock::now();
  handleEvents(0.3);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(250));
}

TEST_F(EventWaitTest, AllWaitingEventsAreHandledWithoutWaitingForMore) {
  postEvent();
  postEvent();
  postEvent();
  handleEvents(0);
  EXPECT_EQ(window_->events, 3);
}

static std::string releasedByKeepAlive;
static std::atomic<int> keptAlive{0};

TEST_F(EventWaitTest, TheSplashIsKeptAliveWhileADownloadIsWaitedFor) {
  giveUpAfter(20);
  releasedByKeepAlive = release_;
  setKeepAlive([] { test::writeFile(releasedByKeepAlive, "now"); });
  downloadHeld();
  setKeepAlive(nullptr);
  EXPECT_FALSE(hasGivenUp);
}

TEST_F(EventWaitTest, ADownloadOnAnotherThreadLeavesTheEventsToTheMainThread) {
  setKeepAlive([] { ++keptAlive; });
  postEvent();
  test::writeFile(release_, "at once");
  std::thread([&] { downloadHeld(); }).join();
  setKeepAlive(nullptr);
  EXPECT_EQ(keptAlive, 0);
  EXPECT_EQ(window_->events, 0);
}

TEST_F(EventWaitTest, TheWaitEndsWhenACallbackEndsIt) {
  const auto start = std::chrono::steady_clock::now();
  std::thread caller([this] {
    usleep(100000);
    [meanwhile_ performSelectorOnMainThread:@selector(endWait) withObject:nil waitUntilDone:NO];
  });
  waitForEvent(50);
  caller.join();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));
}
