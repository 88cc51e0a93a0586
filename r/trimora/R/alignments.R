# The alignments of R: how the library reads them, and how their columns are kept.

# The letter of each byte of a DNAbin; bytes that stand for none become one that is refused.
dna_letters <- local({
  codes <- c(a = 0x88, c = 0x28, g = 0x48, t = 0x18, r = 0xc0, m = 0xa0, w = 0x90, s = 0x60, k = 0x50, y = 0x30,
             v = 0xe0, h = 0xb0, d = 0xd0, b = 0x70, n = 0xf0, "-" = 0x04, "?" = 0x02)
  letters <- rep(as.raw(1), 256)
  letters[codes + 1] <- charToRaw(paste(names(codes), collapse = ""))
  letters
})

is_file <- function(x) is.character(x) && length(x) == 1 && is.null(names(x)) && is.null(dim(x))

# The alignment in the memory of the library.
in_library <- function(x) {
  if (is_file(x)) return(told(.Call(trimora_read, path.expand(x))))
  kind <- NA_integer_
  letters <- NULL
  if (inherits(x, "phyDat")) {
    need_phangorn()
    type <- attr(x, "type")
    if (identical(type, "CODON")) stop("a phyDat of codons: select in one of type DNA, kind = \"codons\"", call. = FALSE)
    kind <- c(DNA = 1L, AA = 0L)[type]
    x <- as.character(x)
  } else if (inherits(x, "DNAbin")) {
    kind <- 1L
    letters <- dna_letters
  } else if (inherits(x, "AAbin")) {
    kind <- 0L
  } else if (!is.character(x)) {
    stop("an alignment is a file name, a named character vector, a matrix of letters, a DNAbin, an AAbin or a phyDat, not ",
      paste(class(x), collapse = "/"), call. = FALSE)
  }
  if (is.list(x) && !all(vapply(unclass(x), is.raw, NA))) stop("a sequence that is not raw", call. = FALSE)
  if (is.character(x) && anyNA(x)) stop("a sequence or letter is NA", call. = FALSE)
  if (is.raw(x) && !is.matrix(x)) stop("one sequence only: an alignment has two or more", call. = FALSE)
  called <- if (is.matrix(x)) rownames(x) else names(x)
  if (is.null(called)) called <- as.character(seq_len(if (is.matrix(x)) nrow(x) else length(x)))
  told(.Call(trimora_from_rows, x, enc2utf8(called), letters, as.integer(kind)))
}

need_phangorn <- function() {
  if (!requireNamespace("phangorn", quietly = TRUE)) stop("a phyDat needs the package phangorn", call. = FALSE)
}

# The names and letters of coding sequences, which may differ in length.
coding_in <- function(x) {
  if (is_file(x)) return(told(.Call(trimora_read_coding, path.expand(x))))
  if (inherits(x, "DNAbin")) {
    if (is.matrix(x)) {
      rows <- lapply(seq_len(nrow(x)), function(i) unclass(x)[i, ])
      names(rows) <- rownames(x)
      x <- rows
    }
    x <- vapply(unclass(x), function(row) rawToChar(dna_letters[as.integer(row) + 1]), "")
  }
  if (!is.character(x) || is.null(names(x)) || anyNA(x)) {
    stop("coding sequences are a file name, a named character vector or a DNAbin", call. = FALSE)
  }
  list(names = enc2utf8(names(x)), sequences = unname(x))
}

# Sequences in the memory of the library as a named character vector. Names that are not UTF-8 are taken as Latin-1.
texts <- function(ali, columns) {
  if (is.null(columns)) columns <- seq_len(.Call(trimora_width, ali))
  rows <- .Call(trimora_texts, ali, columns)
  strange <- !validUTF8(names(rows))
  Encoding(names(rows))[strange] <- "latin1"
  rows
}

# The columns of `x`, which has the width of the alignment of the selection, as an object of its class.
with_columns <- function(x, columns, width) {
  check <- function(found) {
    if (any(found != width)) {
      stop("the selection was made of an alignment of ", width, " columns, and this one has ", found[found != width][1],
        call. = FALSE)
    }
  }
  if (inherits(x, "phyDat")) {
    need_phangorn()
    check(sum(attr(x, "weight")))
    return(subset(x, select = columns, site.pattern = FALSE))
  }
  if (is.matrix(x)) {
    check(ncol(x))
    if (!is.raw(x)) return(x[, columns, drop = FALSE])
    kept <- .Call(trimora_columns, x, columns)
    rownames(kept) <- rownames(x)
    class(kept) <- oldClass(x)
    return(kept)
  }
  if (is.list(x)) {
    check(vapply(unclass(x), length, 1L))
    kept <- lapply(x, function(row) row[columns])
    attributes(kept) <- attributes(x)
    return(kept)
  }
  check(nchar(x, "bytes"))
  kept <- .Call(trimora_pick, x, columns)
  names(kept) <- names(x)
  kept
}
