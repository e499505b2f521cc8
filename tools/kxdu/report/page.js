'use strict';

(() => {
  const data = JSON.parse(document.getElementById('data').textContent);

  // ---- Elements. Texts become text nodes, so nothing in an identifier can become markup. --------------------------

  function fill(element, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
      if (name.startsWith('on')) {
        element.addEventListener(name.slice(2), value);
      } else if (value !== undefined && value !== false) {
        element.setAttribute(name, value === true ? '' : value);
      }
    }
    element.append(...children.flat().filter((child) => child !== undefined && child !== ''));
    return element;
  }

  const html = (name, attributes = {}, ...children) => fill(document.createElement(name), attributes, children);
  const svg = (name, attributes = {}, ...children) =>
    fill(document.createElementNS('http://www.w3.org/2000/svg', name), attributes, children);
  const byId = (id) => document.getElementById(id);
  const grouped = (number) => number.toLocaleString('en-US');
  const counted = (number, one, many = one + 's') => grouped(number) + ' ' + (number === 1 ? one : many);

  // ---- Identifiers ------------------------------------------------------------------------------------------------

  const ALPHABET = 'ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789';
  const NO_SLOT = -1;

  // Like the library: what is no number is 0, and numbers keep their low 32 bits.
  const LARGEST = 2n ** 63n - 1n;
  const numberOf = (text) => {
    const digits = BigInt(/^\s*[+-]?0*(\d*)/.exec(text)?.[1] || 0);
    const isNegative = /^\s*-/.test(text);
    const number = isNegative ? (digits > LARGEST + 1n ? -LARGEST - 1n : -digits) : digits > LARGEST ? LARGEST : digits;
    return Number(BigInt.asIntN(32, number));
  };

  const levelsOf = (fdn) =>
    fdn.split(',').map((level) => {
      const equals = level.indexOf('=');
      return equals < 0 ? { tag: level, value: '' } : { tag: level.slice(0, equals), value: level.slice(equals + 1) };
    });

  // Takes the identifiers of an NE out of their text. Each is written as "!" if it has a problem, a letter for its kind
  // ("-": none), a letter for the number of levels that it shares with the one before, and the rest of its text.
  function readIdentifiers(text) {
    let previous = '';
    return text.split('\n').map((line) => {
      const isWrong = line.startsWith('!');
      const [kind, shared] = line.slice(isWrong ? 1 : 0);
      let end = 0;
      for (let levels = ALPHABET.indexOf(shared); levels > 0; --levels) {
        end = previous.indexOf(',', end) + 1;
      }
      previous = previous.slice(0, end) + line.slice(isWrong ? 3 : 2);
      return { fdn: previous, kind: kind === '-' ? '' : data.kinds[ALPHABET.indexOf(kind)], isWrong };
    });
  }

  // Where an identifier lies: the numbers of its shelf, slot and sub-slot, and the text of its port's level.
  function placeOf(levels) {
    const place = { shelf: NO_SLOT, slot: NO_SLOT, sub: NO_SLOT, port: '', value: '' };
    const seen = new Set();
    for (const { tag, value } of levels) {
      if (seen.has(tag)) {
        continue;  // the first of several levels with the same tag counts
      }
      seen.add(tag);
      if (tag === 'FR') {
        place.shelf = numberOf(value);
      } else if (tag === 'S') {
        place.slot = numberOf(value);
      } else if (tag === 'SS') {
        place.sub = numberOf(value);
      } else if ((tag === 'PP' || tag === 'LP') && place.port === '') {
        place.port = tag;
        place.value = value;
      }
    }
    return place;
  }

  const keyOf = (place) => [place.shelf, place.slot, place.sub, place.port, place.value].join(',');

  // The sub-values of a level. In the name of a port, a "|" after a backslash is part of the name.
  function subValuesOf({ tag, value }) {
    const values = value === '' ? [] : value.split('|');
    const [, fbType = '', , name = '', rest] = values;
    const isEscaped = (tag === 'PP' || tag === 'LP') && name.includes('\\') && rest !== undefined && data.escapedNames.includes(numberOf(fbType));
    return isEscaped ? [...values.slice(0, 3), name.replace('\\', '') + '|' + rest, ...values.slice(5)] : values;
  }

  function portOf(place) {
    const [ppType = '', fbType = '', number = '', name = ''] = subValuesOf({ tag: place.port, value: place.value });
    return { ppType, fbType: numberOf(fbType), number: number === '' ? -1 : numberOf(number), name };
  }

  // ---- Meaning ----------------------------------------------------------------------------------------------------

  const quoted = (text) => '"' + text + '"';
  const numberText = (value) => (value === '' || /^-?[0-9]+$/.test(value) ? value : quoted(value));

  // "slot number; -1: none" has the name "slot number", and says "none" of the special value "-1".
  function wordingOf(meaning) {
    const [name, rest = ''] = meaning.split('; ');
    const colon = rest.indexOf(': ');
    const specials = colon < 0 ? [] : rest.slice(0, colon).split(' or ');
    return { name, glossOf: (value) => (specials.includes(value === '' ? 'empty' : value) ? rest.slice(colon + 2) : '') };
  }

  function fbTypeText(value) {
    const fbType = numberOf(value);
    const [name] = data.fbTypeNames[fbType] ?? [];
    return name ? ` (${name})` : fbType > 65535 ? ' (a logical port)' : '';
  }

  function subValueMeaning([kind, description], value) {
    const { name, glossOf } = wordingOf(description);
    if (kind === 'text') {
      return name + (value === '' ? ': none' : ' ' + quoted(value));
    }
    const gloss = glossOf(value);
    if (value === '') {
      return name + ': ' + (gloss || 'none');
    }
    const meaning = name + ' ' + numberText(value) + (gloss && ` (${gloss})`);
    return name === 'FB type' ? meaning + fbTypeText(value) : meaning;
  }

  function singleMeaning(level, tag, value) {
    if (tag.isOpen) {
      return tag.meaning + ' ' + quoted(level.value);
    }
    const { name, glossOf } = wordingOf(tag.subValues[0][1]);
    const gloss = glossOf(value) || (name.startsWith('always') ? name : '');
    const meaning = tag.meaning + ' ' + numberText(value) + (gloss && ` (${gloss})`);
    return level.tag === 'NE' ? meaning + neText(numberOf(value)) : meaning;
  }

  function neText(ne) {
    if (!data.hasInventory) {
      return '';
    }
    const [, type] = data.nes[neIndex.get(ne)] ?? [];
    return type === undefined || type < 0
      ? ': not in the inventory, treated as NE type 0'
      : ': ' + (data.neTypes[type] ? data.neTypes[type] + ', ' : '') + 'NE type ' + type;
  }

  // The pieces of an identifier with their meanings, in the words of `kxdu explain`.
  function explain(fdn) {
    const rows = [];
    for (const level of levelsOf(fdn)) {
      const tag = data.tags[level.tag];
      const values = subValuesOf(level);
      if (tag === undefined) {
        rows.push([level.tag, 'level ' + quoted(level.tag)]);
      } else if (values.length === 0) {
        rows.push([level.tag, tag.meaning]);
      } else if (tag.subValues.length === 1) {
        rows.push([`${level.tag}=${level.value}`, singleMeaning(level, tag, values[0])]);
      } else if (tag.isReadWhole && values.length < tag.least) {
        rows.push([level.tag, tag.meaning + ', of which no sub-value is read']);
      } else {
        rows.push([level.tag, tag.meaning]);
        values.forEach((value, place) => {
          const meaning = place < tag.subValues.length ? subValueMeaning(tag.subValues[place], value)
                                                       : 'sub-value ' + quoted(value);
          rows.push([`${level.tag}:${place}`, meaning]);
        });
      }
    }
    return rows;
  }

  const levelOf = (fbType) => (data.fbTypeNames[fbType] ?? [])[1] ?? -1;
  const levelName = (level) => (level < 0 ? 'no interface level' : data.rates[level] ? `${data.rates[level]} (${level})` : `level ${level}`);
  const fbTypeName = (fbType) => (fbType === 0 ? 'no FB type' : `FB type ${fbType}${fbTypeText(String(fbType))}`);

  // ---- Alarms -----------------------------------------------------------------------------------------------------

  const neIndex = new Map(data.nes.map(([ne], index) => [ne, index]));
  const alarmsOfNe = new Map((data.alarms?.nes ?? []).map(([ne, alarms]) => [ne, alarms]));
  const sum = (numbers) => numbers.reduce((total, number) => total + number, 0);
  const alarmCount = (ne) => sum((alarmsOfNe.get(ne) ?? []).map(([, count]) => count));

  function shelvesByAlarms() {
    const shelves = [];
    for (const [ne, alarms] of alarmsOfNe) {
      const counts = new Map();
      for (const [fdn, count] of alarms) {
        const { shelf } = placeOf(levelsOf(fdn));
        counts.set(shelf, (counts.get(shelf) ?? 0) + count);
      }
      for (const [shelf, count] of counts) {
        shelves.push({ ne, shelf, count });
      }
    }
    return shelves.filter(({ shelf }) => shelf !== NO_SLOT).sort((one, other) => other.count - one.count || one.ne - other.ne);
  }

  // ---- One NE: what there is of it --------------------------------------------------------------------------------

  const BESIDE = [
    ['Logical ports', (kind) => kind === 'port'],
    ['On ports', (kind) => ['access-point', 'sub-interface', 'termination-point'].includes(kind)],
    ['Tunnels', (kind) => kind === 'tunnel'],
    ['Services', (kind) => ['service', 'pseudo-wire', 'pseudo-wire-switch', 'traffic-descriptor', 'trail', 'group'].includes(kind)],
    ['OAM', (kind) => kind.startsWith('maintenance-')],
    ['Other', () => true],
  ];

  const byNumber = (map) => [...map.entries()].sort(([one], [other]) => one - other).map(([, value]) => value);

  function child(map, number, make) {
    if (!map.has(number)) {
      map.set(number, make(number));
    }
    return map.get(number);
  }

  const makeShelf = (number) => ({ number, items: [], slots: new Map(), portCount: 0, alarms: 0 });
  const makeSlot = (number) => ({ number, items: [], ports: [], subs: new Map(), alarms: 0 });
  const makeSub = (number) => ({ number, items: [], ports: [], alarms: 0 });

  function describeNe(index) {
    const [ne, type, lines, ports, problems] = data.nes[index];
    const found = { ne, type, lines, ports, problems, items: [], shelves: new Map(), beside: BESIDE.map(() => []), onPort: new Map(), alarms: alarmCount(ne) };
    const portByKey = new Map();
    for (const item of readIdentifiers(data.identifiers[index])) {
      item.place = placeOf(levelsOf(item.fdn));
      item.alarms = 0;
      const { shelf, slot, sub, port } = item.place;
      const inShelf = () => child(found.shelves, shelf, makeShelf);
      const inSlot = () => child(inShelf().slots, slot, makeSlot);
      const inSub = () => (sub === NO_SLOT ? inSlot() : child(inSlot().subs, sub, makeSub));
      if (item.kind === 'ne') {
        found.items.push(item);
      } else if (item.kind === 'shelf') {
        inShelf().items.push(item);
      } else if (['slot', 'sub-slot', 'card'].includes(item.kind)) {
        inSub().items.push(item);
      } else if (item.kind === 'port' && port === 'PP') {
        item.port = portOf(item.place);
        inSub().ports.push(item);
        ++inShelf().portCount;
        portByKey.set(keyOf(item.place), item);
      } else {
        if (item.kind === 'port') {
          item.port = portOf(item.place);
          portByKey.set(keyOf(item.place), item);
        } else if (port !== '') {
          child(found.onPort, keyOf(item.place), () => []).push(item);
        }
        found.beside[BESIDE.findIndex(([, takes]) => takes(item.kind))].push(item);
      }
    }
    for (const [fdn, count] of alarmsOfNe.get(ne) ?? []) {
      const place = placeOf(levelsOf(fdn));
      const shelf = found.shelves.get(place.shelf);
      const slot = shelf?.slots.get(place.slot);
      const reached = [shelf, slot, slot?.subs.get(place.sub), place.port && portByKey.get(keyOf(place))];
      reached.filter(Boolean).forEach((thing) => { thing.alarms += count; });
    }
    return found;
  }

  // ---- Colours: each class has a letter too, so that nothing depends on the colour alone. -------------------------

  const PALETTE = [['#0072b2', '#fff'], ['#e69f00', '#000'], ['#009e73', '#000'], ['#cc79a7', '#000'],
                   ['#56b4e9', '#000'], ['#f0e442', '#000'], ['#d55e00', '#000']];
  const ALARM_CLASSES = [[1, '#fddbc7', '#000'], [2, '#f4a582', '#000'], [5, '#d6604d', '#000'], [10, '#7f0a20', '#fff']];
  const NONE = { key: '', label: '' };

  function classesBy(rows, nameOf) {
    const shown = rows.filter(([value]) => value !== null).slice(0, PALETTE.length);
    const classes = new Map(shown.map(([value], place) => {
      const [fill, ink] = PALETTE[place];
      return [Number(value), { key: 'ABCDEFG'[place], fill, ink, label: nameOf(Number(value)) }];
    }));
    return classes;
  }

  const levelClasses = classesBy(data.counts.level, levelName);
  // Logical ports are not in the drawing.
  const fbTypeClasses = classesBy(data.counts['fb-type'].filter(([value]) => Number(value) <= 65535), fbTypeName);
  const alarmClasses = ALARM_CLASSES.map(([least, fill, ink], place) => {
    const next = ALARM_CLASSES[place + 1];
    const most = next ? next[0] - 1 : Infinity;
    return { least, fill, ink, key: '', label: least === most ? `${least} alarm` : most === Infinity ? `${least} and more` : `${least} to ${most}` };
  });

  const COLOURINGS = {
    level: {
      name: 'interface level', classes: [...levelClasses.values()], none: 'no interface level, or another',
      classOf: ({ port }) => levelClasses.get(levelOf(port.fbType)) ?? NONE,
    },
    fbType: {
      name: 'FB type', classes: [...fbTypeClasses.values()], none: 'no FB type, or another',
      classOf: ({ port }) => fbTypeClasses.get(port.fbType) ?? NONE,
    },
    alarms: {
      name: 'alarms', classes: alarmClasses, none: 'no alarm',
      classOf: ({ alarms }) => {
        const found = alarmClasses.findLast(({ least }) => alarms >= least);
        return found ? { ...found, key: String(alarms) } : NONE;
      },
    },
  };

  const swatch = ({ key, fill, ink }) =>
    svg('svg', { width: 20, height: 16, 'aria-hidden': 'true' },
      svg('rect', { x: 1, y: 1, width: 18, height: 14, rx: 3, fill, class: fill ? undefined : 'bg-none', stroke: 'currentColor', 'stroke-opacity': .4 }),
      key ? svg('text', { x: 10, y: 12, 'text-anchor': 'middle', 'font-size': 10, fill: ink }, key) : '');

  // ---- The drawing of shelves -------------------------------------------------------------------------------------

  const CELL = { width: 40, height: 24, gap: 4 };
  const MOST_ROWS = 8;     // of ports below each other
  const MOST_PORTS = 1000; // drawn of one card
  const HEAD = 22;
  const PAD = 7;
  const LETTER = 7;        // the width of one in a title

  // Places of ports in columns, from the top left corner.
  function gridOf(ports) {
    const shown = ports.slice(0, MOST_PORTS);
    const rows = Math.min(MOST_ROWS, shown.length);
    const columns = rows === 0 ? 0 : Math.ceil(shown.length / rows);
    const even = columns === 0 ? 0 : Math.ceil(shown.length / columns);
    return {
      shown: shown.map((item, at) => ({ item, x: Math.floor(at / even) * (CELL.width + CELL.gap), y: (at % even) * (CELL.height + CELL.gap) })),
      width: columns * (CELL.width + CELL.gap) - (columns ? CELL.gap : 0),
      height: even * (CELL.height + CELL.gap) - (even ? CELL.gap : 0),
      left: ports.length - shown.length,
    };
  }

  const sortPorts = (ports) => ports.sort((one, other) => one.port.number - other.port.number || (one.fdn < other.fdn ? -1 : 1));

  const slotTitle = ({ number, alarms }) => (number === NO_SLOT ? 'no slot' : `slot ${number}`) + (alarms ? ` · ▲${alarms}` : '');

  function layOutSlot(slot) {
    const parts = [{ sub: null, grid: gridOf(sortPorts(slot.ports)) },
                   ...byNumber(slot.subs).map((sub) => ({ sub, grid: gridOf(sortPorts(sub.ports)) }))]
      .filter(({ sub, grid }) => sub !== null || grid.shown.length > 0);
    let y = HEAD + 2;
    for (const part of parts) {
      part.inset = part.sub === null ? 0 : 4;
      part.head = part.sub === null ? 0 : 16;
      part.y = y;
      part.height = part.head + part.grid.height + 2 * part.inset;
      y += part.height + 6;
    }
    const title = slotTitle(slot);
    const inner = Math.max(72, LETTER * [...title].length, ...parts.map(({ grid, inset }) => grid.width + 2 * inset));
    return { slot, title, parts, width: inner + 2 * PAD, height: Math.max(y, HEAD + 30) };
  }

  // Puts the slots beside each other, in as many rows as the width asks for.
  function layOutShelf(shelf, width) {
    const slots = byNumber(shelf.slots).map(layOutSlot);
    let x = 1;
    let y = 1;
    let rowHeight = 0;
    let row = [];
    const endRow = () => {
      row.forEach((slot) => { slot.height = rowHeight; });
      y += rowHeight + 6;
      x = 1;
      rowHeight = 0;
      row = [];
    };
    for (const slot of slots) {
      if (x > 1 && x + slot.width > width) {
        endRow();
      }
      slot.x = x;
      slot.y = y;
      x += slot.width + 6;
      rowHeight = Math.max(rowHeight, slot.height);
      row.push(slot);
    }
    endRow();
    return { slots, width: Math.max(width, ...slots.map((slot) => slot.x + slot.width + 1)), height: y };
  }

  const alarmText = (count) => (data.alarms ? `; ${count === 0 ? 'no alarm' : counted(count, 'alarm')}` : '');

  function portLabel({ port, alarms, isWrong }) {
    const words = [port.number === -1 ? 'port without a number' : `port ${port.number}`];
    if (port.name !== '') {
      words.push(port.name);
    }
    return words.join(', ') + '; ' + fbTypeName(port.fbType) + alarmText(alarms) + (isWrong ? '; has a problem' : '');
  }

  function shortLabel({ number, name }) {
    const text = number === -1 ? name || '–' : String(number);
    return [...text].length > 6 ? [...text].slice(0, 5).join('') + '…' : text;
  }

  function drawPort(item, x, y) {
    const { key, fill, ink } = colouring().classOf(item);
    const label = shortLabel(item.port);
    return svg('g', { class: 'port', role: 'button', tabindex: -1, 'data-fdn': item.fdn, 'aria-label': portLabel(item), transform: `translate(${x} ${y})` },
      svg('rect', { width: CELL.width, height: CELL.height, rx: 4, fill, class: fill ? undefined : 'bg-none' }),
      svg('text', { x: key ? CELL.width / 2 - 4 : CELL.width / 2, y: 16, 'font-size': label.length > 4 ? 8 : 12, fill: ink, class: fill ? undefined : 'ink' }, label),
      key ? svg('text', { x: CELL.width - 3, y: 10, class: 'key', fill: ink }, key) : '',
      item.isWrong ? svg('rect', { class: 'wrong', x: 2, y: 2, width: CELL.width - 4, height: CELL.height - 4, rx: 3 }) : '');
  }

  function drawSlot({ slot, title, parts, x, y, width, height }) {
    const name = slot.number === NO_SLOT ? 'no slot' : `slot ${slot.number}`;
    const card = slot.items.find(({ kind }) => kind === 'card') ?? slot.items[0];
    const portCount = sum([slot, ...slot.subs.values()].map(({ ports }) => ports.length));
    const about = `${name}${card?.kind === 'card' ? ' with a card' : ''}, ${counted(portCount, 'port')}${alarmText(slot.alarms)}`;
    const drawnParts = parts.map(({ sub, grid, inset, head, y: top, height: partHeight }) =>
      svg('g', { class: sub ? 'sub' : 'ports', transform: `translate(${PAD} ${top})` },
        sub ? svg('rect', { width: width - 2 * PAD, height: partHeight, rx: 4 }) : '',
        sub ? svg('text', { x: 5, y: 13 }, 'sub-slot ' + sub.number) : '',
        grid.shown.map(({ item, x: left, y: down }) => drawPort(item, left + inset, down + head + (sub ? inset - 2 : 0))),
        grid.left ? svg('text', { x: 0, y: partHeight + 10 }, `and ${grouped(grid.left)} more`) : ''));
    return svg('g', { class: 'slot' + (card?.kind === 'card' ? '' : ' empty'), transform: `translate(${x} ${y})` },
      svg('rect', { width, height, rx: 6 }),
      svg('g', { class: 'head', role: 'button', tabindex: -1, 'data-fdn': card?.fdn ?? '', 'aria-label': about },
        svg('rect', { x: 2, y: 2, width: width - 4, height: HEAD - 3, rx: 4 }),
        svg('text', { x: PAD, y: 16 }, title)),
      drawnParts);
  }

  function drawShelf(shelf, width) {
    const layout = layOutShelf(shelf, width);
    const name = shelf.number === NO_SLOT ? 'In no shelf' : 'Shelf ' + shelf.number;
    const about = [counted(shelf.slots.size, 'slot'), counted(shelf.portCount, 'port')];
    if (data.alarms) {
      about.push(counted(shelf.alarms, 'alarm'));
    }
    const drawing = svg('svg', { width: layout.width, height: layout.height, viewBox: `0 0 ${layout.width} ${layout.height}`, role: 'group', 'aria-label': name },
      layout.slots.map(drawSlot));
    drawing.querySelector('[data-fdn]')?.setAttribute('tabindex', 0);
    return html('figure', { id: 'shelf-' + shelf.number }, html('figcaption', {}, name, html('span', { class: 'quiet' }, ' · ' + about.join(' · '))), drawing);
  }

  // ---- The meaning of what is pointed at --------------------------------------------------------------------------

  const MOST_ON_PORT = 50;
  let current = null;     // the NE that is shown
  let items = new Map();  // its identifiers
  let pinned = '';

  function show(fdn) {
    const item = items.get(fdn);
    if (item === undefined) {
      return;
    }
    document.querySelectorAll('svg [aria-current]').forEach((element) => element.removeAttribute('aria-current'));
    document.querySelectorAll(`svg [data-fdn="${CSS.escape(fdn)}"]`).forEach((element) => element.setAttribute('aria-current', 'true'));
    const rows = explain(fdn).map(([piece, meaning]) => html('tr', {}, html('td', {}, html('code', {}, piece)), html('td', {}, meaning)));
    if (item.port) {
      rows.push(html('tr', {}, html('td', {}, ''), html('td', {}, 'interface level: ' + (levelOf(item.port.fbType) < 0 ? 'none' : levelName(levelOf(item.port.fbType))))));
    }
    const onPort = item.port ? current.onPort.get(keyOf(item.place)) ?? [] : [];
    byId('detail').replaceChildren(
      html('h3', {}, item.kind || 'no known kind'),
      html('code', { class: 'identifier' }, fdn),
      html('table', {}, html('tbody', {}, rows)),
      item.isWrong ? html('p', { class: 'problem' }, 'kxdu check finds a problem in it.') : '',
      data.alarms && item.alarms !== undefined && item.port ? html('p', {}, item.alarms ? counted(item.alarms, 'alarm') : 'No alarm') : '',
      onPort.length ? html('div', { class: 'on-port' }, html('h3', {}, `On this port: ${grouped(onPort.length)}`), itemList(onPort.slice(0, MOST_ON_PORT))) : '');
  }

  const showOnPoint = ({ target }) => {
    const fdn = target.closest('[data-fdn]')?.getAttribute('data-fdn');
    if (fdn && !pinned) {
      show(fdn);
    }
  };

  const showOnChoice = ({ target }) => {
    const fdn = target.closest('[data-fdn]')?.getAttribute('data-fdn');
    if (fdn) {
      pinned = '';
      show(fdn);
      pinned = fdn;
    }
  };

  const itemText = (fdn) => fdn.slice(fdn.startsWith('NE=') ? fdn.indexOf(',') + 1 : 0);
  const itemButton = (item) => html('button', { type: 'button', 'data-fdn': item.fdn },
    html('code', {}, itemText(item.fdn)), item.alarms ? ` ▲${item.alarms}` : '', item.isWrong ? html('span', { class: 'problem' }, ' !') : '');
  const itemList = (list) => html('ul', {}, list.map((item) => html('li', {}, itemButton(item))));

  // The port or slot that lies nearest in a direction.
  function neighbour(from, key, things) {
    const centre = (element) => {
      const box = element.getBoundingClientRect();
      return [box.left + box.width / 2, box.top + box.height / 2];
    };
    const [fromX, fromY] = centre(from);
    const isAcross = key === 'ArrowLeft' || key === 'ArrowRight';
    const sign = key === 'ArrowRight' || key === 'ArrowDown' ? 1 : -1;
    let best = null;
    let least = Infinity;
    for (const thing of things) {
      const [x, y] = centre(thing);
      const ahead = sign * (isAcross ? x - fromX : y - fromY);
      const aside = Math.abs(isAcross ? y - fromY : x - fromX);
      if (ahead > 1 && ahead + 3 * aside < least) {
        best = thing;
        least = ahead + 3 * aside;
      }
    }
    return best;
  }

  function moveFocus(event) {
    const from = event.target.closest('[data-fdn]');
    if (from === null) {
      return;
    }
    const things = [...byId('shelves').querySelectorAll('svg [data-fdn]')];
    let to = null;
    if (event.key.startsWith('Arrow')) {
      to = neighbour(from, event.key, things);
    } else if (event.key === 'Home') {
      to = things[0];
    } else if (event.key === 'End') {
      to = things[things.length - 1];
    } else if (event.key === 'Enter' || event.key === ' ') {
      showOnChoice(event);
    } else if (event.key !== 'Escape') {
      return;
    }
    event.preventDefault();
    pinned = event.key === 'Enter' || event.key === ' ' ? pinned : '';
    if (to) {
      from.setAttribute('tabindex', -1);
      to.setAttribute('tabindex', 0);
      to.focus();
    }
  }

  // ---- The NE that is shown ---------------------------------------------------------------------------------------

  const MOST_LISTED = 200;
  let colouringName = data.alarms ? 'alarms' : levelClasses.size > 1 ? 'level' : 'fbType';
  const colouring = () => COLOURINGS[colouringName];

  const holdersOf = (shelf) => [...shelf.slots.values()].flatMap((slot) => [slot, ...slot.subs.values()]);
  const portsOf = (ne) => [...ne.shelves.values()].flatMap((shelf) => holdersOf(shelf).flatMap(({ ports }) => ports));

  function drawShelves() {
    const width = Math.max(160, Math.floor(byId('shelves').clientWidth));
    const shelves = byNumber(current.shelves);
    byId('shelves').replaceChildren(...(shelves.length
      ? shelves.map((shelf) => drawShelf(shelf, width))
      : [html('p', { class: 'quiet' }, 'The file names no shelf, slot or physical port of this NE.')]));
    const { classes, none, classOf } = colouring();
    const used = new Set(portsOf(current).map((item) => classOf(item).label));
    const shown = [...classes.filter(({ label }) => used.has(label)), ...(used.has('') ? [{ label: none }] : [])];
    byId('legend').replaceChildren(...shown.map((each) => html('li', {}, swatch(each), each.label)));
    byId('shelves').dataset.width = width;
  }

  // Identifiers of one sort; drawn when they are first looked at.
  function besideList(title, list) {
    const details = html('details', { ontoggle: () => {
      if (details.open && details.children.length === 1) {
        details.append(itemList(list.slice(0, MOST_LISTED)));
        if (list.length > MOST_LISTED) {
          details.append(html('p', { class: 'quiet' }, `and ${grouped(list.length - MOST_LISTED)} more`));
        }
      }
    } }, html('summary', {}, html('strong', {}, title), ' ', html('span', { class: 'quiet' }, grouped(list.length))));
    return details;
  }

  function selectNe(index) {
    current = describeNe(index);
    pinned = '';
    items = new Map();
    const remember = (list) => list.forEach((item) => items.set(item.fdn, item));
    remember(current.items);
    for (const shelf of current.shelves.values()) {
      remember(shelf.items);
      holdersOf(shelf).forEach((holder) => { remember(holder.items); remember(holder.ports); });
    }
    current.beside.forEach(remember);
    const type = neText(current.ne);
    byId('ne-title').textContent = 'NE ' + current.ne;
    byId('colours').hidden = false;
    byId('ne-about').textContent = [type.slice(2), counted(current.lines, 'identifier'), counted(current.ports, 'port'),
      data.alarms ? counted(current.alarms, 'alarm') : '', current.problems ? counted(current.problems, 'identifier') + ' with a problem' : '']
      .filter(Boolean).join(' · ');
    drawShelves();
    byId('beside').replaceChildren(...BESIDE.map(([title], at) => [title, current.beside[at]])
      .filter(([, list]) => list.length > 0).map(([title, list]) => besideList(title, list)));
    byId('detail').replaceChildren(html('p', { class: 'quiet hint' },
      'Point at a port or a slot to read what its identifier means, or reach it with Tab and the arrow keys. Enter keeps it, Escape lets it go.'));
  }

  // Shows why there is no NE to draw.
  function selectNone(title, reason) {
    current = null;
    pinned = '';
    items = new Map();
    byId('ne-title').textContent = title;
    byId('ne-about').textContent = reason;
    byId('colours').hidden = true;
    for (const id of ['legend', 'shelves', 'beside', 'detail']) {
      byId(id).replaceChildren();
    }
  }

  const hashOf = (ne) => '#ne=' + ne;

  // Shows the NE that the address names, or that the file lacks it; false if the address names none.
  function selectByHash() {
    const match = /^#ne=(.+)$/.exec(location.hash);
    if (match === null) {
      return false;
    }
    const ne = match[1];
    const index = /^-?\d+$/.test(ne) ? neIndex.get(Number(ne)) : undefined;
    if (index === undefined) {
      selectNone('NE ' + ne, 'The page shows no NE ' + ne + ': no identifier names it. Find another one above.');
    } else {
      selectNe(index);
    }
    byId('ne').scrollIntoView();
    byId('ne-title').focus({ preventScroll: true });
    return true;
  }

  function goTo(ne, fdn) {
    if (location.hash === hashOf(ne)) {
      selectByHash();
    } else {
      history.pushState(null, '', hashOf(ne));
      selectByHash();
    }
    if (fdn && items.has(fdn)) {
      show(fdn);
      pinned = fdn;
    }
  }

  const neLink = (ne, ...text) => html('a', { href: hashOf(ne), onclick: (event) => {
    event.preventDefault();
    goTo(ne);
  } }, ...text);
  const shelfLink = (ne, shelf) => html('a', { href: hashOf(ne), onclick: (event) => {
    event.preventDefault();
    goTo(ne);
    byId('shelf-' + shelf)?.scrollIntoView();
  } }, `NE ${ne}, shelf ${shelf}`);

  // ---- Search -----------------------------------------------------------------------------------------------------

  const MOST_FOUND = 50;

  function find(query) {
    const text = query.trim();
    const lower = text.toLowerCase();
    const identifier = /^(?:ONE=\d+,)?NE=(\d+)/.exec(text);
    const found = new Map();
    const take = (index, why = '') => found.has(index) || found.set(index, why);
    if (identifier) {
      const index = neIndex.get(Number(identifier[1]));
      if (index !== undefined) {
        take(index, text);
      }
      return found;
    }
    if (/^\d+$/.test(text)) {
      if (neIndex.has(Number(text))) {
        take(neIndex.get(Number(text)));
      }
      data.nes.forEach(([ne], index) => String(ne).startsWith(text) && take(index));
    }
    data.nes.forEach(([, type], index) =>
      ((data.neTypes[type] ?? '').toLowerCase().includes(lower) || String(type) === text) && take(index));
    data.identifiers.forEach((identifiers, index) => {
      if (found.size <= MOST_FOUND && !found.has(index) && !/^\d+$/.test(text) && identifiers.toLowerCase().includes(lower)) {
        const item = readIdentifiers(identifiers).find(({ fdn }) => fdn.toLowerCase().includes(lower));
        take(index, item?.fdn ?? '');
      }
    });
    return found;
  }

  function setUpSearch() {
    const input = byId('query');
    const list = byId('found');
    let options = [];
    let at = -1;

    const close = () => {
      list.hidden = true;
      input.setAttribute('aria-expanded', 'false');
      input.removeAttribute('aria-activedescendant');
      at = -1;
    };
    const choose = (option) => {
      close();
      input.value = '';
      goTo(option.ne, option.why);
    };
    const mark = (place) => {
      at = place;
      options.forEach(({ element }, index) => element.setAttribute('aria-selected', index === at));
      options[at].element.scrollIntoView({ block: 'nearest' });
      input.setAttribute('aria-activedescendant', options[at].element.id);
    };
    const open = () => {
      const found = input.value.trim() === '' ? new Map() : find(input.value);
      options = [...found].slice(0, MOST_FOUND).map(([index, why], place) => {
        const [ne, type, , ports] = data.nes[index];
        const option = { ne, why };
        option.element = html('li', { id: 'found-' + place, role: 'option', 'aria-selected': 'false',
          onpointerdown: (event) => { event.preventDefault(); choose(option); } },
          `NE ${ne} `, html('span', { class: 'quiet' }, [data.neTypes[type], counted(ports, 'port'), why].filter(Boolean).join(' · ')));
        return option;
      });
      const more = found.size - options.length;
      list.replaceChildren(...options.map(({ element }) => element),
        ...(options.length === 0 && input.value.trim() ? [html('li', { 'aria-disabled': 'true', class: 'quiet' }, 'no NE found')] : []),
        ...(more > 0 ? [html('li', { 'aria-disabled': 'true', class: 'quiet' }, 'and more; type more of it')] : []));
      list.hidden = list.children.length === 0;
      input.setAttribute('aria-expanded', String(!list.hidden));
      at = -1;
      if (options.length > 0) {
        mark(0);
      }
    };

    input.addEventListener('input', open);
    input.addEventListener('blur', close);
    input.addEventListener('keydown', (event) => {
      if (event.key === 'Escape') {
        close();
      } else if (event.key === 'Enter' && options.length > 0 && !list.hidden) {
        choose(options[Math.max(at, 0)]);
      } else if ((event.key === 'ArrowDown' || event.key === 'ArrowUp') && options.length > 0) {
        mark((at + (event.key === 'ArrowDown' ? 1 : options.length - 1)) % options.length);
      } else {
        return;
      }
      event.preventDefault();
    });
    document.addEventListener('keydown', (event) => {
      const isTyping = event.target.matches('input, textarea, select');
      if (event.key === '/' && !isTyping && !event.ctrlKey && !event.metaKey && !event.altKey) {
        event.preventDefault();
        input.focus();
      }
    });
  }

  // ---- The overview -----------------------------------------------------------------------------------------------

  const bar = (share) => {
    const inner = html('i');
    inner.style.width = 100 * share + '%';
    return html('span', { class: 'bar', 'aria-hidden': 'true' }, inner);
  };

  // Bars for `rows` of { label, count }; those after the first `most` are folded away.
  function bars(rows, most = 12) {
    const largest = Math.max(1, ...rows.map(({ count }) => count));
    const row = ({ label, count }) => html('li', { class: 'bar-row' }, html('span', {}, label), html('span', { class: 'number' }, grouped(count)), bar(count / largest));
    const list = [html('ul', { class: 'bars' }, rows.slice(0, most).map(row))];
    if (rows.length > most) {
      list.push(html('details', {}, html('summary', {}, `and ${grouped(rows.length - most)} more`), html('ul', { class: 'bars' }, rows.slice(most).map(row))));
    }
    return list;
  }

  const card = (id, title, about, ...content) =>
    html('div', { class: 'card', id }, html('h3', {}, title), about ? html('p', { class: 'quiet' }, about) : '', ...content);

  function drawTotals() {
    const tile = (number, words, href) => html(href ? 'a' : 'div', { href }, html('strong', {}, grouped(number)), html('span', { class: 'quiet' }, words));
    const { lines, nes, ports, problemLines } = data.total;
    byId('totals').append(
      tile(nes, nes === 1 ? 'NE' : 'NEs'), tile(ports, ports === 1 ? 'port' : 'ports'), tile(lines, lines === 1 ? 'identifier' : 'identifiers'),
      tile(problemLines, 'with a problem', '#attention-title'),
      data.alarms ? tile(data.alarms.total, data.alarms.total === 1 ? 'alarm' : 'alarms', '#attention-title') : '');
  }

  function drawAlarms() {
    const MOST = 10;
    const byNe = [...alarmsOfNe.keys()].map((ne) => ({ ne, count: alarmCount(ne) })).sort((one, other) => other.count - one.count || one.ne - other.ne);
    const here = byNe.filter(({ ne }) => neIndex.has(ne));
    const elsewhere = sum(byNe.filter(({ ne }) => !neIndex.has(ne)).map(({ count }) => count));
    const notes = [];
    if (elsewhere > 0) {
      notes.push(`${counted(elsewhere, 'alarm')} of NEs that the file does not name.`);
    }
    if (data.alarms.unread > 0) {
      notes.push(`${counted(data.alarms.unread, 'alarm')} without the identifier of an NE.`);
    }
    const nes = here.slice(0, MOST).map(({ ne, count }) => ({ label: neLink(ne, 'NE ' + ne, typeName(ne)), count }));
    const shelves = shelvesByAlarms().filter(({ ne }) => neIndex.has(ne)).slice(0, MOST)
      .map(({ ne, shelf, count }) => ({ label: shelfLink(ne, shelf), count }));
    return [
      card('alarm-nes', 'NEs by alarms', `${grouped(here.length)} of ${counted(data.nes.length, 'NE')} ${here.length === 1 ? 'has' : 'have'} alarms.`, ...bars(nes), ...notes.map((note) => html('p', { class: 'quiet' }, note))),
      card('alarm-shelves', 'Shelves by alarms', '', ...bars(shelves)),
    ];
  }

  function typeName(ne) {
    const [, type] = data.nes[neIndex.get(ne)] ?? [];
    return html('span', { class: 'quiet' }, data.neTypes[type] ? ' ' + data.neTypes[type] : '');
  }

  const NO_NE = 'No identifier is of an NE.';

  function drawProblems() {
    if (data.problems.length === 0) {
      const found = data.total.lines === 0 ? 'There is no identifier.' : 'Nothing was found.';
      return card('problems', 'Problems', data.search === 'none' ? 'Not looked for.' : found);
    }
    const reasons = data.problems.map(([reason, count, places]) =>
      html('details', {}, html('summary', { class: 'bar-row' }, html('span', {}, reason), html('span', { class: 'number' }, grouped(count))),
        html('ul', { class: 'places' }, places.map(([place, text]) => html('li', {}, html('code', {}, place), html('br'), text))),
        count > places.length ? html('p', { class: 'quiet' }, `and ${grouped(count - places.length)} more; kxdu check shows all`) : ''));
    return card('problems', 'Problems', counted(data.total.problemLines, 'identifier') + ' with a problem. Open a reason for its places.', html('div', { class: 'bars' }, reasons));
  }

  function drawWithoutPorts() {
    const MOST = 60;
    const without = data.nes.filter(([, , , ports]) => ports === 0);
    const link = ([ne]) => html('li', {}, neLink(ne, 'NE ' + ne));
    const links = without.length === 0 ? [] : [html('ul', { class: 'links' }, without.slice(0, MOST).map(link))];
    if (without.length > MOST) {
      links.push(html('details', {}, html('summary', {}, `and ${grouped(without.length - MOST)} more`), html('ul', { class: 'links' }, without.slice(MOST).map(link))));
    }
    const none = data.nes.length === 0 ? NO_NE : 'Every NE has a port.';
    return card('without-ports', 'NEs without ports', without.length === 0 ? none : `The file names no port of ${counted(without.length, 'NE')}.`, ...links);
  }

  function drawCounts() {
    const named = (rows, nameOf) => rows.map(([value, name, count]) => ({ label: nameOf(value, name), count }));
    const plain = (none) => (value) => value ?? none;
    const cards = [card('count-kind', 'Identifiers by kind', '', ...bars(named(data.counts.kind, (value) => value ?? 'no kind'), 24))];
    if (data.hasInventory) {
      cards.push(
        card('count-family', 'NEs by family', 'An NE may belong to several.', ...bars(named(data.counts.family, plain('no family')))),
        card('count-layer', 'NEs by network layer', '', ...bars(named(data.counts.layer, plain('no layer')))),
        card('count-ne-type', 'NEs by type', '', ...bars(named(data.counts['ne-type'], (value, name) => (value === null ? 'not in the inventory' : name ? `${name} (${value})` : 'NE type ' + value)), 16)));
    }
    cards.push(
      card('count-level', 'Ports by interface level', 'Ports, and what lies on them, by the interface level of the FB type.',
        ...bars(named(data.counts.level, (value) => levelName(value === null ? -1 : Number(value))))),
      card('count-fb-type', 'Ports by FB type', 'The same identifiers by FB type.', ...bars(named(data.counts['fb-type'], (value) => fbTypeName(value === null ? 0 : Number(value))))));
    byId('counts').append(...cards);
  }

  function setUpColours() {
    for (const [name, { name: words }] of Object.entries(COLOURINGS)) {
      if (name === 'alarms' && !data.alarms) {
        continue;
      }
      byId('colours').append(html('label', {}, html('input', { type: 'radio', name: 'colour', value: name, checked: name === colouringName, onchange: () => {
        colouringName = name;
        drawShelves();
      } }), ' ' + words));
    }
  }

  function main() {
    byId('about').textContent = [data.inputs.join(', '), data.inventory && 'inventory ' + data.inventory, data.alarms && 'alarms ' + data.alarms.file, data.made].filter(Boolean).join(' · ');
    document.title = 'Network report: ' + data.inputs.join(', ');
    drawTotals();
    byId('attention').append(...(data.alarms ? drawAlarms() : []), drawProblems(), drawWithoutPorts());
    drawCounts();
    setUpColours();
    setUpSearch();
    for (const id of ['shelves', 'beside', 'detail']) {
      byId(id).addEventListener('click', showOnChoice);
    }
    for (const id of ['shelves', 'beside']) {
      byId(id).addEventListener('pointerover', showOnPoint);
      byId(id).addEventListener('focusin', showOnPoint);
    }
    byId('shelves').addEventListener('keydown', moveFocus);
    window.addEventListener('popstate', selectByHash);
    window.addEventListener('resize', () => {
      if (current && byId('shelves').dataset.width !== String(Math.max(160, Math.floor(byId('shelves').clientWidth)))) {
        drawShelves();
      }
    });
    const isChosen = selectByHash();
    if (!isChosen && data.nes.length === 0) {
      selectNone('No NE', NO_NE + ' So there is nothing to draw.');
    } else if (!isChosen) {
      const most = data.nes.reduce((best, [ne], index) => (alarmCount(ne) > alarmCount(data.nes[best][0]) ? index : best), 0);
      selectNe(most);
    }
    document.documentElement.dataset.ready = 'true';
    performance.mark('ready');
  }

  main();
})();
