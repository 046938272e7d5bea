#ifndef APPKIT_NSWORKSPACE_H
#define APPKIT_NSWORKSPACE_H

#import <Foundation/Foundation.h>

SDK_API @interface NSWorkspace : NSObject
+ (NSWorkspace*)sharedWorkspace SDK_API;
- (BOOL)selectFile:(NSString*)path inFileViewerRootedAtPath:(NSString*)root SDK_API;
@end

#endif
