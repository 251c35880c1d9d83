// The page's elements by the names that they bear in viewer.html, and small helpers to make more of them.

// Throws for a name that isn't there: markup and code part early, not in a user's hand.
export function partsOf(element) {
  const parts = new Map([...element.querySelectorAll('[data-part]')].map((one) => [one.dataset.part, one]));
  if (element.dataset.part) parts.set(element.dataset.part, element);
  return (name) => {
    if (!parts.has(name)) throw new Error(`no part of the page is called ${name}`);
    return parts.get(name);
  };
}

// make('li', {class: 'row'}, 'text', child…). Texts stay texts, whatever they look like: names come out of old files.
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes))
    if (value !== undefined && value !== false) element.setAttribute(name, value === true ? '' : value);
  element.append(...children);
  return element;
}

export function icon(name) {
  const space = 'http://www.w3.org/2000/svg';
  const svg = document.createElementNS(space, 'svg'), use = document.createElementNS(space, 'use');
  svg.setAttribute('aria-hidden', 'true');
  use.setAttribute('href', `#i-${name}`);
  svg.append(use);
  return svg;
}

// Appends what `makeOne` makes of each thing, a few hundred at a time, with a button for more.
export function appendInPieces(list, things, makeOne, piece = 200, from = 0) {
  list.append(...things.slice(from, from + piece).map(makeOne));
  const left = things.length - from - piece;
  if (left <= 0) return;
  const button = make('button', { type: 'button', class: 'plain' }, `${Math.min(left, piece)} more of ${left}`);
  const row = make('li', { class: 'more' }, button);
  button.addEventListener('click', () => {
    row.remove();
    appendInPieces(list, things, makeOne, piece, from + piece);
    list.children[from + piece]?.querySelector('button, input, summary')?.focus();
  });
  list.append(row);
}
