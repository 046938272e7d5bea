#ifndef QUORVANE_SUPPORT_ENCODING_BASE64_H
#define QUORVANE_SUPPORT_ENCODING_BASE64_H

#include <cstddef>

// Decoding of Base64 with the standard alphabet of RFC 4648. One thread at a time.

// Decodes `length` characters. Returns a new block, owned by the caller and not zero-terminated,
// and stores its size in bytes in *outLength. Returns null and leaves *outLength alone if `length`
// is not a multiple of 4 or there is no memory for the result. The process ends if there is no
// memory for the table. A character outside the alphabet counts as 0. Logs nothing.
unsigned char* base64_decode(const char* data, size_t length, size_t* outLength);

// Builds the decoding table; base64_decode() does so on first use.
void build_decoding_table();

// Frees the decoding table.
void base64_cleanup();

#endif
