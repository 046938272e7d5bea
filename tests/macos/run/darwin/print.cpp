#include <cstdarg>
#include <cstdio>
#include <cwchar>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/streams.h"
#include "tests/macos/run/supply/tables.h"

// printf and scanf. The formats mean the same on both systems, and so do va_list and long double.

namespace macrun {

[[gnu::format(printf, 2, 0)]] static int printListTo(DarwinStream* stream, const char* format,
                                                     va_list arguments) {
  return translating([&] { return vfprintf(fileOf(stream), format, arguments); });
}

[[gnu::format(printf, 2, 3)]] static int printTo(DarwinStream* stream, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int result = printListTo(stream, format, arguments);
  va_end(arguments);
  return result;
}

static constexpr Supplied kPrints[] = {
    function<asprintf>("_asprintf"),
    function<dprintf>("_dprintf"),
    function<printTo>("_fprintf"),
    function<printf>("_printf"),
    function<snprintf>("_snprintf"),
    function<sprintf>("_sprintf"),
    function<sscanf>("_sscanf"),
    function<static_cast<int (*)(wchar_t*, size_t, const wchar_t*, ...)>(swprintf)>("_swprintf"),
    function<vasprintf>("_vasprintf"),
    function<printListTo>("_vfprintf"),
    function<vprintf>("_vprintf"),
    function<vsnprintf>("_vsnprintf"),
};
const SupplyTable kPrintTable = tableOf(kPrints);

}  // namespace macrun
