"""Clips for the web checks, all made from the tool's demo clip (written as
packed NV21 frames by the WebAssembly build's molo_web_demo_clip)."""
import os
import subprocess

import numpy as np


def write_y4m(path, frames, rate="10:1"):
    h, w = frames[0][0].shape
    with open(path, "wb") as out:
        out.write(f"YUV4MPEG2 W{w} H{h} F{rate} Ip A1:1 C420jpeg\n".encode())
        for y, u, v in frames:
            out.write(b"FRAME\n")
            for plane in (y, u, v):
                out.write(np.ascontiguousarray(plane, np.uint8).tobytes())


def write_raw(path, frames, v_first):
    """Raw semi-planar frames: NV21 (V,U pairs) when v_first, else NV12."""
    with open(path, "wb") as out:
        for y, u, v in frames:
            pairs = np.stack((v, u) if v_first else (u, v), axis=-1)
            out.write(y.tobytes() + pairs.tobytes())


def nv21(frame):
    """The bytes the page hands the detector for a picture (even width)."""
    y, u, v = frame
    return y.tobytes() + np.stack((v, u), axis=-1).tobytes()


def make_clips(out_dir, web_build, node="node"):
    """Writes the clips; returns ([(name, clip, tool arguments)], the demo's (Y, U, V) frames)."""
    os.makedirs(out_dir, exist_ok=True)
    raw = os.path.join(out_dir, "demo.nv21")
    subprocess.run([node, os.path.join(web_build, "web", "molo_web_demo_clip.js"), raw], check=True)
    frames = [(f[:480], f[480:, 1::2], f[480:, 0::2]) for f in np.fromfile(raw, np.uint8).reshape(-1, 720, 640)]
    mirrored = [tuple(np.ascontiguousarray(p[:, ::-1]) for p in f) for f in frames]
    # Odd width and height: the luma is cut to 635 x 477, the chroma to 318 x 239.
    odd = [(y[1:478, 2:637], u[1:240, 1:319], v[1:240, 1:319]) for y, u, v in frames]
    large = [tuple(p.repeat(2, 0).repeat(2, 1) for p in f) for f in frames[6:28]]  # each side doubled
    empty = frames[:8] + frames[32:]
    clips = []
    for name, picked, args in [("demo", frames, []), ("mirrored", mirrored, ["--orientation", "1"]),
                               ("odd", odd, []), ("large", large, []), ("empty", empty, [])]:
        path = os.path.join(out_dir, name + ".y4m")
        write_y4m(path, picked)
        clips.append((name, path, args))
    for name, picked, v_first, args in [("demo.nv12", frames, False, ["--nv12"]),
                                        ("mirrored.nv21", mirrored[:24], True, ["--orientation", "1"])]:
        path = os.path.join(out_dir, name)
        write_raw(path, picked, v_first)
        clips.append((name, path, ["--size", "640x480"] + args))
    return clips, frames
