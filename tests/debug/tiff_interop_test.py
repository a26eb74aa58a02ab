#!/usr/bin/python3
"""The debug TIFF files against independent TIFF readers and writers.

Files written by the library (get_TIFF/write_TIFF and the dump functions) are
opened with libtiff's tiffinfo and tiffdump, Pillow and tifffile; files those
tools write are read back with read_TIFF, TIFF_readY and TIFF_readYUV. Every
expected pixel is computed here from the inputs, not taken from the library.

usage: tiff_interop_test.py path/to/tiff_interop_driver [unittest arguments]
MOLO_TARGET_RUNNER, when set, is the command that runs the driver (an emulator).
Exits with 77 (skipped) when a tool is missing.
"""
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    import numpy as np
    import tifffile
    from PIL import Image
except ImportError as missing:
    print(f"skipped: {missing} (Debian: python3-pil python3-tifffile)")
    sys.exit(77)
if not all(shutil.which(t) for t in ("tiffinfo", "tiffdump", "tiffcp")):
    print("skipped: libtiff's tools are missing (Debian: libtiff-tools)")
    sys.exit(77)

DRIVER = None
# In a cross build the driver runs through the target's emulator.
RUNNER = shlex.split(os.environ.get("MOLO_TARGET_RUNNER", ""))
# A sanitizer report must not pass for the library's own result 1.
ENV = dict(os.environ,
           ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":exitcode=86",
           UBSAN_OPTIONS=os.environ.get("UBSAN_OPTIONS", "") + ":exitcode=86")


def run(*args):
    return subprocess.run([str(a) for a in args], capture_output=True, text=True, env=ENV)


def run_driver(*args):
    return run(*RUNNER, DRIVER, *args)


# --- Expected pixels -------------------------------------------------------

def pattern(width, height, k):
    """The driver's test image: sample k of pixel (r, c)."""
    r, c = np.mgrid[0:height, 0:width]
    return ((31 * r + 7 * c + 97 * k + (r * c) % 13) % 256).astype(np.uint8)


def test_image(kind, width, height):
    if kind == "c":
        return np.stack([pattern(width, height, k) for k in range(3)], axis=-1)
    return pattern(width, height, 0)


PALETTE = np.stack([np.arange(256), 255 - np.arange(256), 7 * np.arange(256) % 256],
                   axis=1).astype(np.uint8)


