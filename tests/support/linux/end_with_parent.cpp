#include "tests/support/end_with_parent.h"

#include <signal.h>
#include <sys/prctl.h>

void test::endWithParent() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
}
