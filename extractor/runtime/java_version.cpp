#include "extractor/runtime/java_version.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "extractor/runtime/run_command.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

// Returns the text between the first '.' after the first double quote and the next '.'.
static char* versionInCommand(const char* command) {
  const char* quote = strchr(command, '"');
  const char* first = quote == nullptr ? nullptr : strchr(quote, '.');
  const char* second = first == nullptr ? nullptr : strchr(first + 1, '.');
  if (second == nullptr) {
    return allocCopy("0");
  }
  return allocSubstring(first, 1, static_cast<int>(second - first - 1));
}

char* getJavaVersion(const char* java) {
  // The command quotes the path so that none of its characters reaches the shell as code; what is
  // looked at is the plain command.
  char* output = runCommandGetOutput((shellQuoted(java) + " -version").c_str());
  if (output == nullptr) {
    return allocCopy("0");
  }
  free(output);
  return versionInCommand(("\"" + std::string(java) + "\" -version").c_str());
}

bool jreMatchesVersionRequirement(const char* java, const char* requiredVersion) {
  char* version = getJavaVersion(java);
  if (version == nullptr || requiredVersion == nullptr) {
    logMessage("[Extractor] Versions for JREs could not be detected (%d,%d)\n",
               version == nullptr ? 1 : 0, requiredVersion == nullptr ? 1 : 0);
    free(version);
    return false;
  }
  logMessage("[Extractor] Checking JRE version requirements: %s vs required %s\n", version,
             requiredVersion);
  const bool matches = atoi(version) >= atoi(requiredVersion);
  free(version);
  return matches;
}
