// The page that builds calls, its functions by themselves: node --test. That the program reads what they say, and that a host
// receives it, is shown by CallBuilderTest.cpp, with cases from make_calls.js.
'use strict';

const assert = require('node:assert');
const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { seed, randomText, travelsInLink } = require('../link/random_texts.js');
const calls = require('../../examples/call-builder/calls.js');
const { readCommandLine } = require('../../examples/call-builder/reading.js');
const { globMatch } = require('../../examples/call-builder/glob.js');

const PROGRAM = 'C:\\Program Files\\Quillet\\quillet.exe';
const RANDOM_TEXTS = Array.from({ length: 300 }, randomText);
const sending = (copydata, settings) => ({ ...calls.NONE, kla: 'HostFrame', copydata, ...settings });
const write = (form, copydata, settings) => calls.writeForm(form, PROGRAM, sending(copydata, settings));

test('the usual call is written as the handbook writes it', () => {
  const line = '"C:\\Program Files\\Quillet\\quillet.exe" -kla=HostFrame -copydata="Vorgang 4711"';
  const rows = { line, prompt: `start "" /wait ${line}`, batch: line, shortcut: line };
  for (const [form, source] of Object.entries(rows)) {
    assert.strictEqual(write(form, 'Vorgang 4711').source, source);
  }
  assert.strictEqual(calls.writeLink('demo', PROGRAM, sending('Vorgang 4711')).source.replace(/[&;]/g, '|'),
    'demo:?kla=HostFrame|copydata=%22Vorgang%204711%22');
});

test('a switch inside of a text is kept from counting', () => {
  const rows = [
    ['a -kla=x', ' -kla=HostFrame -copydata="a -kla=x"'],
    ['a -nam=x', ' -nam="" -kla=HostFrame -copydata="a -nam=x"'],
    ['a -MSG=5', ' -msg=0 -kla=HostFrame -copydata="a -MSG=5"'],
    ['a -url=x', ' -url="" -kla=HostFrame -copydata="a -url=x"'],
    ['a -copydataencoding=ANSI', ' -copydataencoding="" -kla=HostFrame -copydata="a -copydataencoding=ANSI"'],
  ];
  for (const [text, rest] of rows) {
    assert.strictEqual(write('line', text).line, `"${PROGRAM}"${rest}`);
  }
  // The class holds the name of the text's switch, which therefore comes first.
  assert.match(write('line', 'b', { kla: 'a -copydata=z' }).line, / -copydata=b -kla="a -copydata=z"$/);
});

test('what no switch can say goes as a link, if that can', () => {
  for (const text of ['Nimm -nodlg', 'Was soll -? heißen', 'a -SEAGLOBAL']) {
    assert.strictEqual(write('line', text).way, 'link', text);
    assert.strictEqual(readCommandLine(write('line', text).line).copydata, text);
  }
  assert.strictEqual(write('line', 'Nimm -nodlg', { nodlg: true }).way, 'switches');
  for (const text of ['5 € -nodlg', '-? -?%', 'a "b"', '"a', 'a\0']) {
    assert.strictEqual(write('line', text).refused, 'unreadable', text);
  }
});

test('what is written on one line has no line breaks', () => {
  for (const form of ['line', 'prompt', 'batch', 'shortcut']) {
    assert.strictEqual(write(form, 'a\r\nb').way, 'link');
    assert.strictEqual(write(form, 'a\r\n€').refused, 'control');
    assert.strictEqual(write(form, '\uD800').refused, 'control');
  }
  assert.strictEqual(write('vbscript', 'a\r\nb').way, 'switches');
});

test('a call without settings is one, too', () => {
  for (const form of Object.keys(calls.FORMS)) {
    const call = calls.writeForm(form, PROGRAM, calls.NONE);
    assert.strictEqual(call.line, `"${PROGRAM}"`);
    assert.ok(call.source.includes('quillet.exe'), form);
  }
  assert.match(calls.writeForm('powershell', PROGRAM, calls.NONE).source, /^\$arguments = ' '$/m);
});

test('cmd takes every character for itself', () => {
  const rows = [
    ['a b&c|d<e>f^(g)%h', '"a b&c|d<e>f^(g)%%h"'],
    ['a"b&c|d<e>f^(g)%h', 'a^"b^&c^|d^<e^>f^^^(g^)%%h'],
    ['a"b&"c&', 'a"b&"c^&'],
  ];
  for (const [text, value] of rows) {
    assert.strictEqual(write('batch', text).source, `"${PROGRAM}" -kla=HostFrame -copydata=${value}`);
  }
});

