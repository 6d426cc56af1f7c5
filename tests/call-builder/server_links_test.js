// Links made on servers: what the usual functions make of a text, and what the program reads then. node --test; C# needs mcs
// and mono, and what is not there is skipped. (PHP's rawurlencode and Java's URLEncoder are not run here.)
'use strict';

const assert = require('node:assert');
const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');
const { seed, randomText, travelsInLink } = require('../link/random_texts.js');
const { readCommandLine } = require('../../examples/call-builder/reading.js');

const USUAL = 'Vorgang 4711: Größe & Co';
// Without quotes, since a server puts all of them between quotes.
const TEXTS = [USUAL, ...Array.from({ length: 400 }, randomText).filter((text) => travelsInLink(text) && !text.includes('"'))];

function outputOf(command, options) {
  const run = spawnSync(command[0], command.slice(1), { encoding: 'utf8', ...options });
  assert.strictEqual(run.status, 0, run.stderr + run.stdout);
  return run.stdout;
}

// Each gives the values of the texts by an expression of `text`.
const languages = {
  javascript: (expression) => TEXTS.map(new Function('text', `return ${expression}`)),
  python: (expression) => JSON.parse(outputOf(['python3', '-c',
    `import json, sys\nfrom urllib.parse import *\nprint(json.dumps([${expression} for text in json.load(sys.stdin)]))`],
  { input: JSON.stringify(TEXTS) })),
  csharp: (expression) => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'links-'));
    try {
      fs.writeFileSync(path.join(folder, 'links.cs'), `using System; using System.Text;
static class Links { static void Main() { for (string line; (line = Console.ReadLine()) != null;) {
  string text = Encoding.Unicode.GetString(Convert.FromBase64String(line)); Console.WriteLine(${expression}); } } }`);
      outputOf(['mcs', 'links.cs'], { cwd: folder });
      const input = TEXTS.map((text) => `${Buffer.from(text, 'utf16le').toString('base64')}\n`).join('');
      return outputOf(['mono', 'links.exe'], { cwd: folder, input }).split('\n').slice(0, -1);
    } finally {
      fs.rmSync(folder, { recursive: true });
    }
  },
};
const tools = { javascript: [], python: ['python3'], csharp: ['mcs', 'mono'] };

const readFrom = (value) => readCommandLine(`quillet.exe -url="x:?copydata=${value}"`).copydata;
const cut = 'Vorgang';
const rows = [
  ['javascript', `encodeURIComponent('"' + text + '"')`, 'arrives'],
  ['javascript', 'encodeURIComponent(text)', cut],
  ['javascript', 'new URLSearchParams({ a: text }).toString().slice(2)', 'Vorgang+4711:+Größe+&+Co'],
  ['python', `quote('"' + text + '"', safe='')`, 'arrives'],
  ['python', 'quote(text)', cut],
  ['python', `quote_plus('"' + text + '"')`, 'Vorgang+4711:+Größe+&+Co'],
  ['python', 'urlencode({"a": text})[2:]', 'Vorgang+4711:+Größe+&+Co'],
  ['csharp', 'Uri.EscapeDataString("\\"" + text + "\\"")', 'arrives'],
  ['csharp', 'Uri.EscapeDataString(text)', cut],
];

test('the handbook shows what arrives', () => {
  const handbook = fs.readFileSync(path.join(__dirname, '../../docs/handbuch.md'), 'utf8');
  for (const [, expression] of rows.filter(([, , expected]) => expected === 'arrives')) {
    assert.ok(handbook.includes(`| \`${expression}\` |`), expression);
  }
});

for (const [language, expression, expected] of rows) {
  test(`${language}: ${expression} (seed ${seed})`, (context) => {
    if (tools[language].some((tool) => spawnSync(tool, ['--version']).error)) {
      context.skip(`needs ${tools[language].join(', ')}`);
      return;
    }
    const values = languages[language](expression);
    if (expected === 'arrives') {
      assert.deepStrictEqual(values.map(readFrom), TEXTS);
    } else {
      assert.strictEqual(readFrom(values[0]), expected);
    }
  });
}
