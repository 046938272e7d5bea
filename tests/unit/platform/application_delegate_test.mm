#include "launcher/shell/application_delegate.h"

#include <gtest/gtest.h>

#include "launcher/shell/url_events.h"
#include "platform/gnustep/apple_events.h"
#include "platform/gnustep/application_base.h"

class OpenURL : public testing::Test {
 protected:
  void SetUp() override {
    pool_ = [[NSAutoreleasePool alloc] init];
    delegate_ = [[[ApplicationDelegate alloc] init] autorelease];
  }
  void TearDown() override { [pool_ release]; }

  ApplicationDelegate* delegate_ = nil;

 private:
  NSAutoreleasePool* pool_ = nil;
};

TEST_F(OpenURL, ReachesTheRegisteredHandlerAsAnEvent) {
  registerOSXEventListener();
  EXPECT_TRUE([delegate_ application:nil openURL:[NSURL URLWithString:@"quorvane://open/1"]]);
  EXPECT_STREQ("quorvane://open/1", getRequestedURL());
}

TEST_F(OpenURL, GivenAsATextReachesTheHandlerToo) {
  registerOSXEventListener();
  EXPECT_TRUE([delegate_ application:nil openURL:@"quorvane://open/2"]);
  EXPECT_STREQ("quorvane://open/2", getRequestedURL());
}

TEST_F(OpenURL, WithoutARegisteredHandlerIsRefused) {
  EXPECT_FALSE([delegate_ application:nil openURL:@"quorvane://open"]);
}

TEST_F(OpenURL, OfNothingLeavesTheUrlBeforeIt) {
  registerOSXEventListener();
  [delegate_ application:nil openURL:@"quorvane://first"];
  [delegate_ application:nil openURL:nil];
  EXPECT_STREQ("quorvane://first", getRequestedURL());
}

TEST_F(OpenURL, ASecondRegistrationKeepsTheHandlerAndItsUrl) {
  registerOSXEventListener();
  [delegate_ application:nil openURL:@"quorvane://first"];
  registerOSXEventListener();
  EXPECT_STREQ("quorvane://first", getRequestedURL());
  [delegate_ application:nil openURL:@"quorvane://second"];
  EXPECT_STREQ("quorvane://second", getRequestedURL());
}

TEST_F(OpenURL, OfAFileIsItsFileUrl) {
  registerOSXEventListener();
  EXPECT_TRUE([delegate_ application:nil openFile:@"/tmp/a file.txt"]);
  EXPECT_STREQ("file:///tmp/a%20file.txt", getRequestedURL());
}

TEST_F(OpenURL, OfAFileIsEscapedWhereAUrlNeedsIt) {
  registerOSXEventListener();
  NSString* path = [NSString stringWithUTF8String:"/tmp/Größe 中#1?50%.txt"];
  EXPECT_TRUE([delegate_ application:nil openFile:path]);
  EXPECT_STREQ("file:///tmp/Gr%C3%B6%C3%9Fe%20%E4%B8%AD%231%3F50%25.txt", getRequestedURL());
}

TEST_F(OpenURL, OfSeveralFilesKeepsTheLast) {
  registerOSXEventListener();
  [delegate_ application:nil openURL:@"quorvane://first"];
  [delegate_ application:nil openFiles:[NSArray arrayWithObjects:@"/tmp/one", @"/tmp/two", nil]];
  EXPECT_STREQ("file:///tmp/two", getRequestedURL());
}

TEST_F(OpenURL, OfNoFileIsRefused) { EXPECT_FALSE([delegate_ application:nil openFile:nil]); }

TEST_F(OpenURL, IsRegisteredForWhileTheApplicationFinishesLaunching) {
  [delegate_ applicationWillFinishLaunching:nil];
  EXPECT_TRUE([delegate_ application:nil openURL:@"quorvane://open"]);
}

TEST_F(OpenURL, ThatCameBeforeTheApplicationFinishesLaunchingIsNotLost) {
  registerOSXEventListener();
  [delegate_ application:nil openURL:@"quorvane://early"];
  [delegate_ applicationWillFinishLaunching:nil];
  EXPECT_STREQ("quorvane://early", getRequestedURL());
}

TEST_F(OpenURL, AnEventOfAnotherClassFindsNoHandler) {
  registerOSXEventListener();
  NSAppleEventDescriptor* event = [NSAppleEventDescriptor appleEventWithEventClass:0x61657674
                                                                           eventID:0x6F617070
                                                                  targetDescriptor:nil
                                                                          returnID:0
                                                                     transactionID:0];
  EXPECT_FALSE(dispatchAppleEvent(event));
}
