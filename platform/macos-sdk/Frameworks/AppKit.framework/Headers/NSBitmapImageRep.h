#ifndef APPKIT_NSBITMAPIMAGEREP_H
#define APPKIT_NSBITMAPIMAGEREP_H

#import <Foundation/Foundation.h>

@interface NSImageRep : NSObject
@end

SDK_API @interface NSBitmapImageRep : NSImageRep
- (instancetype)initWithBitmapDataPlanes:(unsigned char**)planes
                              pixelsWide:(NSInteger)width
                              pixelsHigh:(NSInteger)height
                           bitsPerSample:(NSInteger)bitsPerSample
                         samplesPerPixel:(NSInteger)samplesPerPixel
                                hasAlpha:(BOOL)hasAlpha
                                isPlanar:(BOOL)isPlanar
                          colorSpaceName:(NSString*)colorSpaceName
                             bytesPerRow:(NSInteger)bytesPerRow
                            bitsPerPixel:(NSInteger)bitsPerPixel SDK_API;
- (unsigned char*)bitmapData SDK_API;
@end

#endif
