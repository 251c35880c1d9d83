// The tree of what is in the scene: each can be hidden, and looked at.
import { countOf, matching } from '../data/outline.js';
import { counted } from '../data/report.js';
import { appendInPieces, icon, make } from './parts.js';

const fewRows = 12;      // of a list that needs no search
const rowsAtFirst = 24;  // things are unfolded as long as no more rows come of it
const mostMatches = 300;
const kinds = { object: 'object', group: 'group', light: 'light', camera: 'camera' };

export class ObjectList {
  // items: see data/outline.js. onShow(item, visible), onLook(item): what a user asked for. isShown(item).
  constructor(part, items, { onShow, onLook, isShown }) {
    this.tree = part('tree');
    this.items = items;
    this.does = { onShow, onLook, isShown };
    this.boxes = new Map();
    this.open = new Set();
    this.showAll = part('show-all');
    this.hint = part('tree-hint');
    this.hidden = new Set();
    const total = countOf(items);
    part('search-row').hidden = total <= fewRows;
    this.#unfold(items);
    part('search').addEventListener('input', (event) => this.#search(event.target.value));
    this.showAll.addEventListener('click', () => {
      for (const item of [...this.hidden]) this.#show(item, true);
    });
    this.#fill(this.items);
    if (total === 0) this.hint.textContent = 'There is nothing in this scene.';
  }

  // What holds the most is opened first.
  #unfold(items) {
    let rows = items.length;
    const closed = [...items];
    for (;;) {
      const most = closed.reduce((best, item) => (item.children.length > (best?.children.length ?? 0) ? item : best), undefined);
      if (!most || rows + most.children.length > rowsAtFirst) return;
      this.open.add(most);
      rows += most.children.length;
      closed.splice(closed.indexOf(most), 1, ...most.children);
    }
  }

  #fill(items) {
    this.boxes.clear();
    this.tree.replaceChildren();
    appendInPieces(this.tree, items, (item) => this.#row(item, true));
  }

  #search(words) {
    const found = words.trim() === '' ? null : matching(this.items, words, mostMatches);
    this.hint.textContent = found === null ? '' : found.length === 0 ? 'Nothing of that name.'
      : found.length === mostMatches ? `The first ${mostMatches} of that name.` : counted(found.length, 'match').replace('matchs', 'matches');
    if (found === null) {
      this.#fill(this.items);
      return;
    }
    this.boxes.clear();
    this.tree.replaceChildren(...found.map((item) => this.#row(item, false)));
  }

  #row(item, nested) {
    const folds = nested && item.children.length > 0;
    const box = make('input', { type: 'checkbox', class: 'eye', 'aria-label': `Show ${item.name}`, title: 'Show or hide' });
    box.checked = this.does.isShown(item);
    box.addEventListener('change', () => this.#show(item, box.checked));
    this.boxes.set(item, box);
    const name = make('button', { type: 'button', class: 'name', title: item.kind === 'camera' ? `Look through ${item.name}` : `Look at ${item.name}` },
      icon(kinds[item.kind]), make('span', {}, item.name));
    name.addEventListener('click', () => {
      for (const one of this.tree.querySelectorAll('.name[aria-current]')) one.removeAttribute('aria-current');
      name.setAttribute('aria-current', 'true');
      this.does.onLook(item);
    });
    const line = make('div', { class: 'row' }, name, box);
    const row = make('li', {}, line);
    if (!folds) {
      line.prepend(make('span', { class: 'fold' }));
      return row;
    }
    const fold = make('button', { type: 'button', class: 'fold', 'aria-label': `Parts of ${item.name}`, 'aria-expanded': 'false' }, icon('more'));
    const children = make('ul');
    const unfold = (open) => {
      fold.setAttribute('aria-expanded', String(open));
      children.replaceChildren();
      children.hidden = !open;
      if (open) {
        this.open.add(item);
        appendInPieces(children, item.children, (child) => this.#row(child, true));
      } else {
        this.open.delete(item);
      }
    };
    fold.addEventListener('click', () => unfold(children.hidden));
    line.prepend(fold);
    row.append(children);
    unfold(this.open.has(item));
    return row;
  }

  #show(item, visible) {
    if (visible) this.hidden.delete(item);
    else this.hidden.add(item);
    this.showAll.hidden = this.hidden.size === 0;
    const box = this.boxes.get(item);
    if (box) box.checked = visible;
    this.does.onShow(item, visible);
  }
}
