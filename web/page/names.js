// Names of files that the page makes for itself.

/** Whether a file has this name, or is in a folder of this name. @param {{name: string}[]} inputs @param {string} name */
export const isTaken = (inputs, name) => inputs.some((input) => input.name === name || input.name.startsWith(`${name}/`));

/** A name that is not taken: "x.fas" becomes "x-2.fas". @param {string} name @param {(name: string) => boolean} taken */
export function free(name, taken) {
  let found = name;
  for (let k = 2; taken(found); ++k) found = name.replace(/(\.[^./]*)?$/, `-${k}$1`);
  return found;
}
