# Starting the application. Sourced by scripts/demo.

# The arguments of the bundle: JVM options, class path, main class, arguments.
console_words=(-Xmx64m "-Dhello.greeting=Good morning" -cp "$demo/hello.jar"
  org.example.hello.Hello first "second argument" -third)
window_words=(-Xmx64m "-Dhello.greeting=Good morning" -Dawt.useSystemAAFontSettings=on
  -cp "$demo/hello.jar"
  org.example.hello.HelloWindow first "second argument" -third)

run_in_console() {
  local status=0
  say "starting it: $app_name ${console_words[*]}"
  as_account scripts/with-display "$app/Contents/MacOS/$app_name" "${console_words[@]}" \
    > "$demo/console.log" 2> "$demo/console.err" || status=$?
  [ "$status" -eq 0 ] || fail "the launcher ended with status $status; see $demo/console.log"
  say "the launcher's log is in $demo/console.log; this is what the program saw:"
  sed -n '/Hello from Java/,/^  home /p' "$demo/console.log"
}

run_with_window() {
  say "starting it with a window: $app_name ${window_words[*]}"
  QUORVANE_OWN_DISPLAY=1 QUORVANE_SCREEN=960x440x24 scripts/with-display \
    bash -c 'for piece in scripts/demo.d/*.sh; do source "$piece"; done
             account_tmp=$1; take_picture' demo "$account_tmp"
  say "the picture of window and menu is $demo/window.png"
}

# Starts the window variant on the current display, opens the application's menu, takes a
# picture and quits through the menu.
take_picture() {
  display -window root xc:'#9fb3c8'
  as_account "$app/Contents/MacOS/$app_name" "${window_words[@]}" \
    > "$demo/window.log" 2> "$demo/window.err" &
  local launcher=$!
  wait_for "$launcher" grep -q "The window is up" "$demo/window.log"
  scripts/app-menu open "$app_name" ||
    { kill -9 "$launcher"; fail "the menu did not open; see $demo/window.log"; }
  sleep 1
  import -silent -window root "$demo/window.png"
  quit_through_menu "$launcher"
}

# Chooses Quit in the open menu.
quit_through_menu() {
  local status=0
  scripts/app-menu quit "$app_name" ||
    { kill -9 "$1"; fail "the menu did not take the mouse; see $demo/window.png"; }
  timeout 60 tail --pid="$1" -f /dev/null || { kill -9 "$1"; fail "the application did not quit"; }
  wait "$1" || status=$?
  [ "$status" -eq 0 ] || fail "the application quit with status $status; see $demo/window.log"
}

# Waits until a command succeeds, for at most 30 seconds, while the process still runs.
wait_for() {
  local process=$1
  shift
  for _ in $(seq 300); do
    "$@" > /dev/null 2>&1 && return
    kill -0 "$process" 2> /dev/null || fail "the launcher ended early; see $demo/window.log"
    sleep 0.1
  done
  kill -9 "$process"
  fail "waited 30 seconds in vain for: $*"
}
