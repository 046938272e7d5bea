#include "tools/system/quiet_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace tools {

// Redirects `descriptor` to the file `path` and returns its previous target.
static Descriptor redirect(int descriptor, const char* path) {
  Descriptor saved(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
  const Descriptor file(open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  dup2(file.get(), descriptor);
  return saved;
}

QuietOutput::QuietOutput(const char* out) {
  fflush(stdout);
  fflush(stderr);
  out_ = redirect(STDOUT_FILENO, out);
  err_ = redirect(STDERR_FILENO, "/dev/null");
}

QuietOutput::~QuietOutput() {
  fflush(stdout);
  fflush(stderr);
  dup2(out_.get(), STDOUT_FILENO);
  dup2(err_.get(), STDERR_FILENO);
}

}  // namespace tools
