#include "launcher/jvm/java_host.h"

#include "launcher/jvm/java_environment.h"
#include "launcher/shell/app_shell.h"
#include "support/text/strings.h"

static const char* hostedName = nullptr;

void setHostedName(const char* name) {
  hostedName = allocCopy(name);
}

HostOptions prepareHost(int count, const char* const* options) {
  const HostOptions host = readHostOptions(count, options);
  const char* name = host.dockName != nullptr ? host.dockName : hostedName;
  setJavaEnvironment(host, name);
  presentApplication({name, host.dockIcon, host.appearance});
  return host;
}
