// What the R files of the package call. They check arguments and hand on plain values.
// Words     kind, gaps, form: a number from 0, the place of the choice in the enumeration of the header; NA: not given
// Counting  columns from 1, as everywhere in R
// Failures  what the library throws is returned, as a list of class trimora_failure: R raises it
#include <algorithm>
#include <bit>
#include <cpp11.hpp>
#include <cpp11/declarations.hpp>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "trimora/trimora.h"

using namespace cpp11::literals;
using trimora::Alignment;
namespace writable = cpp11::writable;

namespace {

using Pointer = cpp11::external_pointer<Alignment>;

/// Carry out `step`; what fails in it becomes a value.
template <typename Step>
SEXP told(Step step) {
  try {
    return step();
  } catch (const trimora::Error& error) {
    writable::list failure({"message"_nm = error.what(), "kind"_nm = trimora::name_of(error.kind),
                            "sequence"_nm = error.sequence < 0 ? NA_INTEGER : error.sequence + 1,
                            "name"_nm = error.name});
    failure.attr("class") = "trimora_failure";
    return failure;
  }
}

SEXP pointer_to(Alignment ali) {
  return Pointer(new Alignment(std::move(ali)));
}

const Alignment& alignment_in(SEXP pointer) {
  const Pointer ali(pointer);
  if (R_ExternalPtrAddr(pointer) == nullptr) cpp11::stop("this selection is from another session: select again");
  return *ali.get();
}

std::optional<int> given(SEXP value) {
  const int number = cpp11::as_cpp<int>(value);
  return number == NA_INTEGER ? std::nullopt : std::optional(number);
}

std::optional<trimora::Kind> kind_in(SEXP value) {
  const std::optional<int> kind = given(value);
  return kind ? std::optional(static_cast<trimora::Kind>(*kind)) : std::nullopt;
}

std::string path_in(SEXP path) {
#ifdef _WIN32
  return Rf_translateCharUTF8(STRING_ELT(path, 0));
#else
  return Rf_translateChar(STRING_ELT(path, 0));
#endif
}

/// Turn `rows` of each of the columns, which begin `stride` bytes apart, into rows that follow each other. Eight by eight: bytes
/// are swapped in halves, quarters and eighths of a word.
void turn(const Rbyte* from, std::size_t stride, std::size_t rows, std::size_t columns, char* to) {
  const std::size_t whole_rows = rows - rows % 8, whole_columns = columns - columns % 8;
  const auto swap = [](std::uint64_t& a, std::uint64_t& b, int bits, std::uint64_t mask) {
    const std::uint64_t both = ((a >> bits) ^ b) & mask;
    b ^= both;
    a ^= both << bits;
  };
  const auto place = [](std::size_t k) { return std::endian::native == std::endian::little ? k : 7 - k; };
  for (std::size_t p = 0; p < whole_columns; p += 8) {
    for (std::size_t i = 0; i < whole_rows; i += 8) {
      std::uint64_t word[8];
      for (std::size_t k = 0; k < 8; ++k) std::memcpy(&word[place(k)], from + (p + k) * stride + i, 8);
      for (const int k : {0, 1, 2, 3}) swap(word[k], word[k + 4], 32, 0x00000000FFFFFFFFU);
      for (const int k : {0, 1, 4, 5}) swap(word[k], word[k + 2], 16, 0x0000FFFF0000FFFFU);
      for (const int k : {0, 2, 4, 6}) swap(word[k], word[k + 1], 8, 0x00FF00FF00FF00FFU);
      for (std::size_t k = 0; k < 8; ++k) std::memcpy(to + (i + k) * columns + p, &word[place(k)], 8);
    }
  }
  for (std::size_t p = 0; p < columns; ++p) {
    const std::size_t first = p < whole_columns ? whole_rows : 0;
    for (std::size_t i = first; i < rows; ++i) to[i * columns + p] = static_cast<char>(from[p * stride + i]);
  }
}

/// The letters that bytes stand for. They are looked up two at a time, which takes half the time.
class Letters {
 public:
  /// `letters`: the letter of each byte, 256 of them.
  explicit Letters(const Rbyte* letters) : letters_(letters), pairs_(65536) {
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        const Rbyte from[] = {static_cast<Rbyte>(first), static_cast<Rbyte>(second)};
        const Rbyte to[] = {letters[first], letters[second]};
        std::uint16_t number;
        std::memcpy(&number, from, 2);
        std::memcpy(&pairs_[number], to, 2);
      }
    }
  }

  /// Replace bytes by their letters.
  void operator()(char* to, std::size_t size) const {
    const std::uint16_t* const pairs = pairs_.data();  // in a local, or each write of a byte would have it read again
    const std::size_t even = size - size % 2;
    for (std::size_t p = 0; p < even; p += 2) {
      std::uint16_t number;
      std::memcpy(&number, to + p, 2);
      std::memcpy(to + p, &pairs[number], 2);
    }
    if (even < size) to[even] = static_cast<char>(letters_[static_cast<unsigned char>(to[even])]);
  }

 private:
  const Rbyte* letters_;
  std::vector<std::uint16_t> pairs_;
};

