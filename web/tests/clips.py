"""Clips for the web checks, all made from the tool's demo clip (written by
the WebAssembly build's molo_web_demo_clip), and Y4M reading and writing."""
import os
import subprocess

import numpy as np


def read_y4m(path):
    """(header line, rate text, list of (Y, U, V) arrays)."""
    data = open(path, "rb").read()
    end = data.index(b"\n")
    header = data[:end].decode()
    tags = {t[0]: t[1:] for t in header.split()[1:]}
    w, h = int(tags["W"]), int(tags["H"])
    cw, ch = (w + 1) // 2, (h + 1) // 2
    size = w * h + 2 * cw * ch
    frames, pos = [], end + 1
    while pos < len(data):
        pos = data.index(b"\n", pos) + 1
        buf = np.frombuffer(data, np.uint8, size, pos)
        frames.append((buf[: w * h].reshape(h, w), buf[w * h : w * h + cw * ch].reshape(ch, cw),
                       buf[w * h + cw * ch :].reshape(ch, cw)))
        pos += size
    return tags.get("F", "30:1"), frames


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


def scale_420(frames, factor):
    """Each picture enlarged by an integer factor (pixel repetition)."""
    return [tuple(np.repeat(np.repeat(p, factor, 0), factor, 1) for p in f) for f in frames]


def make_clips(out_dir, web_build, node="node"):
    """Writes the clips; returns [(name, clip, tool arguments)]."""
    os.makedirs(out_dir, exist_ok=True)
    demo = os.path.join(out_dir, "demo.y4m")
    subprocess.run([node, os.path.join(web_build, "web", "molo_web_demo_clip.js"), demo], check=True)
    _, frames = read_y4m(demo)
    mirrored = [tuple(np.ascontiguousarray(p[:, ::-1]) for p in f) for f in frames]
    # Odd width and height: the luma is cut to 635 x 477, the chroma to 318 x 239.
    odd = [(y[1:478, 2:637], u[1:240, 1:319], v[1:240, 1:319]) for y, u, v in frames]
    empty = frames[:8] + frames[32:]
    clips = [("demo", demo, [])]
    for name, picked, args in [("mirrored", mirrored, ["--orientation", "1"]), ("odd", odd, []),
                               ("large", scale_420(frames[6:28], 2), []), ("empty", empty, [])]:
        path = os.path.join(out_dir, name + ".y4m")
        write_y4m(path, picked)
        clips.append((name, path, args))
    nv12 = os.path.join(out_dir, "demo.nv12")
    write_raw(nv12, frames, v_first=False)
    clips.append(("nv12", nv12, ["--size", "640x480", "--nv12"]))
    nv21_mirrored = os.path.join(out_dir, "mirrored.nv21")
    write_raw(nv21_mirrored, mirrored[:24], v_first=True)
    clips.append(("nv21-mirrored", nv21_mirrored, ["--size", "640x480", "--orientation", "1"]))
    return clips
