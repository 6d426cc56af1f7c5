// Writes links with random texts, for LinkTest.cpp: node make_links.js FILE
//
// A line is LINK, tab, "plain" or "base64url", tab, the text that a host must receive (base64url: after decoding) as
// hexadecimal UTF-16 code units. Ends with 1 when the builder takes a text that cannot travel, or refuses one that can.
// QUILLET_TEST_SEED repeats a run.
'use strict';

const fs = require('node:fs');
const { quilletLink } = require('../../examples/url-scheme/quillet-link.js');

const TEXTS = 4000;
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
const NOTEWORTHY = [' -nodlg', ' -?', ' -url=', ' -kla=x', '"', ' ', '%', '%41', '%22', '%C3', '&kla=x', ';', '#', '?', '=',
  '+', '\\', '\r\n', '\t', '\0', '\u001F', '\u007F', '€', '–', '„“', '5 € netto', 'ä', 'ß'];
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
function travels(text) {
  const restored = !/[%\0\x1f\u0800-\uffff]/.test(text);
  return restored && !(text.includes('"') && (text.includes(' ') || text.startsWith('"')));
}

function build(text, options) {
  const settings = { kla: 'QuilletLinkTest', nodlg: true, copydata: text };
  try {
    return quilletLink('orvane-demo', settings, options);
  } catch (error) {
    if (error instanceof RangeError) {
      return null;
    }
    throw error;
  }
}

const line = (link, kind, text) =>
  [link, kind, Array.from({ length: text.length }, (_, at) => text.charCodeAt(at).toString(16).padStart(4, '0')).join('')].join('\t');

const lines = [];
for (let count = 0; count < TEXTS; ++count) {
  const text = randomText();
  const plain = build(text, {});
  if ((plain !== null) !== travels(text)) {
    console.error(`seed ${seed}: ${plain === null ? 'refused' : 'taken'}, ${JSON.stringify(text)}`);
    process.exitCode = 1;
  }
  if (plain !== null) {
    lines.push(line(plain, 'plain', text));
  }
  lines.push(line(build(text, { base64url: true }), 'base64url', text));
}
// Several desktops may run this side by side, and read while another writes.
const written = `${process.argv[2]}.${process.pid}`;
fs.writeFileSync(written, lines.join('\n') + '\n');
fs.renameSync(written, process.argv[2]);
console.log(`seed ${seed}: ${lines.length} links, ${lines.length - TEXTS} of them plain`);
