// Base64 text, in pieces that each stand for whole bytes, to one array of bytes.

const maxBytes = 2 ** 31 - 1; // what every browser of today holds in one array

function sizeOf(text) {
  if (text.length % 4 !== 0) throw new Error('a piece of base64 is cut off');
  return (text.length / 4) * 3 - (text.endsWith('==') ? 2 : text.endsWith('=') ? 1 : 0);
}

// Throws where a piece isn't base64, or all of them are more than a browser holds.
export function bytesOf(pieces) {
  const total = pieces.reduce((sum, text) => sum + sizeOf(text), 0);
  if (total > maxBytes) throw new Error('it is larger than 2 GiB');
  const bytes = new Uint8Array(total);
  let at = 0;
  for (const text of pieces) {
    const letters = atob(text);
    for (let i = 0; i < letters.length; ++i) bytes[at++] = letters.charCodeAt(i);
  }
  return bytes;
}
