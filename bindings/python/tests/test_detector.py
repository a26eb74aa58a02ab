"""Detector over every plane layout a numpy user may hand it, against the
decisions of molo-fingerdetect on its demo clip; refusals; log capture and
concurrency."""

import sys
import threading
import time

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


def every_other(plane):
    """plane seen through a view with a column step of 2."""
    return np.repeat(plane, 2, axis=1)[:, ::2]


def nv21(y, vu):
    return np.concatenate([y.ravel(), vu.ravel()])


# Each layout: (y, vu) -> (method name, positional arguments, keyword arguments).
LAYOUTS = {
    "contiguous": lambda y, vu: ("execute", (y, vu), {}),
    "one padded pitch": lambda y, vu: ("execute", (padded(y, 704, 16), padded(vu, 704)), {}),
    "two pitches": lambda y, vu: ("execute", (padded(y, 672), padded(vu, 768, 8)), {}),
    "column step": lambda y, vu: ("execute", (every_other(y), every_other(vu)), {}),
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
        (TypeError, "y", lambda d: d.execute(y.tolist(), vu)),
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


def test_odd_sizes_are_read_whole():
    # 5 x 3: chroma rows of 3 pairs, 6 bytes, longer than the luma rows.
    y = np.full((3, 5), 90, np.uint8)
    vu = np.full((2, 6), 128, np.uint8)
    with Detector(5, 3) as planes, Detector(5, 3) as packed:
        for _ in range(3):
            assert planes.execute(y, vu) == packed.execute_nv21(nv21(y, vu))


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


@pytest.fixture
def short_switch_interval():
    old = sys.getswitchinterval()
    sys.setswitchinterval(0.001)
    yield
    sys.setswitchinterval(old)


def test_two_detectors_run_at_once(frames, short_switch_interval):
    # Slow calls on a large frame of noise in one thread, quick calls on a
    # demo frame in another. Had a slow call kept the GIL, the other thread
    # could only run around its ends (a switch interval or one quick call
    # each), never in its middle half.
    w, h = 4096, 3072
    rng = np.random.default_rng(7)
    y, vu = rng.integers(0, 256, (h, w), np.uint8), rng.integers(0, 256, (h // 2, w), np.uint8)
    slow, quick = [], []

    def drive_slow():
        with Detector(w, h) as detector:
            for _ in range(3):
                start = time.perf_counter()
                detector.execute(y, vu)
                slow.append((start, time.perf_counter()))

    def drive_quick():
        with Detector(W, H) as detector:
            while slow_thread.is_alive():
                detector.execute(*frames[0])
                quick.append(time.perf_counter())

    slow_thread = threading.Thread(target=drive_slow)
    quick_thread = threading.Thread(target=drive_quick)
    slow_thread.start()
    quick_thread.start()
    slow_thread.join()
    quick_thread.join()
    assert any(start + (end - start) / 4 < t < end - (end - start) / 4
               for start, end in slow for t in quick), f"{len(quick)} quick calls, none inside"
