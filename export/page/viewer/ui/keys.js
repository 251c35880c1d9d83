// Keys of the scene. They count only while it has the focus, so that the rest of the page keeps its own.

// does: turn(left, up), pan(right, up), zoom(share), fit(), camera(), toggle(), step(frames), light(), wires(), backdrop().
export function setUpKeys(canvas, does) {
  const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, 1], ArrowDown: [0, -1] };
  const keys = {
    '+': () => does.zoom(1 / 1.2), '=': () => does.zoom(1 / 1.2), '-': () => does.zoom(1.2), _: () => does.zoom(1.2),
    Home: () => does.fit(), ' ': () => does.toggle(), ',': () => does.step(-1), '.': () => does.step(1),
    c: () => does.camera(), l: () => does.light(), w: () => does.wires(), b: () => does.backdrop(),
  };
  canvas.addEventListener('keydown', (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const arrow = arrows[event.key], key = keys[event.key.length === 1 ? event.key.toLowerCase() : event.key];
    if (!arrow && !key) return;
    event.preventDefault();
    if (!arrow) key();
    else if (event.shiftKey) does.pan(arrow[0] * 0.05, arrow[1] * 0.05);
    else does.turn(arrow[0] * 5, arrow[1] * 5);
  });
}
