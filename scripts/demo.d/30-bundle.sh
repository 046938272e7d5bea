# The first project: a bundle of the Launcher, and an installer that carries its runtime. Sourced by
# scripts/demo.

make_hello() {
  say "making a project and a signing key with 'quorvane-pack init', in $hello"
  mkdir -p "$hello"
  pack init "$demo/hello.jar" --main-class org.example.hello.Hello --project "$hello/quorvane.toml"
  say "packing it with 'quorvane-pack build'"
  pack build "$hello/quorvane.toml" --runtime "$demo/runtime" --output "$hello/dist" \
    --target "$target" --executables "$executables" --bundles --launcher-bundle
  pack verify "$hello"/dist/Hello-1-"$target".*
}

install_hello() {
  say "running its installer: it installs runtime and application, and starts the application"
  as_account scripts/with-display timeout -k 5 120 "$hello/dist/bundles/$target/offline/Hello.app/Contents/MacOS/Hello" \
    > "$demo/hello.log" 2> "$demo/hello.err" || fail "it failed; see $demo/hello.log"
  grep -aq 'Hello from Java' "$demo/hello.log" || fail "the application did not start; see $demo/hello.log"
}
