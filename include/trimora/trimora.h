// Trimora as a library: read an alignment, select the blocks of columns that are reliable enough for a tree, write them.
//
//   trimora::Alignment ali = trimora::read("globins.fas");
//   trimora::Parameters p;
//   p.gaps = trimora::Gaps::half;
//   trimora::Selection s = trimora::select(ali, p);
//   std::string text = trimora::write(trimora::trim(ali, s), trimora::Form::fasta);
//
// Counting    sequences and columns count from 0; the second number of a pair is one past the last
// Ownership   an Alignment owns its letters and never changes; copies of it share them. Views (std::string_view) live as
//             long as any copy. Everything else is a plain value.
// Threads     the library keeps no state: any two calls may run at the same time, also on the same Alignment
// Errors      every function fails with Error and nothing else, also when memory runs out; what a function of the caller
//             throws passes through
#pragma once
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#if defined(TRIMORA_SHARED) && defined(_WIN32)
#ifdef TRIMORA_BUILDS
#define TRIMORA_API __declspec(dllexport)
#else
#define TRIMORA_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define TRIMORA_API __attribute__((visibility("default")))
#else
#define TRIMORA_API
#endif

namespace trimora {

/// "major.minor.patch" of the library that is linked.
TRIMORA_API const char* version();

/// What went wrong: in words for people (what()), which count from 1, and as values for programs.
class TRIMORA_API Error : public std::exception {
 public:
  enum class Kind {
    not_found,          // there is no such file
    not_readable,       // it is there and cannot be read, or not to its end
    not_writable,       // a file cannot be created, or not written to its end
    changed,            // a file changed while it was read
    empty,              // a file without anything in it
    unknown_format,     // not in any known format
    refused_format,     // a known format that is not read
    ambiguous_format,   // can be read in two ways that differ
    damaged,            // a compressed file that is cut off or has something else in it
    bad_record,         // a line that its format does not allow there
    unfinished_record,  // a sequence that has no end, or a name that has no sequence
    name_too_long,      // a name line longer than is read
    bad_character,      // neither a letter, a gap nor an unknown residue
    unequal_lengths,    // sequences of different length
    too_long,           // more letters or sequences than can be counted
    too_few_sequences,  // an alignment has two or more
    too_few_positions,  // columns that are not gaps in every sequence: two or more
    undecided_type,     // the letters do not tell protein and DNA apart
    contrary_type,      // alignments of another type than the ones that they go with
    other_sequences,    // alignments whose sequences do not go together, by number or by name
    unfit_name,         // a name that cannot be used as requested
    same_name,          // two sequences that must be told apart by their names
    bad_argument,       // a parameter out of its range, or a choice that is none
    would_overwrite,    // a result in the place of an input or of another result
    out_of_memory,
  };

  Error(Kind kind, std::string what, int sequence = -1, std::string name = {});
  ~Error() override;
  const char* what() const noexcept override { return what_.c_str(); }

  Kind kind;
  int sequence;      // the sequence to blame, from 0; -1: none
  std::string name;  // its name, or that of the file, as far as there is one

 private:
  std::string what_;
};

/// The name of a kind of error, as it is written above: "not_found".
TRIMORA_API const char* name_of(Error::Kind kind);

/// The type of the sequences.
enum class Kind { protein, dna, codons };

/// b5: how many gaps a column may hold and still be selected: none, in up to half of the sequences, in any number.
enum class Gaps { none, half, all };

/// The form of an alignment file. `trimora`: FASTA in groups of ten letters, as the program trimora writes it.
enum class Form { fasta, phylip, nexus, trimora };

/// Sequences of equal length, each with a name.
class TRIMORA_API Alignment {
 public:
  /// The rows called `names`, in their order. '-' and '.' are gaps. `kind` unset: the letters decide it when it is needed.
  /// Error    unequal_lengths; too_few_sequences below two; bad_argument when there are more names or fewer than rows
  Alignment(const std::vector<std::string>& names, const std::vector<std::string>& rows, std::optional<Kind> kind = {});

  /// The same of letters that are elsewhere. `row` is called once for each sequence, in their order, and its result is copied
  /// before the next call.
  static Alignment from_rows(const std::vector<std::string>& names,
                             const std::function<std::string_view(std::size_t sequence)>& row,
                             std::optional<Kind> kind = {});

