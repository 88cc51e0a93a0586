// Every message of a run, one a line: what happened, what follows from it, what to do. Places in braces are filled.
// docs/messages.md lists them with their causes; a test holds the two against each other.
#pragma once
#include <string_view>

namespace trimora::rooms {

namespace words {

using W = std::string_view;

// clang-format off

// The file that was named.
inline constexpr W nosuchfile = "there is no such file";
inline constexpr W nosuchpath = "there is no such file in {folder}";
inline constexpr W notreadable = "could not be read: {reason}";
inline constexpr W isfolder = "is a folder: name the alignment in it, or list its alignments: ls {folder}/*.fas > paths.txt";
inline constexpr W ispipe = "is a pipe, not a file, and cannot be read twice: save what it brings as a file first";
inline constexpr W readerror = "could not be read to its end: {reason}";
inline constexpr W outofmemory = "the memory of this machine is not enough";

// Not an alignment that is read.
inline constexpr W emptyfile = "is empty";
inline constexpr W compressed = "is compressed: gunzip -c {file} > out.fas";
inline constexpr W compressedotherwise = "is compressed: unpack it first with {program}";
inline constexpr W byteordermark = "begins with an invisible mark of a text editor: tail -c +4 {file} > out.fas";
inline constexpr W wide = "is saved as UTF-16, not as plain text: iconv -f UTF-16 -t UTF-8 {file} > out.fas";
inline constexpr W oldlineends = "has the line ends of old Macintosh programs, which are not read: tr '\\r' '\\n' < {file} > out.txt";
inline constexpr W otherformat = "is in {format} format, which is not read: seqret -auto {name}::{file} fasta::out.fas";
inline constexpr W emptyfirstline = "begins with a blank: an alignment in FASTA or NBRF/PIR format begins with '>'";
inline constexpr W unknownfile = "is neither an alignment in FASTA or NBRF/PIR format, which begin with '>', nor a list of alignments: its first line, {line}, names no file in {folder}";
inline constexpr W listwindows = "has Windows line ends, so that {line} is not found: tr -d '\\r' < {file} > out.txt";
inline constexpr W listblanks = "lists {line} with a blank in front or behind, which counts as part of the name: sed 's/^ *//; s/ *$//' {file} > out.txt";
inline constexpr W listcomment = "begins with {line}, but a list of alignments cannot hold comments: grep -v '^#' {file} > out.txt";
inline constexpr W listhome = "lists {line}, but ~ is not understood in a list: sed \"s|^~|$HOME|\" {file} > out.txt";
inline constexpr W listinside = "is a list of alignments, where an alignment is expected: a list is named itself, it stands in no list and comes through no pipe";
inline constexpr W pircode = "is in NBRF/PIR format, but its first line says {line}: begin it with >P1; (protein) or >DL; (DNA)";

// A list of alignments.
inline constexpr W listgone = "could not be read again as a list of alignments, so nothing is certain about this run: do not change it while it is used";
inline constexpr W listnothing = "lists no alignment that was trimmed: each line names one alignment and has to end with a line end";
inline constexpr W listincomplete = "not every alignment in the list was trimmed: each line has to end with a line end, and no empty line may follow the last one: grep . {file} > out.txt";
inline constexpr W nolist = "is one alignment and no list of alignments, so that nothing was concatenated";

// An alignment that is not read.
inline constexpr W nametoolong = "the name line of sequence {number} ({name}) has {length} letters, at most {limit} are read: sed '/^>/s/ .*//' {file} > out.fas";
inline constexpr W wordtoolong = "the name line of sequence {number} ({name}) has {length} letters, at most {limit} are read: awk '/^>/ ? $0 = substr($0, 1, 60) : 1' {file} > out.fas";
inline constexpr W differentlengths = "sequence {number} ({name}) has {length} letters, the first one {first}: is the file aligned?";
inline constexpr W onesequence = "holds one sequence only: an alignment has two or more";
inline constexpr W nosequence = "holds no sequence";
inline constexpr W nostar = "sequence {number} ({name}) does not end with '*', as every sequence in NBRF/PIR format has to";
inline constexpr W pirname = "the line {line} stands where the name of sequence {number} is expected: in NBRF/PIR format it begins with >P1; or >DL;, and nothing follows the '*' of a sequence";
inline constexpr W toofewpositions = "has {number} columns that are not gaps in every sequence: at least two are needed";
inline constexpr W toolong = "sequence {number} ({name}) is longer than the {limit} letters that a sequence may have";
inline constexpr W othercount = "has {number} sequences, the first alignment, {first}, has {other}: --match=name puts them together by name, with ? where a species is missing";

// Nothing is overwritten.
inline constexpr W overwrites = "the result {result} would replace the input {input}: choose other names, another suffix (-e=), or another folder (--into=)";
inline constexpr W writtentwice = "the result {result} would be written twice, and the first one lost: list each alignment once, or choose another suffix (-e=)";

// What counts otherwise than it seems.
inline constexpr W dropped = "dropped as gaps in every sequence, so that positions are counted without them: {columns}";
#ifdef _WIN32  // which has no tr
inline constexpr auto windows = W("has Windows line ends, which count as positions, so the results are wrong: powershell -c \"(gc -raw {file}) -replace [char]13 | sc -nonewline out.fas\"");
#else
inline constexpr W windows = "has Windows line ends, which count as positions, so the results are wrong: tr -d '\\r' < {file} > out.fas";
#endif
inline constexpr W tabs = "tabs count as positions, so the results are wrong (first in sequence {number}, {name}): tr -d '\\t' < {file} > out.fas";
inline constexpr W digits = "digits count as positions, so the results are wrong (first in sequence {number}, {name}): sed '/^>/!s/[0-9]//g' {file} > out.fas";
inline constexpr W stars = "* counts as a letter that agrees with nothing (first in sequence {number}, {name}); if it marks stop codons: sed '/^>/!s/[*]/X/g' {file} > out.fas";
inline constexpr W tildes = "~ is not read as a gap, so the results are wrong (first in sequence {number}, {name}): sed '/^>/!s/~/-/g' {file} > out.fas";
inline constexpr W oddcharacters = "these characters count as positions that agree with nothing (first in sequence {number}, {name}): {characters}";
inline constexpr W unknownletters = "{letters} stand in {percent} % of the columns and are not gaps, so that these columns can be selected; where they mean missing data: sed '/^>/!s/[{set}]/-/g' {file} > out.fas";
inline constexpr W points = "'.' is read as a gap, but here it seems to mean 'as in the first sequence': write the letters in full with the program that made the file";
inline constexpr W looksnbrf = "is read as FASTA, as is the first alignment, but looks like NBRF/PIR: trim it by itself";
inline constexpr W looksnucleotide = "is read as protein, but looks like nucleotides: -t=D reads it as DNA, -t=C as codons";
inline constexpr W looksprotein = "is read as nucleotides, but looks like protein: -t=P";

// Codons.
inline constexpr W codonlength = "has {number} positions, which is no multiple of three: does its first column begin a codon?";
inline constexpr W codonstops = "stop codons inside {number} of the sequences, the first is {codon} at column {column} of sequence {sequence} ({name}): does the first column begin a codon?";
inline constexpr W codongaps = "gaps that are no whole codons in {number} of the sequences, the first at column {column} of sequence {sequence} ({name}): what follows in them may be out of frame";

// What is selected.
inline constexpr W nothingbygaps = "nothing was selected, and tree programs stop at an empty alignment. The most gaps or unknown letters: {sequences}: leave these out, or try -b5=h";
inline constexpr W nothingbyflanks = "nothing was selected, and tree programs stop at an empty alignment: no position has the {number} sequences in agreement that b2 asks for: try a lower -b2";
inline constexpr W nothingbylength = "nothing was selected, and tree programs stop at an empty alignment: no block is as long as b4 asks for: try a lower -b4";
inline constexpr W emptyrow = "sequence {number} ({name}) is nothing but gaps in the selected positions, and tree programs stop at it: leave it out";
inline constexpr W emptyspecies = "sequence {number} ({name}) is nothing but gaps and ? in the concatenation, and tree programs stop at it: leave it out";

// Names.
inline constexpr W samenames = "sequences {first} and {second} have the same name, {name}, and tree programs refuse them: rename one";
inline constexpr W samewords = "sequences {first} and {second} have the same name up to the first blank, {name}, where many tree programs cut it: sed '/^>/s/ /_/g' {file} > out.fas";
inline constexpr W otherorder = "has the sequences of {first} in another order, so that species would be mixed up: {outcome}: --match=name puts them together by name, --match=order by their order all the same";
inline constexpr W samebasename = "{first} and {second} would have results of the same name in {folder}: rename one, or trim them into two folders";
inline constexpr W nofolder = "the folder {folder} could not be made: {reason}";
inline constexpr W incomplete = "some of its files could not be written completely";
inline constexpr W nokey = "sequence {number} ({name}) has no name by which its species could be told";
inline constexpr W samekeys = "sequences {first} and {second} are both called {name}, so that it is not certain which one belongs to the species: leave one out, or say with --name-end= where the name of the species ends";
inline constexpr W unfitname = "the name of sequence {number} ({name}) {flaw}, and {form} cannot hold it, so the alignment was not trimmed: sed '/^>/s/[{characters}]/_/g' {file} > out.fas";
inline constexpr W unfitstart = "the name of sequence {number} ({name}) {flaw}, and {form} cannot hold it, so the alignment was not trimmed: rename it";
inline constexpr W othernames = "sequence {number} is {name}, but {other} in {first}: {outcome}: --match=name puts sequences together by name, --match=order by their order all the same";

// clang-format on

}  // namespace words

}  // namespace trimora::rooms
