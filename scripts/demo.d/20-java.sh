# The Java side: a runtime of its own and the sample program. Sourced by scripts/demo.


make_runtime() {
  say "making a Java runtime with jlink"
  jdk=$(dirname "$(dirname "$(readlink -f "$(command -v javac)")")")
  [ -d "$jdk/jmods" ] || fail "the JDK at $jdk has no jmods folder, which jlink needs"
  quietly "$jdk/bin/jlink" --add-modules java.base,java.desktop --strip-debug --no-header-files \
    --no-man-pages --output "$demo/runtime"
  quietly "$demo/runtime/bin/java" -Xshare:dump
}

compile_sample() {
  say "compiling the sample program in examples/hello"
  quietly "$jdk/bin/javac" --release 17 -d "$demo/classes" examples/hello/org/example/hello/*.java
  quietly "$jdk/bin/jar" --create --file "$demo/hello.jar" -C "$demo/classes" .
}
