// A library to be preloaded under which no library of the process can change what becomes of
// SIGPIPE, as no toolkit does on a Mac: only what the program "Setup" itself asks for has an
// effect.

#include <dlfcn.h>
#include <errno.h>
#include <signal.h>

#include <cstring>

template <typename Function>
static Function real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// Whether the code at `address` belongs to a library, in the program "Setup".
static bool isLibrary(const void* address) {
  Dl_info info{};
  return strcmp(program_invocation_short_name, "Setup") == 0 && dladdr(address, &info) != 0 &&
         strstr(info.dli_fname, "/Setup") == nullptr;
}

extern "C" {

sighandler_t signal(int number, sighandler_t handler) {
  static const auto next = real<sighandler_t (*)(int, sighandler_t)>("signal");
  if (number == SIGPIPE && isLibrary(__builtin_return_address(0))) {
    return SIG_DFL;
  }
  return next(number, handler);
}

int sigaction(int number, const struct sigaction* action, struct sigaction* old) {
  static const auto next =
      real<int (*)(int, const struct sigaction*, struct sigaction*)>("sigaction");
  if (number == SIGPIPE && isLibrary(__builtin_return_address(0))) {
    return next(number, nullptr, old);
  }
  return next(number, action, old);
}

}  // extern "C"
