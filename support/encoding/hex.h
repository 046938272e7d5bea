#ifndef QUORVANE_SUPPORT_ENCODING_HEX_H
#define QUORVANE_SUPPORT_ENCODING_HEX_H

// Hexadecimal text. Any thread.

// Writes `count` bytes as lower-case digit pairs into `dst` (2 * count + 1 bytes, owned by the
// caller), adds a terminating zero byte and returns 2 * count. If `count` is below 1 nothing is
// written.
int bytesToHex(char* dst, const unsigned char* bytes, int count);

// Reads digit pairs from `hex` into the `capacity` bytes at `dst` until a pair does not convert,
// and adds a terminating zero byte if one fits. Returns the number of bytes stored. If the text has
// `capacity` bytes or more, the rest is dropped and a warning goes to standard output.
int hexToBytes(unsigned char* dst, int capacity, const char* hex);

#endif
