// NSURLDownload as its delegates see it: which calls come, in which order, and which do not.
#import <Foundation/Foundation.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/support/background.h"
#include "tests/support/files.h"

using Calls = std::vector<std::string>;
using testing::ElementsAre;

// Notes the calls, and does in some of them what the test tells it to.
@interface Recorder : NSObject <NSURLDownloadDelegate> {
 @public
  Calls* calls;
  NSString* destination;  // set when the download asks for one
  BOOL cancelsAtResponse;
  BOOL refusesRedirect;
  BOOL ended;
  NSInteger errorCode;
}
@end

@implementation Recorder
- (id)init {
  self = [super init];
  calls = new Calls;
  return self;
}
- (void)dealloc {
  delete calls;
  [super dealloc];
}
- (void)downloadDidBegin:(NSURLDownload*)download {
  (void)download;
  calls->push_back("begin");
}
- (NSURLRequest*)download:(NSURLDownload*)download
          willSendRequest:(NSURLRequest*)request
         redirectResponse:(NSURLResponse*)response {
  (void)download;
  const int status = static_cast<int>([(NSHTTPURLResponse*)response statusCode]);
  calls->push_back("redirect " + std::to_string(status) + " to " +
                   [[[request URL] path] UTF8String]);
  return refusesRedirect ? nil : request;
}
- (void)download:(NSURLDownload*)download didReceiveResponse:(NSURLResponse*)response {
  calls->push_back("response " + std::to_string([response expectedContentLength]));
  if (cancelsAtResponse) {
    [download cancel];
    ended = YES;
  }
}
- (void)download:(NSURLDownload*)download decideDestinationWithSuggestedFilename:(NSString*)name {
  (void)name;
  calls->push_back("decide");
  [download setDestination:destination allowOverwrite:NO];
}
- (void)download:(NSURLDownload*)download didCreateDestination:(NSString*)path {
  (void)download;
  calls->push_back(std::string("created ") + [[path lastPathComponent] UTF8String]);
}
- (void)download:(NSURLDownload*)download didReceiveDataOfLength:(NSUInteger)length {
  (void)download;
  calls->push_back("data " + std::to_string(length));
}
- (void)downloadDidFinish:(NSURLDownload*)download {
  (void)download;
  calls->push_back("finish");
  ended = YES;
}
- (void)download:(NSURLDownload*)download didFailWithError:(NSError*)error {
  (void)download;
  calls->push_back("fail");
  errorCode = [error code];
  ended = YES;
}
@end

class UrlDownloadTest : public testing::Test {
 protected:
  UrlDownloadTest()
      : pool_([[NSAutoreleasePool alloc] init]),
        recorder_([[Recorder alloc] init]),
        server_({{QUORVANE_SOURCE "/tests/fakes/web_server.py"}}),
        port_(server_.waitForLine("listening ")) {
    recorder_->destination = [NSString stringWithUTF8String:(folder_ / "file").c_str()];
  }
  ~UrlDownloadTest() override {
    [recorder_ release];
    [pool_ release];
  }

  NSURLRequest* requestFor(const std::string& page, NSTimeInterval timeout) {
    const std::string url = "http://127.0.0.1:" + port_ + "/" + page;
    return [NSURLRequest
         requestWithURL:[NSURL URLWithString:[NSString stringWithUTF8String:url.c_str()]]
            cachePolicy:NSURLRequestUseProtocolCachePolicy
        timeoutInterval:timeout];
  }

  // Downloads a page until it ends and returns the calls.
  Calls download(const std::string& page, NSTimeInterval timeout = 60) {
    NSURLDownload* download = [[NSURLDownload alloc] initWithRequest:requestFor(page, timeout)
                                                            delegate:recorder_];
    runUntil([this] { return recorder_->ended == YES; });
    run(0.1);  // for a call that must not come any more
    [download release];
    return *recorder_->calls;
  }

  // Runs the run loop until `isDone`, which must come true within half a minute.
  template <typename Condition>
  static void runUntil(Condition isDone) {
    const double end = now() + 30;
    while (!isDone() && now() < end) {
      run(0.01);
    }
    EXPECT_TRUE(isDone());
  }

  // Seconds on a clock that nobody sets.
  static double now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
  }

  static void run(NSTimeInterval seconds) {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]];
  }

  NSAutoreleasePool* pool_;
  Recorder* recorder_;
  test::TempFolder folder_;
  test::Background server_;
  std::string port_;
};

TEST_F(UrlDownloadTest, CallsComeInTheirOrder) {
  EXPECT_THAT(download("length?size=7"),
              ElementsAre("begin", "response 7", "decide", "created file", "data 7", "finish"));
}

TEST_F(UrlDownloadTest, ARedirectIsOfferedBeforeItIsFollowed) {
  EXPECT_THAT(download("redirect?to=/close%3Fsize=7"),
              ElementsAre("begin", "redirect 302 to /close", "response -1", "decide",
                          "created file", "data 7", "finish"));
}

