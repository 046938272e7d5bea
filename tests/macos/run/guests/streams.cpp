// Streams, characters, clocks and the account: streams FILE.
#include <pwd.h>
#include <sys/time.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

static void copyBytes(const char* path) {
  FILE* out = fopen(path, "w");
  for (const char* at = "one\ntwo\n"; *at != 0; ++at) {
    putc(*at, out);
  }
  fprintf(out, "%s %d %.2f\n", "three", 3, 3.0);
  fclose(out);
  FILE* in = fopen(path, "r");
  int count = 0, lines = 0;
  for (int byte = getc(in); byte != EOF; byte = getc(in)) {
    ++count;
    lines += byte == '\n' ? 1 : 0;
  }
  printf("bytes %d lines %d end %d\n", count, lines, feof(in) != 0);
  rewind(in);
  fseek(in, 4, SEEK_SET);
  char line[16];
  printf("line %s", fgets(line, sizeof line, in));
  printf("at %ld\n", ftell(in));
  fclose(in);
}

static void showCharacters() {
  int letters = 0, digits = 0, spaces = 0, printable = 0, hexadecimal = 0, upper = 0;
  for (int i = 0; i < 128; ++i) {
    letters += isalpha(i) != 0;
    digits += isdigit(i) != 0;
    spaces += isspace(i) != 0;
    printable += isprint(i) != 0;
    hexadecimal += isxdigit(i) != 0;
    upper += isupper(i) != 0;
  }
  printf("letters %d digits %d spaces %d printable %d hexadecimal %d upper %d\n", letters, digits,
         spaces, printable, hexadecimal, upper);
  printf("%c%c\n", tolower('A'), toupper('b'));
}

static void showClocks() {
  timespec one, other;
  clock_gettime(CLOCK_MONOTONIC, &one);
  usleep(2000);
  clock_gettime(CLOCK_MONOTONIC, &other);
  timeval now;
  gettimeofday(&now, nullptr);
  printf("later %d now %d\n", other.tv_sec > one.tv_sec || other.tv_nsec > one.tv_nsec,
         labs(now.tv_sec - time(nullptr)) < 2 && now.tv_usec < 1000000);
  const time_t start = 86400;
  tm parts;
  char text[32];
  strftime(text, sizeof text, "%Y-%m-%d", gmtime_r(&start, &parts));
  printf("%s\n", text);
}

int main(int, char** argv) {
  copyBytes(argv[1]);
  showCharacters();
  showClocks();
  const passwd* account = getpwuid(getuid());
  printf("account %d home %s\n", account->pw_uid == getuid(), account->pw_dir);
  fputs("to standard error\n", stderr);
}
