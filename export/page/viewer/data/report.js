// What the program tells about the conversion, out of the page's own block of JSON. docs/user describes the block.

const levels = ['error', 'warning', 'info'];

const text = (value) => (typeof value === 'string' ? value : typeof value === 'number' ? String(value) : '');
const count = (value) => (Number.isFinite(value) && value >= 0 ? value : 0);
const list = (value, read) => (Array.isArray(value) ? value.filter((one) => one && typeof one === 'object').map(read) : []);

// Takes the block's text, and gives all its parts, empty ones too: a page without a report is a page all the same.
export function reportOf(json) {
  let given = {};
  try {
    given = JSON.parse(json) ?? {};
  } catch {
    // An empty block.
  }
  return {
    source: text(given.source),
    program: text(given.program),
    counters: list(given.counters, (one) => ({ name: text(one.name), count: count(one.count) })),
    restored: list(given.restored, (one) => ({ code: text(one.code), text: text(one.text) })),
    losses: list(given.losses, (one) => ({ code: text(one.code), text: text(one.text), count: count(one.count) })),
    missing: list(given.missing, (one) => ({
      kind: text(one.kind), name: text(one.name), askedBy: text(one.askedBy),
      tried: Array.isArray(one.tried) ? one.tried.map(text) : [],
    })),
    messages: list(given.messages, (one) => ({
      code: text(one.code), level: levels.includes(one.level) ? one.level : 'info', text: text(one.text),
      file: text(one.file), line: count(one.line),
    })),
    messagesLeftOut: count(given.messagesLeftOut),
  };
}

export function grouped(number) {
  return String(number).replace(/\B(?=(\d{3})+$)/g, ',');
}

// "1 image", "2 images".
export function counted(number, thing) {
  return `${grouped(number)} ${thing}${number === 1 ? '' : 's'}`;
}

// "harbour.glb" for "harbour.lws"; characters that some system refuses in a name become "_".
export function glbName(source) {
  const stem = source.replace(/\.(lwo|lws|lw|lwob|scn)$/i, '').replace(/[\u0000-\u001f<>:"/\\|?*\u007f]/g, '_').trim();
  return `${stem || 'scene'}.glb`;
}
