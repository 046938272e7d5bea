# The Java side: the sample programs, and one runtime for all installers. Sourced by scripts/demo.

find_jdk() {
  jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
  [ -d "$jdk/jmods" ] || fail "the JDK at $jdk has no jmods folder, which jlink needs"
}

# Compiles the sample program in examples/$1 into $demo/$1.jar.
compile_sample() {
  say "compiling the sample program in examples/$1"
  quietly "$jdk/bin/javac" --release 17 -d "$demo/classes-$1" examples/"$1"/org/example/"$1"/*.java
  quietly "$jdk/bin/jar" --create --file "$demo/$1.jar" -C "$demo/classes-$1" .
}

make_runtime() {
  say "making a Java runtime with jlink"
  quietly "$jdk/bin/jlink" --add-modules java.base,java.desktop --strip-java-debug-attributes \
    --no-header-files --no-man-pages --compress=2 --output "$demo/runtime"
  # What is built for macOS knows the JVM library by this name alone.
  [ -z "${QUORVANE_DEMO_MACOS:-}" ] || cp "$demo/runtime/lib/server/libjvm".{so,dylib}
}
