// What a run says beyond the failures of the library, which have their words in ground/failure.cpp: file, sequence, what
// follows, what to do. Places in braces are filled from left to right; docs/messages.md lists them with their causes.
#pragma once
#include <cassert>
#include <initializer_list>
#include <string>
#include <string_view>

namespace trimora::rooms {

/// `words` with its places taken by `values`.
/// Needs  as many values as places.
inline std::string filled(std::string_view words, std::initializer_list<std::string_view> values) {
  std::string text;
  for (const std::string_view value : values) {
    const std::size_t open = words.find('{');
    assert(open != std::string_view::npos);
    text.append(words.substr(0, open)).append(value);
    words.remove_prefix(words.find('}', open) + 1);
  }
  return text.append(words);
}

namespace words_of_run {

using W = std::string_view;

// clang-format off

// Notes on an alignment.
inline constexpr W unknown_letters = "{percent} % of the columns hold {letters} and no gap, and can be selected: where data are missing, write - instead";
inline constexpr W points = "'.' is read as a gap, but seems to mean 'as in the first sequence' here: write the letters in full with the program that made the file";
inline constexpr W stops_readers = "holds {characters} ({count} in all), which stops {programs}: --unknown=x writes {letter} instead";
inline constexpr W looks_nucleotide = "is read as protein, but looks like nucleotides: -t=D reads it as DNA, -t=C as codons";
inline constexpr W looks_protein = "is read as nucleotides, but looks like protein: -t=P";
inline constexpr W codon_length = "has {number} positions, which is not a multiple of three: does its first column begin a codon?";
inline constexpr W codon_stops = "holds stop codons before the end of {number} of its sequences, the first is {codon} at column {column} of sequence {sequence} ({name}): does the first column begin a codon? Mitochondria and some others have another code: --code=";
inline constexpr W codon_gaps = "holds gaps that are not whole codons in {number} of its sequences, the first at column {column} of sequence {sequence} ({name}): what follows in them may be out of frame";
inline constexpr W same_names = "sequences {first} and {second} have the same name, {name}, and tree programs refuse them: rename one";
inline constexpr W same_words = "sequences {first} and {second} have the same name up to the first blank, {name}, where many tree programs cut it: --format=phylip or nexus writes whole names";
inline constexpr W breaks_trees = "names with ( ) [ ] , : ; or ' break trees (first in sequence {number}, {name}): --format=phylip or nexus writes _ instead";

// Notes on what was selected.
inline constexpr W nothing_by_type = "nothing was selected, and tree programs stop at an empty alignment: its letters are of another type than it is read as";
inline constexpr W nothing_by_gaps = "nothing was selected, and tree programs stop at an empty alignment. The most gaps or unknown letters: {sequences}: leave these out, or try {advice}";
inline constexpr W nothing_by_flanks = "nothing was selected, and tree programs stop at an empty alignment: in no position do as many as {number} sequences agree, as b2 asks for{advice}";
inline constexpr W nothing_by_length = "nothing was selected, and tree programs stop at an empty alignment: no block is as long as {parameter} asks for: try a lower -{parameter}";
inline constexpr W nothing_by_frame = "nothing was selected, and tree programs stop at an empty alignment: no block holds a whole codon: does the first column begin a codon?";
inline constexpr W empty_row = "sequence {number} ({name}) has nothing but gaps and unknown letters in the selected positions, and tree programs stop at it: leave it out";
inline constexpr W empty_species = "sequence {number} ({name}) has nothing but gaps and unknown letters in the concatenation, and tree programs stop at it: leave it out";

// Alignments that do not go together.
inline constexpr W other_order = "has the sequences of {first} in another order, which would mix up the species: {outcome}: --match=name puts them together by name, --match=order by their order all the same";
inline constexpr W other_names = "sequence {number} is {name}, but {other} in {first}: {outcome}: --match=name puts sequences together by name, --match=order by their order all the same";
inline constexpr W other_count = "has {number} sequences, {first} has {other}: {outcome}: --match=name puts them together by name, with ? where a species is missing{shares}";
inline constexpr W other_type = "is {type}, the first alignment is {other}: -t= says what all of them are";

// Coding sequences.
inline constexpr W no_protein = "is {type}: --codons goes with proteins";
inline constexpr W no_coding = "has no coding sequences in {path}: their files are matched by name up to the first dot";
inline constexpr W no_coding_row = "has no coding sequence for sequence {number} ({name}) in {path}";
inline constexpr W coding_count = "has {number} sequences, but {path} has {other}: --match=order takes them in their order";
inline constexpr W bad_codon = "sequence {number} ({name}) in {path}: {why}. Another genetic code (--code=)?";
inline constexpr W coding_stops = "stop codons inside {number} of the coding sequences, the first in that of {name}, are written NNN, since codon models refuse them";
inline constexpr W coding_extra = "{number} in {path} without a protein: {names}";
inline constexpr W same_coding_name = "{first} and {second} have the same name up to the first dot, so that it is not certain which one belongs to an alignment";

// Who is who in a batch.
inline constexpr W never_meet = "nothing was concatenated: the {species} species are in one of the {genes} alignments each, so that no name occurs in two of them. Name the sequences by species, or use --match=order where their order is the same";
inline constexpr W never_meet_proposed = "nothing was concatenated: the {species} species are in one of the {genes} alignments each. Where does the name of a species end? {proposals}";
inline constexpr W few_meet = "only {number} of the {species} species {are} in two alignments or more. In one only: {names}. Do the names differ between the alignments?{proposals}";
inline constexpr W single_names = "{number} {are} in one alignment only, nearly all others in several: {names}";
inline constexpr W same_but_signs = "these names differ only in capitals or signs, and count as different species: {names}";
inline constexpr W misspelt = "these names differ by a letter or an abbreviation, are never in one alignment, and count as different species: {names}. Misspelt?";
inline constexpr W merged = "names that seem to be of different species count as one, since {why}: {names}";
inline constexpr W listed_in_vain = "{number} in no alignment: {names}";
inline constexpr W listed_otherwise = "lists {name} twice, with different names";
inline constexpr W nothing_left = "nothing was concatenated: the filters leave no alignment";
inline constexpr W nobody_left = "nothing was concatenated: --min-genes leaves no species";
inline constexpr W small_genes = "{number} with fewer than four species, which tell no tree program anything: {names}";

// The files of a run.
inline constexpr W overwrites = "the result {result} would replace the input {input}: choose another suffix (-e=), or another folder (--into=)";
inline constexpr W listed_twice = "{first} and {second} are the same file: list each alignment once";
inline constexpr W written_twice = "the result {result} would be written twice, and the first one lost: name each alignment once, or choose another suffix (-e=)";
inline constexpr W same_base_name = "has the same name as {first}, whose results it would replace in {folder}: rename one of them, or trim them into two folders";
inline constexpr W same_results = "has the same results as {first}: take one of them out of the run, or rename it";
inline constexpr W same_gene = "{first} and {second} are one gene, which --join would put in twice: name only the files that go together, as in genes/*-tr.fasta";
inline constexpr W only_results = "only results of earlier runs, and no other alignment: --join puts them together, and a list of them is trimmed again";
inline constexpr W no_folder = "the folder {folder} could not be made: {reason}";
inline constexpr W nothing_listed = "contains no alignment";
inline constexpr W no_place = "is not a file, so that its results have no place: name a folder for them, --into=FOLDER";

// clang-format on

}  // namespace words_of_run

}  // namespace trimora::rooms
