# Shared by all parts of the demo. Sourced by scripts/demo.

demo=$PWD/build/demo
executables=$PWD/build/bin
target=linux-$(uname -m | sed s/aarch64/arm64/)
# The same with the executables that scripts/build-macos has made, in Linux processes.
if [ -n "${QUORVANE_DEMO_MACOS:-}" ]; then
  demo=$PWD/build/demo-macos
  executables=$PWD/build-macos/bin
  target=macos-x86_64
fi
# The packager keeps nothing elsewhere.
export XDG_CACHE_HOME=$demo/cache
hello=$demo/hello
app=$hello/dist/bundles/$target/launcher/Hello.app
app_name=Hello

say() { printf 'demo: %s\n' "$*"; }

fail() {
  printf 'demo: %s\n' "$*" >&2
  exit 1
}

# Runs a command and shows its output only when it fails.
quietly() {
  local log
  log=$(mktemp)
  if ! "$@" > "$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    fail "this failed: $*"
  fi
  rm -f "$log"
}

install_what_is_missing() {
  say "installing what is missing"
  scripts/setup
}

build_the_tools() {
  say "building the product and the packager"
  quietly cmake --preset dev
  quietly cmake --build --preset dev --target packager
  if [ -n "${QUORVANE_DEMO_MACOS:-}" ]; then
    quietly cmake --build --preset dev --target macrun
    # From here on every process starts them through the runner.
    export LD_PRELOAD=$PWD/build/bin/libmacexec.so${LD_PRELOAD:+:$LD_PRELOAD}
  fi
}

# The packager. Its output is shown only when it fails.
pack() {
  quietly build/bin/quorvane-pack "$@"
}

start_afresh() {
  rm -rf "$demo"
  mkdir -p "$demo"
}
