"""Detector over every plane layout a numpy user may hand it, against the
decisions of molo-fingerdetect on its demo clip; refusals; log capture per
call and per thread."""

import threading

import numpy as np
import pytest

from molo_fingerdetect import Detector
from molo_fingerdetect.y4m import open_y4m

W, H = 640, 480


@pytest.fixture(scope="module")
def frames(demo_clip):
    with open_y4m(demo_clip) as reader:
        return [(f.y, f.vu) for f in reader]


def padded(plane, pitch, offset=0):
    """plane placed offset bytes into rows of pitch bytes."""
    rows = np.zeros((plane.shape[0], pitch), np.uint8)
    rows[:, offset:offset + plane.shape[1]] = plane
    return rows[:, offset:offset + plane.shape[1]]


def nv21(y, vu):
    return np.concatenate([y.ravel(), vu.ravel()])


# Each layout: (y, vu) -> (method name, positional arguments, keyword arguments).
LAYOUTS = {
    "contiguous": lambda y, vu: ("execute", (y, vu), {}),
    "one padded pitch": lambda y, vu: ("execute", (padded(y, 704, 16), padded(vu, 704)), {}),
    "two pitches": lambda y, vu: ("execute", (padded(y, 672), padded(vu, 768, 8)), {}),
    # views with a column step of 2
    "column step": lambda y, vu: ("execute", (y.repeat(2, 1)[:, ::2], vu.repeat(2, 1)[:, ::2]), {}),
    "pairs axis": lambda y, vu: ("execute", (y, vu.reshape(H // 2, W // 2, 2)), {}),
    "U,V order": lambda y, vu: (
        "execute", (y, vu.reshape(H // 2, W // 2, 2)[:, :, ::-1]), {"ds_mode": 0}),
    "nv21 bytes": lambda y, vu: ("execute_nv21", (nv21(y, vu).tobytes(),), {}),
    "nv21 padded rows": lambda y, vu: (
        "execute_nv21", (padded(nv21(y, vu).reshape(H * 3 // 2, W), 720),), {}),
}


def run_demo(detector, frames, layout=LAYOUTS["contiguous"]):
    decisions = []
    for y, vu in frames:
        method, args, kwargs = layout(y, vu)
        decisions.append(getattr(detector, method)(*args, **kwargs))
    return decisions


@pytest.mark.parametrize("layout", LAYOUTS, ids=list(LAYOUTS))
def test_every_layout_gives_the_tools_decisions(frames, demo_run, layout):
    with Detector(W, H) as detector:
        assert run_demo(detector, frames, LAYOUTS[layout]) == demo_run[0]


def test_refusals_leave_the_detector_working(frames, demo_run):
    y, vu = frames[0]
    refused = [
        (TypeError, "y", lambda d: d.execute(y.astype(np.int16), vu)),
        (TypeError, "vu", lambda d: d.execute(y, vu.view(np.int8))),
        (ValueError, "y", lambda d: d.execute(y[1:], vu)),
        (ValueError, "vu", lambda d: d.execute(y, vu.reshape(H // 2, W // 4, 4))),
        (ValueError, "frame", lambda d: d.execute_nv21(nv21(y, vu)[1:])),
        (ValueError, "orientation", lambda d: d.execute(y, vu, orientation=2)),
    ]
    with Detector(W, H) as detector:
        for error, name, call in refused:
            with pytest.raises(error, match=name):
                call(detector)
        # An orientation that reached the detector would have stopped it for good.
        assert run_demo(detector, frames) == demo_run[0]
    for size in [(0, 480), (16385, 480)]:
        with pytest.raises(ValueError, match="size"):
            Detector(*size)
    detector.close()
    with pytest.raises(ValueError, match="closed"):
        detector.execute(y, vu)


def test_messages_are_kept_per_call_and_per_thread(frames, demo_run):
    results = {}

    def drive(log):
        with Detector(W, H, log=log) as detector:
            got = []
            for frame in frames:
                detector.execute(*frame)
                got.append(detector.messages)
            results[log] = got

    threads = [threading.Thread(target=drive, args=(log,)) for log in (True, False)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert results == {True: demo_run[1], False: [[]] * len(frames)}
