// The page: reads its fields, has calls.js write the call in every form, and shows what it does and what stands against it.
'use strict';

(function () {
  const field = (id) => document.getElementById(id);
  let text = texts.de;

  // --- building what is shown

  function element(name, attributes, ...children) {
    const made = Object.assign(document.createElement(name), attributes);
    made.append(...children);
    return made;
  }

  // A text of texts.js: `code`, **strong**. What comes from a field is escaped before: see shown().
  function rich(source) {
    return source.split(/(`[^`]*`|\*\*[^*]*\*\*)/).map((part) => {
      const kind = { '`': 'code', '*': 'strong' }[part[0]];
      const inside = part.replace(/^(`|\*\*)(.*)\1$/s, '$2').replaceAll('\uE000', '`');
      return kind && inside !== part ? element(kind, {}, inside) : inside;
    });
  }

  // Text from a field inside of a text of texts.js, with what cannot be seen made visible.
  function shown(raw) {
    const visible = raw.replace(/[\0-\x1f]/g, (unit) => String.fromCharCode(0x2400 + unit.charCodeAt(0))).replace(/`/g, '\uE000');
    return visible.length > 200 ? `${visible.slice(0, 200)}…` : visible;
  }

  const item = (kind, source, ...more) => element('li', { className: kind }, ...rich(source), ...more);

  async function copy(source, button) {
    try {
      await navigator.clipboard.writeText(source);
    } catch (error) { // a page from a folder may not be allowed to
      const area = element('textarea', { value: source });
      document.body.append(area);
      area.select();
      document.execCommand('copy');
      area.remove();
      button.focus();
    }
    button.textContent = text.copied;
    setTimeout(() => { button.textContent = text.copy; }, 2000);
  }

  function save(name, content) {
    const address = URL.createObjectURL(new Blob([utf16Bytes(content)], { type: 'application/octet-stream' }));
    element('a', { href: address, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(address), 10000);
  }

  // One form of the call: its name, what to press, the source or why there is none, notes.
  function card(id, name, result, notes, buttons, tried) {
    const head = element('div', {}, element('h3', { id: `${id}-heading` }, name));
    if (!tried) {
      head.append(element('span', { className: 'untried' }, text.untried));
    }
    const made = element('article', { id }, head);
    made.setAttribute('aria-labelledby', `${id}-heading`);
    if (result.refused) {
      made.append(element('p', { className: 'refused note' }, ...rich(text.refused[result.refused])));
      return made;
    }
    for (const [label, press] of buttons) {
      const button = element('button', { type: 'button', textContent: label });
      button.setAttribute('aria-describedby', `${id}-heading`);
      button.addEventListener('click', () => press(button));
      head.append(button);
    }
    made.append(element('pre', { tabIndex: 0 }, element('code', {}, result.source)),
      ...notes.filter(Boolean).map((note) => element('p', { className: 'note' }, ...rich(note))));
    return made;
  }

  // --- reading the fields

  // A whole number, hexadecimal or decimal, that fits into its field with or without a sign; otherwise nothing.
  function numberOf(raw, bits) {
    const parts = /^\s*([+-]?)(0x[\da-f]+|\d+)\s*$/i.exec(raw);
    if (!parts) {
      return undefined;
    }
    const value = parts[1] === '-' ? -BigInt(parts[2]) : BigInt(parts[2]);
    const signed = BigInt.asIntN(bits, value);
    return value === signed || value === BigInt.asUintN(bits, value) ? signed : undefined;
  }

  // What Explorer copies as a path stands in quotes.
  const programPath = () => field('program').value.trim().replace(/^"(.*)"$/, '$1');

  // What the fields say, and which of the numbers are none.
  function readFields() {
    const sendsText = field('sends-text').checked;
    const settings = { ...NONE, kla: field('kla').value, nam: field('nam').value, seaglob: field('seaglob').checked,
      activatewindow: field('activatewindow').checked, nodlg: !field('dialog').checked };
    const unreadable = [];
    const ofNotification = [['msg', 'msg', 32], ['wparam', 'wparam', 64], ['lparam', 'lparam', 64]];
    for (const [name, id, bits] of sendsText ? [['wparam', 'data', 64]] : ofNotification) {
      const value = numberOf(field(id).value, bits);
      field(id).setAttribute('aria-invalid', value === undefined);
      settings[name] = value ?? 0n;
      unreadable.push(...(value === undefined ? [id === 'data' ? 'dwData' : name] : []));
    }
    const entered = sendsText ? field('copydata').value.replace(/\n/g, field('breaks').value) : '';
    let base64url = sendsText && field('base64url').checked && entered !== '';
    try {
      settings.copydata = base64url ? quilletBase64Url(entered) : entered;
    } catch (error) { // half a surrogate pair
      base64url = false;
      settings.copydata = entered;
    }
    settings.copydataencoding = sendsText && settings.copydata ? field('copydataencoding').value : '';
    return { settings, entered, base64url, sendsText, unreadable };
  }

  // --- what will happen

  function meaningOf({ settings, base64url }) {
    const { meaning } = text;
    const { kla, nam, seaglob, copydata, copydataencoding, msg, wparam, lparam, nodlg, activatewindow } = settings;
    if (!kla && !nam) {
      return nodlg ? text.warnings.nothingNoDialog : text.warnings.nothing;
    }
    const names = [...(kla ? [meaning.kla(shown(kla))] : []), ...(nam ? [meaning.nam(shown(nam))] : [])];
    const sent = copydata ? meaning.text(shown(copydata), copydataencoding || 'UTF-16', wparam)
      : meaning.notification(msg, wparam, lparam);
    const end = !nodlg ? meaning.waits : copydata ? meaning.textOnly : meaning.notificationOnly;
    return [meaning.find(names.join(meaning.and), !seaglob), ...(activatewindow ? [meaning.front] : []),
      base64url ? meaning.base64url(shown(copydata)) : sent, end,
      ...(activatewindow && nodlg ? [meaning.minimised] : [])].join(' ');
  }

  // Characters that code page 1252 does not have.
  const WESTERN = new Set(new TextDecoder('windows-1252').decode(Uint8Array.from({ length: 256 }, (_, byte) => byte)));
  const notWestern = (raw) => [...new Set(raw)].filter((character) => !WESTERN.has(character)).join(' ');

  function plainWarnings({ settings, entered, base64url, sendsText, unreadable }) {
    const { warnings } = text;
    const { kla, nam, seaglob, msg, copydata, copydataencoding } = settings;
    const all = kla + nam + entered;
    const lacking = copydataencoding === 'ANSI' && !base64url ? notWestern(copydata) : '';
    return [
      ...unreadable.map((name) => ['warning', warnings.number(name)]),
      ...(isProgram(programPath()) && !/^([a-z]:|\\)\\.*\.exe$/i.test(programPath()) ? [['warning', warnings.program]] : []),
      ...(sendsText && entered === '' ? [['warning', warnings.empty]] : []),
      ...(!sendsText && msg < 0n ? [['warning', warnings.system]] : []),
      ...(!seaglob && /[*?[]/.test(kla + nam) ? [['information', warnings.starless]] : []),
      ...(lacking ? [['warning', warnings.ansi(shown(lacking))]] : []),
      ...(/[\ud800-\udfff]/u.test(all) ? [['warning', warnings.surrogate]] : []),
      ...(all.includes('\0') ? [['warning', warnings.nul]] : []),
    ];
  }

  // What stands against a text, and what would become of it; nothing when it goes both ways.
  function obstacleWarnings(name, settings) {
    return ['switches', 'link'].flatMap((way) => {
      const found = obstacles(way, settings[name], settings);
      if (found.length === 0) {
        return [];
      }
      const request = plainly(way, name, settings[name]);
      const flags = ['nodlg', 'activatewindow', 'seaglob'].filter((flag) => request?.[flag]).map((flag) => `\`-${flag}\``);
      const { naive } = text;
      const becomes = !request || found.every((reason) => reason === 'control') ? ''
        : request.help ? naive.help
          : request.abnormalEnd ? naive.abnormalEnd
            : request[name] === settings[name] && flags.length === 0 ? ''
              : naive.text(shown(request[name]), flags.length ? naive.flags(flags.join(', ')) : '');
      const reasons = found.map((reason) => text.obstacles[reason]);
      return [`${text.obstacle(text.names[name], text.ways[way], reasons)} ${becomes}`.trim()];
    });
  }

  function showMeaning(fields) {
    const { settings } = fields;
    const [program, scheme] = [programPath(), field('scheme').value];
    field('meaning').replaceChildren(...rich(meaningOf(fields)));
    const list = plainWarnings(fields).map(([kind, source]) => item(kind, source));
    for (const name of ['kla', 'nam', 'copydata']) {
      const found = obstacleWarnings(name, settings);
      list.push(...found.map((source) => item('warning', source)));
      const goes = !writeForm('line', program, settings).refused && !writeLink(scheme, program, settings).refused;
      if (found.length > 0 && name === 'copydata' && !goes) {
        const button = element('button', { type: 'button', textContent: text.advice.useBase64url });
        button.addEventListener('click', () => { field('base64url').checked = true; show(); field('base64url').focus(); });
        list.push(item('information', `${text.advice.base64url} `, button));
      } else if (found.length > 0 && !goes) {
        list.push(item('information', text.advice.pattern));
      }
    }
    if (list.length === 0 && (settings.kla || settings.nam)) {
      list.push(item('arrives', fields.base64url ? text.meaning.arrivesEncoded : text.meaning.arrives));
    }
    const shownAlready = list.map((entry) => entry.outerHTML).join('') === field('warnings').innerHTML;
    if (!shownAlready) { // a reader of the screen would say it again
      field('warnings').replaceChildren(...list);
    }
  }

  // --- the call and the registration

  function showCalls({ settings }) {
    const program = programPath();
    const scheme = field('scheme').value;
    field('program').setAttribute('aria-invalid', !isProgram(program));
    const copying = (result) => [[text.copy, (button) => copy(result.source, button)]];
    const callCard = (id, result, tried, ...notes) =>
      card(`call-${id}`, text.forms[id][0], result, [...notes, text.forms[id][1]], copying(result), tried);

    const link = writeLink(scheme, program, settings);
    field('scheme').setAttribute('aria-invalid', link.refused === 'scheme');
    const html = link.refused ? link : { source: htmlOf(link.source, 'Quillet') };
    field('calls').replaceChildren(callCard('link', link, true), callCard('html', html, true),
      ...Object.entries(FORMS).map(([id, { tried }]) => {
        const result = writeForm(id, program, settings);
        const codePage = id === 'batch' && result.source?.startsWith('chcp'); // which Wine's cmd does not obey
        return callCard(id, result, tried && !codePage, result.way === 'link' && text.byLink, codePage && text.codePage);
      }));

    const everybody = field('all-users').checked;
    const suffix = everybody ? '-all-users' : '';
    const refused = link.refused === 'scheme' ? 'scheme' : isProgram(program) ? undefined : 'program';
    const file = (id, name, content) => {
      const result = { source: content.replace(/\r\n/g, '\n'), refused };
      const saving = [text.save, () => save(`${id}${suffix}.reg`, content)];
      return card(`registry-${id}`, name, result, [text.merge], [...copying(result), saving], true);
    };
    field('registry').replaceChildren(file('register', text.register, registration(scheme, program, everybody)),
      file('unregister', text.remove, removal(scheme, everybody)));
  }

  // --- trying a pattern

  function matchNotes(pattern, title) {
    const { matchNotes: notes } = text;
    const sets = pattern.replace(/\\./gs, '').match(/\[[^\]]*\]?/g) ?? [];
    return [
      title.length > 4095 && notes.long,
      pattern === '' && notes.empty,
      /(^|[^\\])(\\\\)*\\$/.test(pattern) && sets.every((set) => set.endsWith(']')) && notes.backslash,
      sets.some((set) => /^\[[!^]/.test(set)) && notes.negation,
      sets.some((set) => !set.endsWith(']')) && notes.unclosed,
      sets.includes('[]') && notes.bracket,
      sets.some((set) => /.-\]$/.test(set.slice(1))) && notes.range,
      !globMatch(title, pattern) && globMatch(title.toLowerCase(), pattern.toLowerCase()) && notes.letters,
    ].filter(Boolean);
  }

  function showMatch() {
    const [pattern, title] = [field('pattern').value, field('title').value];
    const matches = pattern === '' || globMatch(title, pattern);
    field('match').replaceChildren(text.match[matches]);
    field('match').className = matches ? 'yes' : 'no';
    field('match-notes').replaceChildren(...matchNotes(pattern, title).map((note) => item('information', note)));
  }

  // --- all of it

  function show() {
    field('of-text').hidden = !field('sends-text').checked;
    field('of-notification').hidden = field('sends-text').checked;
    field('of-lines').hidden = !field('copydata').value.includes('\n');
    const fields = readFields();
    showMeaning(fields);
    showCalls(fields);
    showMatch();
  }

  function speak(language) {
    text = texts[language];
    document.documentElement.lang = language;
    document.title = text.title;
    for (const name of ['de', 'en']) {
      field(name).setAttribute('aria-pressed', name === language);
    }
    show();
  }

  for (const name of ['de', 'en']) {
    field(name).addEventListener('click', () => speak(name));
  }
  document.addEventListener('input', show);
  field('settings').addEventListener('submit', (event) => event.preventDefault());
  field('program').value = programBeside(location.href) ?? field('program').value;
  speak(location.hash === '#en' ? 'en' : 'de');
})();
