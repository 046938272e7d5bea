# The application bundle. Sourced by scripts/demo.

lay_out_bundle() {
  say "laying out the bundle $app"
  mkdir -p "$app/Contents/MacOS" "$app/Contents/Resources"
  cp build/bin/launcher "$app/Contents/MacOS/$app_name"
  cp "$demo/hello.jar" "$app/Contents/Resources/"
  cat > "$app/Contents/Info.plist" <<PLIST
<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>CFBundleName</key><string>$app_name</string>
  <key>CFBundleExecutable</key><string>$app_name</string>
  <key>CFBundleIdentifier</key><string>org.example.hello</string>
  <key>CFBundlePackageType</key><string>APPL</string>
  <key>CFBundleVersion</key><string>1</string>
</dict>
</plist>
PLIST
}

append_tail() {
  say "appending the Tail record to its executable"
  quietly build/bin/quorvane-pack tail write --append "$app/Contents/MacOS/$app_name" \
    --app-name "$app_name" --install-type perm_user
}
