#!/bin/sh
# unpack200 IN OUT: unpacks a pack200 file to a jar. Lies in the bin folder of a Java runtime, with
# its libraries in lib/unpack200, and runs with that runtime's java.
bin=$(dirname "$0")
java=$bin/java
[ -x "$java" ] || java=${JAVA_HOME:+$JAVA_HOME/bin/}java
exec "$java" -XX:+IgnoreUnrecognizedVMOptions -XX:TieredStopAtLevel=1 -XX:+UseSerialGC \
  -cp "$bin/../lib/unpack200/*" quorvane.Unpack200 "$@"
