// Stands in for a runtime's "java". It writes its arguments, argv[0] included, each ended with a
// zero byte, to the file that FAKE_JAVA_RECORD names (first under a temporary name, so that a test
// that waits for the file sees it complete). Then it ends with the status that FAKE_JAVA_STATUS
// gives, or kills itself when that is "killed"; where it is to run the class updater.Probe, and
// FAKE_JAVA_PROBE_STATUS is set, with that one.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

static void record(const char* path, int argc, char** argv) {
  const std::string temporary = std::string(path) + ".part";
  FILE* file = fopen(temporary.c_str(), "wb");
  if (file == nullptr) {
    abort();
  }
  for (int i = 0; i < argc; ++i) {
    fwrite(argv[i], 1, strlen(argv[i]) + 1, file);
  }
  fclose(file);
  rename(temporary.c_str(), path);
}

int main(int argc, char** argv) {
  if (const char* path = getenv("FAKE_JAVA_RECORD")) {
    record(path, argc, argv);
  }
  const char* status = getenv("FAKE_JAVA_STATUS");
  for (int i = 1; i < argc; ++i) {
    const char* probeStatus = getenv("FAKE_JAVA_PROBE_STATUS");
    if (probeStatus != nullptr && strcmp(argv[i], "updater.Probe") == 0) {
      status = probeStatus;
    }
  }
  if (status != nullptr && strcmp(status, "killed") == 0) {
    raise(SIGKILL);
  }
  return status == nullptr ? 0 : atoi(status);
}
