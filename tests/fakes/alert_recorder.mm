// Linked into a second build of each executable: records every alert, and presses its buttons for
// the test. The files are in the folder that QUORVANE_ALERTS names. "alert" is written when an
// alert is to be shown: its message, its advice with "\n" for a line end, its buttons, and whether
// this is the main thread. "shown" is written when its window is on the screen: X Y WIDTH HEIGHT
// from the screen's bottom left. The button whose title stands in the file "press" is pressed then;
// "Quit" there asks the application to quit. "prevents-quit" says whether the alert's window was
// told to keep the application from quitting.

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <cstdio>
#include <cstdlib>
#include <string>

using RunModal = NSInteger (*)(id, SEL);

static RunModal originalRunModal = NULL;

static std::string fileIn(const char* name) {
  const char* folder = getenv("QUORVANE_ALERTS");
  return std::string(folder == nullptr ? "/nonexistent" : folder) + "/" + name;
}

// Writes the file whole, so that a test that finds it can read it.
static void writeWhole(const char* name, NSString* text) {
  const std::string part = fileIn("part");
  FILE* file = fopen(part.c_str(), "w");
  if (file != nullptr) {
    fputs([text UTF8String], file);
    fclose(file);
    rename(part.c_str(), fileIn(name).c_str());
  }
}

static NSString* onOneLine(NSString* text) {
  return [[text componentsSeparatedByString:@"\n"] componentsJoinedByString:@"\\n"];
}

static void recordAlert(NSAlert* alert) {
  NSArray* titles = [[alert buttons] valueForKey:@"title"];
  writeWhole("alert",
             [NSString stringWithFormat:@"%@\n%@\n%@\n%@\n", onOneLine([alert messageText]),
                                        onOneLine([alert informativeText]),
                                        [titles componentsJoinedByString:@"|"],
                                        [NSThread isMainThread] ? @"main" : @"other"]);
}

@interface AlertWatcher : NSObject
- (void)look:(NSTimer*)timer;
@end

static void press(NSView* view, NSString* title) {
  if ([view isKindOfClass:[NSButton class]] && [[(NSButton*)view title] isEqualToString:title]) {
    [(NSButton*)view performClick:nil];
    return;
  }
  NSArray* parts = [view subviews];
  for (NSUInteger i = 0; i < [parts count]; ++i) {
    press([parts objectAtIndex:i], title);
  }
}

@implementation AlertWatcher

- (void)look:(NSTimer*)timer {
  (void)timer;
  NSWindow* window = [NSApp modalWindow];
  if (window == nil || ![window isVisible]) {
    return;
  }
  const NSRect frame = [window frame];
  [window displayIfNeeded];
  writeWhole("shown",
             [NSString stringWithFormat:@"%d %d %d %d\n", (int)frame.origin.x, (int)frame.origin.y,
                                        (int)frame.size.width, (int)frame.size.height]);
  NSString* title =
      [NSString stringWithContentsOfFile:[NSString stringWithUTF8String:fileIn("press").c_str()]];
  if ([title isEqualToString:@"Quit"]) {
    [NSApp terminate:nil];
  } else if (title != nil) {
    // Again until it has closed: the first may come before the modal loop looks.
    press([window contentView], title);
    // A click would be an event, behind which the modal loop looks whether it is over.
    [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:0
                                       timestamp:0
                                    windowNumber:[window windowNumber]
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0]
             atStart:NO];
  }
}

@end

// What a Mac's alert has from its beginning, and is told before it is shown.
@interface RecordedWindow : NSObject
- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents;
@end

@implementation RecordedWindow
- (void)setPreventsApplicationTerminationWhenModal:(BOOL)prevents {
  writeWhole("prevents-quit", prevents ? @"yes" : @"no");
}
@end

static id windowOfAlert(id alert, SEL selector) {
  (void)alert;
  (void)selector;
  static RecordedWindow* const window = [[RecordedWindow alloc] init];
  return window;
}

static NSInteger runModal(id self, SEL selector) {
  recordAlert(self);
  AlertWatcher* watcher = [[[AlertWatcher alloc] init] autorelease];
  NSTimer* timer = [NSTimer timerWithTimeInterval:0.05
                                           target:watcher
                                         selector:@selector(look:)
                                         userInfo:nil
                                          repeats:YES];
  [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSModalPanelRunLoopMode];
  return originalRunModal(self, selector);
}

__attribute__((constructor)) static void recordAlerts() {
  Method method = class_getInstanceMethod(objc_getClass("NSAlert"), sel_registerName("runModal"));
  void* replacement = reinterpret_cast<void*>(runModal);
  IMP original = method_setImplementation(method, reinterpret_cast<IMP>(replacement));
  originalRunModal = reinterpret_cast<RunModal>(reinterpret_cast<void*>(original));
  Method window = class_getInstanceMethod(objc_getClass("NSAlert"), sel_registerName("window"));
  method_setImplementation(window, reinterpret_cast<IMP>(reinterpret_cast<void*>(windowOfAlert)));
}
