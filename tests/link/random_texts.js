// Random texts for the tests that node prepares. QUILLET_TEST_SEED repeats a run.
'use strict';

const seed = Number(process.env.QUILLET_TEST_SEED ?? Date.now() % 2 ** 31);
let state = seed;

// Mulberry32: small, and enough for texts.
function below(limit) {
  state = state + 0x6d2b79f5 | 0;
  let mixed = Math.imul(state ^ state >>> 15, 1 | state);
  mixed = mixed + Math.imul(mixed ^ mixed >>> 7, 61 | mixed) ^ mixed;
  return Math.floor(((mixed ^ mixed >>> 14) >>> 0) / 2 ** 32 * limit);
}

const between = (first, last) => String.fromCodePoint(first + below(last - first + 1));

// What the command line, the link and the decoder treat in a way of their own, and what they do not.
const NOTEWORTHY = [' -nodlg', ' -SeaGlob', ' -?', ' -url=', ' -kla=x', ' -nam="', ' -CopyData=z', ' -msg=7', ' -wparam=', '"', ' ',
  '%', '%41', '%22', '%C3', '%PATH%', '&kla=x', ';', '#', '?', '=', '+', '^', '!', '\\', '\r\n', '\t', '\0', '\u001F',
  '\u007F', '€', '–', '„“', '5 € netto', 'ä', 'ß'];
const KINDS = [
  () => NOTEWORTHY[below(NOTEWORTHY.length)],
  () => between(0x20, 0x7e),
  () => between(0x20, 0x7e),
  () => between(0x80, 0x7ff),
  () => between(0x01, 0x1e),
];
const RARE_KINDS = [...KINDS, () => between(0x800, 0xd7ff), () => between(0xe000, 0xffff), () => between(0x10000, 0x10ffff)];

function randomText() {
  const kinds = below(2) ? KINDS : RARE_KINDS;
  return Array.from({ length: 1 + below(1 + below(40)) }, () => kinds[below(kinds.length)]()).join('');
}

// The rules of a link, told once more from the program's side.
function travelsInLink(text) {
  const restored = !/[%\0\x1f\u0800-\uffff]/.test(text);
  return restored && !(text.includes('"') && (text.includes(' ') || text.startsWith('"')));
}

// As hexadecimal UTF-16 code units, which any text survives in a file.
const hexUnits = (text) => text.split('').map((unit) => unit.charCodeAt(0).toString(16).padStart(4, '0')).join('');

module.exports = { seed, below, randomText, travelsInLink, hexUnits };
