#import <CoreGraphics/CoreGraphics.h>

#import "support/splash/splash_images.h"
#import "support/splash/splash_pixels.h"
#import "support/splash/splash_state.h"
#import "support/splash/splash_view.h"

#include <cstdio>

#include "support/events/keep_alive.h"
#include "support/events/window_events.h"

NSWindow* win = nil;
SplashView* splashView = nil;

NSImage* splashImage = nil;
NSImage* progressImage = nil;
NSImage* progressIndefiniteImage = nil;
NSImage* trackImage = nil;

int image_width = 300;
int image_height = 300;

static void createWindow(NSRect rectangle) {
  win = [[NSWindow alloc] initWithContentRect:rectangle
                                    styleMask:0
                                      backing:NSBackingStoreBuffered
                                        defer:YES];
  [win setBackgroundColor:[NSColor whiteColor]];
  [win setHasShadow:YES];
}

static void loadBarImages() {
  progressImage = loadImageFromByteArray(progress_lightblue, 4, 18);
  progressIndefiniteImage = loadImageFromByteArray(progress_lighblue_indefinite, 10, 18);
  trackImage = loadImageFromByteArray(track, 4, 18);
}

static void createView(NSRect rectangle) {
  splashView = [[SplashView alloc] initWithFrame:rectangle];
  [splashView setAutoresizingMask:NSViewWidthSizable | NSViewHeightSizable];
  [win setContentView:splashView];
}

void init() {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  puts("[Splash] Initing splash...");
  fflush(stdout);
  const NSRect rectangle = NSMakeRect(0, 0, image_width, image_height);
  createWindow(rectangle);
  puts("[Splash] Loading images...");
  fflush(stdout);
  loadBarImages();
  createView(rectangle);
  maxFrames = 10;
  [pool release];
}

static void readSplashImage(const char* path) {
  NSFileManager* files = [NSFileManager defaultManager];
  NSString* name = [files stringWithFileSystemRepresentation:path length:strlen(path)];
  [splashImage release];
  splashImage = [[NSImage alloc] initWithContentsOfFile:name];
}

void configureSplash(const char* imagePath) {
  // Logged in a silent run too: the line shows which image the updater brought.
  printf("[Splash] configureSplash with URL %s\n", imagePath);
  fflush(stdout);
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  readSplashImage(imagePath);
  // The size of a null image would be undefined.
  const NSSize size = splashImage == nil ? NSZeroSize : [splashImage size];
  image_width = static_cast<int>(size.width);
  image_height = static_cast<int>(size.height);
  setFrameSizeWithoutBar();
  NSLog(@"Image Size: %.0f : %.0f", size.width, size.height);
  [pool release];
}

void showSplash() {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [win setLevel:CGWindowLevelForKey(kCGFloatingWindowLevelKey)];
  [win center];
  [win makeKeyAndOrderFront:nil];
  setKeepAlive(win == nil ? nullptr : refreshSplash);
  [splashView setNeedsDisplay:YES];  // the content of a hidden window may be lost
  drawSplashNow();
  [pool release];
}

// The application keeps handling its events.
static void stopRefreshing() { setKeepAlive(answerEvents); }

void hideSplash() {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  stopRefreshing();
  [win orderOut:nil];
  drawSplashNow();
  [pool release];
}

// The redraw thread holds the view until its sleep is over. A view may only be destroyed on the
// main thread, so this reference must be the last: it is kept.
static void closeView() {
  static SplashView* closed = nil;
  [closed release];
  closed = splashView;
  splashView = nil;
}

void cleanup() {
  if (!isSplashPossible()) {
    return;
  }
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  stopRefreshing();
  cancelRedrawThread();
  NSWindow* closing = win;
  win = nil;
  [closing close];
  closeView();
  handleEvents(0);
  [pool release];
}