/// The rows of what R holds, one at a time: texts, a matrix of letters, or bytes that stand for letters, as a matrix or a list.
class Rows {
 public:
  /// `letters`: the letter of each byte, 256 of them; NULL: each is its own letter.
  Rows(SEXP x, SEXP letters) : x_(x) {
    if (letters != R_NilValue) letters_.emplace(RAW(letters));
    if (!Rf_isMatrix(x)) return;
    rows_ = static_cast<std::size_t>(Rf_nrows(x));
    columns_ = static_cast<std::size_t>(Rf_ncols(x));
  }

  /// Returns a view that lives until the next call. Rows are asked for in their order.
  std::string_view operator()(std::size_t i) {
    if (Rf_isMatrix(x_)) return in_matrix(i);
    const auto k = static_cast<R_xlen_t>(i);
    if (TYPEOF(x_) == STRSXP) return R_CHAR(STRING_ELT(x_, k));
    const SEXP bytes = VECTOR_ELT(x_, k);
    tile_.assign(reinterpret_cast<const char*>(RAW(bytes)), static_cast<std::size_t>(Rf_xlength(bytes)));
    if (letters_) (*letters_)(tile_.data(), tile_.size());
    return tile_;
  }

 private:
  /// Matrices lie column after column: several rows are gathered on one way through the memory.
  std::string_view in_matrix(std::size_t i) {
    const std::size_t first = i - i % rows_at_once;
    if (i == first) {
      const std::size_t count = std::min(rows_at_once, rows_ - first);
      tile_.resize(count * columns_);
      if (TYPEOF(x_) == RAWSXP) {
        turn(RAW(x_) + first, rows_, count, columns_, tile_.data());
        if (letters_) (*letters_)(tile_.data(), tile_.size());
      } else {
        gather(count, [&](std::size_t k) { return letter(STRING_ELT(x_, static_cast<R_xlen_t>(first + k))); });
      }
    }
    return {tile_.data() + (i - first) * columns_, columns_};
  }

  template <typename LetterAt>
  void gather(std::size_t count, LetterAt letter_at) {
    const std::size_t rows = rows_, columns = columns_;  // a letter that is written may be none of these
    char* to = tile_.data();
    for (std::size_t p = 0; p < columns; ++p) {
      for (std::size_t row = 0; row < count; ++row) to[row * columns + p] = letter_at(row + p * rows);
    }
  }

  /// Of a cell; a character that is refused where it holds more or nothing.
  static char letter(SEXP cell) { return std::string_view(R_CHAR(cell)).size() == 1 ? R_CHAR(cell)[0] : '\1'; }

  static constexpr std::size_t rows_at_once = 64;
  SEXP x_;
  std::optional<Letters> letters_;
  std::size_t rows_ = 0, columns_ = 0;  // of a matrix
  std::string tile_;
};

using Arguments = cpp11::list;

/// The list that select_blocks() makes of its arguments.
trimora::Parameters parameters_in(const Arguments& arguments) {
  const auto share = [&](const char* name, const char* per_cent) -> std::optional<trimora::Sequences> {
    const std::optional<int> number = given(arguments[name]);
    if (!number) return {};
    return trimora::Sequences{*number, cpp11::as_cpp<bool>(arguments[per_cent])};
  };
  trimora::Parameters parameters = trimora::preset(cpp11::as_cpp<std::string>(arguments["preset"]));
  parameters.kind = kind_in(arguments["kind"]);
  if (const auto gaps = given(arguments["gaps"])) parameters.gaps = static_cast<trimora::Gaps>(*gaps);
  parameters.b0 = given(arguments["b0"]);
  if (const auto b1 = share("b1", "b1_per_cent")) parameters.b1 = b1;
  if (const auto b2 = share("b2", "b2_per_cent")) parameters.b2 = b2;
  if (const auto b3 = given(arguments["b3"])) parameters.b3 = *b3;
  if (const auto b4 = given(arguments["b4"])) parameters.b4 = *b4;
  parameters.similarity = cpp11::as_cpp<bool>(arguments["similarity"]);
  return parameters;
}

