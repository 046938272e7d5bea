#include "launcher/jvm/java_environment.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

static void setForThisProcess(const char* name, const char* value) {
  if (value != nullptr) {
    setenv((name + std::to_string(getpid())).c_str(), value, 1);
  }
}

void setJavaEnvironment(const HostOptions& options, const char* name) {
  setForThisProcess("APP_NAME_", name);
  setForThisProcess("APP_ICON_", options.dockIcon);
  setForThisProcess("JAVA_STARTED_ON_FIRST_THREAD_", options.startOnFirstThread ? "1" : nullptr);
  setenv("AWT_OVERRIDE_NSDELEGATE", "1", 0);
}