  std::size_t size() const;   // sequences
  std::size_t width() const;  // columns
  std::string_view name(std::size_t sequence) const;
  std::string_view row(std::size_t sequence) const;
  /// The type of the sequences: as it was given, or as the file says it, or as the letters tell it; nothing when they do not.
  /// Never codons by itself.
  std::optional<Kind> kind() const;
  /// The format that it was read from, by its usual name ("FASTA", "CLUSTAL"); empty when it was made in memory.
  std::string_view format() const;

  struct Data;  // of the library
  explicit Alignment(std::shared_ptr<const Data> data) : data_(std::move(data)) {}
  const Data& data() const { return *data_; }

 private:
  std::shared_ptr<const Data> data_;
};

/// Read the alignment in the file `path`. Its format is known by its content.
TRIMORA_API Alignment read(const std::string& path);

/// The same from memory, which is not kept.
TRIMORA_API Alignment read_text(std::string_view text);

/// A number of sequences, as a count or as a whole per cent of all (truncated).
struct Sequences {
  int number = 0;
  bool percent = false;
};
inline Sequences count(int number) {
  return {number, false};
}
inline Sequences percent(int number) {
  return {number, true};
}

/// How blocks are selected.
struct Parameters {
  std::optional<Kind> kind;     // unset: the alignment's own, or what its letters say; codons never by themselves
  std::optional<Sequences> b1;  // sequences for a conserved column; half + 1 (default, and the least) to b2
  std::optional<Sequences> b2;  // sequences for a flank column; b1 to all; default 85 %
  int b3 = 8;                   // nonconserved columns in a row, at most; 0 to 32000
  int b4 = 10;                  // length of a block, at least; 2 to 32000
  std::optional<int> b0;        // length of an initial block, at least; 2 to 32000; unset: as b4
  Gaps gaps = Gaps::none;       // b5
  bool similarity = true;       // b6: similar residues of proteins add to a score
  bool every = false;           // keep every column that is not a gap in every sequence; b0 to b6 then select nothing
};

/// The parameters that a name stands for: "classic" are the defaults, "relaxed" allows gaps and keeps more, "none" keeps
/// every column. docs/when-to-trim.md says when to choose which.
/// Error    bad_argument when there is no preset of this name
TRIMORA_API Parameters preset(std::string_view name);

/// What the letters say of each column, in 13 bytes for each: made once, from which blocks under any parameters follow
/// without the letters. For those who change parameters again and again, as a slider does.
class TRIMORA_API ColumnCounts {
 public:
  /// Count the columns of `ali`. `kind` unset: the alignment's own, or what its letters say.
  /// Error    as select()
  explicit ColumnCounts(const Alignment& ali, std::optional<Kind> kind = {});
  Kind kind() const;

  struct Data;  // of the library
  const Data& data() const { return *data_; }

