// The Downloader's own part of a download: its counting, its log lines and its end.
#import "support/network/downloader_delegate.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>

#import <objc/runtime.h>

#include "support/events/quit_cleanup.h"
#include "support/network/downloader.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

// A response of a given length, which GNUstep's own cannot hold beyond 32 bits.
@interface SizedResponse : NSURLResponse {
 @public
  long long length;
}
@end

@implementation SizedResponse
- (long long)expectedContentLength {
  return length;
}
@end

static NSURLResponse* responseOfLength(long long length) {
  SizedResponse* response =
      [[SizedResponse alloc] initWithURL:[NSURL URLWithString:@"http://127.0.0.1/file"]
                                MIMEType:nil
                   expectedContentLength:-1
                        textEncodingName:nil];
  response->length = length;
  return [response autorelease];
}

static NSURLResponse* responseWithStatus(int status) {
  return [[[NSHTTPURLResponse alloc] initWithURL:[NSURL URLWithString:@"http://127.0.0.1/file"]
                                      statusCode:status
                                     HTTPVersion:@"HTTP/1.1"
                                    headerFields:[NSDictionary dictionary]] autorelease];
}

// The lines that the system log received, without the time and the process in front.
static std::vector<std::string> systemLogOf(const std::function<void()>& code) {
  std::vector<std::string> texts;
  for (const std::string& line : test::linesOf(test::capture(code).err)) {
    const size_t end = line.find("] ");
    texts.push_back(end == std::string::npos ? line : line.substr(end + 2));
  }
  return texts;
}

using Lines = std::vector<std::string>;

class DownloaderTest : public testing::Test {
 protected:
  DownloaderTest()
      : pool_([[NSAutoreleasePool alloc] init]), downloader_([[Downloader alloc] init]) {}
  ~DownloaderTest() override {
    [downloader_ release];
    [pool_ release];
  }

  Lines logOfData(NSUInteger length) {
    return systemLogOf([&] { [downloader_ download:nil didReceiveDataOfLength:length]; });
  }

  NSAutoreleasePool* pool_;
  Downloader* downloader_;
};

TEST_F(DownloaderTest, WithoutALengthTheBytesReceivedAreLogged) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(-1)];
  EXPECT_EQ(logOfData(1000), Lines{"Bytes received - 1000"});
  EXPECT_EQ(logOfData(24), Lines{"Bytes received - 1024"});
}

TEST_F(DownloaderTest, WithALengthThePercentageIsLogged) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(3000)];
  EXPECT_EQ(logOfData(1000), Lines{"Percent complete - 33.333336"});
  EXPECT_EQ(logOfData(2000), Lines{"Percent complete - 100.000000"});
}

TEST_F(DownloaderTest, MoreBytesThanExpectedAreLoggedAsOneHundredPercent) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(10)];
  EXPECT_EQ(logOfData(11), Lines{"Percent complete - 100.000000"});
  EXPECT_EQ(logOfData(5000), Lines{"Percent complete - 100.000000"});
}

TEST_F(DownloaderTest, BytesForAnEmptyFileAreLoggedAsOneHundredPercent) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(0)];
  EXPECT_EQ(logOfData(1), Lines{"Percent complete - 100.000000"});
}

TEST_F(DownloaderTest, ALengthBeyond32BitsIsUsedWhole) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(4000000000LL)];
  EXPECT_EQ(logOfData(1000000000), Lines{"Percent complete - 25.000000"});
}

TEST_F(DownloaderTest, TheCountStopsAtItsLargestValueInsteadOfTurningNegative) {
  [downloader_ download:nil didReceiveResponse:responseOfLength(-1)];
  logOfData(INT_MAX);
  EXPECT_EQ(logOfData(1), Lines{"Bytes received - 2147483647"});
  EXPECT_EQ([downloader_ bytesReceived], INT_MAX);
}

TEST_F(DownloaderTest, ASecondResponseResetsTheCountAndIsKept) {
  NSURLResponse* second = responseOfLength(50);
  [downloader_ download:nil didReceiveResponse:responseOfLength(100)];
  logOfData(60);
  [downloader_ download:nil didReceiveResponse:second];
  EXPECT_EQ([downloader_ bytesReceived], 0);
  EXPECT_EQ([downloader_ downloadResponse], second);
  EXPECT_EQ(logOfData(10), Lines{"Percent complete - 20.000000"});
}

