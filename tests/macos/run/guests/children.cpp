// Children and signals: children ORDER [ARGUMENTS].
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

extern char** environ;

static void showEnd(const char* what, int status) {
  if (WIFEXITED(status)) {
    printf("%s exited %d\n", what, WEXITSTATUS(status));
  } else {
    printf("%s signal %d\n", what, WTERMSIG(status));
  }
}

static int wait(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child ? status : -1;
}

// Runs itself as another name, with its output in a file.
static void spawnItself(char** argv) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, argv[2], O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t child = 0;
  char name[] = "another name", order[] = "say", word[] = "from the child";
  char* arguments[] = {name, order, word, nullptr};
  printf("spawn %d\n", posix_spawn(&child, argv[0], &actions, nullptr, arguments, environ));
  showEnd("child", wait(child));
  posix_spawn_file_actions_destroy(&actions);
  printf("missing %d\n", posix_spawn(&child, "/nonexistent", nullptr, nullptr, arguments, environ));
}

static int say(char** argv) {
  printf("%s says %s\n", argv[0], argv[2]);
  return 5;
}

static void endBySignals(char** argv) {
  char order[] = "die";
  for (const char* number : {"6", "10", "31"}) {
    pid_t child = 0;
    char* arguments[] = {argv[0], order, const_cast<char*>(number), nullptr};
    posix_spawn(&child, argv[0], nullptr, nullptr, arguments, environ);
    showEnd(number, wait(child));
  }
}

static volatile sig_atomic_t caught = 0;

static void note(int number) {
  caught = number;
}

static void catchSignals() {
  struct sigaction action = {}, before = {};
  action.sa_handler = note;
  sigaddset(&action.sa_mask, SIGTERM);
  action.sa_flags = SA_RESTART;
  printf("set %d\n", sigaction(SIGUSR1, &action, nullptr));
  raise(SIGUSR1);
  printf("caught %d\n", static_cast<int>(caught));
  sigaction(SIGUSR1, nullptr, &before);
  printf("kept %d %d %d\n", before.sa_handler == note, before.sa_flags == SA_RESTART,
         sigismember(&before.sa_mask, SIGTERM));
  printf("old %d\n", signal(SIGUSR1, SIG_IGN) == note);
  kill(getpid(), SIGUSR1);
  printf("none %d\n", sigaction(32, &action, nullptr) < 0 ? errno : 0);
}

// A broken pipe ends a child although this process ignores it.
static void resetSignal(char** argv) {
  signal(SIGPIPE, SIG_IGN);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  char order[] = "die", number[] = "13";
  char* arguments[] = {argv[0], order, number, nullptr};
  for (posix_spawnattr_t* used : {static_cast<posix_spawnattr_t*>(nullptr), &attributes}) {
    pid_t child = 0;
    posix_spawn(&child, argv[0], nullptr, used, arguments, environ);
    showEnd(used != nullptr ? "reset" : "inherited", wait(child));
  }
  posix_spawnattr_destroy(&attributes);
}

// Through the shell, which executes this file in its turn.
static void useShell(char** argv) {
  const std::string command = std::string("'") + argv[0] + "' say 'through the shell'";
  FILE* output = popen(command.c_str(), "r");
  std::string text;
  for (int byte = getc(output); byte != EOF; byte = getc(output)) {
    text += static_cast<char>(byte);
  }
  printf("read %s", text.c_str() + text.find(" says"));
  showEnd("pclose", pclose(output));
  fflush(stdout);
  showEnd("system", system("kill -USR1 $$"));
}

// With an environment that knows nothing of the runner.
static void replaceItself(char** argv) {
  char order[] = "say", word[] = "with an empty environment";
  char* arguments[] = {argv[0], order, word, nullptr};
  char* nothing[] = {nullptr};
  fflush(stdout);
  execve(argv[0], arguments, nothing);
  printf("exec %d\n", errno);
}

static int die(const char* number) {
  raise(atoi(number));
  return 3;
}

int main(int, char** argv) {
  const std::string order = argv[1];
  if (order == "spawn") {
    spawnItself(argv);
  } else if (order == "say") {
    return say(argv);
  } else if (order == "ends") {
    endBySignals(argv);
  } else if (order == "die") {
    return die(argv[2]);
  } else if (order == "catch") {
    catchSignals();
  } else if (order == "reset") {
    resetSignal(argv);
  } else if (order == "shell") {
    useShell(argv);
  } else if (order == "exec") {
    replaceItself(argv);
  }
}
