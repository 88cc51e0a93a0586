// gzip is unpacked by the browser, or Node, itself. Some of them take one member at a time, and files of bgzip have many.

const mostTries = 64; // of one member: by chance, what looks like a beginning comes once in 16 MB of it

/** One member, or several where DecompressionStream takes them; rejects what is not whole. @param {Uint8Array} packed */
async function inflated(packed) {
  const parts = [], reader = new Blob([/** @type {Uint8Array<ArrayBuffer>} */ (packed)]).stream()
    .pipeThrough(new DecompressionStream("gzip")).getReader();
  for (;;) {
    const { done, value } = await reader.read();
    if (done) return parts;
    parts.push(value);
  }
}

/** Whether bytes begin as gzip does. @param {Uint8Array} bytes */
export const isPacked = (bytes, at = 0) => bytes[at] === 0x1f && bytes[at + 1] === 0x8b;

/** Where the next member may begin, after `from`; else the end. @param {Uint8Array} bytes @param {number} from */
function nextMember(bytes, from) {
  for (let at = from + 1; (at = bytes.indexOf(0x1f, at)) >= 0; ++at) {
    if (isPacked(bytes, at) && bytes[at + 2] === 8) return at;
  }
  return bytes.length;
}

/** What gzip data hold, all members of it; rejects when they are damaged or when something else follows. @param {Uint8Array} packed */
export async function gunzip(packed) {
  const parts = [];
  for (let start = 0; start < packed.length;) {
    let end = nextMember(packed, start), found;
    for (let tries = 1; !found; ++tries) {
      try {
        found = await inflated(packed.subarray(start, end));
      } catch {
        if (end === packed.length || tries === mostTries) throw new Error("its gzip data are damaged, or something else follows them");
        end = nextMember(packed, end);
      }
    }
    for (const part of found) parts.push(part);
    start = end;
  }
  return new Blob(parts);
}
