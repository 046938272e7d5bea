#include "tools/formats/lzma.h"

#include <lzma.h>

#include <memory>

#include "tools/system/input_error.h"
#include "tools/system/interruption.h"
#include "tools/system/whole_file.h"

namespace tools {

static const uint64_t kMemoryLimit = 512ull << 20;
static const size_t kLzmaChunk = 256 * 1024;

// A coder with its buffers; errors name the file `in`.
class LzmaCoder {
 public:
  explicit LzmaCoder(const std::string& in) : in_(in) {}
  ~LzmaCoder() { lzma_end(&stream_); }
  LzmaCoder(const LzmaCoder&) = delete;
  LzmaCoder& operator=(const LzmaCoder&) = delete;

  void startEncoder() {
    lzma_options_lzma options;
    lzma_lzma_preset(&options, LZMA_PRESET);
    check(lzma_alone_encoder(&stream_, &options));
  }
  void startDecoder() { check(lzma_alone_decoder(&stream_, kMemoryLimit)); }

  // Passes all of `input` through the coder.
  void run(FILE* input, WholeFile* output) {
    lzma_ret result = LZMA_OK;
    while (result == LZMA_OK) {
      stopWhenInterrupted();
      result = step(input, output);
    }
    if (result != LZMA_STREAM_END) {
      check(result);
    }
    if (stream_.avail_in > 0 || fgetc(input) != EOF) {
      throw InputError(in_ + " continues after the end of its LZMA data; make it again");
    }
  }

 private:
  lzma_ret step(FILE* input, WholeFile* output) {
    if (stream_.avail_in == 0) {
      stream_.next_in = inBytes_.get();
      stream_.avail_in = fread(inBytes_.get(), 1, kLzmaChunk, input);
      if (ferror(input) != 0) {
        throw InputError(in_ + " cannot be read to its end");
      }
    }
    stream_.next_out = outBytes_.get();
    stream_.avail_out = kLzmaChunk;
    const lzma_ret result = lzma_code(&stream_, feof(input) != 0 ? LZMA_FINISH : LZMA_RUN);
    output->write(outBytes_.get(), kLzmaChunk - stream_.avail_out);
    return result;
  }

  void check(lzma_ret result) const {
    if (result == LZMA_BUF_ERROR) {
      throw InputError(in_ + " ends before its LZMA data; fetch or make it again");
    }
    if (result == LZMA_MEM_ERROR || result == LZMA_MEMLIMIT_ERROR) {
      throw InputError(in_ + " needs more memory than is allowed or available");
    }
    if (result != LZMA_OK) {
      throw InputError(in_ + " is not LZMA data, or is damaged; fetch or make it again");
    }
  }

  std::string in_;
  lzma_stream stream_ = LZMA_STREAM_INIT;
  std::unique_ptr<uint8_t[]> inBytes_ = std::make_unique<uint8_t[]>(kLzmaChunk);
  std::unique_ptr<uint8_t[]> outBytes_ = std::make_unique<uint8_t[]>(kLzmaChunk);
};

static void convert(const std::string& in, const std::string& out, void (LzmaCoder::*start)()) {
  const Stream input = openInput(in);
  WholeFile output(out, permissionsOf(input.get()));
  LzmaCoder coder(in);
  (coder.*start)();
  coder.run(input.get(), &output);
  output.finish();
}

void lzmaCompress(const std::string& in, const std::string& out) {
  convert(in, out, &LzmaCoder::startEncoder);
}

void lzmaDecompress(const std::string& in, const std::string& out) {
  convert(in, out, &LzmaCoder::startDecoder);
}

}  // namespace tools
