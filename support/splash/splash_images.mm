#import "support/splash/splash_images.h"

// Copies one row, exchanging the first and the third byte of every pixel.
static void copySwapped(const unsigned char* from, unsigned char* to, int width) {
  for (int x = 0; x < width; ++x, from += 3, to += 3) {
    to[0] = from[2];
    to[1] = from[1];
    to[2] = from[0];
  }
}

static NSBitmapImageRep* newBitmap(int width, int height, int bytesPerRow) {
  return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:NULL
                                                 pixelsWide:width
                                                 pixelsHigh:height
                                              bitsPerSample:8
                                            samplesPerPixel:3
                                                   hasAlpha:NO
                                                   isPlanar:NO
                                             colorSpaceName:NSCalibratedRGBColorSpace
                                                bytesPerRow:bytesPerRow
                                               bitsPerPixel:24];
}

NSImage* loadImageFromByteArray(const unsigned char* bytes, int width, int height) {
  const int bytesPerRow = (width * 3 + 3) / 4 * 4;
  NSBitmapImageRep* bitmap = newBitmap(width, height, bytesPerRow);
  if (bitmap == nil) {
    return nil;
  }
  unsigned char* pixels = [bitmap bitmapData];
  for (int y = 0; y < height; ++y) {
    copySwapped(bytes, pixels, width);
    bytes += bytesPerRow;
    pixels += bytesPerRow;
  }
  NSImage* image = [[NSImage alloc] initWithSize:NSMakeSize(width, height)];
  [image addRepresentation:bitmap];
  [bitmap release];
  return image;
}
