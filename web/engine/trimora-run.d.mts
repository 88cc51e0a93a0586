/** The part of Emscripten's file system that the wrapper uses. */
interface FileSystem {
  filesystems: { MEMFS: { expandFileStorage: (node: FileNode, capacity: number) => void } };
  streams: unknown[];
  mkdirTree(path: string): void;
  writeFile(path: string, bytes: Uint8Array, options: { canOwn: boolean }): void;
  chdir(path: string): void;
  close(stream: unknown): void;
  open(path: string, mode: string): void;
  lookupPath(path: string): { node: FileNode };
  readdir(path: string): string[];
  stat(path: string): { mode: number };
  isDir(mode: number): boolean;
}
interface FileNode {
  contents: Uint8Array | Int8Array;
  usedBytes: number;
}

/** An instance of the program, with the functions of functions.cpp: numbers are addresses, or what these say. */
export interface Core {
  FS: FileSystem;
  callMain(args: string[]): number;
  /** All of the memory; another array when it has grown. */
  HEAPU8: Uint8Array<ArrayBuffer>;
  _malloc(size: number): number;
  _free(at: number): void;
  _trimora_error(): number;
  _trimora_forget(): void;
  _trimora_options(): number;
  _trimora_presets(): number;
  _trimora_genetic_codes(): number;
  _trimora_name_rules(alignments: number, texts: number): number;
  _trimora_standard(numseq: number, b2: number): number;
  _trimora_can_read(head: number, size: number): number;
  _trimora_read(bytes: number, size: number): number;
  _trimora_alignment(size: number, texts: number, kind: number): number;
  _trimora_drop_alignment(ali: number): void;
  _trimora_size(ali: number): number;
  _trimora_width(ali: number): number;
  _trimora_kind(ali: number): number;
  _trimora_row(ali: number, sequence: number): number;
  _trimora_name(ali: number, sequence: number): number;
  _trimora_format(ali: number): number;
  _trimora_write(ali: number, form: number): number;
  _trimora_trim(ali: number, columns: number, count: number, kind: number): number;
  _trimora_supermatrix(all: number, count: number, parts: number): number;
  _trimora_codons(proteins: number, size: number, texts: number, code: number): number;
  _trimora_counts(ali: number, kind: number): number;
  _trimora_drop_counts(counts: number): void;
  _trimora_select(ali: number, wanted: number): number;
  _trimora_select_counts(counts: number, wanted: number): number;
  _trimora_drop_selection(selection: number): void;
  _trimora_table(selection: number, table: number): number;
  _trimora_in_force(selection: number, which: number): number;
  _trimora_reasons(counts: number, wanted: number, first: number): number;
  _trimora_reason_words(reasons: number): number;
  _trimora_reason_index(reasons: number): number;
  _trimora_drop_reasons(reasons: number): void;
}

/** Make an instance of the program; Emscripten writes this function. */
export default function instantiate(settings: {
  instantiateWasm(imports: WebAssembly.Imports, done: (instance: WebAssembly.Instance) => void): object;
  printErr(line: string): void;
}): Promise<Core>;
