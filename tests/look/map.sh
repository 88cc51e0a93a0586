#!/usr/bin/env bash
# The block map as Ghostscript draws it: bash map.sh PROGRAM
#
# At a dot a point, a dot must be black where the short report says that the alignment or a block is, and white
# elsewhere. Only within the two lines of text any dot may be black, and some have to be.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/tools.sh"
present ghostscript || { echo "skipped: ghostscript is missing"; exit 77; }

work=$(mktemp -d "$PWD/look at the map.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$project"/examples/*.fas .
program=$1

# look FILE OPTION...: FILE has up to 900 positions.
look() {
  echo "$*"
  "$program" "$@" -p=s -d=y >/dev/null || true # the exit status is 1 at every end
  gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=pbm -r72 -g220x1000 -sOutputFile=map.pbm "$1-trPS"
  awk '
    FNR == NR && /of the original/ { sub(/.*original /, ""); nupo = $1 }
    FNR == NR && /^Flanks:/ {
      gsub(/[^0-9]+/, " ")
      for (k = 1; k < NF; k += 2) for (p = $k; p <= $(k + 1); ++p) selected[p] = 1
    }
    FNR == NR || FNR <= 3 || /^#/ { next }
    {
      gsub(/ /, "")
      for (k = 1; k <= length($0); ++k) {
        x = dots % 220; y = 999 - (dots - x) / 220; ++dots
        black = substr($0, k, 1) + 0
        bar = x >= 145 && x < 155 && y > 30 && y <= nupo + 30 || x >= 160 && x < 170 && (y - 30) in selected
        if (y >= 30 && (x >= 68 && x < 84 || x >= 88 && x < 104)) text[x < 84] += black
        else if (black != bar && ++wrong <= 5) print "x " x ", y " y ": black " black " instead of " bar
      }
    }
    END {
      if (!text[0] || !text[1]) print "a line of text is missing"
      exit !(nupo && dots == 220 * 1000 && text[0] && text[1] && !wrong)
    }' "$1-tr.txts" map.pbm
}

look globins.fas
look globins.fas -b5=h -b3=3 -b4=5
look primates_mt.fas -t=d -b3=1 -b4=2
