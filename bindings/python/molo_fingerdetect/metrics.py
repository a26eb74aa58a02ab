"""How often the detector is right on labelled frames.

A clip is a truth sequence (1 where a finger covers part of the lens) and the
detector's results (1 where it reported a finger), frame by frame:

- an event is a maximal run of consecutive truth-1 frames; it is detected
  when at least one frame inside the run is reported, and its latency is the
  first reported frame inside it minus its first frame;
- a false alarm is a maximal run of consecutive reported frames that holds
  no truth-1 frame (a run that touches an event without overlapping it is
  one);
- finger-free time is the truth-0 frames over the clip's frame rate.

Counts of several clips (or of part of a clip) are added in a Tally first and
only then turned into rates, so the whole set weighs every frame and event
alike.
"""

from dataclasses import dataclass, field
from typing import List

import numpy as np

from .intervals import poisson_exact, wilson


def runs(flags):
    """[(start, stop)] of the maximal runs of non-zero entries, stop exclusive."""
    flags = np.asarray(flags) != 0
    edges = np.flatnonzero(np.diff(np.concatenate(([False], flags, [False])).astype(np.int8)))
    return list(zip(edges[0::2].tolist(), edges[1::2].tolist()))


@dataclass
class Tally:
    frames: int = 0
    finger_frames: int = 0
    reported_frames: int = 0
    true_reports: int = 0
    events: int = 0
    detected_events: int = 0
    latency_frames: List[int] = field(default_factory=list)
    false_alarms: int = 0
    finger_free_seconds: float = 0.0
    times_ms: List[float] = field(default_factory=list)

    def add(self, other):
        for name in ("frames", "finger_frames", "reported_frames", "true_reports", "events",
                     "detected_events", "false_alarms", "finger_free_seconds"):
            setattr(self, name, getattr(self, name) + getattr(other, name))
        self.latency_frames += other.latency_frames
        self.times_ms += other.times_ms
        return self

    def metrics(self):
        """The rates, with None where a denominator is 0, as the JSON carries them."""
        latencies = sorted(self.latency_frames)
        times = sorted(self.times_ms)
        per_hour = None
        per_hour_ci = None
        if self.finger_free_seconds > 0:
            scale = 3600.0 / self.finger_free_seconds
            per_hour = self.false_alarms * scale
            low, high = poisson_exact(self.false_alarms)
            per_hour_ci = [low * scale, high * scale]
        recall_ci = wilson(self.detected_events, self.events)
        return {
            "frames": self.frames,
            "finger_frames": self.finger_frames,
            "reported_frames": self.reported_frames,
            "true_reports": self.true_reports,
            "frame_precision": _ratio(self.true_reports, self.reported_frames),
            "frame_recall": _ratio(self.true_reports, self.finger_frames),
            "events": self.events,
            "detected_events": self.detected_events,
            "event_recall": _ratio(self.detected_events, self.events),
            "event_recall_ci": list(recall_ci) if recall_ci else None,
            "latency_frames": list(self.latency_frames),
            # the lower middle value for an even count
            "median_latency_frames": latencies[(len(latencies) - 1) // 2] if latencies else None,
            "false_alarms": self.false_alarms,
            "finger_free_seconds": self.finger_free_seconds,
            "false_alarms_per_hour": per_hour,
            "false_alarms_per_hour_ci": per_hour_ci,
            "mean_ms": sum(times) / len(times) if times else None,
            "p99_ms": times[max((99 * len(times) + 99) // 100, 1) - 1] if times else None,
        }


def _ratio(numerator, denominator):
    return numerator / denominator if denominator else None


def tally_clip(truth, reported, fps, times_ms=None, select=None):
    """Counts of one clip. select (a boolean per frame) keeps part of it:
    frames where it is set, and the events and false alarms whose first frame
    is kept; runs are still found over the whole clip."""
    truth = np.asarray(truth) != 0
    reported = np.asarray(reported) != 0
    if truth.shape != reported.shape:
        raise ValueError("truth and results differ in length")
    keep = np.ones(truth.shape, bool) if select is None else np.asarray(select, bool)
    tally = Tally(
        frames=int(keep.sum()),
        finger_frames=int((truth & keep).sum()),
        reported_frames=int((reported & keep).sum()),
        true_reports=int((truth & reported & keep).sum()),
        finger_free_seconds=float((~truth & keep).sum()) / fps,
        times_ms=[] if times_ms is None else np.asarray(times_ms, float)[keep].tolist())
    for start, stop in runs(truth):
        if not keep[start]:
            continue
        tally.events += 1
        hits = np.flatnonzero(reported[start:stop])
        if hits.size:
            tally.detected_events += 1
            tally.latency_frames.append(int(hits[0]))
    for start, stop in runs(reported):
        if keep[start] and not truth[start:stop].any():
            tally.false_alarms += 1
    return tally
