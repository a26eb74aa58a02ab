"""molo_fingerdetect.y4m against the molo-fingerdetect tool: for every input
the tool refuses, the same frames before the fault and the same message."""

import io
import os
from fractions import Fraction

import numpy as np
import pytest

from conftest import run_tool
from molo_fingerdetect.y4m import Y4MError, open_y4m

HEADER = b"YUV4MPEG2 W4 H2 F25:1 Ip A1:1 C420jpeg\n"
FRAME = b"FRAME\n" + bytes(range(12))  # 4 x 2 luma, 2 x 1 U, 2 x 1 V

REFUSED = {
    "missing": None,
    "directory": "dir",
    "empty": b"",
    "not a stream": b"RIFF\x00\x01 WAVE\n",
    "header cut": b"YUV4MPEG2 W4 H2",
    "header too long": b"YUV4MPEG2 W4 H2 X" + b"x" * 65536 + b"\n",
    "no height": b"YUV4MPEG2 W4\n",
    "huge height": b"YUV4MPEG2 W4 H16385\n",
    "frame rate": b"YUV4MPEG2 W4 H2 F25\n",
    "interlaced": b"YUV4MPEG2 W4 H2 It\n",
    "interlacing": b"YUV4MPEG2 W4 H2 Ix\n",
    "chroma 444": b"YUV4MPEG2 W4 H2 C444\n",
    "marker cut": HEADER + FRAME + b"FRA",
    "picture cut": HEADER + FRAME + FRAME[:-5],
    "bad marker": HEADER + FRAME + b"FRAMES\n",
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
def test_refused_input_reads_as_the_tool_reads_it(tmp_path, case):
    path = str(tmp_path / "clip.y4m")
    if REFUSED[case] == "dir":
        os.mkdir(path)
    elif REFUSED[case] is not None:
        with open(path, "wb") as f:
            f.write(REFUSED[case])
    tool = run_tool(path)
    assert tool.returncode == 1
    expected = tool.stderr.splitlines()[-1].removeprefix("molo-fingerdetect: ")
    # The tool adds a hint of its own for input that is not a stream at all.
    expected = expected.removesuffix("; raw NV21 frames need --size WxH")
    frames_analysed = max(len(tool.stdout.splitlines()) - 1, 0)  # below the CSV header
    assert read_all(path) == (frames_analysed, expected)


def test_planes_of_an_odd_sized_stream():
    # 5 x 3: chroma of 3 x 2 samples; U values 100.., V values 200..
    picture = bytes(range(15)) + bytes(range(100, 106)) + bytes(range(200, 206))
    stream = io.BytesIO(b"YUV4MPEG2 W5 H3 F30000:1001\nFRAME\n" + picture)
    with open_y4m(stream) as reader:
        assert (reader.width, reader.height, reader.fps) == (5, 3, Fraction(30000, 1001))
        frame = next(reader)
        np.testing.assert_array_equal(frame.y, np.arange(15).reshape(3, 5))
        np.testing.assert_array_equal(frame.vu, [[200, 100, 201, 101, 202, 102],
                                                 [203, 103, 204, 104, 205, 105]])
