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
    wide = np.zeros((plane.shape[0], 2 * plane.shape[1]), np.uint8)
    wide[:, ::2] = plane
    return wide[:, ::2]


def nv21(y, vu):
    return np.concatenate([y.ravel(), vu.ravel()])


def swapped(vu):
    out = vu.copy()
    out[:, 0::2], out[:, 1::2] = vu[:, 1::2], vu[:, 0::2]
    return out


# Each layout: frame -> (method name, positional arguments, keyword arguments).
LAYOUTS = {
    "contiguous": lambda y, vu: ("execute", (y, vu), {}),
    "one padded pitch": lambda y, vu: ("execute", (padded(y, 704, 16), padded(vu, 704)), {}),
    "two pitches": lambda y, vu: ("execute", (padded(y, 672), padded(vu, 768, 8)), {}),
    "column step": lambda y, vu: ("execute", (every_other(y), every_other(vu)), {}),
    "pairs axis": lambda y, vu: ("execute", (y, vu.reshape(H // 2, W // 2, 2)), {}),
    "U,V order": lambda y, vu: ("execute", (y, swapped(vu)), {"ds_mode": 0}),
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
def test_every_layout_gives_the_tools_decisions(frames, demo_decisions, layout):
    with Detector(W, H) as detector:
        assert run_demo(detector, frames, LAYOUTS[layout]) == demo_decisions


def test_refused_calls_leave_the_detector_working(frames, demo_decisions):
    y, vu = frames[0]
    refused = [
        (TypeError, "y", lambda d: d.execute(y.astype(np.int16), vu)),
        (TypeError, "y", lambda d: d.execute(y.tolist(), vu)),
        (TypeError, "vu", lambda d: d.execute(y, vu.view(np.int8))),
        (ValueError, "y", lambda d: d.execute(y[1:], vu)),
        (ValueError, "y", lambda d: d.execute(y.ravel(), vu)),
        (ValueError, "vu", lambda d: d.execute(y, vu[:, 1:])),
        (ValueError, "vu", lambda d: d.execute(y, vu.reshape(H // 2, W // 4, 4))),
        (ValueError, "frame", lambda d: d.execute_nv21(nv21(y, vu)[1:])),
        (ValueError, "frame", lambda d: d.execute_nv21(nv21(y, vu).reshape(-1, 2 * W))),
        (TypeError, "frame", lambda d: d.execute_nv21(nv21(y, vu).astype(np.float32))),
        (ValueError, "orientation", lambda d: d.execute(y, vu, orientation=2)),
        (ValueError, "orientation", lambda d: d.execute(y, vu, orientation=-1)),
    ]
    with Detector(W, H) as detector:
        for error, name, call in refused:
            with pytest.raises(error, match=name):
                call(detector)
        # An orientation that reached the detector would have stopped it for good.
        assert run_demo(detector, frames) == demo_decisions


def test_sizes_and_lifecycle(frames):
    for width, height in [(0, 480), (640, -1), (16385, 480)]:
        with pytest.raises(ValueError, match="size"):
            Detector(width, height)
    y, vu = frames[0]
    with Detector(W, H) as detector:
        pass
    assert detector.closed
    detector.close()
    for call in (lambda: detector.execute(y, vu), lambda: detector.execute_nv21(nv21(y, vu))):
        with pytest.raises(ValueError, match="closed"):
            call()


def test_odd_sizes_are_read_whole():
    # 5 x 3: chroma rows of 3 pairs, 6 bytes, longer than the luma rows.
    y = np.full((3, 5), 90, np.uint8)
    vu = np.full((2, 6), 128, np.uint8)
    with Detector(5, 3) as planes, Detector(5, 3) as packed:
        for _ in range(3):
            assert planes.execute(y, vu) == packed.execute_nv21(nv21(y, vu))


def test_messages_are_kept_per_call_and_per_thread(frames, demo_messages):
    results = {}

    def drive(log):
        with Detector(W, H, log=log) as detector:
            assert (detector.messages != []) == log  # the start-up lines
            got = []
            for y, vu in frames:
                detector.execute(y, vu)
                got.append(detector.messages)
            results[log] = got

    threads = [threading.Thread(target=drive, args=(log,)) for log in (True, False)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert results[True] == demo_messages
    assert results[False] == [[]] * len(frames)


@pytest.fixture
def short_switch_interval():
    old = sys.getswitchinterval()
    sys.setswitchinterval(0.001)
    yield
    sys.setswitchinterval(old)


def test_two_detectors_run_at_once(frames, short_switch_interval):
    # A slow call on a large frame of noise in one thread, quick calls on the
    # demo frame in another. Had the slow call kept the GIL, the other thread
    # could only run around its ends (a switch interval or one quick call
    # each), never in its middle half.
    w, h = 4096, 3072
    rng = np.random.default_rng(7)
    y = rng.integers(0, 256, (h, w), np.uint8)
    vu = rng.integers(0, 256, (h // 2, w), np.uint8)
    slow, quick = [], []
    done = threading.Event()

    def drive_slow():
        with Detector(w, h) as detector:
            for _ in range(3):
                start = time.perf_counter()
                detector.execute(y, vu)
                slow.append((start, time.perf_counter()))
        done.set()

    def drive_quick():
        with Detector(W, H) as detector:
            while not done.is_set():
                detector.execute(*frames[0])
                quick.append(time.perf_counter())

    threads = [threading.Thread(target=drive_slow), threading.Thread(target=drive_quick)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    inside = [t for start, end in slow for t in quick
              if start + (end - start) / 4 < t < end - (end - start) / 4]
    assert inside, f"no quick call ended inside a slow one ({len(quick)} quick calls)"
