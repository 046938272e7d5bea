#ifndef QUORVANE_TESTS_UNIT_CRYPTO_MESSAGES_H
#define QUORVANE_TESTS_UNIT_CRYPTO_MESSAGES_H

#include <random>
#include <string>

inline const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

// A message of random bytes, the same for the same size.
inline std::string messageOf(size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  std::string message(size, '\0');
  for (char& c : message) {
    c = static_cast<char>(random());
  }
  return message;
}

#endif
