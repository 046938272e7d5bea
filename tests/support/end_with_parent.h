#ifndef QUORVANE_TESTS_SUPPORT_END_WITH_PARENT_H
#define QUORVANE_TESTS_SUPPORT_END_WITH_PARENT_H

namespace test {

// Lets this process, and the program that it becomes, be killed when its parent ends, where the
// system can do that. A change of account undoes it.
void endWithParent();

}  // namespace test

#endif
