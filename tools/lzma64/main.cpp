#include <cstdio>
#include <cstring>
#include <exception>

#include "support/process/exit_status.h"
#include "tools/formats/lzma.h"
#include "tools/system/input_error.h"

// The LZMA tool that an installer carries as "lzma64" and runs on the entries and archives that it
// must decompress.

static const int kInputError = 1;
static const int kUsageError = 2;

static int convert(const char* mode, const char* in, const char* out) {
  try {
    if (strcmp(mode, "d") == 0) {
      tools::lzmaDecompress(in, out);
    } else {
      tools::lzmaCompress(in, out);
    }
  } catch (const tools::DiskFullError& error) {
    fprintf(stderr, "lzma64: %s\n", error.what());
    return EXIT_STATUS_LZMA_DISK_FULL;
  } catch (const std::exception& error) {
    fprintf(stderr, "lzma64: %s\n", error.what());
    return kInputError;
  }
  return 0;
}

int main(int argc, char** argv) {
  const bool isUsable = argc == 4 && (strcmp(argv[1], "d") == 0 || strcmp(argv[1], "e") == 0);
  if (!isUsable) {
    fprintf(stderr,
            "usage: lzma64 d IN OUT   decompress\n"
            "       lzma64 e IN OUT   compress\n");
    return kUsageError;
  }
  return convert(argv[1], argv[2], argv[3]);
}
