select_blocks <- function(x, kind = NULL, gaps = NULL, b0 = NULL, b1 = NULL, b2 = NULL, b3 = NULL, b4 = NULL,
                          similarity = TRUE, preset = "classic") {
  parameters <- library_parameters(preset, kind, gaps, b0, b1, b2, b3, b4, similarity)
  ali <- in_library(x)
  found <- told(.Call(trimora_select, ali, parameters))
  structure(
    class = "trimora_blocks",
    list(
      columns = found$columns,
      blocks = data.frame(first = found$first, last = found$last),
      scores = found$scores,
      classes = structure(found$classes, levels = column_classes, class = "factor"),
      kind = kinds[found$kind + 1], b1 = found$b1, b2 = found$b2,
      alignment = ali, parameters = parameters, source = if (!is_file(x)) x
    )
  )
}

# The trimmed alignment and the reasons cost more than the selection: they are made when someone asks for them.
`$.trimora_blocks` <- function(x, name) x[[name]]

`[[.trimora_blocks` <- function(x, i, ...) {
  x <- unclass(x)
  if (identical(i, "reasons")) return(told(.Call(trimora_reasons, x$alignment, x$parameters)))
  if (!identical(i, "trimmed")) return(x[[i]])
  if (is.null(x$source)) texts(x$alignment, x$columns) else with_columns(x$source, x$columns, length(x$scores))
}

apply_blocks <- function(selection, x) {
  stopifnot(inherits(selection, "trimora_blocks"))
  width <- length(selection$scores)
  if (!is_file(x)) return(with_columns(x, selection$columns, width))
  ali <- in_library(x)
  if (.Call(trimora_width, ali) != width) {
    stop("the selection was made of an alignment of ", width, " columns, and this one has ", .Call(trimora_width, ali),
      call. = FALSE)
  }
  texts(ali, selection$columns)
}

write_alignment <- function(x, file, form = "fasta") {
  form <- choice("form", form, forms)
  if (inherits(x, "trimora_blocks") && length(x$columns) == 0) stop("no column was selected", call. = FALSE)
  if (inherits(x, "trimora_blocks")) x <- x$trimmed
  if (inherits(x, "trimora_supermatrix")) x <- x$alignment
  ali <- in_library(x)
  told(.Call(trimora_write, ali, form, path.expand(file)))
  invisible(file)
}

print.trimora_blocks <- function(x, ...) {
  count <- nrow(x$blocks)
  cat(length(x$columns), " of ", length(x$scores), " columns in ", count, if (count == 1) " block" else " blocks",
    " (", x$kind, ", b1 ", x$b1, ", b2 ", x$b2, ")\n", sep = "")
  invisible(x)
}

plot.trimora_blocks <- function(x, col = "steelblue", xlab = "column", ylab = "score (sequences)", ...) {
  scores <- x$scores
  plot(c(0.5, length(scores) + 0.5), c(0, max(scores, x$b2)), type = "n", xlab = xlab, ylab = ylab, ...)
  top <- graphics::par("usr")[3:4]
  if (nrow(x$blocks) > 0) {
    rect(x$blocks$first - 0.5, top[1], x$blocks$last + 0.5, top[2], col = adjustcolor(col, 0.25), border = NA)
  }
  abline(h = c(x$b1, x$b2), lty = c(3, 2), col = "grey40")
  lines(seq_along(scores), scores, type = "h", col = c("black", "grey70")[1 + (scores < x$b1)])
  invisible(x)
}

as.DNAbin.trimora_blocks <- function(x, ...) {
  trimmed <- x$trimmed
  if (inherits(trimmed, "DNAbin")) trimmed else ape::as.DNAbin(tolower(letter_matrix(trimmed)))
}

as.AAbin.trimora_blocks <- function(x, ...) {
  trimmed <- x$trimmed
  if (inherits(trimmed, "AAbin")) trimmed else ape::as.AAbin(toupper(letter_matrix(trimmed)))
}

letter_matrix <- function(x) {
  if (inherits(x, "phyDat")) return(as.character(x))
  if (is.matrix(x)) x else do.call(rbind, strsplit(x, ""))
}
