#include "tools/java/inflate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "tools/system/input_error.h"

namespace tools {

namespace {

constexpr int kLongestCode = 15;
constexpr unsigned kLiteralCodes = 288;
constexpr unsigned kDistanceCodes = 30;

// Takes bits from the lowest of each byte on.
class Bits {
 public:
  explicit Bits(std::string_view data) : data_(data) {}

  unsigned take(int count) {
    unsigned value = 0;
    for (int i = 0; i < count; ++i) {
      value |= takeOne() << i;
    }
    return value;
  }

  unsigned takeOne() {
    if (at_ >= data_.size()) {
      throw InputError("the compressed data ends too early");
    }
    const unsigned bit = (static_cast<unsigned char>(data_[at_]) >> used_) & 1u;
    used_ = (used_ + 1) % 8;
    at_ += used_ == 0 ? 1 : 0;
    return bit;
  }

  // Takes whole bytes from the next one on.
  std::string_view takeBytes(size_t count) {
    at_ += used_ == 0 ? 0 : 1;
    used_ = 0;
    if (count > data_.size() - at_) {
      throw InputError("the compressed data ends too early");
    }
    at_ += count;
    return data_.substr(at_ - count, count);
  }

 private:
  std::string_view data_;
  size_t at_ = 0;
  int used_ = 0;
};

// A Huffman code, given by the length of each symbol's code: 0 is unused.
class Code {
 public:
  explicit Code(const std::vector<uint8_t>& lengths) {
    for (const uint8_t length : lengths) {
      ++counts_[length];
    }
    counts_[0] = 0;
    std::array<unsigned, kLongestCode + 2> starts{};
    int room = 1;
    for (int length = 1; length <= kLongestCode; ++length) {
      room = room * 2 - static_cast<int>(counts_[length]);
      if (room < 0) {
        throw InputError("the compressed data has too many codes");
      }
      starts[length + 1] = starts[length] + counts_[length];
    }
    symbols_.resize(lengths.size());
    for (unsigned symbol = 0; symbol < lengths.size(); ++symbol) {
      if (lengths[symbol] != 0) {
        symbols_[starts[lengths[symbol]]++] = symbol;
      }
    }
  }

  unsigned take(Bits* bits) const {
    unsigned code = 0;
    unsigned first = 0;
    unsigned index = 0;
    for (int length = 1; length <= kLongestCode; ++length) {
      code |= bits->takeOne();
      const unsigned count = counts_[length];
      if (code < first + count) {
        return symbols_[index + (code - first)];
      }
      index += count;
      first = (first + count) << 1;
      code <<= 1;
    }
    throw InputError("the compressed data has a code that means nothing");
  }

 private:
  std::array<unsigned, kLongestCode + 1> counts_{};
  std::vector<unsigned> symbols_;
};

class Output {
 public:
  explicit Output(size_t most) : most_(most) {}

  void add(std::string_view bytes) {
    if (bytes.size() > most_ - bytes_.size()) {
      throw InputError("it has more than " + std::to_string(most_) + " bytes");
    }
    bytes_ += bytes;
  }

  void repeat(size_t distance, size_t length) {
    if (distance > bytes_.size()) {
      throw InputError("the compressed data repeats what is not there");
    }
    for (size_t i = 0; i < length; ++i) {
      const char byte = bytes_[bytes_.size() - distance];
      add({&byte, 1});
    }
  }

  std::string take() { return std::move(bytes_); }

 private:
  std::string bytes_;
  size_t most_;
};

struct Codes {
  Code literals;
  Code distances;
};

}  // namespace

static void copyStored(Bits* bits, Output* output) {
  const std::string_view head = bits->takeBytes(4);
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(head[i]); };
  const unsigned length = byte(0) | byte(1) << 8;
  const unsigned complement = byte(2) | byte(3) << 8;
  if ((length ^ complement) != 0xffff) {
    throw InputError("the compressed data has a wrong length");
  }
  output->add(bits->takeBytes(length));
}

