#ifndef COREFOUNDATION_CFBUNDLE_H
#define COREFOUNDATION_CFBUNDLE_H

#include <CoreFoundation/CFBase.h>

typedef struct __CFBundle* CFBundleRef;

SDK_EXTERN CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef url) SDK_API;
SDK_EXTERN Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle,
                                                        CFErrorRef* error) SDK_API;

#endif
