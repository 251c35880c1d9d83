// What the conversion kept, put back, left out and missed, as foldable lists.
import { counted, grouped } from '../data/report.js';
import { appendInPieces, make } from './parts.js';

const kindWords = { image: 'Image', object: 'Object', scene: 'Scene' };
const levelWords = { error: 'Error', warning: 'Warning', info: 'Note' };

function place({ file, line }) {
  return file === '' ? '' : line > 0 ? `${file}, line ${line}` : file;
}

function missingRow(one) {
  const row = make('li', {}, make('strong', {}, one.name), ` ${(kindWords[one.kind] ?? 'File').toLowerCase()}`);
  if (one.askedBy) row.append(make('p', { class: 'hint' }, `Asked for by ${one.askedBy}`));
  if (one.tried.length > 0) {
    const places = make('ul', { class: 'places' });
    appendInPieces(places, one.tried, (path) => make('li', {}, path));
    row.append(make('details', {}, make('summary', {}, `Looked for in ${counted(one.tried.length, 'place')}`), places));
  }
  return row;
}

function messageRow(one) {
  const row = make('li', { class: one.level }, make('span', { class: 'level' }, levelWords[one.level]), ` ${one.text}`);
  const where = place(one);
  if (where) row.append(make('p', { class: 'hint' }, where));
  return row;
}

function group(title, things, makeRow, open) {
  const list = make('ul', { class: 'rows' });
  appendInPieces(list, things, makeRow);
  return make('details', { open }, make('summary', {}, `${title} `, make('span', { class: 'count' }, grouped(things.length))), list);
}

// How many things a user may want to know of.
export function troubles(report) {
  return report.missing.length + report.losses.length + report.messages.filter(({ level }) => level !== 'info').length;
}

export function showReport(element, report) {
  if (report.counters.length > 0) {
    const counters = make('dl', { class: 'counters' });
    for (const { name, count } of report.counters)
      counters.append(make('div', {}, make('dt', {}, name), make('dd', {}, grouped(count))));
    element.append(counters);
  }
  if (troubles(report) === 0)
    element.append(make('p', { class: 'good' }, 'Nothing is missing, and nothing was left out.'));
  if (report.missing.length > 0) element.append(group('Missing files', report.missing, missingRow, true));
  if (report.losses.length > 0)
    element.append(group('Left out', report.losses, (one) => make('li', {}, one.count > 0 ? `${grouped(one.count)} ${one.text}` : one.text), true));
  if (report.restored.length > 0)
    element.append(group('Put back', report.restored, (one) => make('li', {}, one.text || one.code), false));
  if (report.messages.length > 0) element.append(group('Messages', report.messages, messageRow, false));
  if (report.messagesLeftOut > 0)
    element.append(make('p', { class: 'hint' }, `${counted(report.messagesLeftOut, 'more message')} of the same run aren't in this page.`));
  const made = [report.source && `from ${report.source}`, report.program && `by ${report.program}`].filter(Boolean).join(' ');
  if (made) element.append(make('p', { class: 'hint' }, `This page was made ${made}.`));
}
