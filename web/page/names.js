// Names: their order, and those of files that the page makes for itself.

/** The order of names, "x2" before "x10". */
export const natural = new Intl.Collator("en", { numeric: true }).compare;

/** Whether a file has this name, or is in a folder of this name. @param {{name: string}[]} inputs @param {string} name */
const isTaken = (inputs, name) => inputs.some((input) => input.name === name || input.name.startsWith(`${name}/`));

/** The name of a file that is to be written, changed where an input has it. @param {string} name @param {{name: string}[]} inputs */
export const unused = (name, inputs) => free(name, (one) => isTaken(inputs, one));

/** A name that is not taken: "x.fas" becomes "x-2.fas". @param {string} name @param {(name: string) => boolean} taken */
export function free(name, taken) {
  let found = name;
  for (let k = 2; taken(found); ++k) found = name.replace(/(\.[^./]*)?$/, `-${k}$1`);
  return found;
}
