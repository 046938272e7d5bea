# A temporary account with its own home: the product gets the home folder from the password
# database, so the demo replaces that database. Sourced by scripts/demo.

make_account() {
  say "making a temporary account with the home $demo/home"
  mkdir -p "$demo/home"
  printf 'demo:x:%s:%s:Demo:%s:/bin/sh\n' "$(id -u)" "$(id -g)" "$demo/home" > "$demo/passwd"
  printf 'demo:x:%s:\n' "$(id -g)" > "$demo/group"
  # The toolkit keeps sockets there, whose paths must be short.
  account_tmp=$(mktemp -d /tmp/demo-XXXXXX)
  trap end_account EXIT
}

# Runs a command in the account.
as_account() {
  env HOME="$demo/home" TMPDIR="$account_tmp" TEMP="$account_tmp" TMP="$account_tmp" \
    LD_PRELOAD="${LD_PRELOAD:+$LD_PRELOAD:}libnss_wrapper.so" NSS_WRAPPER_PASSWD="$demo/passwd" \
    NSS_WRAPPER_GROUP="$demo/group" "$@"
}

# Ends the toolkit's notification server that applications of the account have left behind; it is
# recognised by its temporary folder.
end_account() {
  local file
  for file in $(grep -slz "^TMPDIR=$account_tmp\$" /proc/[0-9]*/environ); do
    kill "$(basename "$(dirname "$file")")" 2> /dev/null || true
  done
  rm -rf "$account_tmp"
}
