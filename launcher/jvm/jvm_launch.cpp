#include "launcher/jvm/jvm_launch.h"

#include <dlfcn.h>
#include <jni.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "launcher/jvm/java_host.h"
#include "launcher/jvm/java_text.h"
#include "launcher/jvm/java_thread.h"
#include "launcher/shell/app_shell.h"
#include "launcher/shell/event_loop.h"
#include "launcher/shell/java_end.h"
#include "platform/main_thread.h"
#include "platform/process_end.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

static const int kLaunchFailed = 1;

static void (*endForHeldMainThread)() = nullptr;

namespace {

using CreateJavaVm = jint (*)(JavaVM**, void**, void*);

// A list of texts as the command line's parser leaves it; an entry may be null.
struct Texts {
  int count;
  char** texts;

  const char* at(int i) const { return texts[i] == nullptr ? "" : texts[i]; }
};

// One complete launch.
struct JavaRun {
  const char* mainClass;
  const char* jreFolder;
  Texts options;
  Texts classPath;
  Texts arguments;
  int result;
};

struct RunningVm {
  JavaVM* vm = nullptr;
  JNIEnv* env = nullptr;
};

// What CallStaticVoidMethod needs.
struct MainCall {
  jclass mainClass = nullptr;
  jmethodID method = nullptr;
  jobjectArray arguments = nullptr;
};

}  // namespace

char* cloneString(const char* text) {
  return allocCopy(text);
}

static void logInputs(const Texts& options, const Texts& classPath, const Texts& arguments) {
  for (int i = 0; i < options.count; ++i) {
    logMessage("[JNILaunch] JVM Argument %d = %s\n", i, options.at(i));
  }
  for (int i = 0; i < classPath.count; ++i) {
    logMessage("[JNILaunch] CP Argument %d = %s\n", i, classPath.at(i));
  }
  for (int i = 0; i < arguments.count; ++i) {
    logMessage("[JNILaunch] App Argument %d = %s\n", i, arguments.at(i));
  }
}

// The texts in the result live as long as the process, like the JVM that gets them.
static std::vector<JavaVMOption> buildOptions(const Texts& options, const Texts& classPath) {
  std::vector<JavaVMOption> list;
  char* classPathOption = getClassPathFor(classPath.count, classPath.texts);
  if (classPathOption[0] != 0) {
    list.push_back({classPathOption, nullptr});
  } else {
    free(classPathOption);
  }
  for (int i = 0; i < options.count; ++i) {
    if (!isForHostOnly(options.at(i))) {
      list.push_back({cloneString(options.at(i)), nullptr});
    }
  }
  for (size_t i = 0; i < list.size(); ++i) {
    logMessage("[JNILaunch] JNI Option %d=%s\n", static_cast<int>(i), list[i].optionString);
  }
  return list;
}

// `create` is null when the library has no such entry, which counts as a JVM that fails to start.
static bool createVm(CreateJavaVm create, std::vector<JavaVMOption> options, RunningVm* running) {
  JavaVMInitArgs arguments{};
  arguments.version = JNI_VERSION_1_4;
  arguments.nOptions = static_cast<jint>(options.size());
  arguments.options = options.data();
  arguments.ignoreUnrecognized = JNI_TRUE;
  void* env = nullptr;
  skipExitHandlersSoFar();
  if (create == nullptr || create(&running->vm, &env, &arguments) != JNI_OK) {
    logMessage("[JNILauncher] Create Java VM Failed!\n");
    noteFailure(Failure::JavaNotStarted);
    return false;
  }
  running->env = static_cast<JNIEnv*>(env);
  setRunningJava(running->vm);
  return true;
}

static char* allocSlashedName(const char* className) {
  char* name = cloneString(className);
  for (char* c = name; *c != 0; ++c) {
    if (*c == '.') {
      *c = '/';
    }
  }
  return name;
}

static bool findMain(JNIEnv* env, const char* className, MainCall* call) {
  const char* name = allocSlashedName(className);
  logMessage("[JNILauncher] Searching for clazz %s\n", name);
  call->mainClass = env->FindClass(name);
  if (call->mainClass == nullptr) {
    logMessage("[JNILauncher] Searching for clazz failed!\n");
    noteFailure(Failure::MainClassMissing);
    return false;
  }
  logMessage("[JNILauncher] Searching for main method %s\n", name);
  call->method = env->GetStaticMethodID(call->mainClass, "main", "([Ljava/lang/String;)V");
  if (call->method == nullptr) {
    // Continuing would crash the process inside the JVM.
    logMessage("[JNILauncher] Searching for main method failed!\n");
    noteFailure(Failure::MainClassMissing);
    env->ExceptionDescribe();
    return false;
  }
  return true;
}