 private:
  std::shared_ptr<const Data> data_;
};

/// What was selected of one alignment. Columns are those of the alignment as it was given, from 0.
struct Selection {
  std::vector<int> columns;                 // kept, ascending
  std::vector<std::pair<int, int>> blocks;  // first and one past last; a block may span columns that are gaps in every
                                            // sequence: these are dropped first and are not in `columns`
  std::vector<float> scores;                // of each column, in sequences; 0 where gaps or unknown residues forbid it
  std::vector<char> classes;   // of each column: F flank, C conserved, . nonconserved, - gap, d dropped (all gap)
  std::vector<char> residues;  // of each column, the most frequent, upper case; '?' where its score is 0
  std::vector<std::pair<int, int>> initial;  // the blocks before gaps were cut out of them, like `blocks`
  int b1 = 0, b2 = 0;                        // in force, in sequences
  Kind kind = Kind::protein;                 // in force
};

/// Select the blocks of `ali`, which may have no column left.
/// Error    bad_argument; too_few_sequences or too_few_positions (below two); undecided_type
TRIMORA_API Selection select(const Alignment& ali, const Parameters& parameters = {});

/// The same from counts. `kind`, where it is set, may turn DNA into codons and back, but no protein into either.
/// Error    bad_argument
TRIMORA_API Selection select(const ColumnCounts& counts, const Parameters& parameters = {});

/// Why each column of `ali` is selected or not: the first rule of the method that removes it, in words. `first`: the number
/// of the first column, where the words name a column.
/// Error    as select()
TRIMORA_API std::vector<std::string> reasons(const Alignment& ali, const Parameters& parameters = {}, int first = 0);

/// The same from counts: each different reason once, and which of them each column has.
struct Reasons {
  std::vector<std::string> words;
  std::vector<int> index;  // of each column, in `words`
};
TRIMORA_API Reasons reasons(const ColumnCounts& counts, const Parameters& parameters = {}, int first = 0);

/// The columns of `ali` that were selected; the result may have no column.
/// Needs    a selection made of an alignment of this width.
/// Error    bad_argument when a column is not one of `ali`
TRIMORA_API Alignment trim(const Alignment& ali, const Selection& selection);

/// How the sequences of several alignments are matched.
enum class Match {
  same,   // by their order, and their names have to be the same up to the first blank
  name,   // by the part of their names that tells the species; '?' where an alignment lacks one
  order,  // by their order, whatever their names
};

/// How alignments are put together, and what is left out.
struct Joining {
  Match match = Match::name;
  // By name, a species is named by the part after the first of the characters in `name_begin`, and before the first of those
  // in `name_end`; without them it is the first word. Or by these fields between _, | and blanks: "2", "1-2"; or by "OS",
  // "brackets" or "letters".
  std::string name_begin;
  std::string name_end;
  std::string name_parts;
  // Only these species, in this order, and under their second names unless these are empty; none: all.
  std::vector<std::pair<std::string, std::string>> species;
  std::optional<Sequences> min_species;  // leave out alignments with fewer species, a number or a share of those of all
  int min_columns = 0;                   // leave out alignments with fewer columns
  std::optional<Sequences> min_genes;    // leave out species that are in fewer of the alignments that are left
};

/// Alignments put together: the columns of one after those of the other.
struct Supermatrix {
  Alignment alignment;
  std::vector<std::pair<std::size_t, std::size_t>> parts;  // of each alignment, its first column and one past its last
  std::vector<bool> left_out;               // of each alignment, whether it was left out: it has no columns
  std::vector<std::vector<int>> occupancy;  // of each sequence, its letters in each alignment; -1 where it is in none:
                                            // gaps and unknown residues are no letters
};

/// Put alignments together. By name, species come in the order in which they first appear, or in that of `species`.
/// Error    bad_argument without any alignment and where `joining` contradicts itself; unfit_name for a name without a
///          species, same_name for two of one species in an alignment; contrary_type where proteins and nucleotides meet;
///          other_sequences when no species is in two of the alignments, when all alignments or all species are left out,
///          and where order and names do not fit
TRIMORA_API Supermatrix supermatrix(const std::vector<Alignment>& alignments, const Joining& joining = {});

/// Sequences, aligned or not.
struct CodingSequences {
  std::vector<std::string> names;
  std::vector<std::string> sequences;  // without gaps
};

/// Read coding sequences: FASTA, in which they may differ in length, or an alignment in any format.
/// Error    as read()
TRIMORA_API CodingSequences read_coding_sequences(const std::string& path);

/// The codons of a protein alignment, three columns for each of its own: '-' for a gap, N for a stop codon inside.
/// `sequences` are the coding sequences called `names`, whose gaps do not count; they are matched with the proteins by
/// name, whole or up to the first blank. A final stop codon and one or two letters after it are dropped, and those before
/// the first codon where only that frame fits. `code` is the genetic code under its number at NCBI.
/// Error    bad_argument when there is no such code; other_sequences when a protein has no coding sequence, or one that
///          does not encode it
TRIMORA_API Alignment codons(const Alignment& proteins, const std::vector<std::string>& names,
                             const std::vector<std::string>& sequences, int code = 1);

/// Of these, the codons of the selected columns.
/// Needs    a selection made of `proteins`
/// Error    as codons(); bad_argument when a column is not one of `proteins`
TRIMORA_API Alignment codons(const Alignment& proteins, const Selection& selection, const CodingSequences& coding,
                             int code = 1);

/// The text of an alignment file.
/// Error    unfit_name or same_name when the form cannot hold a name
TRIMORA_API std::string write(const Alignment& ali, Form form);

/// The same into a file, which is replaced. It is there whole or not at all.
TRIMORA_API void write(const Alignment& ali, Form form, const std::string& path);

}  // namespace trimora
