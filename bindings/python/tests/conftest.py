"""Shared fixtures: molo-fingerdetect's demo run (decisions and log) and the
demo clip as a YUV4MPEG2 file, from the programs the build names in
MOLO_TOOL and MOLO_WRITE_DEMO_CLIP."""

import json
import os
import re
import subprocess

import pytest


@pytest.fixture(scope="session")
def demo_clip(tmp_path_factory):
    path = tmp_path_factory.mktemp("demo") / "demo.y4m"
    subprocess.run([os.environ["MOLO_WRITE_DEMO_CLIP"], path], check=True)
    return path


@pytest.fixture(scope="session")
def demo_run():
    """The tool's (result, row, col) and detector messages of every demo frame."""
    out = subprocess.run([os.environ["MOLO_TOOL"], "demo", "--log", "--json"], capture_output=True, text=True)
    assert out.returncode == 0, out.stderr
    decisions = [(d["result"], d["row"], d["col"]) for d in map(json.loads, out.stdout.splitlines())]
    messages = []
    for line in out.stderr.splitlines():
        if re.fullmatch(r"\[frame \d+\]", line):
            messages.append([])
        elif messages and re.match(r"[DE]/MOLO_FINGERDETECT: ", line):
            messages[-1].append((3 if line[0] == "D" else 6, line.split(": ", 1)[1]))
    return decisions, messages
