#ifndef APPKIT_NSNIBLOADING_H
#define APPKIT_NSNIBLOADING_H

#import <Foundation/Foundation.h>

@interface NSBundle (NSNibLoadingDeprecated)
+ (BOOL)loadNibFile:(NSString*)path
    externalNameTable:(NSDictionary*)names
             withZone:(struct _NSZone*)zone SDK_API;
@end

#endif
