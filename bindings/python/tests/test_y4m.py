"""molo_fingerdetect.y4m against the molo-fingerdetect tool: the same frames
and, for every stream the tool refuses, the same message."""

import io
import os
from fractions import Fraction

import numpy as np
import pytest

from conftest import run_tool
from molo_fingerdetect.y4m import Y4MError, open_y4m

HEADER = b"YUV4MPEG2 W4 H2 F25:1 Ip A1:1 C420jpeg\n"
PICTURE = bytes(range(12))  # 4 x 2 luma, 2 x 1 U, 2 x 1 V
FRAME = b"FRAME\n" + PICTURE

REFUSED = {
    "empty": b"",
    "not a stream": b"RIFF\x00\x01 WAVE\n",
    "header cut": b"YUV4MPEG2 W4 H2",
    "header too long": b"YUV4MPEG2 W4 H2 X" + b"x" * 65536 + b"\n",
    "no height": b"YUV4MPEG2 W4\n",
    "zero width": b"YUV4MPEG2 W0 H2\n",
    "huge height": b"YUV4MPEG2 W4 H16385\n",
    "frame rate": b"YUV4MPEG2 W4 H2 F25\n",
    "pixel aspect": b"YUV4MPEG2 W4 H2 A:1\n",
    "interlaced": b"YUV4MPEG2 W4 H2 It\n",
    "interlacing": b"YUV4MPEG2 W4 H2 Ix\n",
    "chroma 444": b"YUV4MPEG2 W4 H2 C444\n",
    "chroma empty": b"YUV4MPEG2 W4 H2 C\n",
    "marker cut": HEADER + FRAME + b"FRA",
    "picture cut": HEADER + FRAME + FRAME[:-5],
    "bad marker": HEADER + FRAME + b"FRAMES\n" + PICTURE,
    "marker too long": HEADER + b"FRAME " + b"x" * 4096 + b"\n",
}


def read_all(source):
    """(frames read, message of the error that ended the stream or None)."""
    frames = 0
    try:
        with open_y4m(source) as reader:
            for _ in reader:
                frames += 1
    except Y4MError as error:
        return frames, str(error)
    return frames, None


@pytest.mark.parametrize("case", REFUSED, ids=list(REFUSED))
def test_refused_streams_read_as_the_tool_reads_them(scratch, case):
    path = os.path.join(scratch, case.replace(" ", "_") + ".y4m")
    with open(path, "wb") as f:
        f.write(REFUSED[case])
    tool = run_tool(path)
    assert tool.returncode == 1
    expected = tool.stderr.splitlines()[-1].removeprefix("molo-fingerdetect: ")
    # The tool adds a hint of its own for input that is not a stream at all.
    expected = expected.removesuffix("; raw NV21 frames need --size WxH")
    frames_analysed = len(tool.stdout.splitlines()) - 1  # below the CSV header
    assert read_all(path) == (max(frames_analysed, 0), expected)


def test_planes_of_an_odd_sized_clip():
    # 5 x 3: chroma of 3 x 2 samples; U values 100.., V values 200..
    y = bytes(range(15))
    u = bytes(range(100, 106))
    v = bytes(range(200, 206))
    stream = io.BytesIO(b"YUV4MPEG2 W5 H3 F30000:1001\nFRAME\n" + y + u + v)
    with open_y4m(stream) as reader:
        assert (reader.width, reader.height, reader.fps) == (5, 3, Fraction(30000, 1001))
        frame = next(reader)
    np.testing.assert_array_equal(frame.y, np.arange(15).reshape(3, 5))
    np.testing.assert_array_equal(frame.vu, [[200, 100, 201, 101, 202, 102],
                                             [203, 103, 204, 104, 205, 105]])


def test_file_objects_and_paths_are_named_in_messages(scratch):
    assert read_all(io.BytesIO(HEADER + b"FRAME\n")) == (
        0, "stream: frame 0 is truncated: 12 of 12 bytes missing")
    missing = os.path.join(scratch, "missing.y4m")
    assert read_all(missing) == (0, f"cannot open {missing}: No such file or directory")
    assert read_all(scratch) == (0, f"cannot read {scratch}: it is a directory")
