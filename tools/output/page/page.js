// The published device list. The page carries the catalogue as one JSON
// document (written by tools/output/published_page.cpp); this script reads
// it once, then searches, filters and sorts the devices and shows only the
// rows in view, so that a catalogue of 100,000 devices and more stays
// quick. The search, filters and sort live in the address (#q=...), so a
// search can be linked.
'use strict';
(() => {
  const $ = (id) => document.getElementById(id);
  const page = (window.devdefPage = {});  // timings, for the tests and the benchmark
  const OVERSCAN = 8;         // rows rendered above and below the view
  const PRINT_LIMIT = 2000;   // rows a printout holds at most

  // --- The data -----------------------------------------------------------
  // The writer's columns of numbers are strings of base-64 digits, five
  // bits to a digit, least significant first; a digit of 32 or more says
  // that another follows. Signed columns are zigzagged (0, -1, 1, -2 as 0,
  // 1, 2, 3).
  const DIGITS = 'ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/';
  const digitOf = new Uint8Array(128);
  for (let i = 0; i < 64; i++) digitOf[DIGITS.charCodeAt(i)] = i;
  function numbers(text, signed) {
    const values = new Float64Array(text.length);  // ids may take 32 bits: no bit operations on them
    let n = 0, value = 0, scale = 1;
    for (let i = 0; i < text.length; i++) {
      const digit = digitOf[text.charCodeAt(i)];
      value += (digit & 31) * scale;
      if (digit < 32) {
        values[n++] = !signed ? value : value % 2 ? -(value + 1) / 2 : value / 2;
        value = 0;
        scale = 1;
      } else {
        scale *= 32;
      }
    }
    return values.subarray(0, n);
  }

  // Indexes into shared tables, and lines and ids as the difference from
  // the one before: here they become absolute numbers, and each
  // definition's packages and adapters a slice of one array.
  function readData(raw) {
    const names = raw.device.name;
    const n = names.length;
    const groups = numbers(raw.groups);
    const deviceGroup = numbers(raw.device.group, true), deviceLine = numbers(raw.device.line, true);
    const deviceDefinitions = numbers(raw.device.definitions);
    const defs = raw.definition;
    const idStep = numbers(defs.id, true), generations = numbers(defs.generation);
    const m = idStep.length;
    const group = new Uint32Array(n), line = new Uint32Array(n), first = new Uint32Array(n + 1);
    const id = new Float64Array(m), generation = new Uint32Array(m), hidden = new Uint8Array(m);
    let g = 0, l = 0, d = 0, lastId = 0;
    for (let i = 0; i < n; i++) {
      group[i] = g += deviceGroup[i];
      line[i] = l += deviceLine[i];
      first[i] = d;
      for (const end = d + deviceDefinitions[i]; d < end; d++) {
        id[d] = lastId += idStep[d];
        generation[d] = generations[d] >> 1;
        hidden[d] = generations[d] & 1;
      }
    }
    first[n] = d;
    return {
      raw, n, names, line, first, id, generation, hidden,
      kind: (i) => groups[2 * group[i]],
      maker: (i) => groups[2 * group[i] + 1],
      module: numbers(defs.module),
      text: numbers(defs.text),
      packages: slices(numbers(defs.packages), m),
      adapters: slices(numbers(defs.adapters), m),
    };
  }

  // [count, numbers..., count, numbers...] as start offsets and values.
  function slices(flat, count) {
    const start = new Uint32Array(count + 1), values = new Uint32Array(flat.length - count);
    let v = 0;
    for (let d = 0, i = 0; d < count; d++) {
      start[d] = v;
      for (let end = i + 1 + flat[i++]; i < end; i++) values[v++] = flat[i];
    }
    start[count] = v;
    return { start, values };
  }

  const data = readData(JSON.parse($('data').textContent));
  const raw = data.raw;

  // --- Matching names -----------------------------------------------------
  // As the devdef command line matches names: ASCII letters without regard
  // to case, "_" the same as a blank; "*" any run of characters, "?" any one.
  function fold(text) {
    const blanks = text.replace(/_/g, ' ');
    return /^[\x00-\x7f]*$/.test(blanks) ? blanks.toLowerCase()
      : blanks.replace(/[A-Z]/g, (c) => c.toLowerCase());
  }

  // A test of folded names: a word without wildcards is found anywhere in
  // a name; with them, the whole name must match.
  function nameTest(word) {
    const folded = fold(word);
    if (!/[*?]/.test(folded)) return (name) => name.includes(folded);
    const source = Array.from(folded, (c) =>
      c === '*' ? '[^]*' : c === '?' ? '[^]' : c.replace(/[.+^${}()|[\]\\/]/g, '\\$&')).join('');
    const pattern = new RegExp('^' + source + '$', 'u');
    return (name) => pattern.test(name);
  }

  // Which numbers of a table of names a word matches; a number the table
  // has no name for is shown, and matched, as "#7".
  function tableHits(table, test) {
    const hits = new Uint8Array(table.length);
    table.forEach((name, i) => { hits[i] = test(fold(name)) ? 1 : 0; });
    return (number) => (number < hits.length ? hits[number] === 1 : test('#' + number));
  }

  let foldedNames = null;  // made on the first search by name
  function folded() {
    return foldedNames || (foldedNames = data.names.map(fold));
  }

  // True when a definition of device i has a number of list that hits.
  function anyListed(list, hits) {
    return (i) => {
      const { start, values } = list;
      for (let p = start[data.first[i]], end = start[data.first[i + 1]]; p < end; p++) {
        if (hits(values[p])) return true;
      }
      return false;
    };
  }

  // A word of the search as a test of a device index.
  function deviceTest(word) {
    const colon = word.indexOf(':');
    const field = colon > 0 ? word.slice(0, colon).toLowerCase() : '';
    const value = word.slice(colon + 1);
    switch (colon > 0 ? field : 'name') {
      case 'kind': { const hits = tableHits(raw.kinds, nameTest(value)); return (i) => hits(data.kind(i)); }
      case 'manufacturer': { const hits = tableHits(raw.makers, nameTest(value)); return (i) => hits(data.maker(i)); }
      case 'package': return anyListed(data.packages, tableHits(raw.packages, nameTest(value)));
      case 'adapter': return anyListed(data.adapters, tableHits(raw.adapters, nameTest(value)));
      case 'module': {
        const hits = tableHits(raw.modules, nameTest(value));
        return (i) => {
          for (let d = data.first[i]; d < data.first[i + 1]; d++) if (hits(data.module[d])) return true;
          return false;
        };
      }
      case 'id': {
        // An id equals the number; with wildcards its digits must match.
        const test = /[*?]/.test(value) ? nameTest(value) : (digits) => digits === value;
        return (i) => {
          for (let d = data.first[i]; d < data.first[i + 1]; d++) if (test(String(data.id[d]))) return true;
          return false;
        };
      }
      default: {  // a device name, also where the word holds a ":" of no field
        const test = nameTest(word);
        const names = folded();
        return (i) => test(names[i]);
      }
    }
  }

  // --- Sorting ------------------------------------------------------------
  // Each column's order is made once, when it is first asked for.
  const collator = new Intl.Collator(undefined, { numeric: true, sensitivity: 'base' });
  // The rank of each entry of a table in sorted order; numbers without a
  // name behind all names.
  function ranks(table) {
    const rank = new Float64Array(table.length);
    Array.from(table.keys()).sort((a, b) => collator.compare(table[a], table[b]) || a - b)
      .forEach((entry, r) => { rank[entry] = r; });
    return (number) => (number < rank.length ? rank[number] : rank.length + number);
  }
  // The key of device i: that of its first definition, or none.
  const firstOf = (key) => (i) => (data.first[i] < data.first[i + 1] ? key(data.first[i]) : Infinity);
  const firstListed = (list, rank) => firstOf((d) => {
    const at = list.start[d];
    return at < list.start[d + 1] ? rank(list.values[at]) : Infinity;
  });
  const sortKeys = {
    kind: () => { const rank = ranks(raw.kinds); return (i) => rank(data.kind(i)); },
    maker: () => { const rank = ranks(raw.makers); return (i) => rank(data.maker(i)); },
    name: null,  // compared as folded text
    ids: () => firstOf((d) => data.id[d]),
    generations: () => (i) => {
      let low = Infinity;
      for (let d = data.first[i]; d < data.first[i + 1]; d++) low = Math.min(low, data.generation[d]);
      return low;
    },
    packages: () => firstListed(data.packages, ranks(raw.packages)),
    modules: () => { const rank = ranks(raw.modules); return firstOf((d) => rank(data.module[d])); },
    adapters: () => firstListed(data.adapters, ranks(raw.adapters)),
    texts: () => { const rank = ranks(raw.texts); return firstOf((d) => rank(data.text[d])); },
    line: () => (i) => data.line[i],
  };
  const fileOrder = Uint32Array.from(data.names.keys());
  const orders = new Map();
  function orderOf(column, descending) {
    if (!(column in sortKeys)) return fileOrder;
    const name = column + (descending ? ' down' : ' up');
    if (!orders.has(name)) {
      const sign = descending ? -1 : 1;
      let compare;
      if (column === 'name') {
        const names = folded();
        compare = (a, b) => (names[a] < names[b] ? -sign : names[a] > names[b] ? sign : a - b);
      } else {
        const keyOf = sortKeys[column]();
        const key = Float64Array.from(fileOrder, keyOf);
        compare = (a, b) => sign * (key[a] - key[b]) || a - b;
      }
      orders.set(name, fileOrder.slice().sort(compare));
    }
    return orders.get(name);
  }

  // --- The state: the address's #q=...&kind=...&maker=...&sort=...&order=desc
  const state = { q: '', kind: '', maker: '', sort: '', desc: false };
  const search = $('search'), kindSelect = $('kind'), makerSelect = $('maker');

  function readAddress() {
    const params = new URLSearchParams(location.hash.slice(1));
    state.q = params.get('q') || '';
    state.kind = params.get('kind') || '';
    state.maker = params.get('maker') || '';
    state.sort = params.get('sort') || '';
    state.desc = params.get('order') === 'desc';
    search.value = state.q;
    if (state.kind || state.maker) fillSelects();
    kindSelect.value = raw.kinds.includes(state.kind) ? state.kind : '';
    makerSelect.value = raw.makers.includes(state.maker) ? state.maker : '';
  }

  function writeAddress() {
    const params = new URLSearchParams();
    if (state.q) params.set('q', state.q);
    if (state.kind) params.set('kind', state.kind);
    if (state.maker) params.set('maker', state.maker);
    if (state.sort) params.set('sort', state.sort);
    if (state.sort && state.desc) params.set('order', 'desc');
    const hash = params.toString();
    if (hash !== location.hash.slice(1)) {
      history.replaceState(null, '', hash ? '#' + hash : location.pathname + location.search);
    }
  }

  // --- Filtering ----------------------------------------------------------
  let shown = fileOrder;  // the devices shown, in the order shown
  const count = $('count'), table = $('devices');

  function update() {
    const started = performance.now();
    const tests = state.q.split(/\s+/).filter((word) => word && !/^[a-z]+:$/i.test(word)).map(deviceTest);
    if (state.kind) { const k = raw.kinds.indexOf(state.kind); tests.push((i) => data.kind(i) === k); }
    if (state.maker) { const k = raw.makers.indexOf(state.maker); tests.push((i) => data.maker(i) === k); }
    const order = orderOf(state.sort, state.desc);
    if (tests.length === 0) {
      shown = order;
    } else {
      const hits = new Uint32Array(order.length);
      let found = 0;
      outer: for (const i of order) {
        for (const test of tests) if (!test(i)) continue outer;
        hits[found++] = i;
      }
      shown = hits.subarray(0, found);
    }
    count.textContent = `${shown.length} of ${data.n} devices`;
    table.setAttribute('aria-rowcount', shown.length + 1);
    for (const th of table.tHead.rows[0].cells) {
      if (th.dataset.column === state.sort) th.setAttribute('aria-sort', state.desc ? 'descending' : 'ascending');
      else th.removeAttribute('aria-sort');
    }
    rendered = null;
    render();
    writeAddress();
    page.lastUpdate = performance.now() - started;
  }

  // --- Rows ---------------------------------------------------------------
  const tbody = table.tBodies[0], above = $('above'), below = $('below');
  let rowHeight = 28, rendered = null;

  const escape = (text) => text.replace(/[&<>"]/g, (c) => `&#${c.charCodeAt(0)};`);
  const nameOf = (table, number) => (number < table.length ? table[number] : '#' + number);
  // A cell: its text also as a tooltip, as a long one is cut short.
  const cell = (html, text, className) =>
    `<td${className ? ` class="${className}"` : ''} title="${escape(text)}">${html}</td>`;
  // Several names, each once, in the order they first stand.
  function namesCell(numbers, table) {
    const text = [...new Set(numbers)].map((n) => nameOf(table, n)).join(', ');
    return cell(escape(text), text);
  }
  // Per definition, hidden ones greyed and said to be hidden.
  function perDefinition(i, textOf) {
    const parts = [], plain = [];
    for (let d = data.first[i]; d < data.first[i + 1]; d++) {
      const text = textOf(d);
      plain.push(data.hidden[d] ? text + ' (hidden)' : text);
      parts.push(data.hidden[d] ? `<span class="hidden"><span class="sr">hidden: </span>${escape(text)}</span>`
        : escape(text));
    }
    return [parts.join(', '), plain.join(', ')];
  }
  const listed = (list, i) => Array.from(list.values.subarray(list.start[data.first[i]], list.start[data.first[i + 1]]));

  function rowHtml(i, position) {
    const [ids, idsText] = perDefinition(i, (d) => String(data.id[d]));
    const [texts, textsText] = perDefinition(i, (d) => raw.texts[data.text[d]].trim());
    const generations = [...new Set(data.generation.subarray(data.first[i], data.first[i + 1]))].join(', ');
    const modules = Array.from(data.module.subarray(data.first[i], data.first[i + 1]));
    return `<tr aria-rowindex="${position + 2}">` +
      cell(escape(raw.kinds[data.kind(i)]), raw.kinds[data.kind(i)]) +
      cell(escape(raw.makers[data.maker(i)]), raw.makers[data.maker(i)]) +
      `<th scope="row" title="${escape(data.names[i])}">${escape(data.names[i])}</th>` +
      cell(ids, idsText, 'number') + cell(generations, generations, 'number') +
      namesCell(listed(data.packages, i), raw.packages) + namesCell(modules, raw.modules) +
      namesCell(listed(data.adapters, i), raw.adapters) + cell(texts, textsText) +
      cell(String(data.line[i]), String(data.line[i]), 'number') + '</tr>';
  }

  // Renders the rows from first to last (of shown), with room above and
  // below for the others, so that the scroll bar is that of all rows.
  function renderRange(first, last) {
    above.style.height = `${first * rowHeight}px`;
    below.style.height = `${(shown.length - last) * rowHeight}px`;
    let html = '';
    for (let p = first; p < last; p++) html += rowHtml(shown[p], p);
    tbody.innerHTML = html;
    rendered = [first, last];
  }

  // The rows in view. The rows start below the header row, which stays at
  // the top of the window as the page scrolls.
  function render() {
    const head = table.tHead.getBoundingClientRect().height;
    const top = above.getBoundingClientRect().top + head;  // where row 0 stands, in the window
    const first = Math.max(0, Math.min(shown.length, Math.floor(-top / rowHeight) - OVERSCAN));
    const last = Math.min(shown.length, first + Math.ceil(innerHeight / rowHeight) + 2 * OVERSCAN);
    if (rendered && rendered[0] === first && rendered[1] === last) return;
    renderRange(first, last);
    // The rows' height as the browser made it, once there are rows.
    if (last > first) {
      const measured = tbody.getBoundingClientRect().height / (last - first);
      if (Math.abs(measured - rowHeight) > 0.01) {
        rowHeight = measured;
        renderRange(first, last);
      }
    }
  }

  let pending = false;
  addEventListener('scroll', () => {
    if (pending) return;
    pending = true;
    requestAnimationFrame(() => { pending = false; render(); });
  }, { passive: true });
  addEventListener('resize', () => { rendered = null; render(); });

  // Paper takes every row shown, up to PRINT_LIMIT.
  const printNote = $('print-note');
  addEventListener('beforeprint', () => {
    const last = Math.min(shown.length, PRINT_LIMIT);
    printNote.textContent = last < shown.length ? `The first ${last} of ${shown.length} devices shown are printed.` : '';
    renderRange(0, last);
    below.style.height = '0';
  });
  addEventListener('afterprint', () => { printNote.textContent = ''; rendered = null; render(); });

  // --- Controls -----------------------------------------------------------
  // The filters' choices, sorted: made once the first rows are shown, or
  // before when the address names a kind or manufacturer.
  let filled = false;
  function fillSelects() {
    if (filled) return;
    filled = true;
    for (const [select, table] of [[kindSelect, raw.kinds], [makerSelect, raw.makers]]) {
      for (const name of [...table].sort(collator.compare)) select.add(new Option(name, name));
    }
  }

  $('controls').addEventListener('submit', (event) => event.preventDefault());
  search.addEventListener('input', () => { state.q = search.value.trim(); update(); });
  kindSelect.addEventListener('change', () => { state.kind = kindSelect.value; update(); });
  makerSelect.addEventListener('change', () => { state.maker = makerSelect.value; update(); });
  for (const th of table.tHead.rows[0].cells) {
    th.querySelector('button').addEventListener('click', () => {
      state.desc = state.sort === th.dataset.column ? !state.desc : false;
      state.sort = th.dataset.column;
      update();
    });
  }
  addEventListener('hashchange', () => { readAddress(); update(); });

  // "/" goes to the search box (unless one is typing elsewhere); Escape
  // there empties it.
  document.addEventListener('keydown', (event) => {
    const typing = /^(INPUT|SELECT|TEXTAREA)$/.test(document.activeElement.tagName);
    if (event.key === '/' && !typing && !event.ctrlKey && !event.metaKey && !event.altKey) {
      event.preventDefault();
      search.focus();
      search.select();
    }
  });
  search.addEventListener('keydown', (event) => {
    if (event.key === 'Escape' && search.value) {
      event.preventDefault();
      search.value = '';
      state.q = '';
      update();
    }
  });

  readAddress();
  update();
  requestAnimationFrame(() => { page.firstRender = performance.now(); });
  // What the first search by name and the filters need, made once the
  // first rows are shown rather than on the first keystroke.
  setTimeout(() => { fillSelects(); folded(); }, 0);
})();
