// A JVM library that runs nothing. It writes what it was created with and every JNI call, one line
// each, to the file that QUORVANE_FAKE_JVM_REPORT names. QUORVANE_FAKE_JVM says what goes wrong:
// "create", "class", "main", "arguments" or "throw"; nothing when it is not set. An operation that
// a launch has no need of is a null entry in the table, so that calling it ends the process.

#include <jni.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

static void report(const char* format, ...) __attribute__((format(printf, 1, 2)));

static void report(const char* format, ...) {
  FILE* file = fopen(getenv("QUORVANE_FAKE_JVM_REPORT"), "a");
  va_list arguments;
  va_start(arguments, format);
  vfprintf(file, format, arguments);
  va_end(arguments);
  fputc('\n', file);
  fclose(file);
}

static bool goesWrong(const char* what) {
  const char* wanted = getenv("QUORVANE_FAKE_JVM");
  return wanted != nullptr && strcmp(wanted, what) == 0;
}

// A Java object is the text by which the report names it.
static jobject makeObject(const std::string& name) {
  return reinterpret_cast<jobject>(new std::string(name));
}

static const char* nameOf(jobject object) {
  return object == nullptr ? "null" : reinterpret_cast<std::string*>(object)->c_str();
}

static jclass findClass(JNIEnv*, const char* name) {
  report("FindClass %s", name);
  const bool isMissing = goesWrong("class") && strncmp(name, "java/", 5) != 0;
  return isMissing ? nullptr : static_cast<jclass>(makeObject(name));
}

static jmethodID getStaticMethodID(JNIEnv*, jclass owner, const char* name, const char* signature) {
  report("GetStaticMethodID %s %s %s", nameOf(owner), name, signature);
  return goesWrong("main") ? nullptr : reinterpret_cast<jmethodID>(makeObject(name));
}

static jobjectArray newObjectArray(JNIEnv*, jsize length, jclass type, jobject initial) {
  report("NewObjectArray %d %s %s", length, nameOf(type), nameOf(initial));
  return goesWrong("arguments") ? nullptr : static_cast<jobjectArray>(makeObject("array"));
}

static jstring newStringUTF(JNIEnv*, const char* bytes) {
  return static_cast<jstring>(makeObject(bytes));
}

static void setObjectArrayElement(JNIEnv*, jobjectArray array, jsize index, jobject value) {
  report("SetObjectArrayElement %s %d [%s]", nameOf(array), index, nameOf(value));
}

static void callStaticVoidMethodV(JNIEnv*, jclass owner, jmethodID method, va_list arguments) {
  if (goesWrong("slow")) {
    sleep(2);
  }
  report("CallStaticVoidMethod %s %s %s", nameOf(owner), nameOf(reinterpret_cast<jobject>(method)),
         nameOf(va_arg(arguments, jobject)));
}

static jthrowable exceptionOccurred(JNIEnv*) {
  report("ExceptionOccurred");
  return goesWrong("throw") ? static_cast<jthrowable>(makeObject("exception")) : nullptr;
}

static void exceptionDescribe(JNIEnv*) {
  report("ExceptionDescribe");
}

static jint destroyJavaVm(JavaVM*) {
  report("DestroyJavaVM");
  return JNI_OK;
}

static JNINativeInterface_ operations;
static JNIInvokeInterface_ vmOperations;
static JNIEnv environment;
static JavaVM machine;

static void fillTables() {
  operations.FindClass = findClass;
  operations.GetStaticMethodID = getStaticMethodID;
  operations.NewObjectArray = newObjectArray;
  operations.NewStringUTF = newStringUTF;
  operations.SetObjectArrayElement = setObjectArrayElement;
  operations.CallStaticVoidMethodV = callStaticVoidMethodV;
  operations.ExceptionOccurred = exceptionOccurred;
  operations.ExceptionDescribe = exceptionDescribe;
  vmOperations.DestroyJavaVM = destroyJavaVm;
  environment.functions = &operations;
  machine.functions = &vmOperations;
}

extern "C" JNIEXPORT jint JNICALL JNI_CreateJavaVM(JavaVM** vm, void** env, void* argument) {
  const auto* arguments = static_cast<JavaVMInitArgs*>(argument);
  report("version 0x%08X", static_cast<unsigned>(arguments->version));
  report("ignoreUnrecognized %d", arguments->ignoreUnrecognized);
  report("options %d", arguments->nOptions);
  for (jint i = 0; i < arguments->nOptions; ++i) {
    const JavaVMOption& option = arguments->options[i];
    report("[%s]%s", option.optionString, option.extraInfo == nullptr ? "" : " extra information");
  }
  if (goesWrong("create")) {
    return JNI_ENOMEM;
  }
  fillTables();
  *vm = &machine;
  *env = &environment;
  return JNI_OK;
}