SEXP selected(const Alignment& ali, const Arguments& arguments) {
  const trimora::Selection found = trimora::select(ali, parameters_in(arguments));
  writable::integers columns(static_cast<R_xlen_t>(found.columns.size()));
  for (std::size_t k = 0; k < found.columns.size(); ++k) INTEGER(columns)[k] = found.columns[k] + 1;
  writable::doubles scores(static_cast<R_xlen_t>(found.scores.size()));
  writable::integers classes(static_cast<R_xlen_t>(found.classes.size()));
  constexpr std::string_view levels = "d-.CF";
  for (std::size_t k = 0; k < found.scores.size(); ++k) {
    REAL(scores)[k] = static_cast<double>(found.scores[k]);
    INTEGER(classes)[k] = static_cast<int>(levels.find(found.classes[k])) + 1;
  }
  writable::integers first, last;
  for (const auto& [begin, end] : found.blocks) {
    first.push_back(begin + 1);
    last.push_back(end);
  }
  return writable::list({"columns"_nm = columns, "scores"_nm = scores, "classes"_nm = classes, "first"_nm = first,
                         "last"_nm = last, "b1"_nm = found.b1, "b2"_nm = found.b2,
                         "kind"_nm = static_cast<int>(found.kind)});
}

/// Columns that are side by side: first, length.
std::vector<std::pair<std::size_t, std::size_t>> runs_of(const cpp11::integers& columns) {
  std::vector<std::pair<std::size_t, std::size_t>> runs;
  for (const int column : columns) {
    const auto place = static_cast<std::size_t>(column) - 1;
    if (runs.empty() || runs.back().first + runs.back().second != place) runs.emplace_back(place, 0);
    ++runs.back().second;
  }
  return runs;
}

/// Picks columns of texts.
class Picker {
 public:
  explicit Picker(const cpp11::integers& columns) : runs_(runs_of(columns)) {}
  SEXP operator()(std::string_view row) {
    picked_.clear();
    for (const auto& [first, length] : runs_) picked_ += row.substr(first, length);
    return Rf_mkCharLenCE(picked_.data(), static_cast<int>(picked_.size()), CE_UTF8);
  }

 private:
  std::vector<std::pair<std::size_t, std::size_t>> runs_;
  std::string picked_;
};

SEXP text_of(std::string_view text) {
  return Rf_mkCharLenCE(text.data(), static_cast<int>(text.size()), CE_UTF8);
}

std::vector<std::string> strings_in(SEXP texts) {
  return cpp11::as_cpp<std::vector<std::string>>(texts);
}

/// The columns of `ali` with these numbers as a selection.
trimora::Selection selection_of(const cpp11::integers& columns, trimora::Kind kind) {
  trimora::Selection selection;
  selection.kind = kind;
  for (const int column : columns) selection.columns.push_back(column - 1);
  return selection;
}

/// What supermatrix() makes of its arguments.
trimora::Joining joining_in(const Arguments& arguments) {
  const auto share = [&](const char* name, const char* per_cent) -> std::optional<trimora::Sequences> {
    const std::optional<int> number = given(arguments[name]);
    if (!number) return {};
    return trimora::Sequences{*number, cpp11::as_cpp<bool>(arguments[per_cent])};
  };
  trimora::Joining joining;
  joining.match = static_cast<trimora::Match>(cpp11::as_cpp<int>(arguments["match"]));
  joining.name_begin = cpp11::as_cpp<std::string>(arguments["name_begin"]);
  joining.name_end = cpp11::as_cpp<std::string>(arguments["name_end"]);
  joining.name_parts = cpp11::as_cpp<std::string>(arguments["name_parts"]);
  const std::vector<std::string> species = strings_in(arguments["species"]), names = strings_in(arguments["new_names"]);
  for (std::size_t k = 0; k < species.size(); ++k) joining.species.emplace_back(species[k], names.at(k));
  joining.min_species = share("min_species", "min_species_per_cent");
  joining.min_columns = cpp11::as_cpp<int>(arguments["min_columns"]);
  joining.min_genes = share("min_genes", "min_genes_per_cent");
  return joining;
}

