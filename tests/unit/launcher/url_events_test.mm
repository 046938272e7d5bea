#include "launcher/shell/url_events.h"

#include <gtest/gtest.h>

#include <string>

#import <Foundation/Foundation.h>

#include "launcher/shell/url_handler.h"
#include "tests/support/capture.h"

static const AEEventClass kOpenURL = 0x4755524C;
static const AEKeyword kDirectObject = 0x2D2D2D2D;

static NSAppleEventDescriptor* newEvent() {
  return [NSAppleEventDescriptor appleEventWithEventClass:kOpenURL
                                                  eventID:kOpenURL
                                         targetDescriptor:nil
                                                 returnID:kAutoGenerateReturnID
                                            transactionID:kAnyTransactionID];
}

static void sendEvent(NSString* url) {
  NSAppleEventDescriptor* event = newEvent();
  [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithString:url]
                 forKeyword:kDirectObject];
  [urlHandler handleURLEvent:event withReplyEvent:nil];
}

static bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class URLEvents : public testing::Test {
 protected:
  void SetUp() override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void TearDown() override { [pool_ release]; }

 private:
  NSAutoreleasePool* pool_ = nil;
};

TEST_F(URLEvents, WithoutRegistrationTheRequestedUrlIsNullAndThatIsLogged) {
  const char* url = "untouched";
  const test::Captured captured = test::capture([&] { url = getRequestedURL(); });
  EXPECT_EQ(nullptr, url);
  EXPECT_TRUE(holds(captured.err, "[Quorvane] [URL] Latest request is NULL\n")) << captured.err;
}

TEST_F(URLEvents, WithoutRegistrationThereIsNoHandler) { EXPECT_EQ(nil, urlHandler); }

TEST_F(URLEvents, RegistrationMakesTheHandlerAndIsLogged) {
  const test::Captured captured = test::capture(registerOSXEventListener);
  EXPECT_NE(nil, urlHandler);
  EXPECT_TRUE(holds(captured.err, "[Wrapper] Registering shared apple event manager handler\n"))
      << captured.err;
}

TEST_F(URLEvents, BeforeTheFirstEventTheRequestedUrlIsNullAndThatIsLogged) {
  registerOSXEventListener();
  const char* url = "untouched";
  const test::Captured captured = test::capture([&] { url = getRequestedURL(); });
  EXPECT_EQ(nullptr, url);
  EXPECT_TRUE(holds(captured.err, "[Quorvane] [URL] Latest request is NULL\n")) << captured.err;
}

TEST_F(URLEvents, AnEventsUrlIsStoredAndLogged) {
  registerOSXEventListener();
  const test::Captured captured = test::capture([] { sendEvent(@"quorvane://open?a=1%20b"); });
  EXPECT_STREQ("quorvane://open?a=1%20b", [urlHandler getRequestedURL]);
  const size_t received =
      captured.err.find("[Quorvane] [URL] Request received to open URL quorvane://open?a=1%20b\n");
  const size_t converted =
      captured.err.find("[Quorvane] [URL] Converted URL to 'quorvane://open?a=1%20b'\n");
  EXPECT_NE(std::string::npos, received) << captured.err;
  EXPECT_NE(std::string::npos, converted) << captured.err;
  EXPECT_LT(received, converted);
}

TEST_F(URLEvents, AskingForTheUrlLogsIt) {
  registerOSXEventListener();
  sendEvent(@"quorvane://open");
  const char* url = nullptr;
  const test::Captured captured = test::capture([&] { url = getRequestedURL(); });
  EXPECT_STREQ("quorvane://open", url);
  EXPECT_TRUE(holds(captured.err, "[Quorvane] [URL] Latest request is 'quorvane://open'\n"))
      << captured.err;
}

TEST_F(URLEvents, AfterTwoEventsTheSecondUrlIsReturned) {
  registerOSXEventListener();
  sendEvent(@"quorvane://first");
  sendEvent(@"quorvane://second");
  EXPECT_STREQ("quorvane://second", getRequestedURL());
}

TEST_F(URLEvents, AUrlHandedOutEarlierStaysReadableAfterTheNextEvent) {
  registerOSXEventListener();
  sendEvent(@"quorvane://first");
  const char* first = getRequestedURL();
  sendEvent(@"quorvane://second");
  EXPECT_STREQ("quorvane://first", first);
}

TEST_F(URLEvents, AUrlBeyondAsciiIsStoredAsUtf8) {
  registerOSXEventListener();
  sendEvent([NSString stringWithUTF8String:"quorvane://\xC3\xBC/\xE2\x82\xAC"]);
  EXPECT_STREQ("quorvane://\xC3\xBC/\xE2\x82\xAC", getRequestedURL());
}

TEST_F(URLEvents, AVeryLongUrlIsStoredWhole) {
  registerOSXEventListener();
  const std::string url = "quorvane://" + std::string(100000, 'x');
  sendEvent([NSString stringWithUTF8String:url.c_str()]);
  EXPECT_EQ(url, [urlHandler getRequestedURL]);
}

TEST_F(URLEvents, AnEventWithoutUrlLeavesTheUrlBeforeIt) {
  registerOSXEventListener();
  sendEvent(@"quorvane://first");
  [urlHandler handleURLEvent:newEvent() withReplyEvent:nil];
  EXPECT_STREQ("quorvane://first", getRequestedURL());
}

TEST_F(URLEvents, AUrlThatUtf8CannotHoldLeavesTheUrlBeforeIt) {
  registerOSXEventListener();
  sendEvent(@"quorvane://first");
  const unichar halfOfAPair[] = {'a', 0xD800, 'b'};
  sendEvent([NSString stringWithCharacters:halfOfAPair length:3]);
  EXPECT_STREQ("quorvane://first", getRequestedURL());
}
