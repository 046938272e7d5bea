#ifndef APPKIT_NSRESPONDER_H
#define APPKIT_NSRESPONDER_H

#import <Foundation/Foundation.h>

@interface NSResponder : NSObject
@end

#endif
