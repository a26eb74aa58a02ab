"""Shared fixtures: the molo-fingerdetect tool's demo decisions and log, and
the demo clip as a YUV4MPEG2 file, from the programs the build names in
MOLO_TOOL and MOLO_WRITE_DEMO_CLIP."""

import json
import os
import re
import subprocess
import tempfile

import pytest

TOOL = os.environ["MOLO_TOOL"]


def run_tool(*args):
    return subprocess.run([TOOL, *args], capture_output=True, text=True)


@pytest.fixture(scope="session")
def scratch():
    base = os.environ.get("MOLO_PYTHON_SCRATCH")
    if base:
        os.makedirs(base, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=base) as path:
        yield path


@pytest.fixture(scope="session")
def demo_clip(scratch):
    path = os.path.join(scratch, "demo.y4m")
    subprocess.run([os.environ["MOLO_WRITE_DEMO_CLIP"], path], check=True)
    return path


@pytest.fixture(scope="session")
def demo_decisions():
    """(result, row, col) of every demo frame, as the tool reports them."""
    out = run_tool("demo", "--json")
    assert out.returncode == 0, out.stderr
    lines = [json.loads(line) for line in out.stdout.splitlines()]
    return [(d["result"], d["row"], d["col"]) for d in lines]


@pytest.fixture(scope="session")
def demo_messages():
    """The detector's messages on each demo frame, as the tool's --log shows them."""
    out = run_tool("demo", "--log", "--json")
    assert out.returncode == 0, out.stderr
    frames = []
    for line in out.stderr.splitlines():
        if re.fullmatch(r"\[frame \d+\]", line):
            frames.append([])
        elif frames and line[:2] in ("D/", "E/"):
            level, text = line.split(": ", 1)
            frames[-1].append((3 if level == "D/MOLO_FINGERDETECT" else 6, text))
    return frames
