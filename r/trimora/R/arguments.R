# Arguments as users give them, checked and made into what the library takes. In the order of its enumerations:
kinds <- c("protein", "dna", "codons")
gap_choices <- c("none", "half", "all")
matches <- c("same", "name", "order")
forms <- c("fasta", "phylip", "nexus", "trimora")
column_classes <- c("dropped", "gap", "nonconserved", "conserved", "flank")

# What the library could not do becomes a condition of class trimora_error; a wrong argument is a plain error.
told <- function(value) {
  if (!inherits(value, "trimora_failure")) return(value)
  if (value$kind == "bad_argument") stop(value$message, call. = FALSE)
  stop(structure(
    class = c(paste0("trimora_", value$kind), "trimora_error", "error", "condition"),
    list(message = value$message, call = NULL, kind = value$kind, sequence = value$sequence, name = value$name)
  ))
}

choice <- function(argument, value, choices) {
  if (!is.character(value) || length(value) != 1 || !value %in% choices) {
    stop(argument, " has to be one of ", paste0("\"", choices, "\"", collapse = ", "), call. = FALSE)
  }
  match(value, choices) - 1L
}

whole <- function(argument, value, or = "") {
  if (!is.numeric(value) || length(value) != 1 || is.na(value) || value != round(value) || abs(value) >= 2^31) {
    stop(argument, " has to be a whole number", or, call. = FALSE)
  }
  as.integer(value)
}

# A number of sequences or, as text, per cent of them.
share <- function(argument, value) {
  if (is.null(value)) return(list(NA_integer_, FALSE))
  if (is.character(value) && length(value) == 1 && grepl("^[0-9]{1,9}%$", value)) {
    return(list(as.integer(sub("%", "", value)), TRUE))
  }
  list(whole(argument, value, ", or whole per cent as \"60%\""), FALSE)
}

text <- function(argument, value) {
  if (is.numeric(value) && length(value) == 1) value <- as.character(value)
  if (!is.character(value) || length(value) != 1 || is.na(value)) stop(argument, " has to be text", call. = FALSE)
  enc2utf8(value)
}

library_parameters <- function(preset, kind, gaps, b0, b1, b2, b3, b4, similarity) {
  if (!is.logical(similarity) || length(similarity) != 1 || is.na(similarity)) {
    stop("similarity has to be TRUE or FALSE", call. = FALSE)
  }
  if (!is.character(preset) || length(preset) != 1) stop("preset has to be text", call. = FALSE)
  number <- function(argument, value) if (is.null(value)) NA_integer_ else whole(argument, value)
  b1 <- share("b1", b1)
  b2 <- share("b2", b2)
  list(
    preset = preset, kind = if (is.null(kind)) NA_integer_ else choice("kind", kind, kinds),
    gaps = if (is.null(gaps)) NA_integer_ else choice("gaps", gaps, gap_choices),
    b0 = number("b0", b0),
    b1 = b1[[1]], b1_per_cent = b1[[2]], b2 = b2[[1]], b2_per_cent = b2[[2]],
    b3 = number("b3", b3), b4 = number("b4", b4), similarity = similarity
  )
}
