#!/usr/bin/env bash
# Make the pictures of the README, docs/pictures/, from what the program writes for the globins.
# The same tools and fonts give the same bytes.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/tools.sh"

need g++ cmake make chromium ghostscript pngquant
make_preset release
"$project/scripts/web.sh" >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$project/examples/globins.fas" .
"$project/build/release/trimora" globins.fas -p=y -d=y >/dev/null || true # the exit status is 1 at every end

# The heading and the first display, down to its blue bar.
browse --hide-scrollbars --disable-lcd-text --force-device-scale-factor=1.5 --window-size=628,886 \
  --screenshot="$work/shot.png" globins.fas-tr.htm
pngquant --nofs --speed 1 --strip --output report.png 64 shot.png

# The map as viewers show it, two dots a point.
gs -q -dSAFER -dBATCH -dNOPAUSE -dEPSCrop -sDEVICE=pnggray -r144 -dTextAlphaBits=4 -dGraphicsAlphaBits=4 \
  -sOutputFile=map.png globins.fas-trPS

# The page on the globins.
node "$project/web/test/picture.mjs" "$project/build/web/trimora.html" globins.fas window.png
pngquant --nofs --speed 1 --strip --output page.png 64 window.png

mkdir -p "$project/docs/pictures"
mv report.png map.png page.png "$project/docs/pictures"
