// The detector seen from JavaScript: a MoloDetector owns one handle of the
// WebAssembly module (molo_web.js) with its NV21 frame buffer, fills that
// buffer from the picture layouts a page meets (planar I420, semi-planar
// NV12 or NV21, RGBA from a canvas) and analyses it. Used by the page and by
// the Node checks. Nothing is allocated per frame: the buffer views are
// made once (again only if the module's memory has grown) and analyse()
// returns the same answer object each time.
(function (root, factory) {
  if (typeof module === 'object' && module.exports) module.exports = factory();
  else root.MoloDetect = factory();
})(typeof self !== 'undefined' ? self : this, function () {
  'use strict';

  const STATES = ['searching', 'held', 'reported'];

  class MoloDetector {
    // module: the instance createMoloWeb() resolved to. log: the detector's
    // diagnostic messages go to the module's printErr.
    constructor(module, width, height, log) {
      this.m = module;
      this.handle = module._molo_web_create(width, height, log ? 1 : 0);
      if (!this.handle) throw new Error('the detector refuses a ' + width + 'x' + height + ' picture');
      this.width = width;
      this.height = height;
      this.stride = module._molo_web_stride(this.handle);
      this.chromaRows = (height + 1) >> 1;
      this.frameBytes = this.stride * (height + this.chromaRows);
      this.framePtr = module._molo_web_frame(this.handle);
      this.workingWidth = module._molo_web_working_width(this.handle);
      this.workingHeight = module._molo_web_working_height(this.handle);
      this.heap = null;
      this.answer = { result: 0, state: 'searching', row: 0, col: 0 };
    }

    views() {
      if (this.heap !== this.m.HEAPU8.buffer) {
        this.heap = this.m.HEAPU8.buffer;
        this.frame = new Uint8Array(this.heap, this.framePtr, this.frameBytes);
        this.luma = this.frame.subarray(0, this.stride * this.height);
        this.chroma = this.frame.subarray(this.stride * this.height);
        const n = this.workingWidth * this.workingHeight;
        this.fingerMaskView = new Uint8Array(this.heap, this.m._molo_web_finger_mask(this.handle), n);
      }
    }

    // Luma rows of width bytes, pitch yStride; an odd width's padding column
    // repeats the edge pixel, as the command-line tool does.
    copyLuma(y, yStride) {
      const { width, height, stride, luma } = this;
      for (let r = 0; r < height; ++r) {
        const row = y.subarray(r * yStride, r * yStride + width);
        luma.set(row, r * stride);
        if (stride > width) luma[r * stride + width] = row[width - 1];
      }
    }

    // Planar 4:2:0 (I420) with the given row pitches.
    fromI420(y, u, v, yStride, uStride, vStride) {
      this.views();
      this.copyLuma(y, yStride);
      const cw = (this.width + 1) >> 1;
      const { chroma, stride, chromaRows } = this;
      for (let r = 0; r < chromaRows; ++r) {
        const out = r * stride, ur = r * uStride, vr = r * vStride;
        for (let c = 0; c < cw; ++c) {
          chroma[out + 2 * c] = v[vr + c];
          chroma[out + 2 * c + 1] = u[ur + c];
        }
      }
    }

    // Semi-planar 4:2:0: interleaved chroma pairs, U first (NV12) unless
    // vFirst (NV21); written V first either way.
    fromSemiPlanar(y, uv, yStride, uvStride, vFirst) {
      this.views();
      this.copyLuma(y, yStride);
      const cw = (this.width + 1) >> 1;
      const { chroma, stride, chromaRows } = this;
      const first = vFirst ? 0 : 1;
      for (let r = 0; r < chromaRows; ++r) {
        const out = r * stride, row = r * uvStride;
        for (let c = 0; c < cw; ++c) {
          chroma[out + 2 * c] = uv[row + 2 * c + first];
          chroma[out + 2 * c + 1] = uv[row + 2 * c + 1 - first];
        }
      }
    }

    // RGBA pixels (a canvas's ImageData), converted with the video-range
    // BT.601 integer formulas; chroma from the mean of each 2 x 2 block.
    fromRGBA(rgba) {
      this.views();
      const { width, height, stride, luma, chroma } = this;
      for (let r = 0; r < height; ++r) {
        for (let c = 0; c < width; ++c) {
          const i = 4 * (r * width + c);
          luma[r * stride + c] = (66 * rgba[i] + 129 * rgba[i + 1] + 25 * rgba[i + 2] + 128 >> 8) + 16;
        }
        if (stride > width) luma[r * stride + width] = luma[r * stride + width - 1];
      }
      for (let r = 0; r < this.chromaRows; ++r) {
        for (let c = 0; c < (width + 1) >> 1; ++c) {
          let red = 0, green = 0, blue = 0, n = 0;
          for (let dr = 0; dr < 2; ++dr) {
            for (let dc = 0; dc < 2; ++dc) {
              const rr = 2 * r + dr, cc = 2 * c + dc;
              if (rr >= height || cc >= width) continue;
              const i = 4 * (rr * width + cc);
              red += rgba[i]; green += rgba[i + 1]; blue += rgba[i + 2]; ++n;
            }
          }
          red /= n; green /= n; blue /= n;
          chroma[r * stride + 2 * c] = (112 * red - 94 * green - 18 * blue + 128 >> 8) + 128;
          chroma[r * stride + 2 * c + 1] = (-38 * red - 74 * green + 112 * blue + 128 >> 8) + 128;
        }
      }
    }

    // Analyses the frame in the buffer (vFirst: 0 when the buffer was filled
    // with U,V pairs directly). Gain 1.0 and 5000 K unless given, as the
    // command-line tool assumes.
    analyse(orientation, gain = 1.0, colorTemp = 5000, vFirst = 1) {
      const a = this.answer;
      a.result = this.m._molo_web_analyse(this.handle, orientation, vFirst, gain, colorTemp);
      a.state = STATES[this.m._molo_web_state(this.handle)];
      a.row = this.m._molo_web_row(this.handle);
      a.col = this.m._molo_web_col(this.handle);
      return a;
    }

    // The candidate region, one byte per working cell (8 x 8 frame pixels).
    fingerMask() {
      this.views();
      return this.fingerMaskView;
    }

    release() {
      if (this.handle) this.m._molo_web_release(this.handle);
      this.handle = 0;
    }
  }

  return { MoloDetector, STATES };
});
