// Frames and seconds. A clip runs in seconds from 0; people of the time counted frames, so that is what the page shows.

const finite = (value, otherwise) => (Number.isFinite(value) ? value : otherwise);

// first, last: frame numbers, whole. rate: frames a second. zero: the second at which frame 0 lies, below 0 too.
// start, end: seconds of the clip.
export class TimeLine {
  // extras: the scene's "timeLine", or nothing; duration: of the clip in seconds.
  constructor(extras, duration) {
    const given = extras ?? {};
    this.rate = given.frameRate > 0 && given.frameRate <= 4800 ? given.frameRate : 30;
    this.start = Math.max(0, finite(given.start, 0));
    this.end = finite(given.end, duration);
    if (!(this.end > this.start)) this.end = Math.max(this.start, finite(duration, 0));
    // Without a frame zero the first frame lies where the clip begins.
    this.zero = finite(given.frameZero, this.start - finite(given.startFrame, 0) / this.rate);
    this.first = Math.round(this.#frames(this.start));
    this.last = Math.max(this.first, Math.floor(this.#frames(this.end) + 1e-4));
  }

  #frames(time) {
    return (time - this.zero) * this.rate;
  }

  get moves() {
    return this.end > this.start;
  }

  // The frame that is shown at a time: it stays until the next one begins.
  frameAt(time) {
    const frame = Math.floor(this.#frames(time) + 1e-4);
    return Math.min(this.last, Math.max(this.first, frame));
  }

  timeOf(frame) {
    return this.#inside(this.zero + finite(frame, this.first) / this.rate);
  }

  #inside(time) {
    return Math.min(this.end, Math.max(this.start, time));
  }

  // Where the clip stands `seconds` after `time`, round and round.
  after(time, seconds) {
    const length = this.end - this.start;
    if (!(length > 0)) return this.start;
    const passed = (time - this.start + finite(seconds, 0)) % length;
    return this.start + (passed < 0 ? passed + length : passed);
  }
}

// "0:02.40": minutes, seconds, hundredths.
export function clockText(seconds) {
  const hundredths = Math.round(Math.max(0, finite(seconds, 0)) * 100);
  const minutes = Math.floor(hundredths / 6000);
  const rest = ((hundredths % 6000) / 100).toFixed(2).padStart(5, '0');
  return `${minutes}:${rest}`;
}
