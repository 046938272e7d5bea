// A library that opens in a JVM library's place but has no JNI_CreateJavaVM.

extern "C" int unrelated();

extern "C" int unrelated() {
  return 0;
}
