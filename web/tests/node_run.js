// Runs the page's module (molo_web.js) under Node over a clip, printing what
// the command-line tool prints with --json and --log, so that the two can be
// compared line for line:
//   node node_run.js WWW_DIR CLIP [--orientation N] [--size WxH [--nv12]] [--log]
// CLIP is a Y4M file, or raw NV21 frames (NV12 with --nv12) with --size.
'use strict';
const fs = require('fs');
const path = require('path');

const [www, clip, ...rest] = process.argv.slice(2);
const opt = { orientation: 0, size: null, nv12: false, log: false };
for (let i = 0; i < rest.length; ++i) {
  const a = rest[i];
  if (a === '--orientation') opt.orientation = Number(rest[++i]);
  else if (a === '--size') opt.size = rest[++i].split('x').map(Number);
  else if (a === '--nv12') opt.nv12 = true;
  else if (a === '--log') opt.log = true;
  else throw new Error('unknown argument ' + a);
}

const { MoloDetector } = require(path.resolve(www, 'detector.js'));
const MoloY4m = require(path.resolve(www, 'y4m.js'));
const createMoloWeb = require(path.resolve(www, 'molo_web.js'));

(async () => {
  // Node has fetch, which the module would use on a bare path: hand it the
  // WebAssembly bytes instead.
  const module = await createMoloWeb({
    wasmBinary: fs.readFileSync(path.resolve(www, 'molo_web.wasm')),
    printErr: (line) => process.stderr.write(line + '\n'),
  });
  const bytes = new Uint8Array(fs.readFileSync(clip));
  let width, height, frames;
  if (opt.size) {
    [width, height] = opt.size;
    const frameBytes = width * height + 2 * ((width + 1) >> 1) * ((height + 1) >> 1);
    frames = [];
    for (let p = 0; p + frameBytes <= bytes.length; p += frameBytes) frames.push(bytes.subarray(p, p + frameBytes));
  } else {
    const y4m = MoloY4m.parse(bytes);
    ({ width, height, frames } = y4m);
  }
  const detector = new MoloDetector(module, width, height, opt.log);
  const out = [];
  frames.forEach((f, n) => {
    if (opt.size) {
      const chromaWidth = 2 * ((width + 1) >> 1);
      detector.fromSemiPlanar(f, f.subarray(width * height), width, chromaWidth, true);
    } else {
      detector.fromI420(f.y, f.u, f.v, width, (width + 1) >> 1, (width + 1) >> 1);
    }
    if (opt.log) process.stderr.write('[frame ' + n + ']\n');
    // Raw NV12 goes in as stored, the order told through v_first, as the tool does.
    const a = detector.analyse(opt.orientation, 1.0, 5000, opt.size && opt.nv12 ? 0 : 1);
    out.push(a.result === 1
      ? `{"frame":${n},"result":1,"row":${a.row},"col":${a.col}}`
      : `{"frame":${n},"result":${a.result},"row":null,"col":null}`);
  });
  detector.release();
  process.stdout.write(out.map((l) => l + '\n').join(''));
})().catch((e) => {
  process.stderr.write('node_run: ' + e.message + '\n');
  process.exit(1);
});
