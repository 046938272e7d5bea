// A JVM library that an archive can carry: it creates the JVM of the library that
// QUORVANE_REAL_JVM names, whose runtime is then in use.

#include <dlfcn.h>
#include <jni.h>

#include <cstdio>
#include <cstdlib>

using CreateJavaVm = jint (*)(JavaVM**, void**, void*);

extern "C" JNIEXPORT jint JNICALL JNI_CreateJavaVM(JavaVM** vm, void** env, void* arguments) {
  const char* path = getenv("QUORVANE_REAL_JVM");
  void* library = path == nullptr ? nullptr : dlopen(path, RTLD_LAZY);
  if (library == nullptr) {
    fprintf(stderr, "forwarding_jvm: QUORVANE_REAL_JVM names no library that can be opened\n");
    return JNI_ERR;
  }
  const auto create = reinterpret_cast<CreateJavaVm>(dlsym(library, "JNI_CreateJavaVM"));
  return create(vm, env, arguments);
}
