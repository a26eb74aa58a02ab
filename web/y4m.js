// Reads a YUV4MPEG2 clip held in memory: progressive 4:2:0 pictures only
// (C420jpeg, C420mpeg2, C420paldv, C420 or no C tag), as the command-line
// tool does. Used by the page's file mode and by the Node checks.
(function (root, factory) {
  if (typeof module === 'object' && module.exports) module.exports = factory();
  else root.MoloY4m = factory();
})(typeof self !== 'undefined' ? self : this, function () {
  'use strict';

  const CHROMA_420 = ['', '420', '420jpeg', '420mpeg2', '420paldv'];

  function lineEnd(bytes, from) {
    const end = bytes.indexOf(10, from);
    if (end < 0) throw new Error('the clip ends inside a header line');
    return end;
  }

  function text(bytes, from, to) {
    let s = '';
    for (let i = from; i < to; ++i) s += String.fromCharCode(bytes[i]);
    return s;
  }

  // bytes: Uint8Array of the whole file. Returns { width, height, rate,
  // frames: [{ y, u, v }] } with the planes as views into bytes.
  function parse(bytes) {
    const headerEnd = lineEnd(bytes, 0);
    const tokens = text(bytes, 0, headerEnd).split(' ').filter((t) => t.length > 0);
    if (tokens[0] !== 'YUV4MPEG2') throw new Error('not a YUV4MPEG2 clip');
    let width = 0, height = 0, rate = 0, chroma = '';
    for (const token of tokens.slice(1)) {
      const value = token.slice(1);
      switch (token[0]) {
        case 'W': width = Number(value); break;
        case 'H': height = Number(value); break;
        case 'F': {
          const [num, den] = value.split(':').map(Number);
          if (num > 0 && den > 0) rate = num / den;
          break;
        }
        case 'I':
          if (value !== 'p' && value !== '?') throw new Error('interlaced clips are not read');
          break;
        case 'C': chroma = value; break;
        default: break;
      }
    }
    if (!(width >= 1 && width <= 16384 && height >= 1 && height <= 16384)) {
      throw new Error('bad picture size in the YUV4MPEG2 header');
    }
    if (!CHROMA_420.includes(chroma)) {
      throw new Error('chroma layout C' + chroma + ' is not read; convert with ffmpeg -pix_fmt yuv420p');
    }
    const lumaBytes = width * height;
    const chromaBytes = ((width + 1) >> 1) * ((height + 1) >> 1);
    const pictureBytes = lumaBytes + 2 * chromaBytes;
    const frames = [];
    let pos = headerEnd + 1;
    while (pos < bytes.length) {
      const end = lineEnd(bytes, pos);
      if (text(bytes, pos, Math.min(end, pos + 5)) !== 'FRAME') {
        throw new Error('frame ' + frames.length + ': expected a FRAME marker');
      }
      const start = end + 1;
      if (start + pictureBytes > bytes.length) {
        throw new Error('frame ' + frames.length + ' is truncated');
      }
      frames.push({
        y: bytes.subarray(start, start + lumaBytes),
        u: bytes.subarray(start + lumaBytes, start + lumaBytes + chromaBytes),
        v: bytes.subarray(start + lumaBytes + chromaBytes, start + pictureBytes),
      });
      pos = start + pictureBytes;
    }
    return { width, height, rate: rate || 30, frames };
  }

  return { parse };
});
