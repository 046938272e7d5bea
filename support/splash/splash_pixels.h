#ifndef QUORVANE_SUPPORT_SPLASH_SPLASH_PIXELS_H
#define QUORVANE_SUPPORT_SPLASH_SPLASH_PIXELS_H

// The raw pixels of the progress bar's tiles, 18 rows each, top row first. A row is 3 bytes a pixel
// in blue, green, red order, padded to a multiple of 4 bytes.
extern const unsigned char progress_lightblue[216];            // 4 wide: the filled part
extern const unsigned char progress_lighblue_indefinite[576];  // 10 wide: the moving stripe
extern const unsigned char track[216];                         // 4 wide: the part not yet filled

#endif
