#ifndef APPKIT_NSGRAPHICS_H
#define APPKIT_NSGRAPHICS_H

#import <Foundation/Foundation.h>

typedef NSUInteger NSCompositingOperation;
typedef NSUInteger NSBackingStoreType;

enum : NSCompositingOperation {
  NSCompositeSourceOver SDK_API = 2,
};

enum : NSBackingStoreType {
  NSBackingStoreBuffered SDK_API = 2,
};

SDK_EXTERN NSString* const NSCalibratedRGBColorSpace SDK_API;

SDK_EXTERN void NSRectFill(NSRect rect) SDK_API;

#endif
