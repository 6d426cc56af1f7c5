// What the program reads from a command line: its rules once more, oddities included, for web pages and for node. With it, a
// call is judged before it is made; tests/call-builder/ holds it against the program.
//
//   readCommandLine('quillet.exe -kla=HostFrame -copydata="a b"').copydata === 'a b'
'use strict';

(function (exported) {
  const FLAGS = ['nodlg', 'activatewindow', 'seaglob'];
  const NUMBER_BITS = { msg: 32, lparam: 64, wparam: 64 };
  const TEXTS = ['kla', 'nam', 'copydata', 'copydataencoding'];

  // What the decoder restores beside control characters; kept as the program has it.
  const RESTORED = ' "<>#{}|\\^~[]`' + "$&+,./:;=?@-_!*()'";

  // Names of switches are ASCII; what else a letter becomes in lower case makes none of them.
  const lower = (text) => text.replace(/[A-Z]/g, (letter) => letter.toLowerCase());

  // A quoted value ends at the next quote, another one at the first blank; each also at the end.
  function trimmed(text) {
    const quoted = text.startsWith('"');
    const value = text.slice(quoted ? 1 : 0);
    const end = value.indexOf(quoted ? '"' : ' ');
    return end < 0 ? value : value.slice(0, end);
  }

  // By the rules of "%i"; of a number beyond its field the low bits count. Without a number, nothing.
  function number(text, bits) {
    const found = /^[\s\x85]*([+-]?)(?:0x([\da-f]+)|(0(?!x)[0-7]*)|([1-9]\d*))/i.exec(text);
    if (!found) {
      return undefined;
    }
    const [, sign, hexadecimal, octal, decimal] = found;
    const value = BigInt(hexadecimal ? `0x${hexadecimal}` : octal ? `0o0${octal}` : decimal);
    return BigInt.asIntN(bits, sign === '-' ? -value : value);
  }

  // Reading the end gives a zero; reading beyond it ends the program.
  class ReadBeyondEnd extends Error {}

  function unitAt(text, position) {
    if (position > text.length) {
      throw new ReadBeyondEnd();
    }
    return text.charAt(position) || '\0';
  }

  // The byte of two hexadecimal digits, of which both are read before one is tested.
  function byteAt(text, position) {
    const digits = unitAt(text, position) + unitAt(text, position + 1);
    return /^[\da-f]{2}$/i.test(digits) ? parseInt(digits, 16) : undefined;
  }

  // The first character of two bytes that are meant to be one in UTF-8.
  function pairOfBytes(first, second) {
    if (first < 0x80) {
      return String.fromCharCode(first);
    }
    const valid = first >= 0xc2 && first <= 0xdf && second >= 0x80 && second <= 0xbf;
    return valid ? String.fromCharCode((first & 0x1f) << 6 | second & 0x3f) : '\uFFFD';
  }

  // What an escape becomes, and how many units it takes.
  function restored(text, percent) {
    const first = byteAt(text, percent + 1);
    if (first === undefined) {
      return ['%', 1];
    }
    if (first < 0x1f || first === 0x7f || RESTORED.includes(String.fromCharCode(first))) {
      return [String.fromCharCode(first), 3];
    }
    const second = unitAt(text, percent + 3) === '%' ? byteAt(text, percent + 4) : undefined;
    return second === undefined ? ['%', 1] : [pairOfBytes(first, second), 6];
  }

  function decoded(text) {
    let result = '';
    let done = 0;
    for (let percent = text.indexOf('%'); percent >= 0; percent = text.indexOf('%', done)) {
      const [unit, length] = restored(text, percent);
      result += text.slice(done, percent) + unit;
      done = percent + length;
    }
    return result + text.slice(done);
  }

  // A quote after "=" opens a value inside the URL, every other one closes the URL.
  function cutUrl(value) {
    if (!value.startsWith('"')) {
      return trimmed(value);
    }
    let start = 1;
    for (let quote = value.indexOf('"', start); quote >= 0; quote = value.indexOf('"', start)) {
      if (quote <= 2 || value[quote - 1] !== '=') {
        return value.slice(1, quote);
      }
      const closing = value.indexOf('"', quote + 1);
      start = (closing < 0 ? quote : closing) + 1;
    }
    return value.slice(1);
  }

  // The first of several equal keys counts. A letter is what the platform calls one: a key beyond ASCII is none that is looked
  // up, but its value is decoded, and can end the program.
  function parametersOf(url) {
    const parameters = new Map();
    const query = /[?]([^ #]+)/.exec(url);
    for (const item of query ? query[1].split(/[&;]+/) : []) {
      const pair = /^([\p{L}\p{N}_]+)(?:=(.*))?$/u.exec(item);
      if (pair) {
        const value = decoded(pair[2] ?? '');
        parameters.set(pair[1], parameters.get(pair[1]) ?? value);
      }
    }
    return parameters;
  }

  // `flag` tells whether a flag is there, `value` gives what a value is to be cut from.
  function readSettings(request, flag, value) {
    for (const name of FLAGS) {
      request[name] ||= flag(name);
    }
    for (const [name, bits] of Object.entries(NUMBER_BITS)) {
      request[name] = number(value(name) ?? '', bits) ?? request[name];
    }
    for (const name of TEXTS) {
      const text = value(name);
      request[name] = text === undefined ? request[name] : trimmed(text);
    }
  }

  // The whole line, the program's path included, as the process has it. Gives the settings by their names (texts, BigInts,
  // flags), or { help: true } when only the help is shown, or { abnormalEnd: true } when the run ends without a result.
  function readCommandLine(commandLine) {
    const line = commandLine.split('\0', 1)[0]; // no process sees more
    const searched = lower(line);
    if (searched.includes(' -?')) {
      return { help: true };
    }
    const after = (text) => (searched.includes(text) ? line.slice(searched.indexOf(text) + text.length) : undefined);

    const request = { kla: '', nam: '', copydata: '', copydataencoding: '', msg: 0n, wparam: 0n, lparam: 0n };
    readSettings(request, (name) => searched.includes(` -${name}`), (name) => after(` -${name}=`));
    try {
      const parameters = parametersOf(cutUrl(after(' -url=') ?? ''));
      readSettings(request, (name) => parameters.has(name), (name) => parameters.get(name));
    } catch (error) {
      if (error instanceof ReadBeyondEnd) {
        return { abnormalEnd: true };
      }
      throw error;
    }
    return request;
  }

  exported.readCommandLine = readCommandLine;
})(typeof module === 'object' ? module.exports : window);
