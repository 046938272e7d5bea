#ifndef APPKIT_NSGRAPHICS_H
#define APPKIT_NSGRAPHICS_H

#import <Foundation/Foundation.h>

typedef enum NSCompositingOperation : NSUInteger {
  NSCompositeSourceOver SDK_API = 2,
} NSCompositingOperation;

typedef enum NSBackingStoreType : NSUInteger {
  NSBackingStoreBuffered SDK_API = 2,
} NSBackingStoreType;

SDK_EXTERN NSString* const NSCalibratedRGBColorSpace SDK_API;

SDK_EXTERN void NSRectFill(NSRect rect) SDK_API;

#endif
