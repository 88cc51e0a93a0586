/** What a run of `trimora-run` leaves behind. */
export interface Run {
  /** 0 done, 1 failed or something is incomplete, 2 wrong usage: nothing was run. */
  status: number;
  stdout: Uint8Array;
  /** Notes and failures, one a line. */
  stderr: Uint8Array;
  /** Every file that was written, by name. A file that you gave is here only if the run wrote it again. */
  files: Record<string, Uint8Array>;
}

export interface Given {
  /** What `compile` made. Without it, the program in the file beside the module, compiled once. */
  program?: WebAssembly.Module;
  /** Standard input; empty without it. */
  stdin?: Uint8Array;
}

/**
 * Compile the program once, for any number of runs and workers, from the content of trimora.wasm. Without `bytes`, from
 * the file beside the module.
 */
export function compile(bytes?: BufferSource): Promise<WebAssembly.Module>;

/**
 * Start `trimora-run` with `args` in a folder that holds `files` and nothing else. `files[name]` may be in an inner
 * folder, as in "genes/cox1.fas". What begins as gzip does is inflated first, `stdin` as well.
 *
 * Rejects when memory ends, the program cannot be loaded, or gzip data are damaged. For what the program itself finds
 * wrong, read `status` and `stderr`. The bytes that you give are neither changed nor copied.
 */
export function run(files: Record<string, Uint8Array>, args: string[], given?: Given): Promise<Run>;

/** What is read and what is selected, as functions on one program that stays in memory. */

/** The type of sequences. */
export type Kind = "protein" | "dna" | "codons";
/** The form of an alignment file; "trimora" is FASTA in groups of ten letters. */
export type Form = "fasta" | "phylip" | "nexus" | "trimora";

/**
 * What is wrong with an alignment or a file; `message` says it in words. Arguments that are wrong by themselves throw
 * TypeError or RangeError instead.
 */
export class TrimoraError extends Error {
  /**
   * What happened: "empty", "unknown_format", "refused_format", "ambiguous_format", "damaged", "bad_record",
   * "unfinished_record", "name_too_long", "bad_character", "unequal_lengths", "too_long", "too_few_sequences",
   * "too_few_positions", "undecided_type", "contrary_type", "other_sequences", "unfit_name", "same_name" or "out_of_memory".
   */
  readonly kind: string;
  /** The sequence to blame, counted from 0. */
  readonly sequence: number | null;
  /** Its name; "" where there is none. */
  readonly name: string;
  private constructor();
}

/**
 * Sequences of equal length, each with a name. It never changes. Sequences and columns count from 0; the second number of
 * a pair is one past the last.
 */
export interface Alignment extends Iterable<[name: string, letters: string]> {
  /** Sequences. */
  readonly size: number;
  /** Columns. */
  readonly width: number;
  readonly names: string[];
  /** The letters of each sequence, a new list; gaps are "-". */
  readonly sequences: string[];
  /** The codes of the letters of one sequence in the columns `from` to `to`, a copy; without these, in all. */
  letters(sequence: number, from?: number, to?: number): Uint8Array<ArrayBuffer>;
  /** As given, or as the file or the letters say; null when they do not. Never codons by itself. */
  readonly kind: Kind | null;
  /** The format that it was read from, as "FASTA"; "" when it was made in memory. */
  readonly format: string;
  /** The alignment in FASTA. */
  toString(): string;
  /**
   * Give its memory back at once. Otherwise that happens some time after nobody holds it any more, which is soon enough for
   * few alignments or small ones.
   */
  free(): void;
}

/**
 * What the letters say of each column, in 13 bytes for each: made once, from which blocks under any parameters follow
 * without the letters. For those who change parameters again and again, as a slider does.
 */
export interface ColumnCounts {
  readonly alignment: Alignment;
  /** As of an alignment; that one stays. */
  free(): void;
}

export interface Parameters {
  /**
   * Set first; what is given as well wins. "classic" are the defaults, "relaxed" allows gaps and keeps more, "none" keeps
   * every column that is not a gap in every sequence, whatever is given.
   */
  preset?: "classic" | "relaxed" | "none";
  /** By default that of the alignment. Codons are never guessed. */
  kind?: Kind;
  /** b5: a selected column holds no gap ("none", the default), one in at most half of the sequences, or any number. */
  gaps?: "none" | "half" | "all";
  /** Shortest initial block, in columns, before gaps are cut out: 2 to 32000; as `b4` by default. */
  b0?: number;
  /** Sequences that a conserved column needs, or per cent of all as "60%"; half of them + 1 by default, which is the least. */
  b1?: number | string;
  /** Sequences that a flank column needs, from b1 to all; 85 % by default. */
  b2?: number | string;
  /** Most nonconserved columns in a row: 0 to 32000; 8 by default. */
  b3?: number;
  /** Shortest block, in columns: 2 to 32000; 10 by default. */
  b4?: number;
  /** b6: similar residues of proteins add to a score; true by default. */
  similarity?: boolean;
}

