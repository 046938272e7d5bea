// What the JDK's jni.h asks of each system, for 64-bit macOS.
#ifndef JNI_MD_H
#define JNI_MD_H

#define JNIEXPORT __attribute__((visibility("default")))
#define JNIIMPORT __attribute__((visibility("default")))
#define JNICALL

typedef signed char jbyte;
typedef int jint;
typedef long jlong;

#endif
