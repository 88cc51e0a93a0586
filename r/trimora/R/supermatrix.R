supermatrix <- function(x, match = "name", name_begin = "", name_end = "", name_parts = "", species = NULL,
                        min_species = NULL, min_columns = 0, min_genes = NULL) {
  if (!is.list(x) || inherits(x, c("DNAbin", "AAbin", "phyDat", "trimora_blocks"))) {
    if (!is.character(x) || !is.null(names(x)) && !all(file.exists(x))) {
      stop("x has to be a list of alignments, or file names", call. = FALSE)
    }
    x <- as.list(x)
  }
  if (length(species) == 0) {
    if (!is.null(species)) stop("species is empty", call. = FALSE)
  } else if (!is.character(species) || anyNA(species)) {
    stop("species has to be names, with the old ones as their names where they are new", call. = FALSE)
  }
  new_names <- if (is.null(names(species))) rep("", length(species)) else species
  old_names <- if (is.null(names(species))) species else ifelse(names(species) == "", species, names(species))
  min_species <- share("min_species", min_species)
  min_genes <- share("min_genes", min_genes)
  arguments <- list(
    match = choice("match", match, matches),
    name_begin = text("name_begin", name_begin), name_end = text("name_end", name_end),
    name_parts = text("name_parts", name_parts),
    species = enc2utf8(as.character(old_names)), new_names = enc2utf8(as.character(new_names)),
    min_species = min_species[[1]], min_species_per_cent = min_species[[2]],
    min_columns = whole("min_columns", min_columns),
    min_genes = min_genes[[1]], min_genes_per_cent = min_genes[[2]]
  )
  found <- told(.Call(trimora_supermatrix, lapply(unname(x), trimmed_in_library), arguments))
  joined <- texts(found$alignment, NULL)
  occupancy <- found$occupancy
  called <- if (is.null(names(x))) as.character(seq_along(x)) else names(x)
  dimnames(occupancy) <- list(names(joined), called)
  structure(
    class = "trimora_supermatrix",
    list(
      alignment = of_class(joined, common_class(x)),
      partitions = data.frame(first = found$first, last = found$last, row.names = make.unique(called)),
      occupancy = occupancy,
      left_out = called[found$left_out]
    )
  )
}

codons <- function(x, sequences, code = 1) {
  code <- whole("code", code)
  coding <- coding_in(sequences)
  selected <- inherits(x, "trimora_blocks")
  ali <- if (selected) x$alignment else in_library(x)
  columns <- if (selected) x$columns else seq_len(.Call(trimora_width, ali))
  texts(told(.Call(trimora_codons, ali, columns, coding$names, coding$sequences, code)), NULL)
}

# An alignment, or what is left of it after selection, in the memory of the library.
trimmed_in_library <- function(x) {
  if (!inherits(x, "trimora_blocks")) return(in_library(x))
  told(.Call(trimora_trim, x$alignment, x$columns, match(x$kind, kinds) - 1L))
}

# "DNAbin" or "AAbin" where all alignments are, and otherwise "".
common_class <- function(x) {
  class_of <- function(each) {
    if (inherits(each, "trimora_blocks")) each <- each$trimmed
    if (inherits(each, "DNAbin")) "DNAbin" else if (inherits(each, "AAbin")) "AAbin" else ""
  }
  found <- unique(vapply(x, class_of, ""))
  if (length(found) == 1 && found != "" && requireNamespace("ape", quietly = TRUE)) found else ""
}

of_class <- function(texts, class) {
  switch(class, DNAbin = ape::as.DNAbin(tolower(letter_matrix(texts))), AAbin = ape::as.AAbin(toupper(letter_matrix(texts))), texts)
}

print.trimora_supermatrix <- function(x, ...) {
  parts <- nrow(x$partitions) - length(x$left_out)
  cat(nrow(x$occupancy), " sequences, ", max(x$partitions$last, 0), " columns of ", parts, if (parts == 1) " alignment" else " alignments",
    "\n", sep = "")
  invisible(x)
}

as.DNAbin.trimora_supermatrix <- function(x, ...) {
  if (inherits(x$alignment, "DNAbin")) x$alignment else of_class(x$alignment, "DNAbin")
}

as.AAbin.trimora_supermatrix <- function(x, ...) {
  if (inherits(x$alignment, "AAbin")) x$alignment else of_class(x$alignment, "AAbin")
}
