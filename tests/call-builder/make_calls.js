// Writes calls with random settings, for CallBuilderTest.cpp: node make_calls.js FOLDER PROGRAM
//
// FOLDER gets three files, a case a line, texts as hexadecimal UTF-16 code units ("-" when empty), between tabs:
//
// - readings: a command line, and what the program reads from it: see readingOf;
// - globs: a text, a pattern, and 1 or 0;
// - runs: a form of a call, its source, and what a host receives: see receivedOf. They name PROGRAM, a path as Windows has it.
//
// QUILLET_CALLS says how many calls of each form are run (12), QUILLET_TEST_SEED repeats a run.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { seed, below, randomText, hexUnits } = require('../link/random_texts.js');
const { FORMS, NONE, writeForm, writeLink } = require('../../examples/call-builder/calls.js');
const { readCommandLine } = require('../../examples/call-builder/reading.js');
const { globMatch } = require('../../examples/call-builder/glob.js');

const RUNS = Number(process.env.QUILLET_CALLS ?? 12);
const CALLS = 600 + RUNS;
const PATTERNS = 20 * CALLS;
const [folder, program] = process.argv.slice(2);

const pick = (items) => items[below(items.length)];
const maybe = (make, otherwise) => (below(2) ? make() : otherwise);
const fieldOf = (text) => hexUnits(text) || '-';

// --- what the program reads

// As RequestOf.h of the tests' support prints it.
function textOf(request) {
  const { kla, nam, copydata, copydataencoding, msg, wparam, lparam, nodlg, activatewindow, seaglob } = request;
  return `class [${kla}] text [${nam}] copydata [${copydata}] encoding [${copydataencoding}] msg ${msg} wparam ${wparam} ` +
    `lparam ${lparam}${nodlg ? ' nodlg' : ''}${activatewindow ? ' activatewindow' : ''}${seaglob ? ' seaglob' : ''}`;
}

function readingOf(line) {
  const request = readCommandLine(line);
  return request.help ? 'help' : request.abnormalEnd ? 'abnormal end' : textOf(request);
}

const PARTS = [' -nodlg', ' -activatewindow', ' -seaglob', '\t-nodlg', ' -msg=0x1F', ' -msg=\u2003+5', ' -wParam= 08', ' -wparam=0x',
  ' -lparam=-7', ' -lparam=0xffffffffffffffff1', ' -KLA=A', ' -kla="A B"', ' -\u212Ala=k', ' -nam=', ' -nam="o', ' -copydata=c d',
  ' -copydataencoding=UTF-8', ' -?', ' -url=', ' -URL="', ' -url="x:?', ' -url=y?nam=2',
  ' -url="="', ' -url="a="b?nam=1', 'x?', '?', '??', '&', ';', '&&', '#', ' ', '"',
  '=', '="', '=%22', 'nodlg', 'activatewindow=0', 'msg=', 'lparam=', 'wparam=', 'kla=', 'nam=', 'copydata=', 'copydataencoding=', 'KLA=',
  '5', '-12', '0x1f', '017', 'a', 'Z', '%20', '%22', '%3D', '%0A', '%00', '%1F', '%7F', '%41', '%25', '%C3%A4', '%DF%bf', '%E4%f6', '%',
  '%4', '%g1', '+', '\n', '\r', '\u2028', '\u2029', '\u212A', '\u0130', '€', 'ä'];

const anyLine = () => `quillet.exe${Array.from({ length: 1 + below(12) }, () => pick(PARTS)).join('')}`;

function withPart(line) {
  const place = below(line.length + 1);
  return line.slice(0, place) + pick(PARTS) + line.slice(place + below(3));
}

// --- calls

const numbers = (bits) => pick([0n, 1n, 7n, 4711n, -1n, BigInt.asIntN(bits, BigInt(below(2 ** 31)) ** 3n)]);

