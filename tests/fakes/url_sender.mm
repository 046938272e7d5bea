// Asks the running application NAME to open each URL in turn, as another program of the same
// account would: through distributed objects, under the application's process name. Waits up to 30
// seconds for the application to be there. Prints the application's answer (1 or 0) for each URL.
//
//   url_sender NAME URL...

#include <unistd.h>

#include <cstdio>

#import <AppKit/AppKit.h>

@protocol OpensURLs
- (BOOL)application:(NSApplication*)application openURL:(NSURL*)url;
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

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  id application = argc > 2 ? waitForApplication(argv[1]) : nil;
  if (application == nil) {
    fputs("url_sender: no such application\n", stderr);
    return 1;
  }
  [application setProtocolForProxy:@protocol(OpensURLs)];
  for (int i = 2; i < argc; ++i) {
    NSURL* url = [NSURL URLWithString:[NSString stringWithUTF8String:argv[i]]];
    printf("%d\n", [application application:nil openURL:url]);
    fflush(stdout);
  }
  [pool release];
  return 0;
}
