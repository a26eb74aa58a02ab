#!/usr/bin/env python3
"""Turns the labelled phone photographs of ../shared/realdata/ into a dataset
for `python3 -m molo_fingerdetect.evaluate`.

    python3 bindings/python/examples/make_realdata_dataset.py OUT_DIR [--source DIR] [--frames N]

Each photograph becomes a 640x480 landscape preview, repeated as a still clip
of N frames (10 by default, 30 frames per second) in a YUV4MPEG2 file, with a
truth file that marks every frame with the photograph's label. The preview is
the photograph scaled to cover 640x480 and cropped about its centre, converted
to full-range BT.601 YUV (as camera previews are) with 4:2:0 chroma.

Orientation (the side the detector expects the finger to enter from) follows
the labelled side. A photograph whose finger covers the left or the right edge
keeps its orientation: left 0, right 1. One whose finger covers the top or the
bottom edge is turned a quarter turn counter-clockwise first, as a phone's
sensor (mounted at 90 degrees) sees a scene the phone shows upright in
portrait, so the top becomes the left edge (orientation 0) and the bottom the
right edge (orientation 1). A photograph without a finger is run twice, once
with each orientation, since a camera app may hold either.

The photographs' licence notice is copied into OUT_DIR beside them.
"""

import argparse
import csv
import os
import shutil
import sys

import numpy as np
from PIL import Image

WIDTH, HEIGHT = 640, 480
LICENCE = "README_LIVE_ChallengeDB.txt"
# side as labelled -> (quarter turns counter-clockwise, orientation)
SIDES = {"left": (0, 0), "right": (0, 1), "top": (1, 0), "bottom": (1, 1)}


def preview(path, quarter_turns):
    """The photograph as a WIDTH x HEIGHT RGB array: turned, scaled to cover, centre-cropped."""
    with Image.open(path) as image:
        image = image.convert("RGB")
    if quarter_turns:
        image = image.rotate(90 * quarter_turns, expand=True)
    scale = max(WIDTH / image.width, HEIGHT / image.height)
    size = (max(WIDTH, round(image.width * scale)), max(HEIGHT, round(image.height * scale)))
    image = image.resize(size, Image.Resampling.LANCZOS)
    left, top = (size[0] - WIDTH) // 2, (size[1] - HEIGHT) // 2
    return np.asarray(image.crop((left, top, left + WIDTH, top + HEIGHT)), dtype=np.float64)


def planar_420(rgb):
    """Full-range BT.601 Y, U, V planes (U and V averaged over 2x2 blocks) as bytes."""
    r, g, b = rgb[..., 0], rgb[..., 1], rgb[..., 2]
    y = 0.299 * r + 0.587 * g + 0.114 * b
    u = 128.0 + (b - y) / 1.772
    v = 128.0 + (r - y) / 1.402

    def quarter(plane):
        return plane.reshape(HEIGHT // 2, 2, WIDTH // 2, 2).mean(axis=(1, 3))

    return b"".join(np.clip(np.floor(p + 0.5), 0, 255).astype(np.uint8).tobytes()
                    for p in (y, quarter(u), quarter(v)))


def write_clip(path, picture, frames):
    with open(path, "wb") as out:
        out.write(b"YUV4MPEG2 W%d H%d F30:1 Ip A1:1 C420jpeg XCOLORRANGE=FULL\n" % (WIDTH, HEIGHT))
        for _ in range(frames):
            out.write(b"FRAME\n")
            out.write(picture)


def write_truth(path, finger, frames):
    with open(path, "w", encoding="utf-8") as out:
        out.write("frame,finger\n")
        out.writelines("%d,%d\n" % (frame, finger) for frame in range(frames))


def main(argv=None):
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.dirname(
        os.path.abspath(__file__)))))
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("out", metavar="OUT_DIR", help="folder for the dataset (created)")
    parser.add_argument("--source", default=os.path.join(root, "..", "shared", "realdata"),
                        help="folder with labels.csv and live/ (default: ../shared/realdata "
                             "beside the project)")
    parser.add_argument("--frames", type=int, default=10, help="frames per clip (default 10)")
    args = parser.parse_args(argv)
    if args.frames < 1:
        parser.error("--frames must be at least 1")
    source = os.path.abspath(args.source)
    out = os.path.abspath(args.out)
    if out == source or out.startswith(source + os.sep):
        parser.error("OUT_DIR must lie outside the source folder")
    with open(os.path.join(source, "labels.csv"), newline="", encoding="utf-8") as file:
        labels = list(csv.DictReader(file))
    for folder in ("clips", "truth"):
        os.makedirs(os.path.join(out, folder), exist_ok=True)
    shutil.copyfile(os.path.join(source, "live", LICENCE), os.path.join(out, LICENCE))
    rows = []
    for label in labels:
        finger = int(label["finger"])
        name = os.path.splitext(os.path.basename(label["file"]))[0]
        if finger:
            turns, orientation = SIDES[label["side"]]
            runs = [(turns, [orientation])]
        else:
            runs = [(0, [0, 1])]
        for turns, orientations in runs:
            clip = "clips/%s.y4m" % name
            truth = "truth/%s.csv" % name
            write_clip(os.path.join(out, clip), planar_420(preview(
                os.path.join(source, label["file"]), turns)), args.frames)
            write_truth(os.path.join(out, truth), finger, args.frames)
            rows += [(clip, truth, orientation, "") for orientation in orientations]
    with open(os.path.join(out, "dataset.csv"), "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(["video", "truth", "orientation", "meta"])
        writer.writerows(rows)
    print("%s: %d clips from %d photographs (%d with a finger), %d frames each"
          % (os.path.join(out, "dataset.csv"), len(rows), len(labels),
             sum(int(label["finger"]) for label in labels), args.frames))
    return 0


if __name__ == "__main__":
    sys.exit(main())