test('names of variables are not handed to what replaces them', () => {
  for (const form of ['prompt', 'vbscript', 'vba', 'shortcut']) {
    for (const text of ['%PATH%', 'a%b%c', '%a b%PATH%', '%PATH:a=b c%']) {
      assert.strictEqual(write(form, text).refused, 'variable', text);
    }
    assert.strictEqual(write(form, '100% und 50%').way, 'switches');
    assert.strictEqual(write(form, 'a -nodlg b c d').way, 'link');
  }
  assert.match(write('batch', '%PATH%').source, /"%%PATH%%"$/);
});

test('each place has its length', () => {
  const longest = (form) => {
    const fits = (length) => !write(form, 'a'.repeat(length)).refused;
    let length = 1;
    for (let step = 2 ** 15; step >= 1; step /= 2) {
      length += fits(length + step) ? step : 0;
    }
    return write(form, 'a'.repeat(length)).source.length;
  };
  assert.deepStrictEqual(['line', 'batch', 'prompt', 'shortcut'].map(longest), [32766, 8191, 8191, 259]);
  assert.strictEqual(calls.writeLink('demo', PROGRAM, sending('a'.repeat(2000))).refused, 'long');
});

test('a program that is none, or whose path holds a switch, is refused', () => {
  for (const program of ['', 'a"b', '%ProgramFiles%\\quillet.exe', 'a\nb']) {
    assert.strictEqual(calls.writeForm('line', program, sending('a')).refused, 'program');
  }
  assert.strictEqual(calls.writeForm('line', 'C:\\Werkzeuge -nodlg\\quillet.exe', sending('a')).refused, 'unreadable');
  assert.strictEqual(calls.writeLink('Demo', PROGRAM, sending('a')).refused, 'scheme');
});

// --- what the languages make of a source; each of these knows only what is written

const basic = (source) => [...source.matchAll(/^ *commandLine = (?:commandLine & )?(.*)$/gm)]
  .flatMap((row) => [...row[1].matchAll(/"((?:[^"]|"")*)"|ChrW?\((\d+)\)|( & )/g)])
  .map(([, quoted, unit]) => (unit ? String.fromCharCode(unit) : (quoted ?? '').replace(/""/g, '"'))).join('');

const powershell = (source) => {
  const value = (name) => [...new RegExp(`^\\$${name} = (.*)$`, 'm').exec(source)[1]
    .matchAll(/'((?:[^']|'')*)'|\[char\]0x([\da-f]{4})/g)]
    .map(([, quoted, unit]) => (unit ? String.fromCharCode(parseInt(unit, 16)) : quoted.replace(/''/g, "'"))).join('');
  return `"${value('program')}" ${value('arguments')}`;
};

const csharp = (source) => { // whose escapes are JSON's
  const value = (name) => JSON.parse(new RegExp(`${name} = (".*"),$`, 'm').exec(source)[1]);
  return `"${value('FileName')}" ${value('Arguments')}`;
};

// cmd in a batch file: two percent signs are one, a caret counts outside of quotes.
const batch = (source) => {
  let quoted = false;
  return source.replace(/^chcp 65001 >nul\n/, '').replace(/%%/g, '%').replace(/\^(.)|["&|<>()\n]/gs, (found, behind) => {
    if (behind && !quoted) {
      return behind;
    }
    assert.ok(quoted || found === '"', `bare ${found} in ${source}`);
    for (const unit of found) {
      quoted = unit === '"' ? !quoted : quoted;
    }
    return found;
  });
};

test(`every language makes of its source the line that was meant (seed ${seed})`, () => {
  const reading = { vbscript: basic, vba: basic, powershell, csharp, batch };
  for (const text of [...RANDOM_TEXTS, '‘’‚‛\'', 'x'.repeat(3000), 'ä'.repeat(1000), '\uD800']) {
    for (const [form, read] of Object.entries(reading)) {
      const call = write(form, text);
      if (!call.refused) {
        assert.strictEqual(read(call.source), call.line);
        assert.ok(form === 'batch' || /^[ -~\n]*$/.test(call.source), call.source);
        assert.ok(!['vbscript', 'vba'].includes(form) || call.source.split('\n').every((row) => row.length <= 1023));
      }
    }
  }
});

test(`Python hands the line over as it is (seed ${seed})`, (context) => {
  const written = RANDOM_TEXTS.map((text) => write('python', text)).filter((call) => !call.refused);
  const program = `
import json, subprocess, sys
lines = []
class Ended: returncode = 2**32 - 2
def run(line):
    lines.append(line)
    return Ended
subprocess.run = run
for source in json.load(sys.stdin):
    found = {}
    exec(source, found)
    assert found["code"] == -2
json.dump(lines, sys.stdout)`;
  const input = JSON.stringify(written.map((call) => call.source));
  const python = spawnSync('python3', ['-c', program], { input, encoding: 'utf8' });
  if (python.error) {
    context.skip('needs python3');
    return;
  }
  assert.strictEqual(python.stderr, '');
  assert.deepStrictEqual(JSON.parse(python.stdout), written.map((call) => call.line));
});

