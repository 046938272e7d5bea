#ifndef QUORVANE_TESTS_FUZZ_FUZZ_TARGET_H
#define QUORVANE_TESTS_FUZZ_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

// The one function of a fuzz target: reads `data` as the product would read it. It returns 0, and
// crashes or aborts when something is wrong. libFuzzer calls it, and so does the corpus replay.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

// Prints `text` and aborts, which a fuzzer reports as a finding, unless `held`.
void require(bool held, const char* text);

// Runs `body`, in which the product may end the process: endProcess() then leaves `body` instead.
// Returns whether that happened, and the status in *status when it is not null. What the product
// held open at that moment stays allocated; its files are closed.
bool endsProcess(const std::function<void()>& body, int* status = nullptr);

// Returns a folder of this process's own, empty, below the system's folder for temporary files. It
// is the same folder on each call, emptied again, and is removed when the process ends.
std::string emptyFolder();

// Makes `bytes` the content of the file `path`, whose folder is created when it is missing.
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace fuzz

#endif
