# All ways in and out, and the table of the program where TRIMORA_RUN names it and TRIMORA_EXAMPLES the folder of examples;
# TRIMORA_CASES draws more than 50 alignments.
example_file <- function(name) system.file("extdata", name, package = "trimora")
program <- Sys.getenv("TRIMORA_RUN")

texts <- c(a = "ACGTACGTAC-TACG", b = "ACGTACGTACGTACG", c = "ACGTTCGTAC.TACG", d = "ACGTACGTACGTACG")
letters_of <- function(x) do.call(rbind, strsplit(unname(x), ""))
picked <- function(x, columns) vapply(strsplit(unname(x), ""), function(row) paste(row[columns], collapse = ""), "")

drawn_alignment <- function(kind) {
  alphabet <- strsplit(if (kind == "protein") "ACDEFGHIKLMNPQRSTVWYacX?" else "ACGTUacgtNR?", "")[[1]]
  numseq <- sample(2:13, 1)
  column <- function(p) {
    row <- rep(sample(alphabet, 1), numseq)
    other <- runif(numseq) > sample(c(0.2, 0.7, 0.9, 1), 1)
    row[other] <- sample(alphabet, sum(other), TRUE)
    row[runif(numseq) < sample(c(0, 0, 0, 0, 0.2, 0.5, 1), 1)] <- "-"
    row
  }
  drawn <- vapply(seq_len(sample(4:150, 1)), column, character(numseq))
  rownames(drawn) <- paste0("seq", seq_len(numseq))
  drawn
}

drawn_parameters <- function(numseq) {
  least <- numseq %/% 2 + 1
  b1 <- sample(rep(least:numseq, 2), 1)
  b2 <- sample(rep(b1:numseq, 2), 1)
  if (runif(1) < 0.5) {
    b1 <- sample(0:100, 1)
    b2 <- paste0(sample(rep(b1:100, 2), 1), "%")
    b1 <- paste0(b1, "%")
  }
  all <- list(gaps = sample(gap_names, 1), b0 = sample(2:11, 1), b1 = b1, b2 = b2, b3 = sample(c(0, 1, 3, 8), 1),
              b4 = sample(2:8, 1), similarity = sample(c(TRUE, FALSE), 1),
              preset = sample(c("classic", "relaxed"), 1))
  all[runif(length(all)) < 0.6]
}
gap_names <- c("none", "half", "all")

table_of_program <- function(file, kind, parameters) {
  short <- c(none = "N", half = "H", all = "A", "TRUE" = "Y", "FALSE" = "N")
  value <- vapply(parameters, as.character, "")
  value <- ifelse(value %in% names(short) & names(parameters) != "preset", short[value], value)
  option <- c(preset = "-preset", gaps = "b5", similarity = "b6", b0 = "b0", b1 = "b1", b2 = "b2", b3 = "b3", b4 = "b4")[names(parameters)]
  options <- if (length(value) > 0) paste0("-", option, "=", value)
  arguments <- c(file, "--columns", paste0("-t=", toupper(substr(kind, 1, 1))), options)
  status <- system2(program, shQuote(arguments), stdout = FALSE, stderr = FALSE)
  expect_identical(status, 0L)
  utils::read.delim(paste0(file, "-tr.columns.tsv"), quote = "", colClasses = "character")
}

single_precision <- function(x) writeBin(x, raw(), size = 4)

expect_as_program <- function(sel, table) {
  expect_identical(sel$columns, which(table$new != ""))
  score <- table$score
  score[score == ""] <- "0"
  expect_identical(single_precision(sel$scores), single_precision(as.numeric(score)))
  expect_identical(as.character(sel$classes), table$class)
  expect_identical(sel$reasons, table$reason)
}

test_that("examples and drawn alignments are as the program says", {
  skip_if(program == "", "TRIMORA_RUN does not name the program")
  folder <- tempfile()
  dir.create(folder)
  examples <- list.files(Sys.getenv("TRIMORA_EXAMPLES"), "[.](fas|pir)$", recursive = TRUE, full.names = TRUE)
  expect_gt(length(examples), 0)
  for (example in examples) {
    file <- file.path(folder, basename(example))
    file.copy(example, file)
    kind <- if (grepl("globins|drawing", example)) "protein" else "dna"
    for (parameters in list(list(), list(gaps = "half", b4 = 5), list(gaps = "all", b1 = "60%", similarity = FALSE),
                            list(preset = "relaxed", b3 = 6), list(preset = "none"))) {
      sel <- do.call(select_blocks, c(list(file, kind = kind), parameters))
      expect_as_program(sel, table_of_program(file, kind, parameters))
    }
  }
  set.seed(21)
  file <- file.path(folder, "drawn.fas")
  for (number in seq_len(as.integer(Sys.getenv("TRIMORA_CASES", "50")))) {
    kind <- sample(c("protein", "dna", "codons"), 1)
    drawn <- drawn_alignment(kind)
    parameters <- drawn_parameters(nrow(drawn))
    sel <- tryCatch(do.call(select_blocks, c(list(drawn, kind = kind), parameters)), trimora_too_few_positions = identity)
    if (inherits(sel, "error")) next
    writeLines(rbind(paste0(">", rownames(drawn)), apply(drawn, 1, paste, collapse = "")), file)
    expect_as_program(sel, table_of_program(file, kind, parameters))
  }
})