def yuv_to_rgb(frame, width, height):
    """NV21 frame to RGB: products and sums in double precision, each result
    rounded to a 32-bit float, clamped to 0..255, else truncated."""
    luma = frame[:width * height].reshape(height, width).astype(np.float64)
    chroma = frame[width * height:].reshape(height // 2, width).astype(np.float64)
    r, c = np.mgrid[0:height, 0:width]
    v = chroma[r // 2, c & ~1] - 128.0
    u = chroma[r // 2, (c & ~1) + 1] - 128.0
    out = []
    for value in (luma + 1.402 * v, luma - 0.344 * u - 0.714 * v, luma + 1.772 * u):
        f = value.astype(np.float32)
        out.append(np.where(f > 255.0, 255, np.where(f < 0.0, 0, np.trunc(f))))
    return np.stack(out, axis=-1).astype(np.uint8)


def rgb_to_nv21(rgb):
    """Luma per pixel and one V, U pair per 2 x 2 block from the blocks'
    integer mean channels; every step in double precision, then truncated."""
    red, green, blue = (rgb[..., k].astype(np.int64) for k in range(3))
    luma = np.trunc(0.587 * green.astype(np.float64) + 0.299 * red + 0.114 * blue)

    def mean(p):
        return ((p[0::2, 0::2] + p[0::2, 1::2] + p[1::2, 0::2] + p[1::2, 1::2]) >> 2).astype(np.float64)

    rm, gm, bm = mean(red), mean(green), mean(blue)
    chroma = np.empty((rgb.shape[0] // 2, rgb.shape[1]), np.float64)
    chroma[:, 0::2] = np.trunc(0.499 * rm - 0.418 * gm - 0.0813 * bm + 128)
    chroma[:, 1::2] = np.trunc(-0.169 * rm - 0.331 * gm + 0.499 * bm + 128)
    return np.concatenate([luma.ravel(), chroma.ravel()]).astype(np.uint8)


def random_bytes(count, seed):
    return np.random.default_rng(seed).integers(0, 256, count, dtype=np.uint8)


# --- Checks with the independent readers ------------------------------------

TIFFDUMP_TAG = re.compile(r"^\w+ \((\d+)\) ")


def tiffdump(path):
    """Magic line and the tags of the first directory in file order."""
    lines = run("tiffdump", path).stdout.splitlines()
    return lines[1], [int(m.group(1)) for m in map(TIFFDUMP_TAG.match, lines[3:]) if m]


class Case(unittest.TestCase):
    def setUp(self):
        self._dir = tempfile.TemporaryDirectory()
        self.addCleanup(self._dir.cleanup)

    def path(self, name):
        return os.path.join(self._dir.name, name)

    def driver(self, *args):
        p = run_driver(*args)
        self.assertEqual(p.returncode, 0, f"driver {' '.join(map(str, args))}:\n{p.stderr}")
        return p

    def assert_libtiff_reads(self, path):
        p = run("tiffinfo", "-D", path)
        self.assertEqual((p.returncode, p.stderr), (0, ""), p.stdout)

    def assert_readers_agree(self, path, expected, mode):
        """Pillow and tifffile both see `expected` (rows x columns [x RGB])."""
        self.assert_libtiff_reads(path)
        with Image.open(path) as im:
            self.assertEqual(im.mode, mode)
            np.testing.assert_array_equal(np.asarray(im), expected)
        np.testing.assert_array_equal(tifffile.imread(path), expected)

    def read_tiff(self, path):
        """read_TIFF through the driver: type, then the planes as an array."""
        out = self.path("read.raw")
        p = self.driver("read", path, out)
        kind, width, height = p.stdout.split()
        width, height = int(width), int(height)
        data = np.fromfile(out, np.uint8)
        if kind == "c":
            return kind, data.reshape(3, height, width).transpose(1, 2, 0), None
        image = data[:width * height].reshape(height, width)
        return kind, image, data[width * height:].reshape(256, 3) if kind == "p" else None


# --- 1. Files the library writes ---------------------------------------------

class LibraryFilesTest(Case):
    CASES = [("g", 1, 1), ("c", 1, 1), ("p", 1, 1),
             ("g", 37, 23), ("c", 37, 23), ("p", 37, 23),   # odd widths, one strip
             ("g", 100, 200),                               # 80 rows per strip
             ("c", 101, 53),                                # 27 + 26 rows
             ("c", 2666, 5),                                # 7998-byte rows, 2 per strip
             ("g", 8000, 3), ("c", 2667, 3),                # rows of 8000 bytes and more
             ("g", 70000, 2)]                               # width as LONG

    def test_tools_read_what_write_tiff_writes(self):
        for kind, width, height in self.CASES:
            with self.subTest(kind=kind, width=width, height=height):
                path = self.path("lib.tif")
                self.driver("write", kind, width, height, path)
                self.check_directory(path, kind)
                expected = test_image(kind, width, height)
                self.assert_readers_agree(path, expected, {"g": "L", "c": "RGB", "p": "P"}[kind])
                if kind == "p":
                    with Image.open(path) as im:
                        self.assertEqual(im.getpalette()[:768], PALETTE.ravel().tolist())
                    with tifffile.TiffFile(path) as tf:
                        np.testing.assert_array_equal(tf.pages[0].colormap >> 8, PALETTE.T)

    def check_directory(self, path, kind):
        """Big-endian whatever the host, the directory sorted by tag. Values
        and field types are pinned byte by byte by the C++ writer tests."""
        magic, tags = tiffdump(path)
        self.assertIn("<big-endian>", magic)
        expected = [256, 257, 258, 259, 262, 273, 278, 279, 282, 283, 296]
        if kind == "c":
            expected = sorted(expected + [277])
        self.assertEqual(tags, expected + ([320] if kind == "p" else []))


class DumpFilesTest(Case):
    def test_save_yuv_to_rgb(self):
        for width, height in [(4, 2), (38, 24), (64, 300), (2668, 4)]:
            with self.subTest(width=width, height=height):
                frame = random_bytes(width * height * 3 // 2, width + height)
                # Block 0: green comes out one lower in single precision, or
                # without the rounding to float. Block 1: luma 255 and 0
                # under V 255 and 0, the clamps.
                luma, chroma = frame[:width * height].reshape(height, width), frame[width * height:]
                luma[0:2, 0:4] = [[167, 168, 255, 0], [169, 170, 0, 255]]
                chroma[0:4] = [180, 241, 255, 0]
                frame.tofile(self.path("nv21.raw"))
                path = self.path("rgb.tif")
                self.driver("dump", "yuv2rgb", width, height, self.path("nv21.raw"), path)
                self.assert_readers_agree(path, yuv_to_rgb(frame, width, height), "RGB")


# --- 2. Files the other tools write ------------------------------------------

class ForeignFilesTest(Case):
    GREY = (301, 250)   # odd width; Pillow puts 217 rows in a strip
    RGB = (1100, 40)    # even, as TIFF_readYUV needs; Pillow: 19 rows a strip

    def foreign_files(self, kind):
        """(tool, path, expected image) of uncompressed files from each tool."""
        width, height = self.GREY if kind == "g" else self.RGB
        shape = (height, width, 3) if kind == "c" else (height, width)
        image = random_bytes(np.prod(shape), 7).reshape(shape)
        if kind == "c":
            # Flat 2 x 2 blocks whose luma, V and U differ by one when
            # computed in single precision.
            for j, rgb in enumerate([(0, 72, 24), (1, 170, 30), (0, 249, 81)]):
                image[0:2, 2 * j:2 * j + 2] = rgb
        photometric = "rgb" if kind == "c" else "minisblack"
        files = []
        for order, rows in (("<", 5), (">", 7)):
            name = self.path(f"tf{rows}.tif")
            tifffile.imwrite(name, image, byteorder=order, rowsperstrip=rows,
                             photometric=photometric)
            files.append((f"tifffile {order} rowsperstrip {rows}", name, image))
        pil = self.path("pil.tif")
        Image.fromarray(image).save(pil)
        files.append(("Pillow", pil, image))
        for flag, rows in (("-B", 3), ("-L", 1), ("-B", 1000)):
            name = self.path(f"cp{flag}{rows}.tif")
            self.assertEqual(run("tiffcp", flag, "-r", rows, pil, name).returncode, 0)
            files.append((f"tiffcp {flag} -r {rows}", name, image))
        # The library's own file, rewritten little-endian in small strips.
        lib, name = self.path("lib.tif"), self.path("lib_cp.tif")
        self.driver("write", kind, width, height, lib)
        self.assertEqual(run("tiffcp", "-L", "-r", 2, lib, name).returncode, 0)
        files.append(("write_TIFF, then tiffcp -L -r 2", name, test_image(kind, width, height)))
        return files

    def test_read_tiff_and_the_read_back_functions(self):
        """read_TIFF, then TIFF_readY on grey files and TIFF_readYUV on RGB ones."""
        for kind, (width, height), command, flat in (
                ("g", self.GREY, "ready", lambda image: image.ravel()),
                ("c", self.RGB, "readyuv", rgb_to_nv21)):
            for tool, path, expected in self.foreign_files(kind):
                with self.subTest(kind=kind, tool=tool):
                    got_kind, planes, _ = self.read_tiff(path)
                    self.assertEqual(got_kind, kind)
                    np.testing.assert_array_equal(planes, expected)
                    out = self.path("back.raw")
                    self.driver(command, width, height, path, out)
                    np.testing.assert_array_equal(np.fromfile(out, np.uint8), flat(expected))

    def test_read_tiff_on_palette_files(self):
        index = random_bytes(45 * 31, 3).reshape(31, 45)
        pil, tf = self.path("pil_p.tif"), self.path("tf_p.tif")
        im = Image.fromarray(index, "P")
        im.putpalette(PALETTE.ravel().tolist())
        im.save(pil)
        tifffile.imwrite(tf, index, byteorder=">", rowsperstrip=4, photometric="palette",
                         colormap=PALETTE.T.astype(np.uint16) * 257)
        for path in (pil, tf):
            with self.subTest(path=os.path.basename(path)):
                kind, planes, cmap = self.read_tiff(path)
                self.assertEqual(kind, "p")
                np.testing.assert_array_equal(planes, index)
                np.testing.assert_array_equal(cmap, PALETTE)


class CompressedFilesTest(Case):
    SCHEMES = {"packbits": ["PackBits compression not supported\n"],
               "lzw": ["Compression value 5 not recognized; could not",
                       "compress_type to TIFF_IMG structure\n"],
               "zip": ["Compression value 8 not recognized; could not",
                       "compress_type to TIFF_IMG structure\n"]}

    def assert_refused(self, path, compression, messages, width, height):
        with tifffile.TiffFile(path) as tf:
            self.assertEqual(int(tf.pages[0].compression), compression)
        p = run_driver("read", path, self.path("out.raw"))
        self.assertEqual(p.returncode, 1, p.stderr)
        for message in messages:
            self.assertIn(message, p.stderr)
        self.assertEqual(run_driver("ready", width, height, path, self.path("y.raw")).returncode, 1)

    def test_tiffcp_compressions_are_refused(self):
        for kind, shape in (("g", (20, 40)), ("c", (20, 40, 3))):
            source = self.path(f"{kind}.tif")
            tifffile.imwrite(source, random_bytes(np.prod(shape), 1).reshape(shape))
            for scheme, messages in self.SCHEMES.items():
                with self.subTest(kind=kind, scheme=scheme):
                    path = self.path(f"{kind}_{scheme}.tif")
                    self.assertEqual(run("tiffcp", "-c", scheme, source, path).returncode, 0)
                    compression = {"packbits": 32773, "lzw": 5, "zip": 8}[scheme]
                    self.assert_refused(path, compression, messages, 40, 20)

    def test_ccitt_bilevel_files_are_refused(self):
        bilevel = self.path("rle.tif")
        Image.fromarray(random_bytes(16 * 10, 2).reshape(10, 16) > 127).save(
            bilevel, compression="tiff_ccitt")
        self.assert_refused(bilevel, 2, ["1-D modified Huffman compression not supported\n"], 16, 10)
        g3 = self.path("g3.tif")
        self.assertEqual(run("tiffcp", "-c", "g3", bilevel, g3).returncode, 0)
        self.assert_refused(g3, 3, ["Compression value 3 not recognized; could not"], 16, 10)


if __name__ == "__main__":
    DRIVER = sys.argv.pop(1)
    unittest.main(verbosity=2)
