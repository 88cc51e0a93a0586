#!/usr/bin/env bash
# The HTML report as Chromium shows it: bash report.sh PROGRAM
#
# measure.js writes down where each letter of the display lies on the screen, and in which colours. These must be the
# letters of the text report, with the colour of their residue where the mask has an @, and the blue bar under the
# positions that the short report lists. What differs is shown as a patch; # is blue on blue.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../scripts/tools.sh"
present chromium || { echo "skipped: chromium is missing"; exit 77; }

work=$(mktemp -d "$PWD/look at the report.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$project"/examples/*.fas .
program=$1

# look COLOURS FILE OPTION...
look() {
  local colours=$1 file=$2 form
  shift
  echo "$*"
  for form in s t y; do "$program" "$@" -p=$form -k=y >/dev/null || true; done # the exit status is 1 at every end

  awk -v colours="$colours" '
    function show(letters, shades) { sub(/ +$/, "", letters); sub(/ +$/, "", shades); print letters "\n" shades }
    BEGIN {
      n = split(colours, part)
      for (k = 1; k < n; k += 2) for (c = 1; c <= length(part[k + 1]); ++c) colour[substr(part[k + 1], c, 1)] = part[k]
    }
    FILENAME ~ /txts$/ && /^Flanks:/ {
      gsub(/[^0-9]+/, " ")
      for (k = 1; k < NF; k += 2) for (p = $k; p <= $(k + 1); ++p) selected[p] = 1
    }
    FILENAME ~ /Mask$/ && /^>/ { numseq += masked = /#Mask$/; next }
    FILENAME ~ /Mask$/ && masked { gsub(/[ *]/, ""); mask[numseq] = mask[numseq] $0 }
    FILENAME !~ /txt$/ || $0 == "" { next }
    /^Parameters/ { exit !(numseq && first) }
    /^ +[=+]+$/ { first = first ? first + width : 1; width = length($0) - 17; i = 0 }
    /^ / { show($0, "") }
    /^ / || !first { next }
    {
      ++i; shades = bar = sprintf("%17s", "")
      for (p = first; p < first + width; ++p) {
        bar = bar (p in selected ? "#" : " ")
        shades = shades (substr(mask[i], p, 1) == "@" ? colour[substr($0, p - first + 18, 1)] : " ")
      }
      if (i > numseq) show(bar, bar)
      else show($0, shades)
    }' "$file-tr.txts" "$file-trMask" "$file-tr.txt" >expected

  { cat "$file-tr.htm"; echo "<script>"; cat "$here/measure.js"; echo "</script>"; } >page.htm
  browse --dump-dom page.htm | sed '/html>/d' >found
  diff -u expected found
}

protein="l AGST o C a P w DEQN y FWY r HKR f ILMV"
look "$protein" globins.fas
look "$protein" globins.fas -v=50 -b5=h -b3=3 -b4=5
look "r A a C l G o TU" primates_mt.fas -t=d -b3=1 -b4=2