test_that("every class is taken and returned", {
  sel <- select_blocks(texts, b3 = 1, b4 = 2)
  expect_identical(sel$columns, c(1:10, 12:15))
  expect_identical(unname(sel$trimmed), picked(texts, sel$columns))
  expect_identical(names(sel$trimmed), names(texts))
  check <- function(x, columns_of) {
    found <- select_blocks(x, b3 = 1, b4 = 2)
    expect_identical(found$columns, sel$columns)
    expect_identical(class(found$trimmed), class(x))
    expect_identical(toupper(columns_of(found$trimmed)), toupper(letters_of(gsub(".", "-", sel$trimmed, fixed = TRUE))))
    expect_identical(found$trimmed, apply_blocks(sel, x))
  }
  matrix <- letters_of(gsub(".", "-", texts, fixed = TRUE))
  rownames(matrix) <- names(texts)
  check(matrix, unname)
  skip_if_not_installed("ape")
  dna <- ape::as.DNAbin(tolower(matrix))
  as_list <- as.list(dna)
  check(dna, function(x) unname(as.character(x)))
  check(as_list, function(x) unname(do.call(rbind, as.character(x))))
  expect_s3_class(ape::as.DNAbin(sel), "DNAbin")
  protein <- ape::as.AAbin(matrix)
  check(protein, function(x) unname(as.character(x)))
})

test_that("each byte of a DNAbin is the letter that ape says", {
  skip_if_not_installed("ape")
  codes <- "acgtrmwskyvhdbn-?"
  dna <- ape::as.DNAbin(rbind(a = strsplit(codes, "")[[1]], b = strsplit(codes, "")[[1]]))
  file <- tempfile()
  write_alignment(dna, file)
  expect_identical(readLines(file)[2], codes)
})

test_that("bytes in a matrix of any size are the letters of its rows", {
  skip_if_not_installed("ape")
  set.seed(2)
  for (rows in c(2, 7, 8, 19, 70)) {
    drawn <- matrix(sample(c("a", "c", "g", "t", "-"), rows * (rows + 4), TRUE), rows)
    rownames(drawn) <- paste0("s", seq_len(rows))
    expected <- c(rbind(paste0(">", rownames(drawn)), apply(drawn, 1, paste, collapse = "")))
    for (x in list(ape::as.DNAbin(drawn), structure(apply(drawn, 1:2, charToRaw), class = "AAbin"))) {
      file <- tempfile()
      write_alignment(x, file)
      found <- readLines(file)
      starts <- startsWith(found, ">")
      expect_identical(vapply(split(found[!starts], cumsum(starts)[!starts]), paste, "", collapse = "", USE.NAMES = FALSE), expected[c(FALSE, TRUE)])
    }
  }
})

test_that("phyDat stays phyDat", {
  skip_if_not_installed("phangorn")
  data <- phangorn::phyDat(letters_of(gsub(".", "-", texts, fixed = TRUE)), type = "DNA")
  sel <- select_blocks(data, b3 = 1, b4 = 2)
  expect_s3_class(sel$trimmed, "phyDat")
  expect_identical(unname(as.character(sel$trimmed)), tolower(letters_of(gsub(".", "-", texts, fixed = TRUE)))[, sel$columns])
})

test_that("what is wrong has a class, a sequence and a name", {
  found <- tryCatch(select_blocks(c(a = "ACGT", b = "AC")), trimora_unequal_lengths = identity)
  expect_s3_class(found, "trimora_error")
  expect_identical(found[c("kind", "sequence", "name")], list(kind = "unequal_lengths", sequence = 2L, name = "b"))
  expect_error(select_blocks(rbind(a = c("A", "CC"), b = c("A", "C"))), class = "trimora_bad_character")
  expect_error(select_blocks(rbind(a = character(0), b = character(0))), class = "trimora_unfinished_record")
  expect_error(select_blocks("no such file"), class = "trimora_not_found")
  expect_error(select_blocks(c(a = "NN", b = "NN")), class = "trimora_undecided_type")
  for (wrong in list(list(texts, b4 = 1), list(texts, b4 = 2.5), list(texts, b1 = "60.5%"), list(texts, gaps = "some"),
                     list(texts, kind = "rna"), list(texts, b1 = 9), list(texts, similarity = NA), list(3), list(NULL),
                     list(c(a = NA, b = "AC")))) {
    caught <- tryCatch(do.call(select_blocks, wrong), error = identity)
    expect_s3_class(caught, "simpleError")
  }
  expect_error(apply_blocks(select_blocks(texts, b4 = 2), c(a = "ACGT")), "15 columns")
  expect_error(write_alignment(select_blocks(texts, b4 = 15), tempfile()), "no column")
})