static Codes fixedCodes() {
  std::vector<uint8_t> literals(kLiteralCodes, 8);
  std::fill(literals.begin() + 144, literals.begin() + 256, 9);
  std::fill(literals.begin() + 256, literals.begin() + 280, 7);
  return {Code(literals), Code(std::vector<uint8_t>(kDistanceCodes, 5))};
}

// The lengths of both codes, themselves in a code and in runs.
static std::vector<uint8_t> takeLengths(Bits* bits, const Code& code, unsigned count) {
  std::vector<uint8_t> lengths;
  while (lengths.size() < count) {
    const unsigned symbol = code.take(bits);
    uint8_t value = 0;
    unsigned times = 1;
    if (symbol < 16) {
      value = static_cast<uint8_t>(symbol);
    } else if (symbol == 16) {
      if (lengths.empty()) {
        throw InputError("the compressed data repeats what is not there");
      }
      value = lengths.back();
      times = 3 + bits->take(2);
    } else {
      times = symbol == 17 ? 3 + bits->take(3) : 11 + bits->take(7);
    }
    lengths.insert(lengths.end(), times, value);
  }
  if (lengths.size() > count) {
    throw InputError("the compressed data has too many codes");
  }
  return lengths;
}

static Codes takeCodes(Bits* bits) {
  static const uint8_t kOrder[] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                   11, 4,  12, 3, 13, 2, 14, 1, 15};
  const unsigned literals = bits->take(5) + 257;
  const unsigned distances = bits->take(5) + 1;
  const unsigned count = bits->take(4) + 4;
  std::vector<uint8_t> ofLengths(std::size(kOrder), 0);
  for (unsigned i = 0; i < count; ++i) {
    ofLengths[kOrder[i]] = static_cast<uint8_t>(bits->take(3));
  }
  const std::vector<uint8_t> lengths = takeLengths(bits, Code(ofLengths), literals + distances);
  const auto split = lengths.begin() + literals;
  return {Code({lengths.begin(), split}), Code({split, lengths.end()})};
}

static void expand(Bits* bits, const Codes& codes, Output* output) {
  static const uint16_t kLengths[] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                      15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                      67, 83, 99, 115, 131, 163, 195, 227, 258};
  static const uint8_t kLengthBits[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                        2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
  static const uint16_t kDistances[] = {
      1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
      193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
  constexpr unsigned kEnd = 256;
  while (true) {
    const unsigned symbol = codes.literals.take(bits);
    if (symbol < kEnd) {
      const char byte = static_cast<char>(symbol);
      output->add({&byte, 1});
      continue;
    }
    if (symbol == kEnd) {
      return;
    }
    const unsigned length = symbol - kEnd - 1;
    if (length >= std::size(kLengths)) {
      throw InputError("the compressed data has a code that means nothing");
    }
    const size_t count = kLengths[length] + bits->take(kLengthBits[length]);
    const unsigned distance = codes.distances.take(bits);
    if (distance >= std::size(kDistances)) {
      throw InputError("the compressed data has a code that means nothing");
    }
    const int extra = distance < 4 ? 0 : static_cast<int>(distance) / 2 - 1;
    output->repeat(kDistances[distance] + bits->take(extra), count);
  }
}

std::string inflate(std::string_view data, size_t most) {
  Bits bits(data);
  Output output(most);
  bool isLast = false;
  while (!isLast) {
    isLast = bits.takeOne() != 0;
    const unsigned kind = bits.take(2);
    if (kind == 0) {
      copyStored(&bits, &output);
    } else if (kind == 3) {
      throw InputError("the compressed data has a block of no known kind");
    } else {
      expand(&bits, kind == 1 ? fixedCodes() : takeCodes(&bits), &output);
    }
  }
  return output.take();
}

}  // namespace tools
