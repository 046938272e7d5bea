#include "tests/macos/run/darwin/streams.h"

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

static_assert(_IOFBF == 0 && _IOLBF == 1 && _IONBF == 2 && EOF == -1);

// The standard streams, and the variables that stdin and its like are there.
static DarwinStream standardStreams[3];
static DarwinStream* standardInput = &standardStreams[0];
static DarwinStream* standardOutput = &standardStreams[1];
static DarwinStream* standardError = &standardStreams[2];

FILE* fileOf(DarwinStream* stream) {
  if (stream == standardInput) {
    return stdin;
  }
  if (stream == standardOutput) {
    return stdout;
  }
  return stream == standardError ? stderr : stream->file;
}

DarwinStream* wrapStream(FILE* file) {
  if (file == nullptr) {
    return nullptr;
  }
  auto* stream = new DarwinStream{};
  stream->flags = 4;  // in use
  stream->handle = static_cast<short>(fileno(file));
  stream->file = file;
  return stream;
}

void dropStream(DarwinStream* stream) {
  if (stream->file != nullptr) {
    delete stream;
  }
}

// Functions whose last argument is the stream, with up to two before it.
template <auto Function, class Result>
Result callOnStream(DarwinStream* stream) {
  return translating([&] { return Function(fileOf(stream)); });
}

template <auto Function, class Result, class First>
Result callWithOne(First first, DarwinStream* stream) {
  return translating([&] { return Function(first, fileOf(stream)); });
}

template <auto Function, class Result, class First, class Second>
Result callWithTwo(First first, Second second, DarwinStream* stream) {
  return translating([&] { return Function(first, second, fileOf(stream)); });
}

template <auto Function, class Result>
constexpr Supplied onStreamAs(const char* name, Result (*)(FILE*)) {
  return function<&callOnStream<Function, Result>>(name);
}

template <auto Function, class Result, class First>
constexpr Supplied onStreamAs(const char* name, Result (*)(First, FILE*)) {
  return function<&callWithOne<Function, Result, First>>(name);
}

template <auto Function, class Result, class First, class Second>
constexpr Supplied onStreamAs(const char* name, Result (*)(First, Second, FILE*)) {
  return function<&callWithTwo<Function, Result, First, Second>>(name);
}

template <auto Function>
constexpr Supplied onStream(const char* name) {
  return onStreamAs<Function>(name, Function);
}

static DarwinStream* openStream(const char* path, const char* mode) {
  return isPathShort(path) ? wrapStream(translating([&] { return fopen(path, mode); })) : nullptr;
}

static DarwinStream* streamOfHandle(int handle, const char* mode) {
  return wrapStream(translating([&] { return fdopen(handle, mode); }));
}

static int closeStream(DarwinStream* stream) {
  const int result = translating([&] { return fclose(fileOf(stream)); });
  dropStream(stream);
  return result;
}

static int flushStream(DarwinStream* stream) {
  return translating([&] { return fflush(stream == nullptr ? nullptr : fileOf(stream)); });
}

static int refill(DarwinStream* stream) {
  stream->leftToRead = 0;
  return translating([&] { return getc(fileOf(stream)); });
}

static int writeThrough(int byte, DarwinStream* stream) {
  stream->leftToWrite = 0;
  return translating([&] { return putc(byte, fileOf(stream)); });
}

static size_t readStream(void* bytes, size_t size, size_t count, DarwinStream* stream) {
  return translating([&] { return fread(bytes, size, count, fileOf(stream)); });
}

static size_t writeStream(const void* bytes, size_t size, size_t count, DarwinStream* stream) {
  return translating([&] { return fwrite(bytes, size, count, fileOf(stream)); });
}

static int seekStream(DarwinStream* stream, off_t offset, int from) {
  return translating([&] { return fseeko(fileOf(stream), offset, from); });
}

static int setBuffer(DarwinStream* stream, char* buffer, int mode, size_t size) {
  return translating([&] { return setvbuf(fileOf(stream), buffer, mode, size); });
}

static void clearError(DarwinStream* stream) {
  clearerr(fileOf(stream));
}

static void rewindStream(DarwinStream* stream) {
  rewind(fileOf(stream));
}

static ssize_t readLine(char** line, size_t* size, DarwinStream* stream) {
  return translating([&] { return getline(line, size, fileOf(stream)); });
}

static constexpr Supplied kStreams[] = {
    function<refill>("___srget"),
    data<&standardError>("___stderrp"),
    data<&standardInput>("___stdinp"),
    data<&standardOutput>("___stdoutp"),
    function<writeThrough>("___swbuf"),
    function<clearError>("_clearerr"),
    function<closeStream>("_fclose"),
    function<streamOfHandle>("_fdopen"),
    onStream<feof>("_feof"),
    onStream<ferror>("_ferror"),
    function<flushStream>("_fflush"),
    onStream<fgetc>("_fgetc"),
    onStream<fgets>("_fgets"),
    onStream<fileno>("_fileno"),
    function<openStream>("_fopen"),
    onStream<fputc>("_fputc"),
    onStream<fputs>("_fputs"),
    function<readStream>("_fread"),
    function<seekStream>("_fseek"),
    function<seekStream>("_fseeko"),
    onStream<ftello>("_ftell"),
    onStream<ftello>("_ftello"),
    function<writeStream>("_fwrite"),
    onStream<getc>("_getc"),
    function<readLine>("_getline"),
    onStream<putc>("_putc"),
    translated<static_cast<int (*)(int)>(putchar)>("_putchar"),
    translated<puts>("_puts"),
    function<rewindStream>("_rewind"),
    function<setBuffer>("_setvbuf"),
    onStream<ungetc>("_ungetc"),
};
const SupplyTable kStreamTable = tableOf(kStreams);

}  // namespace macrun