SEXP joined(const cpp11::list& pointers, const Arguments& arguments) {
  std::vector<Alignment> alignments;
  for (const SEXP pointer : pointers) alignments.push_back(alignment_in(pointer));
  trimora::Supermatrix all = trimora::supermatrix(alignments, joining_in(arguments));
  writable::integers first, last;
  writable::logicals left_out;
  for (std::size_t k = 0; k < all.parts.size(); ++k) {
    first.push_back(static_cast<int>(all.parts[k].first) + 1);
    last.push_back(static_cast<int>(all.parts[k].second));
    left_out.push_back(static_cast<cpp11::r_bool>(all.left_out[k]));
  }
  const auto rows = static_cast<int>(all.occupancy.size()), columns = static_cast<int>(all.parts.size());
  writable::integers_matrix<cpp11::by_column> occupancy(rows, columns);
  for (int i = 0; i < rows; ++i) {
    for (int k = 0; k < columns; ++k) {
      const int letters = all.occupancy[static_cast<std::size_t>(i)][static_cast<std::size_t>(k)];
      occupancy(i, k) = letters < 0 ? NA_INTEGER : letters;
    }
  }
  return writable::list({"alignment"_nm = pointer_to(std::move(all.alignment)), "first"_nm = first, "last"_nm = last,
                         "left_out"_nm = left_out, "occupancy"_nm = occupancy});
}

/// The same columns of a matrix of bytes, without its attributes: columns lie side by side in memory.
SEXP matrix_columns(SEXP x, const cpp11::integers& columns) {
  const auto rows = static_cast<std::size_t>(Rf_nrows(x));
  const cpp11::sexp kept(Rf_allocMatrix(RAWSXP, static_cast<int>(rows), static_cast<int>(columns.size())));
  Rbyte* to = RAW(kept);
  for (const auto& [first, length] : runs_of(columns)) {
    to = std::copy_n(RAW(x) + first * rows, length * rows, to);
  }
  return kept;
}

/// Named texts of the rows of an alignment, reduced to `columns`.
SEXP texts_of(const Alignment& ali, const cpp11::integers& columns) {
  writable::strings names(static_cast<R_xlen_t>(ali.size())), rows(static_cast<R_xlen_t>(ali.size()));
  Picker picked(columns);
  for (std::size_t i = 0; i < ali.size(); ++i) {
    const auto k = static_cast<R_xlen_t>(i);
    SET_STRING_ELT(rows, k, picked(ali.row(i)));
    SET_STRING_ELT(names, k, text_of(ali.name(i)));
  }
  rows.attr("names") = names;
  return rows;
}

}  // namespace

