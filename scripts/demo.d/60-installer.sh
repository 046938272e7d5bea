# The main job: installers that install, update and start a real Java application. Sourced by
# scripts/demo.

project=$demo/project
dist=$demo/dist
bundles=$dist/bundles/$target
sample_master=$demo/home/Library/Application\ Support/Quorvane-Sample

# The sample application, a splash image, a key and the project file.
make_project() {
  say "making a project in $project: application, runtime, splash, signing key"
  mkdir -p "$project"
  cp "$demo/app.jar" "$project/"
  cp examples/splash/nativesplash.png "$project/splash.png"
  pack key new "$project/release.key"
  cp examples/app/quorvane.toml "$project/"
}

# Packs the project; further arguments go to the packager.
pack_project() {
  pack build "$project/quorvane.toml" --output "$dist" --target "$target" --executables "$executables" \
    --bundles "$@"
}

# Runs the bundle $1 in the account, on its own display, with its log in $2 and pictures of its
# windows beside it. Further arguments go to the application.
run_bundle() {
  QUORVANE_OWN_DISPLAY=1 QUORVANE_SCREEN=900x480x24 scripts/with-display \
    bash -c 'for piece in scripts/demo.d/*.sh; do source "$piece"; done
             account_tmp=$1; shift; photograph "$@"' demo "$account_tmp" "$@"
}

# Whether the application's window is up, and with it the menu of the process under its name.
application_is_shown() {
  local windows
  windows=$(xwininfo -root -tree)
  grep -q '"Sample version' <<< "$windows" && grep -q '"Sample": (' <<< "$windows"
}

# Starts the executable of the bundle $1 and keeps the latest picture of the splash, and of the
# application's window and menu once they are up. Further arguments go to the application.
photograph() {
  local status=0 words=("${@:3}")
  display -window root xc:'#9fb3c8'
  as_account timeout -k 5 120 "$1"/Contents/MacOS/* "${words[@]}" > "$2.log" 2> "$2.err" &
  local process=$!
  while kill -0 "$process" 2> /dev/null; do
    sleep 0.3
    import -silent -window root "$2.now.png" 2> /dev/null || continue
    if application_is_shown; then
      mv "$2.now.png" "$2-application.png"
    elif [ ! -e "$2-application.png" ] && [ "$(identify -format %k "$2.now.png")" -gt 16 ]; then
      mv "$2.now.png" "$2-splash.png"  # a screen of fewer colours shows the background alone
    fi
  done
  rm -f "$2.now.png"
  wait "$process" || status=$?
  [ "$status" -eq 0 ] || fail "it ended with status $status; see $2.log"
}

# Shows what the application printed in the log $1.
show_application() {
  grep -a '^Sample version' "$1.log" || fail "the application did not start; see $1.log"
}

must_log() {
  grep -aqF "$2" "$1.log" || fail "the log $1.log misses the line: $2"
}

install_offline() {
  say "packing a signed offline installer"
  pack_project
  say "running it on the fresh account: it installs and starts the application"
  run_bundle "$bundles/offline/Sample.app" "$demo/install"
  must_log "$demo/install" "[ExtractArchive] Archive signature verified."
  show_application "$demo/install"
  [ -s "$demo/install-splash.png" ] || fail "no picture of the splash was taken"
  [ -s "$demo/install-application.png" ] || fail "no picture of the application and its menu was taken"
  say "pictures: $demo/install-splash.png and $demo/install-application.png"
}

start_again() {
  say "running it again: nothing is extracted, the application starts at once"
  run_bundle "$bundles/offline/Sample.app" "$demo/again"
  must_log "$demo/again" "[Extractor] Running without extraction now"
  show_application "$demo/again"
}

update_offline() {
  say "packing version 2 and running its installer: an update"
  pack_project --app-version 2
  run_bundle "$bundles/offline/Sample.app" "$demo/update"
  must_log "$demo/update" "[Extractor] Our App version is newer than existing latest version"
  show_application "$demo/update"
  say "what is installed: $(cd "$sample_master" && echo Quorvane-*-complete)"
  say "the installers' own logs are in $sample_master/logs"
}

# Serves the folder $1 on a port that the kernel chooses and sets `port` and `server`.
serve() {
  python3 -u -m http.server --bind 127.0.0.1 --directory "$1" 0 > "$demo/server.log" 2>&1 &
  server=$!
  for _ in $(seq 100); do
    port=$(sed -n 's/^Serving HTTP on 127.0.0.1 port \([0-9]*\) .*/\1/p' "$demo/server.log")
    [ -n "$port" ] && return
    sleep 0.1
  done
  fail "the web server did not start; see $demo/server.log"
}

# Publishes what was packed last: the archives first, the texts that name them last.
publish() {
  mkdir -p "$demo/web"
  cp "$dist"/site/*-archive.p2.l2 "$demo/web/"
  cp "$dist"/site/*-version.txt "$demo/web/"
}

# The look for updates of an earlier start may outlive it by half a minute. It remembers when to look next,
# also where the account is a new one by then, and the next start's look gives way to it.
await_end_of_look() {
  for _ in $(seq 1200); do
    grep -qsa "$sample_master.*Update[R]un" /proc/[0-9]*/cmdline || return 0
    sleep 0.1
  done
  fail "an earlier start's look for updates does not end"
}

# The online installer carries only the updater: runtime and application come from the update site.
install_online() {
  say "running an online installer on an account without the application: all comes from the update site"
  mkdir -p "$demo/web"
  serve "$demo/web"
  printf '\n[updates]\ninterval = 0\n' >> "$project/quorvane.toml"
  pack_project --update-url "http://127.0.0.1:$port/"
  publish
  cp -r "$bundles/online/Sample.app" "$demo/Sample.app"
  await_end_of_look
  rm -rf "$sample_master"
  run_bundle "$demo/Sample.app" "$demo/online"
  must_log "$demo/online" "[JREDownload] Downloaded JRE is now ready."
  must_log "$demo/online" "Installing version 1 of Sample"
  show_application "$demo/online"
}

# The application that runs learns of the version that is published meanwhile; the next start uses it.
update_online() {
  say "publishing version 2 by copying its site; the application that runs is told of it"
  await_end_of_look
  pack_project --update-url "http://127.0.0.1:$port/" --app-version 2
  publish
  run_bundle "$demo/Sample.app" "$demo/told" --until-update
  must_log "$demo/told" "Sample version 1"
  must_log "$demo/told" "Version 2 is ready: restart to update"
  grep -a '^Version 2 is ready' "$demo/told.log"
  say "starting it again: the new version runs"
  run_bundle "$demo/Sample.app" "$demo/updated"
  must_log "$demo/updated" "Sample version 2"
  show_application "$demo/updated"
  kill "$server" 2> /dev/null || true
  say "pictures: $demo/online-application.png, $demo/told-application.png and $demo/updated-application.png"
}
