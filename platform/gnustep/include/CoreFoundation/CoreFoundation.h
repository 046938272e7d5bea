#ifndef QUORVANE_PLATFORM_GNUSTEP_CORE_FOUNDATION_H
#define QUORVANE_PLATFORM_GNUSTEP_CORE_FOUNDATION_H

// CoreFoundation does not exist here. These are the parts that launcher/jvm/bundle_loader.mm uses;
// as on macOS the references are Foundation objects under other names.

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned char Boolean;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFURL* CFURLRef;  // an NSURL
typedef struct __CFError* CFErrorRef;    // an NSError
typedef struct __CFBundle* CFBundleRef;

#define kCFAllocatorDefault ((CFAllocatorRef)0)

// Returns the bundle at the folder `bundleURL`, owned by the caller, or null if there is no such
// folder.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);

// Loads Contents/MacOS/<CFBundleExecutable of Contents/Info.plist> into this process. On failure
// returns 0 and stores an error, owned by the caller, in *error. Loading twice succeeds.
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);

#ifdef __cplusplus
}
#endif

#endif
