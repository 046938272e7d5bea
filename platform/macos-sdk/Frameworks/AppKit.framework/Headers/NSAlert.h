#ifndef APPKIT_NSALERT_H
#define APPKIT_NSALERT_H

#import <Foundation/Foundation.h>

@class NSButton;
@class NSWindow;

typedef NSInteger NSModalResponse;

enum { NSAlertSecondButtonReturn SDK_API = 1001 };

SDK_API @interface NSAlert : NSObject
- (void)setMessageText:(NSString*)text SDK_API;
- (void)setInformativeText:(NSString*)text SDK_API;
- (NSButton*)addButtonWithTitle:(NSString*)title SDK_API;
- (NSWindow*)window SDK_API;
- (NSModalResponse)runModal SDK_API;
@end

#endif
