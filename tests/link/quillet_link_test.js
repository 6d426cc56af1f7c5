// The rules of the link builder, by themselves: node --test. That the program restores what the builder escapes is shown
// by LinkTest.cpp, with links from make_links.js.
'use strict';

const assert = require('node:assert');
const { test } = require('node:test');
const { quilletLink, quilletBase64Url } = require('../../examples/url-scheme/quillet-link.js');

const copydata = (text, options) => quilletLink('demo', { copydata: text }, options).replace('demo:?copydata=', '');

test('texts are escaped as far as the program restores them', () => {
  const rows = [
    ['Vorgang-4711_a.b', 'Vorgang-4711_a.b'],
    ['Vorgang 4711', '%22Vorgang%204711%22'],
    ['?', '%3F'],
    ['a&b;c#d+e', 'a%26b%3Bc%23d%2Be'],
    ['a"b', 'a%22b'], // a quote that neither begins the text nor stands beside blanks
    ['Grüße', 'Gr%C3%BC%C3%9Fe'],
    ['\u0080\u07FF', '%C2%80%DF%BF'],
    ['a\r\n\tb\u007F', 'a%0D%0A%09b%7F'],
    ['\u0001\u001E', '%01%1E'],
    [' ', '%22%20%22'],
  ];
  for (const [text, value] of rows) {
    assert.strictEqual(copydata(text), value);
  }
});

test('texts that cannot travel are refused', () => {
  for (const text of ['5 €', '–', '100%', '%41', '😀', '\u0800', 'a\0', '\u001F', 'a "b"', '"a', '\uD800']) {
    assert.throws(() => copydata(text), /use base64url/, JSON.stringify(text));
  }
  for (const value of ['', null, 5, undefined]) {
    assert.throws(() => quilletLink('demo', { copydata: value }), /not empty/);
  }
});

test('base64url carries any text but half a character', () => {
  assert.strictEqual(copydata('100% für "5 €" 😀', { base64url: true }), 'MTAwJSBmw7xyICI1IOKCrCIg8J-YgA');
  assert.strictEqual(quilletBase64Url('???>>>'), 'Pz8_Pj4-');
  assert.strictEqual(quilletBase64Url(''), '');
  assert.throws(() => copydata('\uDC00', { base64url: true }), /surrogate/);
  assert.throws(() => copydata('', { base64url: true }), /not empty/); // an empty text counts as not given
  assert.throws(() => copydata(5, { base64url: true }), /not empty/);
  // Class and window text are no matter of the host.
  assert.throws(() => quilletLink('demo', { nam: '5 €' }, { base64url: true }), /use base64url/);
});

test('links survive in HTML as they are', () => {
  const link = quilletLink('orvane-demo', { kla: 'A & B', copydata: 'a"&copy;', msg: 1, nodlg: true });
  assert.doesNotMatch(link, /[&<>"' ]/);
});

test('numbers fit into their fields', () => {
  assert.strictEqual(quilletLink('demo', { msg: 5, wparam: -1, lparam: 2n ** 63n - 1n }),
    'demo:?msg=5;wparam=-1;lparam=9223372036854775807');
  for (const settings of [{ msg: 2 ** 31 }, { msg: -(2 ** 31) - 1 }, { wparam: 2n ** 63n }]) {
    assert.throws(() => quilletLink('demo', settings), /does not fit/);
  }
  for (const value of ['5', 1.5, NaN, 2 ** 53, null]) {
    assert.throws(() => quilletLink('demo', { wparam: value }), /whole number/);
  }
});

test('flags are there or not', () => {
  assert.strictEqual(quilletLink('demo', { nodlg: true, seaglob: false, activatewindow: true }), 'demo:?nodlg;activatewindow');
  assert.throws(() => quilletLink('demo', { nodlg: 0 }), /true or false/);
});

test('what nobody would read is refused', () => {
  assert.throws(() => quilletLink('demo', { KLA: 'a' }), /no such setting/);
  assert.throws(() => quilletLink('demo', { toString: 'a' }), /no such setting/);
  assert.throws(() => quilletLink('demo', { copydataencoding: 'UTF_8' }), /ANSI, UTF-8 or UTF-16/);
  for (const scheme of ['', 'demo:', 'Demo', '1a', 'a b', 'a"']) {
    assert.throws(() => quilletLink(scheme, {}), /no name of a scheme/);
  }
  for (const scheme of ['http', 'https', 'file', 'mailto', 'javascript', 'data', 'ftp', 'tel', 'ms-settings']) {
    assert.throws(() => quilletLink(scheme, {}), /belongs to everybody/, scheme);
  }
  assert.throws(() => copydata('a'.repeat(2000)), /too long/);
});
