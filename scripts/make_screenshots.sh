#!/usr/bin/env bash
# Renews the pictures in docs/images from the running program. Needs Debian's chromium and imagemagick.
#
# Usage: scripts/make_screenshots.sh      after ./test has built the programs
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p docs/images
build/release/bin/velmora-cli --quiet demo "$work/demo" >/dev/null

# shot NAME WIDTH HEIGHT [CHROMIUM OPTION...]: the report's first WIDTH x HEIGHT points at twice the size.
shot() {
  local name=$1 size=$2,$3
  shift 3
  chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --hide-scrollbars \
    --disable-background-networking --disable-component-update --disable-sync \
    --user-data-dir="$work/chromium" --force-device-scale-factor=2 --window-size="$size" \
    --screenshot="$work/$name.png" "$@" "file://$work/demo/report.html" >/dev/null 2>&1
  convert "$work/$name.png" -strip -resize 50% -colors 200 "PNG8:docs/images/$name.png"
}

# The workbench is used by hand in its test, which keeps a picture at each of its stations.
QT_SCALE_FACTOR=2 VELMORA_HAND=offscreen VELMORA_SCREENSHOTS="$work/workbench" \
  build/release/bin/workbench_test --gtest_filter='Workbench.IsWalked*' >"$work/workbench.log" 2>&1 ||
  { cat "$work/workbench.log" >&2; exit 1; }
for picture in "$work"/workbench/*.png; do
  convert "$picture" -strip -resize 50% +dither -colors 250 "PNG8:docs/images/$(basename "$picture")"
done

shot report 1200 1500
shot report-dark 1200 1500 --blink-settings=preferredColorScheme=0
ls docs/images/*.png
