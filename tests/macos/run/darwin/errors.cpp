#include "tests/macos/run/darwin/errors.h"

#include <cstdio>

#include "tests/macos/run/supply/tables.h"

namespace macrun {

struct ErrorPair {
  int linux, darwin;
};

// Those that differ: Linux's <errno.h> and Darwin's <sys/errno.h>. 1 to 34 are the same but for 11.
static constexpr ErrorPair kPairs[] = {
    {EDEADLK, 11},         {EAGAIN, 35},          {EINPROGRESS, 36},
    {EALREADY, 37},        {ENOTSOCK, 38},        {EDESTADDRREQ, 39},
    {EMSGSIZE, 40},        {EPROTOTYPE, 41},      {ENOPROTOOPT, 42},
    {EPROTONOSUPPORT, 43}, {ESOCKTNOSUPPORT, 44}, {ENOTSUP, 45},
    {EPFNOSUPPORT, 46},    {EAFNOSUPPORT, 47},    {EADDRINUSE, 48},
    {EADDRNOTAVAIL, 49},   {ENETDOWN, 50},        {ENETUNREACH, 51},
    {ENETRESET, 52},       {ECONNABORTED, 53},    {ECONNRESET, 54},
    {ENOBUFS, 55},         {EISCONN, 56},         {ENOTCONN, 57},
    {ESHUTDOWN, 58},       {ETOOMANYREFS, 59},    {ETIMEDOUT, 60},
    {ECONNREFUSED, 61},    {ELOOP, 62},           {ENAMETOOLONG, 63},
    {EHOSTDOWN, 64},       {EHOSTUNREACH, 65},    {ENOTEMPTY, 66},
    {EUSERS, 68},          {EDQUOT, 69},          {ESTALE, 70},
    {EREMOTE, 71},         {ENOLCK, 77},          {ENOSYS, 78},
    {EOVERFLOW, 84},       {ELIBEXEC, 85},        {ECANCELED, 89},
    {EIDRM, 90},           {ENOMSG, 91},          {EILSEQ, 92},
    {EBADMSG, 94},         {EMULTIHOP, 95},       {ENODATA, 96},
    {ENOLINK, 97},         {ENOSR, 98},           {ENOSTR, 99},
    {EPROTO, 100},         {ETIME, 101},          {ENOTRECOVERABLE, 104},
    {EOWNERDEAD, 105},
};

int toDarwinError(int number) {
  for (const ErrorPair& pair : kPairs) {
    if (pair.linux == number) {
      return pair.darwin;
    }
  }
  return number;
}

int fromDarwinError(int number) {
  for (const ErrorPair& pair : kPairs) {
    if (pair.darwin == number) {
      return pair.linux;
    }
  }
  return number;
}

int& darwinErrno() {
  static thread_local int number = 0;
  return number;
}

int failWith(int darwinNumber) {
  darwinErrno() = darwinNumber;
  return -1;
}

bool isPathShort(const char* path) {
  if (path == nullptr || strnlen(path, darwin::kPathMax) < darwin::kPathMax) {
    return true;
  }
  darwinErrno() = darwin::kENAMETOOLONG;
  return false;
}

static int* errorPlace() {
  return &darwinErrno();
}

static char* errorText(int number) {
  return strerror(fromDarwinError(number));
}

static int errorTextInto(int number, char* text, size_t size) {
  char room[256];
  const char* found = strerror_r(fromDarwinError(number), room, sizeof room);
  if (strlen(found) >= size) {
    return ERANGE;
  }
  strcpy(text, found);
  return 0;
}

static void printError(const char* lead) {
  errno = fromDarwinError(darwinErrno());
  perror(lead);
}

static constexpr Supplied kErrors[] = {
    function<errorPlace>("___error"),
    function<printError>("_perror"),
    function<errorText>("_strerror"),
    function<errorTextInto>("_strerror_r"),
};
const SupplyTable kErrorTable = tableOf(kErrors);

}  // namespace macrun
