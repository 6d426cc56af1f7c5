// Writes the call that has the program do what is meant, for web pages and for node: as a link, a command line, a batch file,
// in several languages, and as registry files. A way of writing it counts only if the program, by its own rules (reading.js),
// reads exactly what is meant; so no case is overlooked, and none is forbidden that would have gone well.
//
// Settings bear the names of switches and keys: texts (kla, nam, copydata, copydataencoding; '' is not given), numbers (msg,
// wparam, lparam; BigInts), flags (nodlg, activatewindow, seaglob).
'use strict';

(function (exported, { quilletLink }, { readCommandLine }) {
  const FLAGS = ['nodlg', 'activatewindow', 'seaglob'];
  const NUMBERS = ['msg', 'wparam', 'lparam'];
  const TEXTS = ['kla', 'nam', 'copydata'];
  const NONE = { kla: '', nam: '', copydata: '', copydataencoding: '', msg: 0n, wparam: 0n, lparam: 0n,
    nodlg: false, activatewindow: false, seaglob: false };

  // Units that each place takes: a process, cmd, the field of a shortcut with its end.
  const LINE = 32766;
  const CMD = 8191;
  const FIELD = 259;

  const isGiven = (settings, name) => settings[name] !== NONE[name];

  function encodingOf(name) {
    return { ansi: 'ANSI', 'utf-8': 'UTF-8', utf8: 'UTF-8' }[name.toLowerCase()] ?? 'UTF-16';
  }

  // What a request does, to compare: a text takes the place of the notification, and its encoding may have several names.
  function effectOf({ kla, nam, copydata, copydataencoding, msg, wparam, lparam, nodlg, activatewindow, seaglob }) {
    const sent = copydata ? [copydata, encodingOf(copydataencoding), wparam] : [msg, wparam, lparam];
    return [kla, nam, nodlg, activatewindow, seaglob, ...sent].map(String).join('\0');
  }

  function isReadAs(settings, line) {
    const request = readCommandLine(line);
    return !request.help && !request.abnormalEnd && effectOf(request) === effectOf({ ...NONE, ...settings });
  }

  // --- command lines

  // Unquoted where quotes would be of no use, or could not be.
  function value(text) {
    return /^[\w.-]+$/.test(text) || /^[^ "][^ ]*$/.test(text) && text.includes('"') ? text : `"${text}"`;
  }

  // The lines with switches that could do, the most usual one first. A text may hold the name of a switch, and the first one
  // on the line counts: then the real one, or one that says nothing, stands before it.
  function* switchLines(program, settings) {
    const given = TEXTS.filter((name) => isGiven(settings, name));
    const others = [...FLAGS.filter((name) => settings[name]).map((name) => ` -${name}`),
      ...NUMBERS.filter((name) => isGiven(settings, name)).map((name) => ` -${name}=${settings[name]}`),
      ...(settings.copydataencoding ? [` -copydataencoding=${value(settings.copydataencoding)}`] : [])];
    const texts = given.map((name) => ` -${name}=${value(settings[name])}`);
    const guards = [...NUMBERS.filter((name) => !isGiven(settings, name)).map((name) => ` -${name}=0`),
      ...[...TEXTS, 'copydataencoding', 'url'].filter((name) => !settings[name]).map((name) => ` -${name}=""`)]
      .filter((guard) => texts.join('').toLowerCase().includes(guard.slice(0, guard.indexOf('=') + 1)));
    for (const order of permutations(texts)) {
      yield `"${program}"${[...others, ...guards, ...order].join('')}`;
    }
  }

  function permutations(items) {
    return items.length < 2 ? [items]
      : items.flatMap((first) => permutations(items.filter((item) => item !== first)).map((rest) => [first, ...rest]));
  }

  function linkOf(scheme, settings) {
    const given = Object.entries(settings).filter(([name]) => isGiven(settings, name));
    return quilletLink(scheme, Object.fromEntries(given));
  }

  // The command line as the registration of a scheme makes it.
  const lineOfLink = (program, link) => `"${program}" -url="${link}"`;

  function lineByLink(program, settings) {
    try {
      return lineOfLink(program, linkOf('quillet', settings));
    } catch (error) {
      return undefined;
    }
  }

  // The lines that do what is meant, each with its way: 'switches', and 'link' for what no switch can say but a link can.
  function linesOf(program, settings) {
    const bySwitches = [...switchLines(program, settings)].find((line) => isReadAs(settings, line));
    const byLink = lineByLink(program, settings);
    return [{ way: 'switches', line: bySwitches }, { way: 'link', line: byLink }]
      .filter(({ line }) => line !== undefined && isReadAs(settings, line));
  }

  // --- what does not pass, by a name for the reason; nothing when it passes

  // What can be copied from a page, pasted into a file or field, and stays one line there.
  function control({ line }) {
    return /[\0-\x1f\x7f-\x9f\u2028\u2029]|[\ud800-\udfff]/u.test(line) ? 'control' : undefined;
  }

  // What may be the name of a variable between percent signs, and would be replaced. The escapes of a link are no names.
  function variable({ way, line }) {
    return way === 'switches' && /%[^% :]+(?=%|:[^%]*%)/.test(line) ? 'variable' : undefined;
  }

  // --- ways to write a line down

  const unitsOf = (text) => Array.from({ length: text.length }, (_, at) => text.charCodeAt(at));
  const hex = (unit) => unit.toString(16).padStart(4, '0');
  const isAscii = (text) => /^[\0-\x7f]*$/.test(text);

  // cmd takes what stands in quotes as it is, and outside of them what stands behind a caret.
  function forCmd(line) {
    let result = '';
    for (let rest = line; rest !== '';) {
      const [token] = /^"[^"]*"|^./s.exec(rest);
      result += token.length === 1 && '"&|<>^()'.includes(token) ? `^${token}` : token;
      rest = rest.slice(token.length);
    }
    return result;
  }

  function batch({ line }) {
    const codePage = isAscii(line) ? '' : 'chcp 65001 >nul\n';
    return codePage + forCmd(line).replace(/%/g, '%%');
  }

  // Of the escapes of C# and Python, those that both know.
  function escaped(text) {
    const escapes = { '"': '\\"', '\\': '\\\\' };
    return `"${text.replace(/[^ !#-[\]-~]/g, (unit) => escapes[unit] ?? `\\u${hex(unit.charCodeAt(0))}`)}"`;
  }

  function csharp({ program, line }) {
    return `var start = new System.Diagnostics.ProcessStartInfo
{
    FileName = ${escaped(program)},
    Arguments = ${escaped(argumentsOf(program, line))},
    UseShellExecute = false
};
using (var process = System.Diagnostics.Process.Start(start))
{
    process.WaitForExit();
    int code = process.ExitCode;
}`;
  }

  function python({ line }) {
    return `import subprocess

code = subprocess.run(${escaped(line)}).returncode
code -= 2**32 if code >= 2**31 else 0`;
  }

  const argumentsOf = (program, line) => line.slice(`"${program}" `.length);

  // Runs of ASCII in quotes, and everything else by its number: no code page changes it.
  function pieces(text, quoted, numbered) {
    return text.match(/[ -~]{1,200}|[^ -~]/g).map((run) => (/^[ -~]/.test(run) ? quoted(run) : numbered(run.charCodeAt(0))));
  }

  function powershell({ program, line }) {
    const literal = (text) => pieces(text, (run) => `'${run.replace(/'/g, "''")}'`, (unit) => `[char]0x${hex(unit)}`);
    const all = literal(argumentsOf(program, line) || ' '); // Start-Process refuses an empty one
    return `$program = ${literal(program).join(' + ')}
$arguments = ${all.join(' + ')}
$process = Start-Process -FilePath $program -ArgumentList $arguments -Wait -PassThru
$process.ExitCode`;
  }

  // A line of VBA holds 1,023 characters.
  function basicAssignments(line) {
    const rows = [''];
    for (const piece of pieces(line, (run) => `"${run.replace(/"/g, '""')}"`,
      (unit) => (unit < 0x80 ? `Chr(${unit})` : `ChrW(${unit})`))) {
      const row = rows.pop();
      rows.push(...(row === '' ? [piece] : row.length + piece.length < 500 ? [`${row} & ${piece}`] : [row, piece]));
    }
    return rows.map((row, place) => `commandLine = ${place ? 'commandLine & ' : ''}${row}`);
  }

  function vbscript({ line }) {
    return `Dim commandLine, code
${basicAssignments(line).join('\n')}
code = CreateObject("WScript.Shell").Run(commandLine, 1, True)`;
  }

  function vba({ line }) {
    return `Function CallQuillet() As Long
    Dim commandLine As String
    ${basicAssignments(line).join('\n    ')}
    CallQuillet = CreateObject("WScript.Shell").Run(commandLine, 1, True)
End Function`;
  }

  // The forms of a call from Windows: how long a line may be, what else stops it, and what is written. `tried` tells how far
  // the tests of this project go: down to what a host receives, or not at all.
  const FORMS = {
    line: { limit: LINE, stops: [control], write: ({ line }) => line, tried: true },
    prompt: { limit: CMD, stops: [control, variable], write: ({ line }) => `start "" /wait ${forCmd(line)}` },
    batch: { limit: CMD, stops: [control], write: batch, tried: true },
    powershell: { limit: LINE, stops: [], write: powershell },
    csharp: { limit: LINE, stops: [], write: csharp },
    python: { limit: LINE, stops: [], write: python },
    vbscript: { limit: LINE, stops: [variable], write: vbscript, tried: true },
    vba: { limit: LINE, stops: [variable], write: vba },
    shortcut: { limit: FIELD, stops: [control, variable], write: ({ line }) => line },
  };

  const isProgram = (program) => /^[^\0-\x1f"%*?<>|]+$/.test(program);

  // Where the program lies when a page is opened from a package, or nothing.
  function programBeside(address) {
    const found = /^file:\/\/\/([a-z]:\/[^?#]*)examples\/call-builder\/[^/?#]*(?:[?#]|$)/i.exec(address);
    return found ? `${decodeURIComponent(found[1]).replace(/\//g, '\\')}quillet.exe` : undefined;
  }

  // { source, way, line }: what to write, and the command line that the program gets by it. Or { refused } with the reason
  // ('program', 'unreadable', 'control', 'variable', 'long').
  function writeForm(name, program, settings) {
    if (!isProgram(program)) {
      return { refused: 'program' };
    }
    const { limit, stops, write } = FORMS[name];
    let refused = 'unreadable';
    for (const call of linesOf(program, settings)) {
      const source = write({ ...call, program });
      const reason = stops.map((stop) => stop(call)).find(Boolean) ??
        ((limit === LINE ? call.line : source).length > limit ? 'long' : undefined);
      if (!reason) {
        return { ...call, source };
      }
      refused = reason;
    }
    return { refused };
  }

  // --- links

  // { source, line } or { refused }: 'unreadable', or what the link builder says against it: 'scheme', 'long'.
  function writeLink(scheme, program, settings) {
    try {
      quilletLink(scheme, {});
    } catch (error) {
      return { refused: 'scheme' };
    }
    try {
      const source = linkOf(scheme, settings);
      const line = lineOfLink(program, source);
      return isReadAs(settings, line) ? { source, line } : { refused: isProgram(program) ? 'unreadable' : 'program' };
    } catch (error) {
      return { refused: /too long/.test(error.message) ? 'long' : 'unreadable' };
    }
  }

  function htmlOf(link, label) {
    const escapes = { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;' };
    const text = (raw) => raw.replace(/[&<>"]/g, (character) => escapes[character]);
    return `<a href="${text(link)}">${text(label)}</a>`;
  }

  // --- registry files

  function registryFile(lines) {
    return ['Windows Registry Editor Version 5.00', '', ...lines, ''].join('\r\n');
  }

  const keyOf = (scheme, allUsers) =>
    `${allUsers ? 'HKEY_LOCAL_MACHINE\\SOFTWARE' : 'HKEY_CURRENT_USER\\Software'}\\Classes\\${scheme}`;

  function registration(scheme, program, allUsers) {
    const quoted = (text) => `"${text.replace(/["\\]/g, '\\$&')}"`;
    const key = keyOf(scheme, allUsers);
    return registryFile([`[${key}]`, `@=${quoted(`URL:${scheme}`)}`, '"URL Protocol"=""', '',
      `[${key}\\shell\\open\\command]`, `@=${quoted(lineOfLink(program, '%1'))}`]);
  }

  function removal(scheme, allUsers) {
    return registryFile([`[-${keyOf(scheme, allUsers)}]`]);
  }

  // The one encoding in which such a file names every path: UTF-16LE with a byte order mark.
  function utf16Bytes(text) {
    return Uint8Array.from(unitsOf(`\uFEFF${text}`).flatMap((unit) => [unit & 0xff, unit >> 8]));
  }

  // --- for people: what goes wrong when one does not know

  const lacksQuotes = (text) => text.startsWith('"') || text.includes('"') && text.includes(' ');

  // What in a text stands against a way, by name. Only to explain: what counts is what the program reads.
  const OBSTACLES = {
    switches: [
      ['quotes', lacksQuotes],
      ['help', (text) => text.includes(' -?')],
      ['flag', (text, settings) => FLAGS.some((name) => !settings[name] && text.toLowerCase().includes(` -${name}`))],
      ['control', (text) => control({ line: text })],
    ],
    link: [
      ['quotes', lacksQuotes],
      ['percent', (text) => text.includes('%')],
      ['bytes', (text) => /[\u0800-\uffff]/.test(text)],
      ['unit', (text) => /[\0\x1f]/.test(text)],
    ],
  };

  function obstacles(way, text, settings) {
    return OBSTACLES[way].filter(([, stands]) => stands(text, settings)).map(([name]) => name);
  }

  // What the program makes of a setting that is put between quotes as it is: on the command line, or escaped as a whole in a
  // link. Nothing when a link cannot say it at all.
  function plainly(way, name, text) {
    try {
      const argument = way === 'link' ? `-url="x:?${name}=${encodeURIComponent(`"${text}"`)}"` : `-${name}="${text}"`;
      return readCommandLine(`quillet.exe ${argument}`);
    } catch (error) {
      return undefined; // half a surrogate pair
    }
  }

  Object.assign(exported, { FORMS, NONE, writeForm, writeLink, htmlOf, registration, removal, utf16Bytes, isProgram, programBeside,
    obstacles, plainly });
})(...(typeof module === 'object' ? [module.exports, require('../url-scheme/quillet-link.js'), require('./reading.js')]
  : [window, window, window]));