static bool makeArguments(JNIEnv* env, const Texts& arguments, MainCall* call) {
  jclass stringClass = env->FindClass("java/lang/String");
  if (stringClass != nullptr) {
    call->arguments = env->NewObjectArray(arguments.count, stringClass, nullptr);
  }
  if (call->arguments == nullptr) {
    logMessage("[JNILauncher] Creating the arguments failed!\n");
    noteFailure(Failure::NotStarted);
    env->ExceptionDescribe();
    return false;
  }
  for (int i = 0; i < arguments.count; ++i) {
    logMessage("[JNILauncher] Set argument %d to %s\n", i, arguments.at(i));
    env->SetObjectArrayElement(call->arguments, i,
                               env->NewStringUTF(javaText(arguments.at(i)).c_str()));
  }
  return true;
}

static void callMain(JNIEnv* env, const MainCall& call) {
  logMessage("[JNILauncher] About to execute static void method.\n");
  closeLoggedFile();
  env->CallStaticVoidMethod(call.mainClass, call.method, call.arguments);
  logMessage("[JNILauncher] Run complete.\n");
  if (env->ExceptionOccurred() != nullptr) {
    env->ExceptionDescribe();
  }
}

static void destroyVm(JavaVM* vm) {
  logMessage("[JNILauncher] Destroying runtime.\n");
  vm->DestroyJavaVM();
  setRunningJava(nullptr);
  logMessage("[JNILauncher] Done!\n");
}

// Runs the whole launch on the calling thread.
static int runJava(const JavaRun& run) {
  logMessage("[JNILaunch] [pid=%d] [mainThread=%d]\n", static_cast<int>(getpid()),
             isMainThread() ? 1 : 0);
  void* library = loadJVMLibrary(run.jreFolder);
  if (library == nullptr) {
    logMessage("[JNILaunch] [ERROR] Unable to load JRE library!\n");
    noteFailure(Failure::JavaNotStarted);
    return kLaunchFailed;
  }
  const auto create = reinterpret_cast<CreateJavaVm>(dlsym(library, "JNI_CreateJavaVM"));
  logMessage("[JNILaunch] ------- JNI Launch call -------\n");
  logInputs(run.options, run.classPath, run.arguments);
  RunningVm running;
  MainCall call;
  if (!createVm(create, buildOptions(run.options, run.classPath), &running) ||
      !findMain(running.env, run.mainClass, &call) ||
      !makeArguments(running.env, run.arguments, &call)) {
    return kLaunchFailed;
  }
  callMain(running.env, call);
  destroyVm(running.vm);
  return 0;
}

void setEndForHeldMainThread(void (*function)()) {
  endForHeldMainThread = function;
}

// A failed launch has loaded no toolkit that could hold the main thread.
static void* runAndEndLoop(void* argument) {
  auto* run = static_cast<JavaRun*>(argument);
  run->result = runJava(*run);
  endEventLoop();
  if (run->result == 0 && endForHeldMainThread != nullptr && !waitForEventLoopToEnd()) {
    endForHeldMainThread();
  }
  return nullptr;
}

// Runs the launch on a separate thread, and the application's menu and event loop on this one.
static int runBesideEventLoop(JavaRun* run, size_t stackSize) {
  pthread_t thread;
  prepareEventLoop();
  // Before the other thread's first messages: a toolkit that becomes multi-threaded while it lays
  // out the menu's titles may fail.
  loadOSXUINib("");
  if (!startJavaThread(&thread, stackSize, runAndEndLoop, run)) {
    logMessage("[JNILaunch] [ERROR] Unable to start Java's thread!\n");
    return kLaunchFailed;
  }
  runEventLoopUntilEnded();
  pthread_join(thread, nullptr);
  return run->result;
}

int launchJavaJNI(const char* mainClass, const char* jreFolder, int jvmOptionCount,
                  char** jvmOptions, int classPathCount, char** classPath, int argumentCount,
                  char** arguments) {
  JavaRun run{mainClass,
              jreFolder,
              {jvmOptionCount, jvmOptions},
              {classPathCount, classPath},
              {argumentCount, arguments},
              kLaunchFailed};
  if (!isMainThread()) {
    return runJava(run);
  }
  const HostOptions host = prepareHost(jvmOptionCount, jvmOptions);
  return host.startOnFirstThread ? runJava(run) : runBesideEventLoop(&run, host.stackSize);
}
