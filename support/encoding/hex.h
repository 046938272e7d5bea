#ifndef QUORVANE_SUPPORT_ENCODING_HEX_H
#define QUORVANE_SUPPORT_ENCODING_HEX_H

// Hexadecimal text. Any thread.

// Writes `count` bytes as lower-case digit pairs into `dst` (2 * count + 1 bytes, owned by the
// caller), ends it with a zero byte and returns 2 * count. With `count` below 1 nothing is written.
int bytesToHex(char* dst, const unsigned char* bytes, int count);

// Reads digit pairs from `hex` into the `capacity` bytes at `dst` until a pair does not convert,
// and ends them with a zero byte where one fits. Returns the number of bytes stored. When the text
// holds `capacity` bytes or more, the rest is dropped and a warning goes to standard output.
int hexToBytes(unsigned char* dst, int capacity, const char* hex);

#endif
