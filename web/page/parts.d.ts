// What build.mjs makes into modules.
declare module "packed:*" {
  const text: string; // as toText() makes it of gzip
  export default text;
}
/** The options of the program. */
declare const OPTIONS: Omit<import("trimora").Option, "brief">[];
/** Its presets. */
declare const PRESETS: import("trimora").Preset[];
/** The genetic codes. */
declare const CODES: import("trimora").GeneticCode[];
