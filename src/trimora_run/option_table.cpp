#include "trimora_run/options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <system_error>

#include "batch/genetic_code.h"
#include "ground/path.h"
#include "selection/presets.h"

namespace trimora::rooms {

std::optional<int> whole_number(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) return {};
  if (error == std::errc::result_out_of_range) return text.starts_with('-') ? -2'147'483'647 : 2'147'483'647;
  return number;
}

namespace {

template <auto member, typename Enum>
void choose(int choice, Settings& settings) {
  settings.*member = static_cast<Enum>(choice);
}

/// b1 and b2: a number from `least`, or a whole per cent.
template <auto member, int least>
std::string_view sequences(std::string_view value, Settings& settings) {
  const bool per_cent = value.ends_with('%');
  if (per_cent) value.remove_suffix(1);
  const auto number = whole_number(value);
  if (per_cent && (!number || *number < 0 || *number > 100)) return "a whole number from 0% to 100%";
  if (!number || (!per_cent && *number < least)) {
    return least > 0 ? "from half of the sequences + 1 to b2, or per cent, as -b1=60%"
                     : "from b1 to the number of sequences, or per cent, as -b2=95%";
  }
  settings.*member = trimora::Sequences{*number, per_cent};
  return "";
}

bool has_separator(std::string_view value) {
  return value.find_first_of(separators) != value.npos;
}

std::string_view suffix(std::string_view value, Settings& settings) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };  // a letter of UTF-8
  if (has_separator(value)) return "without a folder: that is --into=";
  if (std::ssize(value) - std::count_if(value.begin(), value.end(), continues) > 5) return "1 to 5 characters";
  settings.suffix = value;
  return "";
}

/// A model is one word of a line whose parts end at commas.
std::string_view model(std::string_view value, Settings& settings) {
  const bool word = std::none_of(value.begin(), value.end(), [](char c) { return c == ',' || c == '=' || c <= ' '; });
  settings.model = value;
  return word ? "" : "one word without , and =";
}

std::string_view name(std::string_view value, Settings& settings) {
  settings.name = value;
  return has_separator(value) ? "without a folder: that is --into=" : "";
}

std::string_view genetic_code(std::string_view value, Settings& settings) {
  const auto number = whole_number(value);
  if (!number || !GeneticCode::numbered(*number)) return "the number of a code: 1 to 6, 9 to 16 or 21 to 33";
  settings.code = *number;
  return "";
}

/// An optional word.
std::string_view partitions(std::string_view value, Settings& settings) {
  constexpr std::pair<std::string_view, Division> words[] = {
      {"genes", Division::genes}, {"positions", Division::positions}, {"12+3", Division::third}};
  settings.partitions = true;
  settings.division.reset();
  for (const auto& [word, division] : words) {
    if (value == word) settings.division = division;
  }
  return value.empty() || settings.division ? "" : "genes, positions or 12+3";
}

std::string_view min_filled(std::string_view value, Settings& settings) {
  if (!value.ends_with('%')) return "a whole number of per cent, as 50%";
  const auto number = whole_number(value.substr(0, value.size() - 1));
  if (!number || *number < 1 || *number > 100) return "a whole number from 1% to 100%";
  settings.min_filled = *number;
  return "";
}

/// A number from 1, or a whole per cent.
template <auto member>
std::string_view least(std::string_view value, Settings& settings) {
  const bool per_cent = value.ends_with('%');
  if (per_cent) value.remove_suffix(1);
  const auto number = whole_number(value);
  if (!number || *number < 1 || (per_cent && *number > 100)) return "a whole number from 1, or from 1% to 100%";
  settings.*member = trimora::Sequences{*number, per_cent};
  return "";
}

/// The fields of a name that tell its species: a number, a range, or a word.
std::string_view name_parts(std::string_view value, Settings& settings) {
  using Style = KeyRule::Style;
  constexpr std::pair<std::string_view, Style> words[] = {
      {"OS", Style::organism}, {"brackets", Style::brackets}, {"letters", Style::letters}};
  for (const auto& [word, style] : words) {
    if (value == word) {
      settings.name_parts = {.style = style};
      return "";
    }
  }
  const std::size_t dash = value.find('-');
  const auto first = whole_number(value.substr(0, dash));
  const auto last = dash == value.npos ? first : whole_number(value.substr(dash + 1));
  if (!first || !last || *first < 1 || *last < *first) return "fields, as 2 or 1-2, or OS, brackets or letters";
  settings.name_parts = {.style = Style::fields, .first = *first, .last = *last};
  return "";
}

void choose_preset(int choice, Settings& settings) {
  settings.preset = &presets[choice];
}

template <Asked asked>
std::string_view ask(std::string_view, Settings& settings) {
  settings.asked = asked;
  return "";
}

// ---- The table

using enum Group;
using S = Settings;
constexpr std::string_view yes_or_no = "Y yes|N no";

