#ifndef QUORVANE_PLATFORM_APPLICATION_BASE_H
#define QUORVANE_PLATFORM_APPLICATION_BASE_H

#import <AppKit/AppKit.h>

// The platform's own part of the application's delegate (launcher/shell/application_delegate.h).
// Nothing on macOS. Included by Objective-C++ files only.
@interface ApplicationBase : NSObject
@end

#endif
