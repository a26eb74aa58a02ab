"""The evaluation command over the demo clip written as a dataset, and its
report page."""

import base64
import json
import re
import subprocess
import sys

import pytest

SECTIONS = ("overall", "timelines", "latency", "timing", "slices", "cases")


@pytest.fixture(scope="module")
def dataset(tmp_path_factory, demo_clip):
    """The demo clip three times (found; looked for on the wrong side, so
    missed; labelled finger-free, so a false alarm), a missing video and a
    truth file one frame short."""
    folder = tmp_path_factory.mktemp("demo_set")
    # the demo's finger is present on frames 8-31 of 40
    for name, present, frames in (("demo.csv", range(8, 32), 40), ("empty.csv", (), 40),
                                  ("short.csv", (), 39)):
        (folder / name).write_text("frame,finger\n" + "".join(
            "%d,%d\n" % (i, i in present) for i in range(frames)))
    (folder / "dataset.csv").write_text(
        "video,truth,orientation,meta\n"
        "{0},demo.csv,0,\n"
        "{0},demo.csv,1,\n"
        "{0},empty.csv,0,\n"
        "missing.y4m,demo.csv,0,\n"
        "{0},short.csv,0,\n".format(demo_clip))
    return folder


@pytest.fixture(scope="module")
def run(dataset):
    command = [sys.executable, "-m", "molo_fingerdetect.evaluate", str(dataset / "dataset.csv"),
               "--json", str(dataset / "metrics.json"), "--report", str(dataset / "report.html"),
               "--jobs", "2"]
    return subprocess.run(command, capture_output=True, text=True, timeout=600)


def test_metrics_of_the_demo_clip(dataset, run):
    assert run.returncode == 1, run.stderr
    failing = run.stderr.splitlines()
    assert len(failing) == 2 and "missing.y4m" in failing[0], run.stderr
    assert "40 frames, but" in failing[1] and "short.csv has 39" in failing[1]
    metrics = json.loads((dataset / "metrics.json").read_text())
    found, missed, false_alarm = metrics["clips"]
    # reported on frames 13-26
    assert {k: found[k] for k in ("frames", "finger_frames", "reported_frames", "true_reports",
                                  "events", "detected_events", "latency_frames",
                                  "false_alarms")} == {
        "frames": 40, "finger_frames": 24, "reported_frames": 14, "true_reports": 14,
        "events": 1, "detected_events": 1, "latency_frames": [5], "false_alarms": 0}
    assert found["finger_free_seconds"] == pytest.approx(16 / 10)  # F10:1
    assert (missed["detected_events"], missed["reported_frames"]) == (0, 0)
    assert (false_alarm["false_alarms"], false_alarm["events"]) == (1, 0)
    overall = metrics["overall"]
    assert (overall["events"], overall["detected_events"], overall["false_alarms"]) == (2, 1, 1)
    assert sorted(metrics["slices"]["orientation"]) == ["0", "1"]
    assert list(metrics["slices"]["light"]) == ["bright"]


def test_results_never_overwrite_the_dataset(dataset):
    listed = dataset / "dataset.csv"
    before = listed.read_bytes()
    command = [sys.executable, "-m", "molo_fingerdetect.evaluate", str(listed), "--json", str(listed)]
    assert subprocess.run(command, capture_output=True).returncode == 2
    assert listed.read_bytes() == before


def test_report_holds_every_section_and_decodable_images(dataset, run):
    # The page is self-contained: sections by id, pictures as PNG data URIs.
    page = (dataset / "report.html").read_text()
    ids = re.findall(r"<section id='([a-z]+)'>", page)
    assert ids == list(SECTIONS)
    images = re.findall(r"<img src=['\"]data:image/png;base64,([^'\"]+)['\"]", page)
    # timelines of three clips, two histograms, the missed event and the false alarm
    assert len(images) == 7 and len(re.findall("<img ", page)) == 7
    assert all(base64.b64decode(data).startswith(b"\x89PNG") for data in images)