/** The blocks of one alignment. Columns are those of the alignment as it was given, from 0. */
export interface Selection {
  /** The columns that are kept, ascending. */
  readonly columns: Int32Array;
  /** First and one past the last column of each. Columns that are gaps in every sequence may be inside; they are not kept. */
  readonly blocks: [first: number, end: number][];
  /** The same before gaps were cut out. */
  readonly initial: [first: number, end: number][];
  /** The score of each column, in sequences; 0 where gaps or unknown residues forbid one. */
  readonly scores: Float32Array;
  /** One character for each column: F flank, C conserved, . nonconserved, - gap, d dropped. */
  readonly classes: string;
  /** The most frequent residue of each column, upper case; ? where there is none. */
  readonly residues: string;
  /** For each column "selected", or the first rule that removes it, in words. Found when it is first asked for. */
  readonly reasons: string[];
  /**
   * The same for long alignments: each different reason once, and which of them each column has. `first` is the number of
   * the first column, where the words name a column; 0 by default.
   */
  reasonTable(first?: number): { words: string[]; index: Uint32Array<ArrayBuffer> };
  /** In force. */
  readonly kind: Kind;
  /** Sequences that a conserved column needed, and a flank column. */
  readonly b1: number;
  readonly b2: number;
  /** The alignment reduced to the selected columns. */
  readonly trimmed: Alignment;
}

/**
 * Read an alignment, given as text, as bytes or as a file of the browser. Its format is known by its content: FASTA,
 * NBRF/PIR, CLUSTAL, PHYLIP, NEXUS, Stockholm or MSF, also compressed by gzip. Rejects with TrimoraError.
 */
export function read(source: string | Uint8Array | ArrayBuffer | Blob, given?: Pick<Given, "program">): Promise<Alignment>;

/**
 * Whether a file is in a format that `read` knows, from its first bytes: 65536 of them, or all. What is compressed has to
 * be inflated.
 */
export function canRead(head: Uint8Array, given?: Pick<Given, "program">): Promise<boolean>;

/** The alignment of these names and letters, which are copied once. Rejects with TrimoraError. */
export function alignment(sequences: Record<string, string | Uint8Array> | Iterable<[string, string | Uint8Array]>,
                          given?: Pick<Given, "program"> & { kind?: Kind }): Promise<Alignment>;

/** Count the columns of an alignment, as sequences of `kind`. Throws as `select`. */
export function counts(alignment: Alignment, given?: { kind?: Kind }): ColumnCounts;

/**
 * Select the blocks of columns that are reliable enough for a tree. From counts, `kind` may turn DNA into codons and back.
 * Throws RangeError or TypeError for a parameter, TrimoraError when the letters do not tell the type or fewer than two
 * columns hold letters.
 */
export function select(source: Alignment | ColumnCounts, parameters?: Parameters): Selection;

/** The columns of an alignment that were selected. */
export function trim(alignment: Alignment, selection: Pick<Selection, "columns" | "kind">): Alignment;

/**
 * The columns of one alignment after those of the other. Sequences are matched by their names, up to the first blank; "?"
 * where an alignment lacks one. `parts` are the columns of each alignment.
 */
export function supermatrix(alignments: Alignment[]): { alignment: Alignment; parts: [first: number, end: number][] };

/** The codons of a protein alignment, from its coding sequences, which need not be aligned. `code`: its number at NCBI. */
export function codons(proteins: Alignment, sequences: Record<string, string | Uint8Array> | Iterable<[string, string | Uint8Array]>,
                       given?: { code?: number }): Alignment;

/** The bytes of an alignment file. Throws TrimoraError when the form cannot hold a name. */
export function write(alignment: Alignment, form?: Form): Uint8Array<ArrayBuffer>;

/** An option of trimora-run. */
export interface Option {
  /** With its dashes. */
  name: string;
  /** "Y yes|N no": choices, each with its words; a placeholder, as NUMBER; "": no value. */
  values: string;
  /** The default, perhaps in words; "": none. */
  standard: string;
  /** The range of a number; 0 and 0 where words tell it. */
  least: number;
  most: number;
  brief: string;
}
/** All options of trimora-run. */
export function options(given?: Pick<Given, "program">): Promise<Option[]>;

/** Parameters under one name. */
export interface Preset {
  name: "classic" | "relaxed" | "none";
  /** Whether every column is kept. */
  every: boolean;
  parameters: Pick<Parameters, "b2" | "b3" | "b4" | "gaps">;
}
/** All presets. */
export function presets(given?: Pick<Given, "program">): Promise<Preset[]>;

/** A genetic code. */
export interface GeneticCode {
  /** At NCBI. */
  number: number;
  /** Of the 64 codons TTT, TTC, TTA, TTG, TCT ... GGG; * stops. */
  residues: string;
}
/** All genetic codes, by their numbers. */
export function geneticCodes(given?: Pick<Given, "program">): Promise<GeneticCode[]>;

/** How species are found in the names of sequences: a rule under which names of several alignments become the same. */
export interface NameRule {
  /** Of trimora-run, beside --match=name: ["--name-end=|"]. */
  options: string[];
  /** One of the names, and what is taken of it. */
  name: string;
  key: string;
  /** How many different keys are in two alignments or more. */
  meeting: number;
}
/** The rules that fit these names, a list for each alignment; none where no rule brings enough of them together. */
export function nameRules(names: string[][], given?: Pick<Given, "program">): Promise<NameRule[]>;

/** b1 and b2 by default for an alignment of `size` sequences. This b1 is also the least. */
export function standards(size: number, given?: Pick<Given, "program">): Promise<{ b1: number; b2: number }>;
