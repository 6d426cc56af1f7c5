// Whether the program's pattern search takes a window's text or class, for web pages and for node: the matcher's rules once
// more, oddities included. tests/call-builder/ holds it against the program.
'use strict';

(function (exported) {
  const LONGEST_TEXT = 4095; // the search sees no more of a text

  // Where the pattern goes on after the set whose members begin at `member`, or nothing when no member is `unit`. A set that
  // has matched reaches to the next "]", or to the pattern's end.
  function afterSet(pattern, member, unit) {
    while (member < pattern.length && pattern[member] !== ']') {
      const isRange = pattern[member + 1] === '-';
      const bound = isRange ? pattern[member + 2] : pattern[member];
      const [low, high] = [pattern[member], bound].sort();
      if (pattern[member] === unit || bound !== undefined && low <= unit && unit <= high) {
        const end = pattern.indexOf(']', member);
        return end < 0 ? pattern.length : end + 1;
      }
      if (bound === undefined) {
        return undefined;
      }
      member += isRange ? 3 : 1; // the bound may be "]", which does not close the set then
    }
    return undefined;
  }

  // Where the pattern goes on after the element at `place`, or nothing when that does not take `unit`.
  function afterElement(pattern, place, unit) {
    switch (pattern[place]) {
      case '?': return place + 1;
      case '[': return afterSet(pattern, place + 1, unit);
      case '\\': return pattern[place + 1] === unit ? place + 2 : undefined;
      default: return pattern[place] === unit ? place + 1 : undefined;
    }
  }

  // All places of the pattern that the text so far can lead to, with what stars there let pass.
  function withStars(pattern, places) {
    const all = new Set(places);
    for (const place of all) {
      if (pattern[place] === '*') {
        all.add(place + 1);
      }
    }
    return all;
  }

  function globMatch(text, pattern) {
    let places = withStars(pattern, [0]);
    for (const unit of text.slice(0, LONGEST_TEXT).split('')) {
      const next = [...places].map((place) => (pattern[place] === '*' ? place : afterElement(pattern, place, unit)));
      places = withStars(pattern, next.filter((place) => place !== undefined));
    }
    return places.has(pattern.length);
  }

  exported.globMatch = globMatch;
})(typeof module === 'object' ? module.exports : window);
