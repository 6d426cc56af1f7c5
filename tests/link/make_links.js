// Writes links with random texts, for LinkTest.cpp: node make_links.js FILE
//
// A line is LINK, tab, "plain" or "base64url", tab, the text that a host must receive (base64url: after decoding) as
// hexadecimal UTF-16 code units. Ends with 1 when the builder takes a text that cannot travel, or refuses one that can.
// QUILLET_TEST_SEED repeats a run.
'use strict';

const fs = require('node:fs');
const { quilletLink } = require('../../examples/url-scheme/quillet-link.js');
const { seed, randomText, travelsInLink, hexUnits } = require('./random_texts.js');

const TEXTS = 4000;

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

const line = (link, kind, text) => [link, kind, hexUnits(text)].join('\t');

const lines = [];
for (let count = 0; count < TEXTS; ++count) {
  const text = randomText();
  const plain = build(text, {});
  if ((plain !== null) !== travelsInLink(text)) {
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