test(`nothing is refused that could travel (seed ${seed})`, () => {
  for (const text of RANDOM_TEXTS) {
    const bySwitches = !/\0| -(\?|nodlg|seaglob|activatewindow)/i.test(text) && !/^"|" | .*"|".* /s.test(text);
    assert.strictEqual(!write('csharp', text).refused, bySwitches || travelsInLink(text), JSON.stringify(text));
    assert.strictEqual(!calls.writeLink('demo', PROGRAM, sending(text)).refused, travelsInLink(text), JSON.stringify(text));
  }
});

test('what stands against a text is named whenever it does', () => {
  for (const text of RANDOM_TEXTS) {
    const named = (way) => calls.obstacles(way, text, calls.NONE).length > 0;
    assert.strictEqual(named('link'), !travelsInLink(text), JSON.stringify(text));
    assert.ok(named('switches') || write('line', text).way === 'switches', JSON.stringify(text));
  }
  assert.deepStrictEqual(calls.obstacles('switches', 'a -NODLG -? "b"\n', calls.NONE), ['quotes', 'help', 'flag', 'control']);
  assert.deepStrictEqual(calls.obstacles('link', '"€%\x1f', calls.NONE), ['quotes', 'percent', 'bytes', 'unit']);
});

test('what would become of it is told by the program’s rules', () => {
  assert.strictEqual(calls.plainly('switches', 'copydata', 'Nimm "das"').copydata, 'Nimm ');
  assert.strictEqual(calls.plainly('switches', 'copydata', 'Nimm -nodlg').nodlg, true);
  assert.strictEqual(calls.plainly('switches', 'copydata', 'Wie -?').help, true);
  assert.strictEqual(calls.plainly('link', 'copydata', '12€').copydata, '12\uFFFD\uFFFD');
  assert.strictEqual(calls.plainly('link', 'copydata', '\uD800'), undefined);
});

test('a key that nobody looks up can end the program, too', () => {
  assert.deepStrictEqual(readCommandLine('q -url=x?\u0130=%'), { abnormalEnd: true });
  assert.strictEqual(readCommandLine('q -url=x?\u20AC=%&kla=A').kla, 'A');
});

test('a page in a package knows where the program lies', () => {
  const page = 'examples/call-builder/call-builder.html';
  assert.equal(calls.programBeside(`file:///C:/Users/M%C3%BCller%20GmbH/Quillet/${page}#en`), 'C:\\Users\\Müller GmbH\\Quillet\\quillet.exe');
  for (const elsewhere of [`file:///home/me/Quillet/${page}`, 'file:///C:/Quillet/call-builder.html', `https://host/C:/${page}`]) {
    assert.equal(calls.programBeside(elsewhere), undefined, elsewhere);
  }
});

test('HTML is escaped', () => {
  assert.strictEqual(calls.htmlOf('a:?b&c', '<"&>'), '<a href="a:?b&amp;c">&lt;&quot;&amp;&gt;</a>');
});

test('registry files say what those of the examples say', () => {
  const example = (name) => fs.readFileSync(path.join(__dirname, '../../examples/url-scheme', name), 'utf8')
    .replace(/^;.*\r?\n/gm, '').replace('URL:Orvane Demo', 'URL:orvane-demo').split(/\r?\n/)
    .filter((line, place, all) => line !== '' || all[place - 1] !== '');
  for (const [allUsers, suffix] of [[false, ''], [true, '-all-users']]) {
    const linesOf = (file) => file.split('\r\n');
    assert.deepStrictEqual(linesOf(calls.registration('orvane-demo', PROGRAM, allUsers)), example(`register${suffix}.reg`));
    assert.deepStrictEqual(linesOf(calls.removal('orvane-demo', allUsers)), example(`unregister${suffix}.reg`));
  }
  assert.deepStrictEqual([...calls.utf16Bytes('aä€')], [0xff, 0xfe, 0x61, 0, 0xe4, 0, 0xac, 0x20]);
});

test('a title counts as far as the search sees it', () => {
  const title = `${'a'.repeat(4095)}b`;
  assert.strictEqual(globMatch(title, 'a*b'), false);
  assert.strictEqual(globMatch(title, 'a*a'), true);
  assert.strictEqual(globMatch('a'.repeat(4095), `${'*a'.repeat(50)}b`), false); // and soon
});
