#include "tests/support/stand_in_vm.h"

#include <jni.h>
#include <pthread.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace test {

static StandInVm wanted;
static JNINativeInterface_ operations;
static JNIInvokeInterface_ vmOperations;
static JNIEnv environment;
static JavaVM machine;
static int systemClass;
static int exitMethod;
static pthread_key_t attached;  // what is not null on a thread that is

static bool isAttached() {
  return pthread_getspecific(attached) != nullptr;
}

static jint attachAsDaemon(JavaVM*, void** env, void* arguments) {
  if (!wanted.attaches || static_cast<JavaVMAttachArgs*>(arguments)->version != JNI_VERSION_1_4) {
    return JNI_ERR;
  }
  pthread_setspecific(attached, &machine);
  *env = &environment;
  return JNI_OK;
}

static jclass findClass(JNIEnv*, const char* name) {
  const bool isKnown = isAttached() && strcmp(name, "java/lang/System") == 0;
  return isKnown ? reinterpret_cast<jclass>(&systemClass) : nullptr;
}

static jmethodID getStaticMethodID(JNIEnv*, jclass, const char* name, const char* signature) {
  const bool isKnown = isAttached() && strcmp(name, "exit") == 0 && strcmp(signature, "(I)V") == 0;
  return isKnown ? reinterpret_cast<jmethodID>(&exitMethod) : nullptr;
}

static void callStaticVoidMethodV(JNIEnv*, jclass owner, jmethodID method, va_list arguments) {
  const bool isKnown = owner == reinterpret_cast<jclass>(&systemClass) &&
                       method == reinterpret_cast<jmethodID>(&exitMethod);
  if (isKnown) {
    wanted.systemExit(va_arg(arguments, jint));
  }
}

static jthrowable exceptionOccurred(JNIEnv*) {
  return nullptr;
}

JavaVM_* standInVm(const StandInVm& behaviour) {
  static const bool isMade = pthread_key_create(&attached, nullptr) == 0;
  if (!isMade) {
    abort();
  }
  wanted = behaviour;
  operations.FindClass = findClass;
  operations.GetStaticMethodID = getStaticMethodID;
  operations.CallStaticVoidMethodV = callStaticVoidMethodV;
  operations.ExceptionOccurred = exceptionOccurred;
  vmOperations.AttachCurrentThreadAsDaemon = attachAsDaemon;
  environment.functions = &operations;
  machine.functions = &vmOperations;
  return &machine;
}

}  // namespace test