extern "C" {

SEXP trimora_read(SEXP path) {
  BEGIN_CPP11
  return told([&] { return pointer_to(trimora::read(path_in(path))); });
  END_CPP11
}

SEXP trimora_from_rows(SEXP x, SEXP names, SEXP letters, SEXP kind) {
  BEGIN_CPP11
  return told([&] {
    Rows rows(x, letters);
    const auto row = [&](std::size_t i) { return rows(i); };
    return pointer_to(Alignment::from_rows(cpp11::as_cpp<std::vector<std::string>>(names), row, kind_in(kind)));
  });
  END_CPP11
}

SEXP trimora_width(SEXP ali) {
  BEGIN_CPP11
  return cpp11::as_sexp(static_cast<int>(alignment_in(ali).width()));
  END_CPP11
}

SEXP trimora_select(SEXP ali, SEXP arguments) {
  BEGIN_CPP11
  return told([&] { return selected(alignment_in(ali), Arguments(arguments)); });
  END_CPP11
}

SEXP trimora_reasons(SEXP ali, SEXP arguments) {
  BEGIN_CPP11
  return told(
      [&] { return cpp11::as_sexp(trimora::reasons(alignment_in(ali), parameters_in(Arguments(arguments)), 1)); });
  END_CPP11
}

SEXP trimora_texts(SEXP ali, SEXP columns) {
  BEGIN_CPP11
  return texts_of(alignment_in(ali), cpp11::integers(columns));
  END_CPP11
}

SEXP trimora_pick(SEXP texts, SEXP columns) {
  BEGIN_CPP11
  Picker picked{cpp11::integers(columns)};
  writable::strings rows(Rf_xlength(texts));
  for (R_xlen_t k = 0; k < Rf_xlength(texts); ++k) SET_STRING_ELT(rows, k, picked(R_CHAR(STRING_ELT(texts, k))));
  return rows;
  END_CPP11
}

SEXP trimora_columns(SEXP matrix, SEXP columns) {
  BEGIN_CPP11
  return matrix_columns(matrix, cpp11::integers(columns));
  END_CPP11
}

SEXP trimora_trim(SEXP ali, SEXP columns, SEXP kind) {
  BEGIN_CPP11
  return told([&] {
    const auto selection = selection_of(cpp11::integers(columns), kind_in(kind).value_or(trimora::Kind::protein));
    return pointer_to(trimora::trim(alignment_in(ali), selection));
  });
  END_CPP11
}

SEXP trimora_supermatrix(SEXP alignments, SEXP arguments) {
  BEGIN_CPP11
  return told([&] { return joined(cpp11::list(alignments), Arguments(arguments)); });
  END_CPP11
}

SEXP trimora_read_coding(SEXP path) {
  BEGIN_CPP11
  return told([&] {
    const trimora::CodingSequences coding = trimora::read_coding_sequences(path_in(path));
    return cpp11::as_sexp(writable::list({"names"_nm = coding.names, "sequences"_nm = coding.sequences}));
  });
  END_CPP11
}

SEXP trimora_codons(SEXP ali, SEXP columns, SEXP names, SEXP sequences, SEXP code) {
  BEGIN_CPP11
  return told([&] {
    const trimora::Selection selection = selection_of(cpp11::integers(columns), trimora::Kind::codons);
    const trimora::CodingSequences coding{strings_in(names), strings_in(sequences)};
    return pointer_to(trimora::codons(alignment_in(ali), selection, coding, cpp11::as_cpp<int>(code)));
  });
  END_CPP11
}

SEXP trimora_write(SEXP ali, SEXP form, SEXP path) {
  BEGIN_CPP11
  return told([&]() -> SEXP {
    trimora::write(alignment_in(ali), static_cast<trimora::Form>(cpp11::as_cpp<int>(form)), path_in(path));
    return R_NilValue;
  });
  END_CPP11
}

void R_init_trimora(DllInfo* dll) {
  static const R_CallMethodDef calls[] = {{"trimora_read", reinterpret_cast<DL_FUNC>(&trimora_read), 1},
                                          {"trimora_from_rows", reinterpret_cast<DL_FUNC>(&trimora_from_rows), 4},
                                          {"trimora_width", reinterpret_cast<DL_FUNC>(&trimora_width), 1},
                                          {"trimora_select", reinterpret_cast<DL_FUNC>(&trimora_select), 2},
                                          {"trimora_reasons", reinterpret_cast<DL_FUNC>(&trimora_reasons), 2},
                                          {"trimora_texts", reinterpret_cast<DL_FUNC>(&trimora_texts), 2},
                                          {"trimora_pick", reinterpret_cast<DL_FUNC>(&trimora_pick), 2},
                                          {"trimora_columns", reinterpret_cast<DL_FUNC>(&trimora_columns), 2},
                                          {"trimora_trim", reinterpret_cast<DL_FUNC>(&trimora_trim), 3},
                                          {"trimora_supermatrix", reinterpret_cast<DL_FUNC>(&trimora_supermatrix), 2},
                                          {"trimora_read_coding", reinterpret_cast<DL_FUNC>(&trimora_read_coding), 1},
                                          {"trimora_codons", reinterpret_cast<DL_FUNC>(&trimora_codons), 5},
                                          {"trimora_write", reinterpret_cast<DL_FUNC>(&trimora_write), 3},
                                          {nullptr, nullptr, 0}};
  R_registerRoutines(dll, nullptr, calls, nullptr, nullptr);
  R_useDynamicSymbols(dll, FALSE);
  R_forceSymbols(dll, TRUE);
}

}  // extern "C"
