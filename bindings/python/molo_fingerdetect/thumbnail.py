"""Small pictures of single frames with the detector's decision drawn on them,
in the manner of `molo-fingerdetect --annotate`: a thin light-grey frame
while searching, a dashed amber frame on a held frame, a solid red frame and
a white cross on the reported centroid on a reported frame. (The candidate
region itself is not drawn: the detector's mask is not visible from Python.)"""

import io

import numpy as np

GREY = (190, 190, 190)
AMBER = (255, 176, 0)
RED = (230, 30, 30)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)


def rgb_from_nv21(y, vu):
    """An RGB picture (height x width x 3, uint8) from NV21 planes, read as
    full-range BT.601 as camera previews are."""
    y = np.asarray(y, dtype=np.float32)
    height, width = y.shape
    vu = np.asarray(vu).reshape(vu.shape[0], -1)
    v = vu[:, 0::2].astype(np.float32) - 128.0
    u = vu[:, 1::2].astype(np.float32) - 128.0
    v = np.repeat(np.repeat(v, 2, axis=0), 2, axis=1)[:height, :width]
    u = np.repeat(np.repeat(u, 2, axis=0), 2, axis=1)[:height, :width]
    rgb = np.stack((y + 1.402 * v, y - 0.344136 * u - 0.714136 * v, y + 1.772 * u), axis=-1)
    return np.clip(rgb + 0.5, 0, 255).astype(np.uint8)


def _fill(picture, r0, r1, c0, c1, colour):
    height, width = picture.shape[:2]
    picture[max(r0, 0):min(r1, height), max(c0, 0):min(c1, width)] = colour


def _outline(picture, thickness, colour, dash=0):
    height, width = picture.shape[:2]
    step = 2 * dash if dash else max(height, width)
    length = dash if dash else step
    for c in range(0, width, step):
        _fill(picture, 0, thickness, c, c + length, colour)
        _fill(picture, height - thickness, height, c, c + length, colour)
    for r in range(0, height, step):
        _fill(picture, r, r + length, 0, thickness, colour)
        _fill(picture, r, r + length, width - thickness, width, colour)


def draw_decision(picture, state, row=None, col=None):
    """Draws state ("searching", "held" or "reported") onto an RGB picture in place."""
    height, width = picture.shape[:2]
    thickness = max(2, min(width, height) // 80)
    if state == "searching":
        _outline(picture, max(1, thickness // 3), GREY)
    elif state == "held":
        _outline(picture, thickness, AMBER, 4 * thickness)
    else:
        _outline(picture, thickness, RED)
        if row is not None and col is not None:
            arm = max(6, min(width, height) // 16)
            for size, half, colour in ((arm + 1, thickness // 2 + 1, BLACK),
                                       (arm, max(1, thickness // 2), WHITE)):
                _fill(picture, row - half, row + half, col - size, col + size, colour)
                _fill(picture, row - size, row + size, col - half, col + half, colour)
    return picture


def shrink(picture, max_width=320):
    """The picture reduced by a whole factor (box average) to at most max_width wide."""
    factor = -(-picture.shape[1] // max_width)
    if factor <= 1:
        return picture
    height = picture.shape[0] // factor * factor
    width = picture.shape[1] // factor * factor
    blocks = picture[:height, :width].reshape(height // factor, factor, width // factor, factor, 3)
    return (blocks.mean(axis=(1, 3)) + 0.5).astype(np.uint8)


def png_bytes(picture):
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.image

    out = io.BytesIO()
    matplotlib.image.imsave(out, picture, format="png")
    return out.getvalue()


def thumbnail_png(y, vu, state, row=None, col=None, max_width=320):
    picture = draw_decision(rgb_from_nv21(y, vu), state, row, col)
    return png_bytes(shrink(picture, max_width))
