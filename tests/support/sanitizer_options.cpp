// The address sanitizer's defaults for test executables. The Objective-C runtime and GNUstep keep
// what they allocate for good, so leaks are looked for in a run of its own; the preloaded password
// wrapper comes before the sanitizer's library; a JVM inside the process needs its own SIGSEGV.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
  return "detect_leaks=0:verify_asan_link_order=0:handle_segv=0:allow_user_segv_handler=1";
}