TEST_F(DownloaderTest, AFailureIsLoggedWithItsReasonAndItsUrlAndEndsTheWait) {
  NSDictionary* details = [NSDictionary
      dictionaryWithObjectsAndKeys:@"no such host", NSLocalizedDescriptionKey, @"http://nowhere/",
                                   NSURLErrorFailingURLStringErrorKey, nil];
  NSError* error = [NSError errorWithDomain:NSURLErrorDomain code:-1003 userInfo:details];
  EXPECT_FALSE([downloader_ isDone]);
  EXPECT_EQ(systemLogOf([&] { [downloader_ download:nil didFailWithError:error]; }),
            Lines{"Download failed! Error - no such host http://nowhere/"});
  EXPECT_TRUE([downloader_ isDone]);
}

TEST_F(DownloaderTest, TheFinishIsLoggedAndEndsTheWait) {
  EXPECT_EQ(systemLogOf([&] { [downloader_ downloadDidFinish:nil]; }), Lines{"downloadDidFinish"});
  EXPECT_TRUE([downloader_ isDone]);
}

TEST_F(DownloaderTest, AnAnswerWithASuccessStatusGoesOn) {
  [downloader_ download:nil didReceiveResponse:responseWithStatus(200)];
  EXPECT_FALSE([downloader_ isDone]);
}

TEST_F(DownloaderTest, AnAnswerWithAnErrorStatusEndsTheDownloadAsAFailure) {
  NSURLResponse* response = responseWithStatus(503);
  EXPECT_EQ(systemLogOf([&] { [downloader_ download:nil didReceiveResponse:response]; }),
            Lines{"Download failed! Error - The server answered with status 503 "
                  "http://127.0.0.1/file"});
  EXPECT_TRUE([downloader_ isDone]);
}

// Keeps what its download asked for.
@interface RequestKeeper : Downloader {
 @public
  NSURLRequest* request;
}
@end

@implementation RequestKeeper
- (void)download:(NSURLDownload*)download didFailWithError:(NSError*)error {
  request = [[download request] retain];
  [super download:download didFailWithError:error];
}
- (void)dealloc {
  [request release];
  [super dealloc];
}
@end

static void runUntilDone(Downloader* downloader) {
  for (int turn = 0; turn < 100 && ![downloader isDone]; ++turn) {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.1]];
  }
}

TEST_F(DownloaderTest, TheRequestUsesTheDefaultCachePolicyAndWaitsSixtySeconds) {
  test::TempFolder folder;
  NSString* target = [NSString stringWithUTF8String:(folder / "file").c_str()];
  RequestKeeper* keeper = [[RequestKeeper alloc] init];
  test::capture([&] {
    [keeper startDownloadingURL:keeper fromURL:@"http://127.0.0.1:1/" toFile:target];
    runUntilDone(keeper);
  });
  ASSERT_TRUE([keeper isDone]);
  EXPECT_EQ([keeper->request timeoutInterval], 60.0);
  EXPECT_EQ([keeper->request cachePolicy], NSURLRequestUseProtocolCachePolicy);
  [keeper release];
}

// A connection that says when it goes away.
@interface MortalDownload : NSObject {
 @public
  bool* isGone;
  int cancelled;
}
- (void)cancel;
@end

@implementation MortalDownload
- (void)cancel {
  ++cancelled;
}
- (void)dealloc {
  *isGone = true;
  [super dealloc];
}
@end

class EndOfDownloadTest : public DownloaderTest {
 protected:
  EndOfDownloadTest() : download_([[MortalDownload alloc] init]) { download_->isGone = &isGone_; }

  NSURLDownload* download() { return (NSURLDownload*)download_; }

  // Expects that the connection outlives the callback, which it has made itself, and not more.
  void expectGoneLater(const std::function<void()>& callback) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    test::capture(callback);
    EXPECT_TRUE([downloader_ isDone]);
    EXPECT_FALSE(isGone_) << "released inside of its own callback";
    [pool release];
    EXPECT_TRUE(isGone_) << "never released";
  }

  bool isGone_ = false;
  MortalDownload* download_;
};

