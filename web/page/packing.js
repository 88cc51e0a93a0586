// Bytes inside the page: gzip as text that neither a script nor HTML reads otherwise. Five characters hold four bytes,
// which is a sixteenth less than base64 takes.

import { gunzip } from "../engine/gunzip.mjs";

const first = 40, digits = 85; // from "(" on, but for two of them
const instead = new Map([["<", "!"], ["\\", "#"]]);

/** The first character tells how many bytes of the last group are none. @param {Uint8Array} bytes */
export function toText(bytes) {
  const rest = (4 - (bytes.length % 4)) % 4, padded = new Uint8Array(bytes.length + rest);
  padded.set(bytes);
  const view = new DataView(padded.buffer), codes = [];
  for (let at = 0; at < padded.length; at += 4) {
    for (let n = view.getUint32(at), power = digits ** 4; power >= 1; power /= digits) codes.push(Math.floor(n / power) % digits);
  }
  return rest + codes.map((code) => String.fromCharCode(first + code)).map((c) => instead.get(c) ?? c).join("");
}

/** What was packed by gzip and then by toText. @param {string} text */
export function unpack(text) {
  const code = new Uint8Array(128);
  for (let k = 0; k < digits; ++k) code[first + k] = k;
  for (const [c, other] of instead) code[other.charCodeAt(0)] = c.charCodeAt(0) - first;
  const groups = (text.length - 1) / 5, view = new DataView(new ArrayBuffer(4 * groups));
  for (let group = 0, at = 1; group < groups; ++group) {
    let n = 0;
    for (let k = 0; k < 5; ++k) n = n * digits + code[text.charCodeAt(at++)];
    view.setUint32(4 * group, n);
  }
  return gunzip(new Uint8Array(view.buffer, 0, 4 * groups - Number(text[0])));
}
