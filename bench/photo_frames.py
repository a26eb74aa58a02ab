#!/usr/bin/env python3
"""Turns photos that scikit-image ships into NV21 preview frames for the bench.

    photo_frames.py OUT_DIR

writes OUT_DIR/NAME_WxH.nv21 for every photo and preview size below: the
photo cropped to the frame's aspect ratio around its centre, resized, and
converted to full-range BT.601 luma and 2 x 2-averaged chroma, V before U, as
a camera's NV21 preview buffer holds it. The photos are released into the
public domain or under CC0 (see skimage/data/_fetchers.py). Exits 3 with a
message when PIL or the photos are missing, so the build can go on without
them.
"""
import os
import sys

PHOTOS = ["coffee.png", "chelsea.png", "astronaut.png", "rocket.jpg"]
SIZES = [(640, 480), (1280, 720), (1920, 1080)]


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: photo_frames.py OUT_DIR")
    try:
        import numpy as np
        from PIL import Image
        import skimage
    except ImportError as e:
        print(f"photo frames not made: {e} (Debian: python3-pil python3-skimage)", file=sys.stderr)
        sys.exit(3)
    data = os.path.join(os.path.dirname(skimage.__file__), "data")
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    for photo in PHOTOS:
        path = os.path.join(data, photo)
        if not os.path.exists(path):
            print(f"photo frames not made: {path} is missing", file=sys.stderr)
            sys.exit(3)
        image = Image.open(path).convert("RGB")
        for width, height in SIZES:
            # Crop to the frame's aspect ratio around the centre, then resize.
            sw, sh = image.size
            if sw * height > sh * width:
                cw, ch = sh * width // height, sh
            else:
                cw, ch = sw, sw * height // width
            box = ((sw - cw) // 2, (sh - ch) // 2, (sw - cw) // 2 + cw, (sh - ch) // 2 + ch)
            rgb = np.asarray(image.crop(box).resize((width, height), Image.BICUBIC), dtype=np.float64)
            r, g, b = rgb[..., 0], rgb[..., 1], rgb[..., 2]
            y = 0.299 * r + 0.587 * g + 0.114 * b
            u = 128.0 - 0.168736 * r - 0.331264 * g + 0.5 * b
            v = 128.0 + 0.5 * r - 0.418688 * g - 0.081312 * b

            def quarter(p):
                return (p[0::2, 0::2] + p[0::2, 1::2] + p[1::2, 0::2] + p[1::2, 1::2]) / 4.0

            vu = np.empty((height // 2, width), dtype=np.float64)
            vu[:, 0::2] = quarter(v)
            vu[:, 1::2] = quarter(u)
            name = os.path.splitext(photo)[0]
            frame_path = os.path.join(out, f"{name}_{width}x{height}.nv21")
            with open(frame_path + ".part", "wb") as f:
                for plane in (y, vu):
                    f.write(np.clip(np.rint(plane), 0, 255).astype(np.uint8).tobytes())
            os.replace(frame_path + ".part", frame_path)


if __name__ == "__main__":
    main()
