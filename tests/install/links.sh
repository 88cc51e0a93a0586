#!/usr/bin/env bash
# Whether each link in the documents below these folders leads to a file, and to a heading of it: bash links.sh FOLDER...
set -euo pipefail
missing=$(find -L "$@" -name '*.md' | while read -r document; do
  grep -oP '\]\(\K[^)]+|(src|href)="\K[^"]+' "$document" | grep -vE '^(https?|mailto):' | while read -r link; do
    target=$(realpath -s "$(dirname "$document")/${link%%#*}") # as it is seen through linked folders
    [[ $link != "#"* ]] || target=$document
    [ -e "$target" ] && { [[ $link != *"#"* ]] || sed -n 's/^#* //p' "$target" | tr '[:upper:] ' '[:lower:]-' |
      tr -cd '[:alnum:]_\n-' | grep -qxF -- "${link#*#}"; } || echo "$document: $link leads nowhere"
  done || true
done)
[ -z "$missing" ] || { echo "$missing"; exit 1; }
