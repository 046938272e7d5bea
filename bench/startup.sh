#!/usr/bin/env bash
# From exec to the first line of Java's main: plain java, the Launcher, and an application image
# made by the JDK's jpackage, all in one run with the same runtime and class path, without and with
# class-data sharing.
# Usage: scripts/bench startup [ROUNDS]   (40)
set -euo pipefail
cd "$(dirname "$0")/.."

build=$QUORVANE_BENCH_BUILD
rounds=${1:-${QUORVANE_BENCH_SHORT:-40}}
folder=$PWD/$build/bench-startup
jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
quiet=$(mktemp)
BENCH_TMP=$(mktemp -d /tmp/bench-XXXXXX) # short: the toolkit keeps sockets there
export BENCH_TMP
trap clean_up EXIT

clean_up() {
  local file
  for file in $(grep -slz "^TMPDIR=$BENCH_TMP\$" /proc/[0-9]*/environ); do
    kill "$(basename "$(dirname "$file")")" 2> /dev/null || true
  done
  rm -rf "$BENCH_TMP" "$quiet"
}

quietly() { "$@" > "$quiet" 2>&1 || { cat "$quiet" >&2; echo "bench: this failed: $*" >&2; exit 1; }; }

build_programs() {
  quietly cmake --build "$build" --target launcher exec_stamp quorvane-pack
  rm -rf "$folder"
  mkdir -p "$folder"
}

make_program() {
  quietly "$jdk/bin/javac" -d "$folder/classes" bench/startup/Startup.java
  quietly "$jdk/bin/jar" --create --file "$folder/startup.jar" -C "$folder/classes" .
}

make_runtimes() {
  quietly "$jdk/bin/jlink" --add-modules java.base,java.desktop --strip-debug --no-header-files \
    --no-man-pages --output "$folder/runtime-plain"
  cp -r "$folder/runtime-plain" "$folder/runtime-shared"
  quietly "$folder/runtime-shared/bin/java" -Xshare:dump
}

# An account whose home holds the runtime of this kind as a version folder.
make_account() {
  local account=$folder/account-$1
  local master="$account/home/Library/Application Support/Quorvane-Startup"
  mkdir -p "$master"
  printf 'bench:x:%s:%s:Bench:%s:/bin/sh\n' "$(id -u)" "$(id -g)" "$account/home" > "$account/passwd"
  printf 'bench:x:%s:\n' "$(id -g)" > "$account/group"
  mv "$folder/runtime-$1" "$master/Quorvane-Mac64JRE-1-complete"
}

make_image() {
  quietly "$jdk/bin/jpackage" --type app-image --name Startup --dest "$folder/image-$1" \
    --input "$folder/input" --main-jar startup.jar --main-class Startup \
    --runtime-image "$folder/runtime-$1"
}

make_bundle() {
  local app=$folder/Startup.app/Contents
  mkdir -p "$app/MacOS" "$app/Resources"
  cp "$build"/bin/launcher "$app/MacOS/Startup"
  printf '<plist version="1.0"><dict><key>CFBundleName</key><string>Startup</string></dict></plist>\n' \
    > "$app/Info.plist"
  quietly "$build/bin/quorvane-pack" tail write --append "$app/MacOS/Startup" \
    --app-name Startup --install-type perm_user
}

build_programs
make_program
make_runtimes
mkdir -p "$folder/input"
cp "$folder/startup.jar" "$folder/input/"
make_image plain
make_image shared
make_account plain
make_account shared
make_bundle
QUORVANE_OWN_DISPLAY=1 scripts/with-display \
  python3 bench/startup/startup.py "$rounds" "$folder" "$build"/bin/exec_stamp
