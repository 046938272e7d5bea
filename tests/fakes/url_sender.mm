// Asks the running application NAME to open each URL in turn, as another program of the same
// account would: through distributed objects, under the application's process name. Waits up to 30
// seconds for the application to be there. Prints the application's answer (1 or 0) for each URL.
// A word that begins with a slash is the path of a file to open. The word "quit" asks the
// application to quit, as the session's manager does; there is no answer to that.
//
//   url_sender NAME URL|PATH|quit...

#include <unistd.h>

#include <cstdio>

#import <AppKit/AppKit.h>

@protocol OpensURLs
- (BOOL)application:(NSApplication*)application openURL:(NSURL*)url;
- (BOOL)application:(NSApplication*)application openFile:(NSString*)path;
- (oneway void)terminate:(id)sender;
@end

static id waitForApplication(const char* name) {
  NSString* text = [NSString stringWithUTF8String:name];
  for (int i = 0; i < 3000; ++i) {
    id application = [NSConnection rootProxyForConnectionWithRegisteredName:text host:@""];
    if (application != nil) {
      return application;
    }
    usleep(10000);
  }
  return nil;
}

static void ask(id application, NSString* word) {
  if ([word isEqual:@"quit"]) {
    [application terminate:nil];
  } else if ([word hasPrefix:@"/"]) {
    printf("%d\n", [application application:nil openFile:word]);
  } else {
    printf("%d\n", [application application:nil openURL:[NSURL URLWithString:word]]);
  }
}

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  id application = argc > 2 ? waitForApplication(argv[1]) : nil;
  if (application == nil) {
    fputs("url_sender: no such application\n", stderr);
    return 1;
  }
  [application setProtocolForProxy:@protocol(OpensURLs)];
  for (int i = 2; i < argc; ++i) {
    ask(application, [NSString stringWithUTF8String:argv[i]]);
    fflush(stdout);
  }
  [pool release];
  return 0;
}
