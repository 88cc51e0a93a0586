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

/** Make an instance of the program; Emscripten writes this function. */
export default function instantiate(settings: {
  instantiateWasm(imports: WebAssembly.Imports, done: (instance: WebAssembly.Instance) => void): object;
  printErr(line: string): void;
}): Promise<{ FS: FileSystem; callMain(args: string[]): number }>;
