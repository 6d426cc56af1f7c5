// Builds links that Quillet understands, for web pages and for node; needs nothing else.
//
//   quilletLink('orvane-demo', { kla: 'QuilletBeispielHost', copydata: 'Grüße aus Köln' })
//   quilletLink('orvane-demo', { kla: 'QuilletBeispielHost', copydata: text }, { base64url: true })
//
// The settings bear the names of the link's keys: texts (kla, nam, copydata, copydataencoding), whole numbers (msg, wparam,
// lparam; a BigInt beyond 2^53), and flags (nodlg, activatewindow, seaglob: true or left out).
//
// Items are joined by ";", which the program takes as it takes "&": in HTML outside of attributes "&copydata" becomes "©data",
// and templates, wikis and what finds links in plain text bring it there.
//
// What a link cannot carry (characters of three bytes and more such as "€", a percent sign, blanks together with quotes) is
// refused with an error, never sent garbled. With base64url, copydata travels as base64url of its UTF-8 bytes, and any
// text arrives; the host has to decode it.
'use strict';

(function (exported) {
  // Longer ones are not passed on everywhere: browsers and Windows stop a little above.
  const LONGEST_LINK = 2000;

  const NUMBER_BITS = { msg: 32, wparam: 64, lparam: 64 };
  const FLAGS = ['nodlg', 'activatewindow', 'seaglob'];
  const TEXTS = ['kla', 'nam', 'copydata', 'copydataencoding'];

  // Names that belong to everybody: a link under one of them would not reach the program, and a registration would take it
  // from all others. Those of the URL standard that browsers handle themselves, those that the HTML standard lets pages
  // handle, further ones from IANA's register and of old that programs commonly handle, and those of browsers and of Windows.
  const GENERAL_SCHEMES = new Set([
    'ftp', 'file', 'http', 'https', 'ws', 'wss', 'about', 'blob', 'data', 'javascript', 'filesystem', 'view-source',
    'bitcoin', 'ftps', 'geo', 'im', 'irc', 'ircs', 'magnet', 'mailto', 'matrix', 'mms', 'news', 'nntp', 'openpgp4fpr',
    'sftp', 'sip', 'sms', 'smsto', 'ssh', 'tel', 'urn', 'webcal', 'wtai', 'xmpp',
    'callto', 'cid', 'content', 'dav', 'dns', 'fax', 'feed', 'git', 'gopher', 'imap', 'info', 'ipp', 'jar', 'ldap', 'ldaps',
    'mid', 'nfs', 'pop', 'rtsp', 'sips', 'smb', 'snews', 'stun', 'svn', 'tag', 'telnet', 'turn', 'vbscript', 'vnc',
    'chrome', 'edge', 'firefox', 'intent', 'microsoft-edge', 'opera', 'res', 'search', 'search-ms', 'shell', 'windowsdefender',
  ]);
  const GENERAL_BEGINNINGS = /^(ms-|microsoft\.|moz-|chrome-)/;

  function hexEscape(byte) {
    return '%' + byte.toString(16).toUpperCase().padStart(2, '0');
  }

  // What the program restores is escaped, letters and digits are not: their escapes would stay.
  function escaped(key, character) {
    const code = character.codePointAt(0);
    if (/[A-Za-z0-9._-]/.test(character)) {
      return character;
    }
    if (code >= 0x800 || character === '%' || code === 0 || code === 0x1f) {
      throw new RangeError(`${key}: ${JSON.stringify(character)} cannot travel in a link; use base64url`);
    }
    return code < 0x80 ? hexEscape(code) : hexEscape(0xc0 | code >> 6) + hexEscape(0x80 | code & 0x3f);
  }

  // A value with blanks stands in quotes, and has none of its own.
  function quoted(key, text) {
    if (!text.includes(' ') && !text.startsWith('"')) {
      return text;
    }
    if (text.includes('"')) {
      throw new RangeError(`${key}: quotes together with blanks, or at the start, cannot travel in a link; use base64url`);
    }
    return `"${text}"`;
  }

  function textValue(key, value) {
    if (typeof value !== 'string' || value === '') {
      throw new TypeError(`${key}: a text that is not empty is expected`);
    }
    if (key === 'copydataencoding' && !/^(ansi|utf-?8|utf-?16|unicode)$/i.test(value)) {
      throw new RangeError(`${key}: ANSI, UTF-8 or UTF-16 is expected`);
    }
    return Array.from(quoted(key, value), (character) => escaped(key, character)).join('');
  }

  function numberValue(key, value) {
    const bits = NUMBER_BITS[key];
    if (typeof value !== 'bigint' && !Number.isSafeInteger(value)) {
      throw new TypeError(`${key}: a whole number is expected`);
    }
    if (BigInt.asIntN(bits, BigInt(value)) !== BigInt(value)) {
      throw new RangeError(`${key}: ${value} does not fit into ${bits} bits`);
    }
    return String(value);
  }

  // Any text as letters, digits, "-" and "_".
  function quilletBase64Url(text) {
    if (/[\uD800-\uDFFF]/u.test(text)) {
      throw new RangeError('half a surrogate pair is no text');
    }
    const bytes = new TextEncoder().encode(text);
    const base64 = btoa(Array.from(bytes, (byte) => String.fromCharCode(byte)).join(''));
    return base64.replace(/\+/g, '-').replace(/\//g, '_').replace(/=+$/, '');
  }

  function item(key, value, options) {
    if (FLAGS.includes(key)) {
      if (typeof value !== 'boolean') {
        throw new TypeError(`${key}: true or false is expected`);
      }
      return value ? [key] : []; // a flag's mere presence sets it, whatever its value
    }
    if (Object.hasOwn(NUMBER_BITS, key)) {
      return [`${key}=${numberValue(key, value)}`];
    }
    if (!TEXTS.includes(key)) {
      throw new TypeError(`${key}: no such setting`);
    }
    const encoded = key === 'copydata' && options.base64url && typeof value === 'string' ? quilletBase64Url(value) : value;
    return [`${key}=${textValue(key, encoded)}`];
  }

  function quilletLink(scheme, settings, options = {}) {
    if (!/^[a-z][a-z0-9+.-]*$/.test(scheme)) {
      throw new TypeError(`${JSON.stringify(scheme)} is no name of a scheme`);
    }
    if (GENERAL_SCHEMES.has(scheme) || GENERAL_BEGINNINGS.test(scheme)) {
      throw new RangeError(`${scheme}: belongs to everybody; choose a name of your own`);
    }
    const items = Object.entries(settings).flatMap(([key, value]) => item(key, value, options));
    const link = `${scheme}:?${items.join(';')}`;
    if (link.length > LONGEST_LINK) {
      throw new RangeError(`a link of ${link.length} characters is too long: ${LONGEST_LINK} are safe`);
    }
    return link;
  }

  exported.quilletLink = quilletLink;
  exported.quilletBase64Url = quilletBase64Url;
})(typeof module === 'object' ? module.exports : window);
