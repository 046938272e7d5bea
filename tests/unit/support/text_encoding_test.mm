// Texts on their way to Cocoa where the system's encoding is not UTF-8: on a Mac it is Mac Roman,
// whatever the user's language. The build sets GNUstep's to that for these tests.
#include <gtest/gtest.h>

#include <string>

#import <objc/runtime.h>

#include "launcher/shell/url_events.h"
#include "support/log/system_log.h"
#include "support/network/downloader.h"
#import "support/network/downloader_delegate.h"
#include "support/text/cocoa_text.h"
#include "tests/unit/launch/open_url.h"

static const char kText[] = "/Users/Zo\xC3\xAB/\xE6\x97\xA5";
static const unichar kCharacters[] = {'/', 'U', 's', 'e',  'r', 's',
                                      '/', 'Z', 'o', 0xEB, '/', 0x65E5};

static NSString* expected() {
  return [NSString stringWithCharacters:kCharacters length:sizeof kCharacters / sizeof(unichar)];
}

static NSMutableArray* given = nil;  // what Cocoa got

static id keepTexts(id, SEL, id, NSString* url, NSString* path) {
  [given addObject:url];
  [given addObject:path];
  return nil;
}

static void keepLogLine(NSString* line) { [given addObject:line]; }

class TextEncodingTest : public testing::Test {
 protected:
  TextEncodingTest() : pool_([[NSAutoreleasePool alloc] init]) { given = [NSMutableArray array]; }
  ~TextEncodingTest() override { [pool_ release]; }

  void SetUp() override {
    ASSERT_EQ([NSString defaultCStringEncoding], NSMacOSRomanStringEncoding);
  }

  static void expectLastLineHolds(NSString* text) {
    EXPECT_NE([[given lastObject] rangeOfString:text].location, NSNotFound)
        << [[given lastObject] UTF8String];
  }

  NSAutoreleasePool* pool_;
};

TEST_F(TextEncodingTest, Utf8IsReadAsUtf8) {
  EXPECT_TRUE([textFromUTF8(kText) isEqualToString:expected()]);
}

TEST_F(TextEncodingTest, WhatIsNotUtf8IsReadAsLatin1) {
  EXPECT_TRUE([textFromUTF8("Zo\xEB") isEqualToString:textFromUTF8("Zo\xC3\xAB")]);
  EXPECT_EQ([textFromUTF8("\xFF\xFE") length], 2U);
}

TEST_F(TextEncodingTest, TheDownloadersUrlAndPathAreReadAsUtf8) {
  // From here on a Downloader only says what it was given.
  class_replaceMethod([Downloader class], @selector(startDownloadingURL:fromURL:toFile:),
                      (IMP)(void*)keepTexts, "@@:@@@");
  downloadFile(kText, kText);
  ASSERT_EQ([given count], 2U);
  EXPECT_TRUE([[given objectAtIndex:0] isEqualToString:expected()]);
  EXPECT_TRUE([[given objectAtIndex:1] isEqualToString:expected()]);
}

TEST_F(TextEncodingTest, RequestedUrlsAreLoggedAsUtf8) {
  _NSLog_printf_handler = keepLogLine;
  openUrl(kText);
  expectLastLineHolds([NSString stringWithFormat:@"Converted URL to '%@'", expected()]);
  getRequestedURL();
  expectLastLineHolds([NSString stringWithFormat:@"Latest request is '%@'", expected()]);
}

TEST_F(TextEncodingTest, LogLinesAreReadAsUtf8) {
  _NSLog_printf_handler = keepLogLine;
  writeSystemLog(kText);
  expectLastLineHolds(expected());
}
