// gzip is unpacked by the browser itself.

/** What a gzip file holds; rejects when it is damaged or incomplete. @param {Blob} packed */
export async function gunzip(packed) {
  const reader = packed.stream().pipeThrough(new DecompressionStream("gzip")).getReader();
  const parts = [];
  for (;;) {
    const { done, value } = await reader.read();
    if (done) return new Blob(parts);
    parts.push(value);
  }
}
