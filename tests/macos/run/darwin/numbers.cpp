#include <cstdlib>
#include <cwchar>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/supply/tables.h"

// Numbers in texts, and what the compiler calls for numbers of 128 bits.

namespace macrun {

extern "C" unsigned __int128 __udivti3(unsigned __int128 dividend, unsigned __int128 divisor);
extern "C" unsigned __int128 __umodti3(unsigned __int128 dividend, unsigned __int128 divisor);

static constexpr Supplied kNumbers[] = {
    function<__udivti3>("___udivti3"), function<__umodti3>("___umodti3"),
    function<atoi>("_atoi"),           function<atol>("_atol"),
    function<qsort>("_qsort"),         translated<strtod>("_strtod"),
    translated<strtof>("_strtof"),     translated<strtol>("_strtol"),
    translated<strtold>("_strtold"),   translated<strtoll>("_strtoll"),
    translated<strtoul>("_strtoul"),   translated<strtoull>("_strtoull"),
    translated<wcstod>("_wcstod"),     translated<wcstof>("_wcstof"),
    translated<wcstol>("_wcstol"),     translated<wcstold>("_wcstold"),
    translated<wcstoll>("_wcstoll"),   translated<wcstoul>("_wcstoul"),
    translated<wcstoull>("_wcstoull"),
};
const SupplyTable kNumberTable = tableOf(kNumbers);

}  // namespace macrun
