#ifndef QUORVANE_TESTS_SUPPORT_FILES_H
#define QUORVANE_TESTS_SUPPORT_FILES_H

#include <string>
#include <vector>

namespace test {

// Writes `bytes` to a new file, creating its parent folders; the test fails when it cannot.
void writeFile(const std::string& path, const std::string& bytes, unsigned mode = 0644);

// Returns a file's bytes; the test fails when it cannot be read.
std::string readFile(const std::string& path);

bool exists(const std::string& path);

// Creates `depth` folders one in the other below `root`, with the given mode; returns the
// innermost.
std::string makeDeepFolder(const std::string& root, int depth, unsigned mode = 0755);

// Lets this process open no more than `count` files at a time.
void allowOpenFiles(unsigned count);

// Lets this process's stack grow to no more than `bytes`.
void allowStack(unsigned bytes);

// The number of descriptors that this process has open.
size_t openFiles();

// The permission bits of a file or folder, links not followed.
unsigned modeOf(const std::string& path);

// The names in a folder, sorted, without "." and "..".
std::vector<std::string> namesIn(const std::string& folder);

// `size` bytes that hardly compress, always the same.
std::string noise(size_t size);

// Field encoding: `text` followed by a zero byte.
std::string field(const std::string& text);

// Splits a text into its lines, without their ends.
std::vector<std::string> linesOf(const std::string& text);

// Standard output's lines without the elapsed-time prefix ("+123      ") that log lines carry.
std::vector<std::string> logLinesOf(const std::string& standardOutput);

// Returns whether `lines` contains all `wanted` lines in this order, with others in between
// allowed.
bool containsInOrder(const std::vector<std::string>& lines, const std::vector<std::string>& wanted);

}  // namespace test

#endif
