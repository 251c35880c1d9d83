// Play, pause, and the frame that is shown.
import { clockText } from '../data/time_line.js';

export class Transport {
  // line: a TimeLine. onChange(): the time has changed, or the playing has.
  constructor(part, line, { onChange, say }) {
    this.part = part;
    this.line = line;
    this.onChange = onChange;
    this.say = say;
    this.time = line.start;
    this.playing = false;
    part('transport').hidden = !line.moves;
    for (const name of ['scrub', 'frame']) {
      part(name).min = line.first;
      part(name).max = line.last;
    }
    part('last').textContent = String(line.last);
    part('frame').style.setProperty('--digits', String(Math.max(String(line.first).length, String(line.last).length, 2)));
    part('play').addEventListener('click', () => this.toggle());
    part('step-back').addEventListener('click', () => this.step(-1));
    part('step-forward').addEventListener('click', () => this.step(1));
    part('scrub').addEventListener('input', (event) => this.seek(Number(event.target.value)));
    part('frame').addEventListener('change', (event) => {
      if (event.target.value !== '') this.seek(Number(event.target.value));
      this.#tell(true);
    });
    this.#tell(true);
  }

  toggle() {
    if (this.line.moves) this.play(!this.playing);
  }

  play(playing) {
    this.playing = playing;
    this.last = undefined;
    this.part('play').setAttribute('aria-label', playing ? 'Pause' : 'Play');
    this.part('play').title = playing ? 'Pause' : 'Play';
    this.part('play-icon').setAttribute('href', playing ? '#i-pause' : '#i-play');
    if (!playing) this.say(`Paused at frame ${this.line.frameAt(this.time)}`);
    this.onChange();
  }

  step(frames) {
    if (!this.line.moves) return;
    this.seek(this.line.frameAt(this.time) + frames);
    this.say(`Frame ${this.line.frameAt(this.time)}`);
  }

  // A frame outside the clip is its nearest one.
  seek(frame) {
    if (this.playing) this.play(false);
    this.time = this.line.timeOf(Math.round(frame));
    this.#tell(true);
    this.onChange();
  }

  // Once a drawn frame. now: ms.
  advance(now) {
    if (!this.playing) return;
    if (this.last !== undefined) this.time = this.line.after(this.time, Math.min(now - this.last, 1000) / 1000);
    this.last = now;
    this.#tell(false);
  }

  #tell(always) {
    const { part, line } = this, frame = line.frameAt(this.time);
    if (!always && frame === this.told) return;
    this.told = frame;
    const clock = clockText(this.time - line.start);
    part('scrub').value = String(frame);
    part('scrub').setAttribute('aria-valuetext', `frame ${frame} of ${line.last}, ${clock}`);
    const shares = line.last > line.first ? (frame - line.first) / (line.last - line.first) : 0;
    part('scrub').style.setProperty('--share', `${100 * shares}%`);
    if (document.activeElement !== part('frame') || always) part('frame').value = String(frame);
    part('clock').textContent = clock;
  }
}
