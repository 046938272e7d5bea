// Marks every declaration of these headers: a class before its @interface, anything else after its
// last word. Empty in a build; the inspection compiles the sources with a meaning that makes the
// compiler report each use, and so finds the declarations that no source uses.
#ifndef SDK_API_H
#define SDK_API_H

#ifdef SDK_REPORT_USES
#define SDK_API __attribute__((deprecated))
#else
#define SDK_API
#endif

#ifdef __cplusplus
#define SDK_EXTERN extern "C"
#else
#define SDK_EXTERN extern
#endif

// Marks a method that the framework calls and a class of the sources implements.
#define SDK_IMPLEMENTED

// The number of the argument that is a format, and of the first that the format takes.
#define SDK_FORMAT(format_index, first) __attribute__((format(__NSString__, format_index, first)))

#endif