function anySettings() {
  const sent = maybe(() => ({ copydata: randomText(), copydataencoding: pick(['', 'ANSI', 'UTF-8']) }),
    { msg: numbers(32), lparam: numbers(64) });
  return { ...NONE, kla: maybe(() => pick(['HostFrame', randomText()]), ''), nam: maybe(randomText, ''), wparam: numbers(64), ...sent,
    nodlg: !below(4), activatewindow: !below(4), seaglob: !below(4) };
}

// What a real run can be made to do, and a test to see: the host of the test is found, and nobody waits.
function settingsForAHost() {
  const settings = { ...anySettings(), ...(below(3) && { copydata: randomText(), lparam: 0n }) };
  return { ...settings, ...pick([{ nam: '' }, { nam: 'Aufrufe -kla=x; 100%' }, { nam: 'Aufrufe*', seaglob: true }]),
    kla: 'QuilletCallTest', nodlg: true, activatewindow: false,
    msg: settings.copydata ? 0n : BigInt(below(30000)),
    copydataencoding: settings.copydataencoding === 'ANSI' ? '' : settings.copydataencoding };
}

function receivedOf({ copydata, copydataencoding, msg, wparam, lparam }) {
  return copydata === '' ? `${1024n + msg} ${wparam} ${lparam}`
    : `74 ${wparam} ${Buffer.from(copydata, copydataencoding === 'UTF-8' ? 'utf8' : 'utf16le').toString('hex')}`;
}

// The sources that can run here: Wine's cmd reads a file in the code page that the console begins with, whatever chcp says, and
// all that such a one holds are these letters beside ASCII; Wine 8 has no ChrW.
const runsHere = {
  line: (source) => source,
  batch: (source) => (/[^ -~äöüÄÖÜß\n]/.test(source) ? undefined : source.replace('chcp 65001 >nul\n', '')),
  vbscript: (source) => (source.includes('ChrW') ? undefined : source.replace('Dim commandLine, code\n', '')),
};

// --- the files

const readings = new Map(Array.from({ length: 5 * CALLS }, anyLine).map((line) => [line, readingOf(line)]));
for (let count = 0; count < CALLS; ++count) {
  const settings = anySettings();
  const calls = Object.keys(FORMS).map((form) => writeForm(form, program, settings));
  const written = [...calls, writeLink('orvane-demo', program, settings)].filter((call) => !call.refused);
  for (const line of new Set(written.map((call) => call.line))) {
    const mutated = withPart(line);
    readings.set(mutated, readingOf(mutated)).set(line, textOf(settings));
  }
}

const some = (units, most) => Array.from({ length: below(most) }, () => pick(units));

// Half of the patterns come from their text, or hardly one would match.
const globs = Array.from({ length: PATTERNS }, () => {
  const text = some('aabbc]-^\\[!Zä', 8);
  const element = (unit) => pick([unit, unit, '?', '*', `\\${unit}`, `[x${unit}]`, `[^-${unit}]`, `[${unit}-]`, '[Z-a']);
  const pattern = maybe(() => text.map(element), some('aabbc]]--^\\[[[!Zä**?', 12));
  return [text.join(''), pattern.join('')];
}).map(([text, pattern]) => [fieldOf(text), fieldOf(pattern), Number(globMatch(text, pattern))]);

const runs = Object.entries(runsHere).flatMap(([form, adapted]) => {
  const rows = [];
  while (rows.length < RUNS) {
    const settings = settingsForAHost();
    const call = writeForm(form, program, settings);
    const source = call.refused ? undefined : adapted(call.source);
    if (source !== undefined) {
      rows.push([form, fieldOf(source), fieldOf(receivedOf(settings))]);
    }
  }
  return rows;
});

// Several desktops may run this side by side, and read while another writes.
fs.mkdirSync(folder, { recursive: true });
for (const [name, rows] of Object.entries({ readings: [...readings].map((row) => row.map(fieldOf)), globs, runs })) {
  const file = path.join(folder, `${name}.txt`);
  fs.writeFileSync(`${file}.${process.pid}`, rows.map((row) => `${row.join('\t')}\n`).join(''));
  fs.renameSync(`${file}.${process.pid}`, file);
}
console.log(`seed ${seed}: ${readings.size} lines, ${globs.length} patterns, ${runs.length} runs`);
