# A protein alignment whose scores stand exactly on b1 or b2: the weighted counts add up to a whole number in decimals,
# so in single precision the last bit of the sum decides, and a fused or reordered sum shows in the selected blocks.
# Usage  awk -f thresholds.awk -v n=SEQUENCES -v b1=SEQUENCES -v b2=SEQUENCES similarity_matrix.h
# The same bytes with every awk: its own random numbers, whole numbers only. Digits stand for bytes that no editor shows.

function below(limit) {
  seed = seed * 16807 % 2147483647
  return seed % limit
}

# column(LETTERS): filled up with letters that score nothing, turned, and every third letter or so in lower case.
function column(letters,    i, turned) {
  while (length(letters) < n) letters = letters substr("X?JBZO", below(6) + 1, 1)
  i = below(n)
  letters = substr(letters, i + 1) substr(letters, 1, i)
  turned = tolower(letters)
  columns++
  for (i = 1; i <= n; i++) text[i] = text[i] substr(below(3) ? letters : turned, i, 1)
}

function many(letter, count,    letters) {
  letters = ""
  while (count-- > 0) letters = letters letter
  return letters
}

# judged(LETTERS, BOUND): a column between such neighbours that its class decides what is selected, with b3 0, b0 and b4 2.
function judged(letters, bound) {
  column("A")
  if (bound == b1) column(many("W", n))
  column(letters)
  column(many("W", n))
}

# exact(R, BOUND, WANTED): columns in which residue R prevails and the score is BOUND. The counts of the first two of the
# similar residues are looked up by the decimals that the others leave.
function exact(r, bound, wanted,    similar, m, k, x, y, sum, count, rest, letters, tries, room, pair, two) {
  m = 0
  for (k = 1; k <= 20; k++) if (weight[r, k] && k != r) similar[++m] = k
  if (m < 2) return
  room = n - half - 1
  for (x = 0; x <= room; x++) {
    for (y = 0; x + y <= room && y <= 60; y++) {
      k = (x * weight[r, similar[1]] + y * weight[r, similar[2]]) % 10000
      if (x + y && (!(k in pair) || !below(2))) pair[k] = x " " y
    }
  }
  for (tries = 0; tries < 400 && wanted > 0; tries++) {
    sum = rest = 0
    letters = ""
    for (k = 3; k <= m; k++) {
      count[k] = below(int(room / m) + 1)
      sum += count[k] * weight[r, similar[k]]
    }
    k = (10000 - sum % 10000) % 10000
    if (!(k in pair)) continue
    split(pair[k], two)
    count[1] = two[1]
    count[2] = two[2]
    for (k = 1; k <= m; k++) {
      if (k < 3) sum += count[k] * weight[r, similar[k]]
      rest += count[k]
      letters = letters many(residue[similar[k]], count[k])
    }
    count[0] = bound - sum / 10000
    if (count[0] < half + 1 || count[0] + rest > n) continue
    judged(many(residue[r], count[0]) letters, bound)
    wanted--
  }
}

BEGIN { seed = 7 }

/^ *\{/ {
  sub(/^ *\{/, "")
  split($0, entry, ",")
  rows++
  for (k = 1; k <= 20; k++) weight[rows, k] = int(entry[k] * 10000 + 0.5)
  residue[rows] = $NF
}

END {
  half = int(n / 2)
  for (r = 1; r <= rows; r++) {
    exact(r, b1, 8)
    exact(r, b2, 8)
    # Half of the sequences and one more: gaps, the most frequent residue, ties of two residues.
    for (k = half; k <= half + 1; k++) {
      judged(many(residue[r], n - k) many("-", k), b1)
      judged(many(residue[r], k) many(residue[r % 20 + 1], n - k), b1)
    }
  }
  for (k = 0; k <= 9; k++) column(many("W", n - 3) k k k) # a few odd bytes among the letters, and
  for (k = 0; k <= 9; k++) column(many(k, n - 3) "WWW")   # a few letters among odd bytes
  for (i = 1; i <= n; i++) print ">seq" i " " i % 10 "\n" text[i]
}
