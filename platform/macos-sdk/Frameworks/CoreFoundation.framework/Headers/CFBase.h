#ifndef COREFOUNDATION_CFBASE_H
#define COREFOUNDATION_CFBASE_H

#include <MacTypes.h>

#include <sdk_api.h>

typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFError* CFErrorRef;

SDK_EXTERN const CFAllocatorRef kCFAllocatorDefault SDK_API;

#endif
