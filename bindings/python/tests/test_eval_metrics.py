"""Evaluation metrics on small hand-made truth and result sequences."""

import math

import pytest

from molo_fingerdetect.intervals import poisson_exact, wilson
from molo_fingerdetect.metrics import Tally, tally_clip


def seq(text):
    return [int(ch) for ch in text]


# truth, reported, expected counts (events, detected, latencies, false alarms, true reports)
CASES = {
    "report just after the event is a false alarm": ("0011100", "0000010", 1, 0, [], 1, 0),
    "false alarm touching an event, then a run across its end": (
        "0111000", "1001100", 1, 1, [2], 1, 1),
    "one run of reports spanning two events": ("0110110", "0011111", 2, 2, [1, 0], 0, 3),
    "reports on the first and last frame of the clip": ("1000001", "1000001", 2, 2, [0, 0], 0, 2),
}


@pytest.mark.parametrize("name", sorted(CASES))
def test_events_false_alarms_and_latency(name):
    truth, reported, events, detected, latencies, false_alarms, true_reports = CASES[name]
    tally = tally_clip(seq(truth), seq(reported), fps=30.0)
    assert (tally.events, tally.detected_events, tally.latency_frames, tally.false_alarms,
            tally.true_reports) == (events, detected, latencies, false_alarms, true_reports)
    assert tally.finger_free_seconds == pytest.approx(truth.count("0") / 30.0)


def test_rates_are_taken_after_summing_clips():
    # clip a: 2 events, 1 detected; clip b: 1 event, detected; 10 fps and 20 fps
    a = tally_clip(seq("0110011000"), seq("0010000011"), fps=10.0, times_ms=[1.0] * 10)
    b = tally_clip(seq("00001111"), seq("00000011"), fps=20.0, times_ms=[3.0] * 8)
    m = Tally().add(a).add(b).metrics()
    assert m["events"] == 3 and m["detected_events"] == 2
    assert m["event_recall"] == pytest.approx(2 / 3)  # not the mean of 1/2 and 1/1
    assert m["frame_precision"] == pytest.approx(3 / 5)
    assert m["frame_recall"] == pytest.approx(3 / 8)
    assert m["latency_frames"] == [1, 2] and m["median_latency_frames"] == 1  # lower middle
    assert m["finger_free_seconds"] == pytest.approx(6 / 10 + 4 / 20)
    assert m["false_alarms_per_hour"] == pytest.approx(1 * 3600 / 0.8)
    assert m["mean_ms"] == pytest.approx(34 / 18) and m["p99_ms"] == 3.0


def test_empty_denominators_give_null():
    m = tally_clip(seq("1111"), seq("0000"), fps=30.0).metrics()
    assert m["frame_precision"] is None and m["median_latency_frames"] is None
    assert m["false_alarms_per_hour"] is None and m["false_alarms_per_hour_ci"] is None
    assert m["event_recall"] == 0.0 and m["event_recall_ci"][0] == 0.0
    m = tally_clip(seq("0000"), seq("0000"), fps=30.0).metrics()
    assert m["frame_recall"] is None and m["event_recall"] is None and m["event_recall_ci"] is None
    assert m["false_alarms_per_hour"] == 0.0


def test_slice_keeps_runs_whole_and_counts_them_where_they_start():
    truth, reported = seq("0011110000"), seq("0000011001")
    first_half = [True] * 5 + [False] * 5
    part = tally_clip(truth, reported, fps=30.0, select=first_half)
    assert (part.frames, part.events, part.detected_events, part.latency_frames) == (5, 1, 1, [3])
    rest = tally_clip(truth, reported, fps=30.0, select=[not k for k in first_half])
    assert (rest.events, rest.false_alarms, rest.true_reports) == (0, 1, 1)


def test_intervals():
    assert wilson(0, 3) == pytest.approx((0.0, 0.5615), abs=1e-4)
    assert wilson(8, 10) == pytest.approx((0.4902, 0.9433), abs=1e-4)
    assert poisson_exact(0) == pytest.approx((0.0, -math.log(0.025)), rel=2e-4, abs=1e-9)
    assert poisson_exact(10) == pytest.approx((4.7954, 18.3904), rel=2e-4)
