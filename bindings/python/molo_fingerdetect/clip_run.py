"""One clip of a dataset through one fresh detector handle, frame by frame in
order, as `molo-fingerdetect` runs it; what the detector decided on every
frame, how long each call took, and (for the report) pictures of the frames
where it was wrong."""

import re
import time
from dataclasses import dataclass, field
from typing import List

import numpy as np

from . import Detector
from .light import light_class
from .meta import MetaError, MetaTrack
from .metrics import runs
from .thumbnail import thumbnail_png
from .truth import TruthError, load_truth
from .y4m import Y4MError, open_y4m

DEFAULT_FPS = 30.0
DEFAULT_CAMERA = (1.0, 5000)
# Logged when a frame's candidate passed every test and waits for the next
# frame to confirm it.
_HELD = re.compile(r"^\d+: have_detect:1\s*$")


class ClipError(Exception):
    """A clip that could not be evaluated; the message names the file and the reason."""


@dataclass
class Case:
    """A missed event or a false alarm, with the frame shown for it."""
    kind: str          # "missed" or "false alarm"
    first: int         # frames of the run, stop exclusive
    stop: int
    frame: int
    state: str
    messages: List[str]
    png: bytes = b""


@dataclass
class ClipResult:
    video: str
    width: int
    height: int
    fps: float
    orientation: int
    truth: np.ndarray
    reported: np.ndarray
    held: np.ndarray
    times_ms: np.ndarray
    light: List[str]
    cases: List[Case] = field(default_factory=list)

    @property
    def size(self):
        return "%dx%d" % (self.width, self.height)


def _named(path, error):
    message = str(error)
    return message if message.startswith(str(path)) else "%s: %s" % (path, message)


def _open(path):
    try:
        return open_y4m(path)
    except OSError as error:
        raise ClipError("cannot open %s: %s" % (path, error.strerror or error)) from None
    except Y4MError as error:
        raise ClipError(_named(path, error)) from None


def _close(reader):
    close = getattr(reader, "close", None)
    if close is not None:
        close()


def run_clip(entry, with_cases=False):
    """A ClipResult for a dataset entry; ClipError when an input cannot be used."""
    try:
        truth = load_truth(entry.truth_path)
        meta = MetaTrack.load(entry.meta_path) if entry.meta_path else None
    except (TruthError, MetaError) as error:
        raise ClipError(str(error)) from None
    reader = _open(entry.video_path)
    try:
        fps = float(reader.fps) if reader.fps else DEFAULT_FPS
        reported, held, times, light, messages, positions = [], [], [], [], [], []
        frames = 0
        with Detector(reader.width, reader.height, log=True) as detector:
            for frame in reader:
                frames += 1
                if frames > len(truth):
                    continue  # only counted, for the message below
                gain, cct = meta.at(frames - 1, DEFAULT_CAMERA) if meta else DEFAULT_CAMERA
                start = time.perf_counter()
                result, row, col = detector.execute(frame.y, frame.vu, entry.orientation, 1,
                                                    gain, cct)
                times.append((time.perf_counter() - start) * 1000.0)
                texts = [text for _, text in detector.messages]
                reported.append(result == 1)
                held.append(result != 1 and any(_HELD.match(text) for text in texts))
                light.append(light_class(gain, cct))
                positions.append((row, col))
                if with_cases:
                    messages.append(texts)
    except (Y4MError, ValueError) as error:
        raise ClipError(_named(entry.video_path, error)) from None
    finally:
        _close(reader)
    if frames != len(truth):
        raise ClipError("%s: %d frames, but %s has %d"
                        % (entry.video_path, frames, entry.truth_path, len(truth)))
    result = ClipResult(video=entry.video, width=reader.width, height=reader.height, fps=fps,
                        orientation=entry.orientation, truth=truth,
                        reported=np.array(reported, np.uint8), held=np.array(held, np.uint8),
                        times_ms=np.array(times), light=light)
    if with_cases:
        result.cases = _cases(result, messages, positions)
        _draw_cases(entry.video_path, result, positions)
    return result


def _state(result, frame):
    if result.reported[frame]:
        return "reported"
    return "held" if result.held[frame] else "searching"


def _cases(result, messages, positions):
    """Every missed event (shown on its middle frame, the lower one for an even
    length) and every false alarm (shown on its first frame)."""
    cases = []
    for first, stop in runs(result.truth):
        if not result.reported[first:stop].any():
            frame = first + (stop - first - 1) // 2
            cases.append(Case("missed", first, stop, frame, _state(result, frame), messages[frame]))
    for first, stop in runs(result.reported):
        if not result.truth[first:stop].any():
            cases.append(Case("false alarm", first, stop, first, "reported", messages[first]))
    cases.sort(key=lambda case: case.first)
    return cases


def _draw_cases(path, result, positions):
    """Reads the clip again and draws the frames the cases show."""
    wanted = {case.frame: case for case in result.cases}
    if not wanted:
        return
    reader = _open(path)
    try:
        for index, frame in enumerate(reader):
            case = wanted.get(index)
            if case is not None:
                row, col = positions[index]
                case.png = thumbnail_png(frame.y, frame.vu, case.state, row, col)
            if index >= max(wanted):
                break
    finally:
        _close(reader)