TEST_F(EndOfDownloadTest, AConnectionOutlivesTheCallbackThatItHasFinished) {
  expectGoneLater([&] { [downloader_ downloadDidFinish:download()]; });
}

TEST_F(EndOfDownloadTest, AConnectionOutlivesTheCallbackThatItHasFailed) {
  expectGoneLater([&] { [downloader_ download:download() didFailWithError:nil]; });
}

TEST_F(EndOfDownloadTest, AConnectionOutlivesTheCallbackInWhichItIsCancelled) {
  expectGoneLater([&] {
    [downloader_ download:download() didReceiveResponse:responseWithStatus(503)];
    EXPECT_EQ(download_->cancelled, 1);
  });
}

static int downloadsAskedFor = 0;

static id bearNothing(id download, SEL, NSURLRequest*, id) {
  ++downloadsAskedFor;
  [download release];
  return nil;
}

// From here on every download is refused.
static void refuseDownloads() {
  NSURLDownload* download = [NSURLDownload alloc];
  const SEL initialiser = @selector(initWithRequest:delegate:);
  method_setImplementation(class_getInstanceMethod([download class], initialiser),
                           reinterpret_cast<IMP>(bearNothing));
  [download release];
}

TEST_F(DownloaderTest, AnUnbornDownloadIsLoggedAndIsNeverDone) {
  refuseDownloads();
  id started = downloader_;
  EXPECT_EQ(systemLogOf([&] {
              started = [downloader_ startDownloadingURL:downloader_
                                                 fromURL:@"http://127.0.0.1/ab"
                                                  toFile:@"/nonexistent/file"];
            }),
            (Lines{"Starting download from = http://127.0.0.1/ab", "Download failed"}));
  EXPECT_EQ(downloadsAskedFor, 1);
  EXPECT_EQ(nil, started);
  EXPECT_FALSE([downloader_ isDone]);
}

TEST_F(DownloaderTest, AUrlThatIsNoneIsAFailureAndNotARequest) {
  refuseDownloads();
  id started = downloader_;
  EXPECT_EQ(systemLogOf([&] {
              started = [downloader_ startDownloadingURL:downloader_
                                                 fromURL:@"http://127.0.0.1/a b"
                                                  toFile:@"/nonexistent/file"];
            }),
            (Lines{"Starting download from = http://127.0.0.1/a b",
                   "Download failed! Error - This is not a valid URL: http://127.0.0.1/a b"}));
  EXPECT_EQ(downloadsAskedFor, 0);
  EXPECT_EQ(nil, started);
  EXPECT_FALSE([downloader_ isDone]);
}

static void expectWaitEndsWithoutAFile(const char* url) {
  test::TempFolder folder;
  test::writeFile(folder / "file", "from before");
  int result = 0;
  test::capture([&] { result = downloadFile(url, (folder / "file").c_str()); });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(test::namesIn(folder.path()), Lines{});
}

TEST_F(DownloaderTest, TheWaitForAnUnbornDownloadEnds) {
  refuseDownloads();
  expectWaitEndsWithoutAFile("http://127.0.0.1/ab");
}

TEST_F(DownloaderTest, TheWaitForAUrlThatIsNoneEnds) {
  expectWaitEndsWithoutAFile("http://127.0.0.1/a b");
}

// The user quits while the main thread waits for a download: the application's delegate undoes it
// in an event, and the process ends there.
@interface QuittingUser : NSObject
- (void)quit;
@end

@implementation QuittingUser
- (void)quit {
  runQuitCleanup();
  _exit(7);
}
@end

static test::Result quitDuringDownloadTo(const std::string& path) {
  const test::Background server({{QUORVANE_SOURCE "/tests/fakes/web_server.py"}});
  const std::string url = "http://127.0.0.1:" + server.waitForLine("listening ") +
                          "/drip?count=1000&pause=0.01&size=500";
  return test::runInChild([&] {
    [[[QuittingUser alloc] init] performSelector:@selector(quit) withObject:nil afterDelay:1];
    downloadFile(url.c_str(), path.c_str());
  });
}

TEST_F(DownloaderTest, AQuitInTheMiddleOfADownloadLeavesNoFile) {
  const test::TempFolder folder;
  EXPECT_EQ(quitDuringDownloadTo(folder / "file").status, 7);
  EXPECT_EQ(test::namesIn(folder.path()), Lines{});
}
