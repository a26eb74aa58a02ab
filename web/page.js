// The page: frames from the camera (or from a Y4M clip) go to the detector
// one by one, here in the browser, and its decision is drawn on the picture
// as the command-line tool's --annotate draws it. With ?record in the
// address each analysed frame's answer and the SHA-256 of the NV21 bytes the
// detector got are kept in window.moloPage.record (for the browser test).
'use strict';
(async function () {
  const $ = (id) => document.getElementById(id);
  const view = $('view');
  const ctx = view.getContext('2d');
  const video = $('video');
  const recording = new URLSearchParams(location.search).has('record');
  const page = { ready: false, mode: '', source: '', record: [], done: false, error: '' };
  window.moloPage = page;

  const fail = (message) => {
    page.error = message;
    $('decision').textContent = message;
  };

  let module;
  try {
    module = await createMoloWeb();
  } catch (e) {
    fail('The detector could not be loaded: ' + e);
    return;
  }
  let detector = null;
  // A fresh detector for every source, and whenever the picture size changes.
  function detectorFor(width, height, fresh) {
    if (detector && (fresh || detector.width !== width || detector.height !== height)) {
      detector.release();
      detector = null;
    }
    if (!detector) detector = new MoloDetect.MoloDetector(module, width, height, false);
    return detector;
  }

  // ---- drawing, as the tool's annotation does it ----
  const COLOUR = { grey: 'rgb(191,191,191)', amber: 'rgb(255,190,0)', red: 'rgb(255,0,0)',
    amberTint: 'rgba(255,190,0,0.45)', redTint: 'rgba(255,0,0,0.45)', white: '#fff', black: '#000' };

  function outline(r0, r1, c0, c1, t, colour, dash) {
    ctx.fillStyle = colour;
    const step = dash > 0 ? 2 * dash : Math.max(r1 - r0, c1 - c0);
    const len = dash > 0 ? dash : step;
    for (let c = c0; c < c1; c += step) {
      ctx.fillRect(c, r0, Math.min(len, c1 - c), t);
      ctx.fillRect(c, r1 - t, Math.min(len, c1 - c), t);
    }
    for (let r = r0; r < r1; r += step) {
      ctx.fillRect(c0, r, t, Math.min(len, r1 - r));
      ctx.fillRect(c1 - t, r, t, Math.min(len, r1 - r));
    }
  }

  // Tints the candidate region's 8 x 8 cells and boxes them.
  function markRegion(tint, colour, t) {
    const mask = detector.fingerMask();
    const w = detector.workingWidth, h = detector.workingHeight;
    let top = h, left = w, bottom = -1, right = -1;
    ctx.fillStyle = tint;
    for (let r = 0; r < h; ++r) {
      for (let c = 0; c < w; ++c) {
        if (mask[r * w + c] === 0) continue;
        ctx.fillRect(8 * c, 8 * r, 8, 8);
        top = Math.min(top, r); bottom = Math.max(bottom, r);
        left = Math.min(left, c); right = Math.max(right, c);
      }
    }
    if (bottom >= 0) outline(8 * top, 8 * bottom + 8, 8 * left, 8 * right + 8, t, colour, 0);
  }

  function cross(row, col, arm, half, colour) {
    ctx.fillStyle = colour;
    ctx.fillRect(col - arm, row - half, 2 * arm, 2 * half);
    ctx.fillRect(col - half, row - arm, 2 * half, 2 * arm);
  }

  function drawDecision(a, w, h) {
    const t = Math.max(2, Math.floor(Math.min(w, h) / 80));
    const half = Math.max(1, Math.floor(t / 2));
    if (a.state === 'searching') {
      outline(0, h, 0, w, Math.max(1, Math.floor(t / 3)), COLOUR.grey, 0);
    } else if (a.state === 'held') {
      markRegion(COLOUR.amberTint, COLOUR.amber, half);
      outline(0, h, 0, w, t, COLOUR.amber, 4 * t);
    } else {
      markRegion(COLOUR.redTint, COLOUR.red, half);
      outline(0, h, 0, w, t, COLOUR.red, 0);
      const arm = Math.max(6, Math.floor(Math.min(w, h) / 16));
      cross(a.row, a.col, arm + 1, Math.floor(t / 2) + 1, COLOUR.black);
      cross(a.row, a.col, arm, half, COLOUR.white);
    }
  }

  // ---- one frame through the detector ----
  const times = new Float64Array(100);
  let frames = 0;
  const TEXT = {
    searching: 'Searching: no finger',
    held: 'Held: a candidate passed every test, the next frame may confirm it',
  };

  function analyseFilled(w, h) {
    const start = performance.now();
    const a = detector.analyse(Number($('side').value));
    const ms = performance.now() - start;
    times[frames % times.length] = ms;
    const n = Math.min(++frames, times.length);
    let sum = 0;
    for (let i = 0; i < n; ++i) sum += times[i];
    $('timing').textContent = `analysis ${ms.toFixed(2)} ms per frame ` +
      `(mean ${(sum / n).toFixed(2)} ms over the last ${n} frames)`;
    $('decision').textContent = a.state === 'reported'
      ? `Finger reported, centred at row ${a.row}, column ${a.col}` : TEXT[a.state];
    if (recording) {
      const entry = { frame: page.record.length, result: a.result, state: a.state,
        row: a.result === 1 ? a.row : null, col: a.result === 1 ? a.col : null, sha256: null };
      page.record.push(entry);
      // digest() copies the bytes before it returns.
      crypto.subtle.digest('SHA-256', detector.frame).then((d) => {
        entry.sha256 = Array.from(new Uint8Array(d), (b) => b.toString(16).padStart(2, '0')).join('');
      });
    }
    return a;
  }

  function showSize(w, h) {
    if (view.width !== w || view.height !== h) {
      view.width = w;
      view.height = h;
    }
  }

  // ---- camera ----
  let playing = 0;  // counts clips started; a playing clip stops when anything else starts
  let yuv = new Uint8Array(0);
  let scratch = null;

  async function cameraFrame() {
    let frame = null;
    try {
      frame = new VideoFrame(video, { timestamp: 0 });
    } catch (e) {
      frame = null;  // no WebCodecs: the canvas below
    }
    let w, h, path;
    if (frame && ['I420', 'I420A', 'NV12'].includes(frame.format)) {
      w = frame.visibleRect.width;
      h = frame.visibleRect.height;
      const size = frame.allocationSize();
      if (yuv.length < size) yuv = new Uint8Array(size);
      const layout = await frame.copyTo(yuv);
      const plane = (i, rows) => yuv.subarray(layout[i].offset, layout[i].offset + layout[i].stride * rows);
      const d = detectorFor(w, h, false);
      const ch = (h + 1) >> 1;
      if (frame.format === 'NV12') {
        d.fromSemiPlanar(plane(0, h), plane(1, ch), layout[0].stride, layout[1].stride, false);
      } else {
        d.fromI420(plane(0, h), plane(1, ch), plane(2, ch), layout[0].stride, layout[1].stride,
          layout[2].stride);
      }
      path = 'VideoFrame ' + frame.format;
    } else {
      w = video.videoWidth;
      h = video.videoHeight;
      if (!scratch) scratch = document.createElement('canvas');
      if (scratch.width !== w || scratch.height !== h) {
        scratch.width = w;
        scratch.height = h;
      }
      const sctx = scratch.getContext('2d', { willReadFrequently: true });
      sctx.drawImage(video, 0, 0);
      detectorFor(w, h, false).fromRGBA(sctx.getImageData(0, 0, w, h).data);
      path = 'canvas (RGB)';
    }
    showSize(w, h);
    ctx.drawImage(frame && path !== 'canvas (RGB)' ? frame : video, 0, 0, w, h);
    if (frame) frame.close();
    drawDecision(analyseFilled(w, h), w, h);
    page.source = `camera ${w}x${h}, frames read as ${path}`;
    $('source').textContent = page.source;
  }

  // Every frame the video shows, or every screen refresh where the browser
  // cannot tell when a new frame is shown.
  const nextFrame = (callback) => (video.requestVideoFrameCallback
    ? video.requestVideoFrameCallback(callback) : requestAnimationFrame(callback));

  function onVideoFrame() {
    if (page.mode !== 'camera') return;
    cameraFrame().catch((e) => fail('Frame failed: ' + e))
      .finally(() => { if (page.mode === 'camera') nextFrame(onVideoFrame); });
  }

  $('camera').addEventListener('click', async () => {
    ++playing;
    if (!navigator.mediaDevices || !navigator.mediaDevices.getUserMedia) {
      fail('No camera access here: browsers give it to pages served over HTTPS (or from localhost).');
      return;
    }
    try {
      stopCamera();
      const stream = await navigator.mediaDevices.getUserMedia({ video: true, audio: false });
      video.srcObject = stream;
      await video.play();
      page.mode = 'camera';
      frames = 0;
      if (detector) { detector.release(); detector = null; }
      nextFrame(onVideoFrame);
    } catch (e) {
      fail('The camera could not be opened: ' + e.message);
    }
  });

  function stopCamera() {
    page.mode = '';
    if (video.srcObject) {
      for (const track of video.srcObject.getTracks()) track.stop();
      video.srcObject = null;
    }
  }

  // ---- a Y4M clip, frame by frame at its own rate ----
  let picture = null;

  function showI420(f, w, h) {
    if (!picture || picture.width !== w || picture.height !== h) picture = ctx.createImageData(w, h);
    const rgba = picture.data;
    const cw = (w + 1) >> 1;
    for (let r = 0; r < h; ++r) {
      for (let c = 0; c < w; ++c) {
        const y = 1.164 * (f.y[r * w + c] - 16);
        const u = f.u[(r >> 1) * cw + (c >> 1)] - 128;
        const v = f.v[(r >> 1) * cw + (c >> 1)] - 128;
        const i = 4 * (r * w + c);
        rgba[i] = y + 1.596 * v;
        rgba[i + 1] = y - 0.392 * u - 0.813 * v;
        rgba[i + 2] = y + 2.017 * u;
        rgba[i + 3] = 255;
      }
    }
    ctx.putImageData(picture, 0, 0);
  }

  $('file').addEventListener('change', async (event) => {
    const file = event.target.files[0];
    if (!file) return;
    stopCamera();
    const run = ++playing;
    page.done = false;
    let clip;
    try {
      clip = MoloY4m.parse(new Uint8Array(await file.arrayBuffer()));
    } catch (e) {
      fail(file.name + ': ' + e.message);
      return;
    }
    const { width: w, height: h } = clip;
    const d = detectorFor(w, h, true);
    page.mode = 'file';
    page.done = false;
    page.record = [];
    frames = 0;
    page.source = `${file.name}: ${clip.frames.length} frames of ${w}x${h}`;
    $('source').textContent = page.source;
    showSize(w, h);
    const cw = (w + 1) >> 1;
    let n = 0;
    const step = () => {
      if (page.mode !== 'file' || run !== playing) return;
      if (n === clip.frames.length) {
        page.done = true;
        $('source').textContent = page.source + ', played';
        return;
      }
      const f = clip.frames[n++];
      d.fromI420(f.y, f.u, f.v, w, cw, cw);
      showI420(f, w, h);
      drawDecision(analyseFilled(w, h), w, h);
      setTimeout(step, 1000 / clip.rate);
    };
    step();
  });

  page.ready = true;
})();