// clang-format off
constexpr Option options[] = {
// group       name            values                            default        sets
//   brief (range, more)
  {parameters, "-t",           "P protein|D DNA|C codons",       "by the letters", choose<&S::kind, trimora::Kind>,
   "type of sequence: protein, DNA, codons; codons are never guessed"},
  {parameters, "--preset",     "classic|relaxed|none",           "classic",     choose_preset,
   "values for b2 to b5 in one word: the defaults; more kept, with gaps and shorter blocks; every column kept", {},
   "`classic` stands for `-b2=85% -b3=8 -b4=10 -b5=n`, `relaxed` for `-b2=51% -b3=8 -b4=5 -b5=h`. `none` selects nothing: it keeps all columns but those that are gaps in every sequence and insert columns. Options that are given as well win, wherever they are. See [when to trim](when-to-trim.md)."},
  {parameters, "-b1",          "NUMBER",                         "half + 1",    sequences<&S::b1, 1>,
   "sequences a conserved position needs", {0, 0, "half + 1 to all sequences"},
   "Given alone, it also raises b2 where that would be lower; with `-b2`, it must not be the higher one."},
  {parameters, "-b2",          "NUMBER",                         "85 %",        sequences<&S::b2, 0>,
   "sequences a flank position needs", {0, 0, "b1 to all sequences"}},
  {parameters, "-b3",          "NUMBER",                         "8",           &S::b3,
   "most nonconserved positions in a row", {0, 32000}},
  {parameters, "-b4",          "NUMBER",                         "10",          &S::b4,
   "shortest block, after gap positions are cut out", {2, 32000},
   "With `-t=C` keep it at 5 or more: a shorter block may hold no whole codon."},
  {parameters, "-b0",          "NUMBER",                         "as b4",       &S::b0,
   "shortest block, before gap positions are cut out", {2, 32000}},
  {parameters, "-b5",          "N none|H half with-half|A all",  "N",           choose<&S::gaps, trimora::Gaps>,
   "gaps in a position: none, in up to half the sequences, any"},
  {parameters, "-b6",          yes_or_no,                        "Y",           &S::similarity,
   "use the similarity matrix, for proteins"},

  {files,      "-s",           yes_or_no,                        "Y",           &S::blocks,
   "write the selected blocks, FILE-tr.fasta"},
  {files,      "-p",           "Y HTML yes|T text|S short|N none no", "Y",      choose<&S::report, Report>,
   "write the report, FILE-tr.htm: HTML, text, short text, none"},
  {files,      "-v",           "NUMBER",                         "60",          &S::line_length,
   "characters per line of the report", {50, 32000}},
  {files,      "-k",           yes_or_no,                        "N",           &S::mask,
   "write the mask, FILE-trMask"},
  {files,      "-d",           yes_or_no,                        "N",           &S::map,
   "write the PostScript map of the blocks, FILE-trPS"},
  {files,      "-n",           yes_or_no,                        "N",           &S::nonconserved,
   "write the nonconserved blocks, FILE-trComp.fasta", {},
   "All positions that are not selected."},
  {files,      "-u",           yes_or_no,                        "N",           &S::ungapped,
   "write the ungapped alignment, FILE--.fasta", {},
   "All positions without a gap, selected or not."},
  {files,      "-e",           "TEXT",                           "-tr",         suffix,
   "suffix of the files written", {0, 0, "1 to 5 characters"}},
  {files,      "--format",     "fasta|phylip|nexus|trimora[,...]", "fasta",      &S::forms,
   "forms of the alignments written, several with commas", {},
   "See [the forms](files.md#forms). `trimora` writes the groups of ten of the program trimora, without an ending of its own."},
  {files,      "--unknown",    "keep|x",                         "keep",        choose<&S::unknown, Unknown>,
   "residues that stop other programs: as they are, or as X, in DNA N", {},
   "These are `!`, `*` and, in proteins, U, O and J."},
  {files,      "--into",       "FOLDER",                         "",            &S::into,
   "write everything into this folder, not beside the alignments", {},
   "It is made when it is missing. Two alignments of one name are refused."},
  {files,      "--columns",    "",                               "",            &S::columns,
   "write what became of each column, FILE-tr.columns.tsv", {},
   "See [the file](files.md#columns)."},

  {batch,      "-a",           yes_or_no,                        "N",           &S::all_blocks,
   "write the concatenated selected blocks"},
  {batch,      "-c",           yes_or_no,                        "N",           &S::all_input,
   "write the concatenated input alignments"},
  {batch,      "-w",           yes_or_no,                        "N",           &S::all_ungapped,
   "write the concatenated ungapped alignments"},
  {batch,      "--match",      "same|name|order",                "same",        choose<&S::match, Match>,
   "match sequences: same, by order, and names must agree; name, by name, with ? where one is missing; order, by order, whatever the names", {},
   "With `name`, species come in the order in which they first appear, and each alignment has its own b1 and b2."},
  {batch,      "--name-end",   "CHARACTERS",                     "",            &S::name_end,
   "with --match=name: the name of a species ends before the first of these characters, not at the first blank", {},
   "`--name-end='|'` takes `Homo_sapiens|gene1` as `Homo_sapiens`."},
  {batch,      "--name-begin", "CHARACTERS",                     "",            &S::name_begin,
   "the name of a species begins after the first of these characters", {},
   "`--name-begin=_` takes `uce-7_homo_sapiens` as `homo_sapiens`."},
  {batch,      "--name-parts", "FIELDS",                         "",            name_parts,
   "the name of a species is these fields between _, | and blanks: one, as 2, or several, as 1-2", {},
   "`--name-parts=1-2` takes `Homo_sapiens_XP_000.1` as `Homo_sapiens`. `OS` takes what follows `OS=`, `brackets` what is in the last `[ ]`, `letters` the letters before the first digit, as in the identifiers of Ensembl."},
  {batch,      "--codons",     "PATH",                           "",            &S::codons,
   "coding sequences of protein alignments, aligned or not, a folder, list or file: writes the codons of the selected columns, FILE-tr.codons.fasta", {},
   "Files are matched by name up to the first dot, sequences by name; see [codons](files.md#codons)."},
  {batch,      "--codon-names", "FILE",                          "",            &S::codon_names,
   "two columns: names of proteins, and names of their coding sequences"},
  {batch,      "--code",       "NUMBER",                         "1",           genetic_code,
   "genetic code, under its number at NCBI, for --codons and -t=C", {0, 0, "1 to 6, 9 to 16 or 21 to 33"}},
  {batch,      "--join",       "",                               "",            &S::join,
   "only put together alignments that were trimmed before, as they are", {},
   "No column is selected or dropped, and nothing is written for the single alignments. The files are those of -c=y. Alignments with one column or none go in as well."},
  {batch,      "--occupancy",  "FILE",                           "",            &S::occupancy,
   "with a concatenation, write the letters of each species in each alignment", {},
   "See [the file](files.md#occupancy)."},
  {batch,      "--species",    "FILE",                           "",            &S::species,
   "keep only the species listed in FILE, in its order; a second column renames them"},
  {batch,      "--min-filled", "SHARE",                          "",            min_filled,
   "before selection, leave out sequences with fewer letters than this share of the median in their alignment, as 50%"},
  {batch,      "--min-species", "SHARE",                         "",            least<&S::min_species>,
   "leave out alignments with fewer species, as 75% of those of all alignments or as a number"},
  {batch,      "--min-columns", "NUMBER",                        "",            &S::min_columns,
   "leave out alignments with fewer selected columns than this", {1, 2'000'000'000}},
  {batch,      "--min-genes",  "SHARE",                          "",            least<&S::min_genes>,
   "leave out of the concatenations species that are in fewer alignments, as 25% of them or as a number"},
  {batch,      "--partitions", "genes|positions|12+3",           "",            partitions,
   "with each concatenation, write which columns are of which alignment, for RAxML (.partitions), IQ-TREE and MrBayes (.nex)", {},
   "`genes` makes one partition of each alignment, `positions` three of its codon positions, as is usual with -t=C, `12+3` two. For the codon models of IQ-TREE (`-st CODON`, with the number of the genetic code) write `genes`. See [partitions](files.md#partitions).", true},
  {batch,      "--model",      "NAME",                           "DNA, LG",     model,
   "model named in the partitions for RAxML"},
  {batch,      "--name",       "NAME",                           "",            name,
   "begin the file names of the concatenations with NAME", {},
   "Otherwise they begin with the name of the list or the alignment; for several files or a folder, with `supermatrix`."},
  {batch,      "--keep-going", "",                               "",            &S::keep_going,
   "go on after an alignment that fails", {},
   "It is named and left out of the concatenations, and the exit status is 1."},

  {run,        "--table",      "FILE",                           "",            &S::table,
   "write a line for each alignment: sizes, status, message", {},
   "See [the table](files.md#table). With `--table=-` it goes to standard output, and the account of the run to standard error."},
  {run,        "--overview",   "FILE.html",                      "",            &S::overview,
   "write a page on the whole run: its alignments in a table, who is in them in a picture", {},
   "It needs no other file and no connection. See [the overview](files.md#overview)."},
  {run,        "--strict",     "",                               "",            &S::strict,
   "make the exit status 1 if there was any note"},
  {run,        "--quiet",      "",                               "",            &S::quiet,
   "say nothing on standard output; notes are said all the same"},
  {run,        "--help",       "",                               "",            ask<Asked::help>,
   "show the options, and run nothing"},
  {run,        "--version",    "",                               "",            ask<Asked::version>,
   "show the version, and run nothing"},
};
// clang-format on

}  // namespace

std::span<const Option> all_options() {
  return options;
}

}  // namespace trimora::rooms
