#!/bin/sh
# pack200 IN OUT: packs a jar to a pack200 file.
bin=$(dirname "$0")
exec "${JAVA_HOME:+$JAVA_HOME/bin/}java" \
  -cp "$bin/../lib/unpack200/*:$bin/../lib/pack200/*" quorvane.Pack200Jar "$@"