TEST_F(UrlDownloadTest, ARedirectThatIsRefusedIsTheAnswer) {
  recorder_->refusesRedirect = YES;
  EXPECT_THAT(download("redirect?to=/close%3Fsize=7"),
              ElementsAre("begin", "redirect 302 to /close", "response 11", "decide",
                          "created file", "data 11", "finish"));
  EXPECT_EQ(test::readFile(folder_ / "file"), "go on there");
}

TEST_F(UrlDownloadTest, NoCallComesAfterACancelInsideACall) {
  recorder_->cancelsAtResponse = YES;
  EXPECT_THAT(download("length?size=7"), ElementsAre("begin", "response 7"));
  EXPECT_THAT(test::namesIn(folder_.path()), testing::IsEmpty());
}

TEST_F(UrlDownloadTest, NoCallComesAfterACancelMidway) {
  NSURLDownload* download = [[NSURLDownload alloc] initWithRequest:requestFor("stall-body", 60)
                                                          delegate:recorder_];
  runUntil([this] { return recorder_->calls->size() >= 5; });
  ASSERT_EQ(recorder_->calls->back(), "data 1000");
  [download cancel];
  [download release];
  run(0.1);
  EXPECT_EQ(recorder_->calls->back(), "data 1000");
  EXPECT_THAT(test::namesIn(folder_.path()), testing::IsEmpty());
}

TEST_F(UrlDownloadTest, ACancelBeforeTheBeginningIsSilent) {
  NSURLDownload* download = [[NSURLDownload alloc] initWithRequest:requestFor("length?size=7", 60)
                                                          delegate:recorder_];
  [download cancel];
  [download release];
  run(0.2);
  EXPECT_THAT(*recorder_->calls, testing::IsEmpty());
}

TEST_F(UrlDownloadTest, TheDelegateIsReleasedAtTheEnd) {
  download("length?size=7");
  EXPECT_EQ([recorder_ retainCount], 1U);
}

TEST_F(UrlDownloadTest, AServerThatNeverAnswersEndsInATimeOut) {
  const double start = now();
  download("stall", 0.5);
  EXPECT_THAT(*recorder_->calls, ElementsAre("begin", "fail"));
  EXPECT_EQ(recorder_->errorCode, NSURLErrorTimedOut);
  EXPECT_GE(now() - start, 0.5);
}

// The time-outs below leave a busy machine some seconds to send and take what is sent.

TEST_F(UrlDownloadTest, AServerThatStopsMidwayEndsInATimeOut) {
  download("stall-body", 4);
  EXPECT_THAT(*recorder_->calls,
              ElementsAre("begin", "response 2000", "decide", "created file", "data 1000", "fail"));
  EXPECT_EQ(recorder_->errorCode, NSURLErrorTimedOut);
  EXPECT_THAT(test::namesIn(folder_.path()), testing::IsEmpty());
}

TEST_F(UrlDownloadTest, AServerThatIsMerelySlowDoesNotTimeOut) {
  // A byte every 0.5 seconds, for longer than the time-out.
  const double start = now();
  download("drip?count=10&pause=0.5", 4);
  EXPECT_GT(now() - start, 4);
  EXPECT_EQ(recorder_->calls->back(), "finish");
  EXPECT_EQ(test::readFile(folder_ / "file"), "dddddddddd");
}

TEST_F(UrlDownloadTest, AnExistingFileFailsWhereOverwritingIsNotAllowed) {
  test::writeFile(folder_ / "file", "from before");
  download("length?size=7");
  EXPECT_EQ(recorder_->calls->back(), "fail");
  EXPECT_EQ(recorder_->errorCode, NSURLErrorCannotMoveFile);
  EXPECT_EQ(test::readFile(folder_ / "file"), "from before");
  EXPECT_THAT(test::namesIn(folder_.path()), ElementsAre("file"));
}

TEST_F(UrlDownloadTest, ARequestWithoutAUrlGivesNoDownload) {
  NSURLRequest* request = [NSURLRequest requestWithURL:nil];
  EXPECT_EQ([[NSURLDownload alloc] initWithRequest:request delegate:recorder_], nil);
}

TEST_F(UrlDownloadTest, TwoDownloadsRunAtTheSameTime) {
  Recorder* other = [[Recorder alloc] init];
  other->destination = [NSString stringWithUTF8String:(folder_ / "other").c_str()];
  const std::string page = "held?size=6&path=" + (folder_ / "go");
  NSURLDownload* held = [[NSURLDownload alloc] initWithRequest:requestFor(page, 60) delegate:other];
  runUntil([other] { return !other->calls->empty() && other->calls->back() == "data 3"; });
  download("length?size=1000000");
  EXPECT_EQ(test::readFile(folder_ / "file").size(), 1000000U);
  EXPECT_FALSE(other->ended);
  test::writeFile(folder_ / "go", "");
  runUntil([other] { return other->ended == YES; });
  EXPECT_EQ(test::readFile(folder_ / "other"), std::string("\0\1\2\3\4\5", 6));
  [held release];
  [other release];
}