test_that("alignments are put together as the program does it", {
  genes <- list(x = c("A|1" = "ACGTAC-T", "B|1" = "ACNTACGT"), y = c("C|2" = "GGCC", "B|2" = "GG-C"), z = c("B|3" = "A", "D|3" = "T"))
  m <- supermatrix(genes, name_end = "|")
  expect_identical(m$alignment, c(A = "ACGTAC-T?????", B = "ACNTACGTGG-CA", C = "????????GGCC?", D = "????????????T"))
  expect_identical(m$partitions, data.frame(first = c(1L, 9L, 13L), last = c(8L, 12L, 13L), row.names = c("x", "y", "z")))
  expect_identical(unname(m$occupancy), rbind(c(7L, NA, NA), c(7L, 3L, 1L), c(NA, 4L, NA), c(NA, NA, 1L)))
  expect_identical(dimnames(m$occupancy), list(c("A", "B", "C", "D"), c("x", "y", "z")))
  filtered <- supermatrix(genes, name_end = "|", species = c(B = "Beta", A = ""), min_columns = 2)
  expect_identical(filtered$alignment, c(Beta = "ACNTACGTGG-C", A = "ACGTAC-T????"))
  expect_identical(filtered$left_out, "z")
  expect_identical(names(supermatrix(genes, name_end = "|", min_genes = "60%")$alignment), "B")
  expect_error(supermatrix(genes), class = "trimora_other_sequences")
  expect_error(supermatrix(genes, match = "same"), class = "trimora_other_sequences")
  for (wrong in list(list(3), list(genes, match = "names"), list(genes, species = character(0)), list(list()), list(genes, min_genes = 0),
                     list(genes, name_parts = "2-1"), list(texts))) {
    expect_s3_class(tryCatch(do.call(supermatrix, wrong), error = identity), "simpleError")
  }
  files <- example_file(c("nd4.fas", "nd5.fas", "trna.fas"))
  sels <- lapply(files, select_blocks, gaps = "half")
  expect_identical(supermatrix(sels)$alignment, supermatrix(lapply(sels, `[[`, "trimmed"))$alignment)
  skip_if(program == "", "TRIMORA_RUN does not name the program")
  folder <- tempfile()
  options <- c("--match=name", "-a=y", "-b5=h", "-p=n", "--name=all", "--quiet", paste0("--into=", folder))
  expect_identical(system2(program, shQuote(c(files, options)), stdout = FALSE, stderr = FALSE), 0L)
  written <- tempfile()
  write_alignment(supermatrix(sels), written)
  expect_identical(readLines(written), readLines(file.path(folder, "all-tr.seq.fasta")))
})

test_that("alignments of ape stay what they are when they are put together", {
  skip_if_not_installed("ape")
  dna <- lapply(example_file(c("nd4.fas", "trna.fas")), ape::read.dna, format = "fasta")
  m <- supermatrix(list(dna[[1]], select_blocks(dna[[2]])))
  expect_s3_class(m$alignment, "DNAbin")
  expect_identical(dim(m$alignment), c(nrow(m$occupancy), max(m$partitions$last)))
  expect_identical(m$alignment[rownames(dna[[1]]), seq_len(ncol(dna[[1]]))], dna[[1]])
})

test_that("codons follow their proteins", {
  proteins <- c("a x" = "MKV-LWQERT", b = "MKVALWQ-RT")
  coding <- c(b = "ATGAAGGTCGCTTTATGACAACGTACCTAA", a = "ATGAAGGTCTTATGACAAGAACGTACC")
  all <- c("a x" = "ATGAAGGTC---TTATGACAAGAACGTACC", b = "ATGAAGGTCGCTTTATGACAA---CGTACC")
  expect_identical(codons(proteins, coding, code = 2), all)
  expect_error(codons(proteins, coding), "a x", class = "trimora_other_sequences")
  sel <- select_blocks(proteins, kind = "protein", b4 = 2)
  triplets <- as.vector(outer(1:3, 3 * (sel$columns - 1), `+`))
  expect_identical(unname(codons(sel, coding, code = 2)), picked(all, triplets))
  file <- tempfile()
  writeLines(rbind(paste0(">", names(coding)), coding), file)
  expect_identical(codons(proteins, file, code = 2), all)
  expect_error(codons(proteins, 3), "coding sequences are")
  expect_error(codons(proteins, coding, code = 7), "genetic code 7")
  skip_if_not_installed("ape")
  expect_identical(toupper(codons(proteins, ape::as.DNAbin(strsplit(tolower(coding), "")), code = 2)), all)
})

test_that("it is drawn and told", {
  grDevices::pdf(NULL)
  on.exit(grDevices::dev.off())
  sel <- select_blocks(example_file("globins.fas"))
  expect_invisible(plot(sel))
  expect_output(print(sel), "114 of 154 columns in 2 blocks")
})
