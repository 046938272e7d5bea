#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "tools/formats/lzma.h"
#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/workers.h"

namespace {

// Waits until `flag` is true, or ten seconds.
bool comesTrue(const std::atomic<bool>& flag) {
  for (int i = 0; i < 10000 && !flag; ++i) {
    usleep(1000);
  }
  return flag;
}

std::string messageOf(const tools::Workers::Result& result) {
  try {
    return "no error, but " + result.get();
  } catch (const tools::InputError& error) {
    return error.what();
  }
}

TEST(Workers, GiveTheirResultsWhateverTheirNumber) {
  for (const unsigned count : {0u, 1u, 2u, 5u}) {
    tools::Workers workers(count);
    std::vector<tools::Workers::Result> results;
    for (int i = 0; i < 20; ++i) {
      results.push_back(workers.start([i] { return std::to_string(i); }));
    }
    for (int i = 0; i < 20; ++i) {
      EXPECT_EQ(std::to_string(i), results[static_cast<size_t>(i)].get());
    }
  }
}

TEST(Workers, RunAsManyJobsSideBySideAsThereAreWorkers) {
  std::atomic<bool> isFirstHere{false};
  std::atomic<bool> isSecondHere{false};
  tools::Workers workers(2);
  const auto first = workers.start([&] {
    isFirstHere = true;
    return comesTrue(isSecondHere) ? "met" : "alone";
  });
  const auto second = workers.start([&] {
    isSecondHere = true;
    return comesTrue(isFirstHere) ? "met" : "alone";
  });
  EXPECT_EQ("met", first.get());
  EXPECT_EQ("met", second.get());
}

TEST(Workers, AreNoMoreThanTheirNumber) {
  std::atomic<int> running{0};
  std::atomic<int> most{0};
  tools::Workers workers(3);
  std::vector<tools::Workers::Result> results;
  for (int i = 0; i < 12; ++i) {
    results.push_back(workers.start([&] {
      const int now = ++running;
      for (int before = most; before < now && !most.compare_exchange_weak(before, now);) {
      }
      usleep(5000);
      --running;
      return "";
    }));
  }
  for (const auto& result : results) {
    result.wait();
  }
  EXPECT_GE(3, most);
}

TEST(Workers, OfWhichThereIsOneWorkWhereTheResultIsAskedFor) {
  std::string order;
  tools::Workers workers(1);
  const auto idle = workers.start([&] { return order += "never"; });
  const auto job = workers.start([&] {
    order += "job ";
    return "done";
  });
  const std::thread::id mine = std::this_thread::get_id();
  std::thread::id its;
  const auto other = workers.start([&] {
    its = std::this_thread::get_id();
    return "";
  });
  order += "before ";
  EXPECT_EQ("done", job.get());
  EXPECT_EQ("before job ", order);
  other.wait();
  EXPECT_EQ(mine, its);
}

TEST(Workers, FailWhereTheResultIsAskedForWhicheverFailsFirst) {
  std::atomic<bool> hasSecondFailed{false};
  tools::Workers workers(2);
  const auto first = workers.start([&]() -> std::string {
    comesTrue(hasSecondFailed);
    throw tools::InputError("the first fails");
  });
  const auto second = workers.start([&]() -> std::string {
    hasSecondFailed = true;
    throw tools::InputError("the second fails");
  });
  EXPECT_EQ("the first fails", messageOf(first));
  EXPECT_EQ("the second fails", messageOf(second));
}

TEST(Workers, ThatAreNotWaitedForAreInterruptedAndBeginNothingMore) {
  std::atomic<bool> isRunning{false};
  std::atomic<bool> hasBegunMore{false};
  {
    tools::Workers workers(2);
    const auto endless = [&]() -> std::string {
      isRunning = true;
      for (;;) {
        tools::stopWhenInterrupted();
        usleep(1000);
      }
    };
    const std::vector<tools::Workers::Result> results = {workers.start(endless),
                                                         workers.start(endless), workers.start([&] {
                                                           hasBegunMore = true;
                                                           return "";
                                                         })};
    ASSERT_TRUE(comesTrue(isRunning));
  }
  EXPECT_FALSE(hasBegunMore);
  EXPECT_NO_THROW(tools::stopWhenInterrupted());
}

TEST(Workers, AreAsManyAsProcessorsAndMemoryAllow) {
  const unsigned processors = std::max(1u, std::thread::hardware_concurrency());
  EXPECT_EQ(processors, tools::jobsForThisMachine(1));
  EXPECT_EQ(1u, tools::jobsForThisMachine(UINT64_MAX));
  EXPECT_GE(processors, tools::jobsForThisMachine(tools::lzmaCompressionMemory()));
}

// Preset 6 has a dictionary of 8 MiB, for which the encoder takes some ten times as much.
TEST(Workers, KnowWhatACompressionTakes) {
  EXPECT_LT(50u << 20, tools::lzmaCompressionMemory());
  EXPECT_GT(200u << 20, tools::lzmaCompressionMemory());
}

}  // namespace
