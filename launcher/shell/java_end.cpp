#include "launcher/shell/java_end.h"

#include <jni.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>

#include "platform/process_end.h"
#include "support/log/logging.h"

unsigned javaEndSeconds = 10;

// What the user asked for is not a failure, and Java's own window toolkit ends with this on Quit.
static const int kQuitStatus = 0;

static std::atomic<JavaVM*> runningJava{nullptr};
static std::atomic<bool> isJavaEnding{false};

void setRunningJava(JavaVM_* vm) {
  runningJava = vm;
}

// Not through endProcess(): flushing streams and exit handlers might wait for what hangs.
[[noreturn]] static void endWithoutWaiting() {
  _exit(kQuitStatus);
}

static void* endAfterLongestWait(void*) {
  unsigned seconds = javaEndSeconds;
  while (seconds > 0) {
    seconds = sleep(seconds);
  }
  endWithoutWaiting();
}

static void callSystemExit(JNIEnv* env) {
  jclass system = env->FindClass("java/lang/System");
  jmethodID exitMethod =
      system == nullptr ? nullptr : env->GetStaticMethodID(system, "exit", "(I)V");
  if (exitMethod != nullptr) {
    env->CallStaticVoidMethod(system, exitMethod, jint{kQuitStatus});
  }
  // It does not return unless Java refuses.
  if (env->ExceptionOccurred() != nullptr) {
    env->ExceptionDescribe();
  }
}

static void* endJava(void* vm) {
  logMessage("[JNILauncher] Quit: ending Java, for at most %u seconds\n", javaEndSeconds);
  char name[] = "Quit";
  JavaVMAttachArgs arguments{JNI_VERSION_1_4, name, nullptr};
  void* env = nullptr;
  if (static_cast<JavaVM*>(vm)->AttachCurrentThreadAsDaemon(&env, &arguments) == JNI_OK) {
    callSystemExit(static_cast<JNIEnv*>(env));
  }
  endProcess(kQuitStatus);
}

static bool startDetached(void* (*body)(void*), void* argument) {
  pthread_t thread;
  if (pthread_create(&thread, nullptr, body, argument) != 0) {
    return false;
  }
  pthread_detach(thread);
  return true;
}

bool endJavaInOrder() {
  JavaVM* vm = runningJava;
  if (vm == nullptr) {
    return false;
  }
  if (isJavaEnding.exchange(true)) {
    endWithoutWaiting();
  }
  return startDetached(endAfterLongestWait, nullptr) && startDetached(endJava, vm);
}
