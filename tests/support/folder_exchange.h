#ifndef QUORVANE_TESTS_SUPPORT_FOLDER_EXCHANGE_H
#define QUORVANE_TESTS_SUPPORT_FOLDER_EXCHANGE_H

#include <functional>

namespace test {

// While this is set, the system refuses to exchange two folders in the executable that uses it.
extern bool exchangesFail;

// Called once, just before the next exchange that is not refused.
extern std::function<void()> beforeExchange;

}  // namespace test

#endif
