// The native methods of guest.Hosted: what a Java window toolkit does with its host's main thread.

#include <jni.h>

#import <Foundation/Foundation.h>

@interface MainThreadCall : NSObject {
  BOOL wasOnMainThread;
}
- (void)perform;
- (BOOL)wasOnMainThread;
// Keeps the main thread for good, as the event loop of a toolkit does that does not stop.
- (void)hold;
@end

@implementation MainThreadCall

- (void)perform {
  wasOnMainThread = [NSThread isMainThread];
}

- (BOOL)wasOnMainThread {
  return wasOnMainThread;
}

- (void)hold {
  for (;;) {
    [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.1]];
  }
}

@end

extern "C" JNIEXPORT jboolean JNICALL Java_guest_Hosted_isFirstThread(JNIEnv*, jclass) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const BOOL isMain = [NSThread isMainThread];
  [pool release];
  return isMain ? JNI_TRUE : JNI_FALSE;
}

// Waits until the main thread has made the call; returns whether it was that one.
extern "C" JNIEXPORT jboolean JNICALL Java_guest_Hosted_callMainThread(JNIEnv*, jclass) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  MainThreadCall* call = [[[MainThreadCall alloc] init] autorelease];
  [call performSelectorOnMainThread:@selector(perform) withObject:nil waitUntilDone:YES];
  const BOOL wasOnMainThread = [call wasOnMainThread];
  [pool release];
  return wasOnMainThread ? JNI_TRUE : JNI_FALSE;
}

extern "C" JNIEXPORT void JNICALL Java_guest_Hosted_holdMainThread(JNIEnv*, jclass) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  MainThreadCall* call = [[[MainThreadCall alloc] init] autorelease];
  [call performSelectorOnMainThread:@selector(hold) withObject:nil waitUntilDone:NO];
  [pool release];
}
