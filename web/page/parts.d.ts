// What build.mjs makes into modules.
declare module "packed:*" {
  const base64: string; // of gzip
  export default base64;
}
/** The options of the program. */
declare const OPTIONS: Omit<import("trimora").Option, "brief">[];
