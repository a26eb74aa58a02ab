"""Ground truth of a clip: a CSV file with a header row `frame,finger` and
one row per frame, frames numbered from 0 in order, `finger` 1 when a finger
covers part of the lens, else 0."""

import numpy as np


class TruthError(ValueError):
    """A truth file that cannot be used; the message names the file and line."""


def parse_truth(text, name):
    """The truth as a uint8 array, one entry per frame."""
    if text.startswith("\ufeff"):
        text = text[1:]
    lines = [(number, line.strip(" \t\r")) for number, line in enumerate(text.split("\n"), start=1)]
    lines = [(number, line) for number, line in lines if line]
    if not lines or [field.strip() for field in lines[0][1].split(",")] != ["frame", "finger"]:
        where = "%s:%d: " % (name, lines[0][0]) if lines else name + ": "
        raise TruthError(where + 'expected the header row "frame,finger"')
    values = []
    for number, line in lines[1:]:
        fields = [field.strip() for field in line.split(",")]
        where = "%s:%d: " % (name, number)
        if len(fields) != 2:
            raise TruthError(where + "expected 2 fields (frame, finger), found %d" % len(fields))
        if fields[0] != str(len(values)):
            raise TruthError(where + 'expected frame %d, found "%s"' % (len(values), fields[0]))
        if fields[1] not in ("0", "1"):
            raise TruthError(where + 'finger must be 0 or 1, found "%s"' % fields[1])
        values.append(fields[1] == "1")
    if not values:
        raise TruthError(name + ": no frames")
    return np.array(values, dtype=np.uint8)


def load_truth(path):
    try:
        with open(path, "rb") as file:
            data = file.read()
    except OSError as error:
        raise TruthError("cannot open %s: %s" % (path, error.strerror or error)) from None
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        raise TruthError("%s: not UTF-8 text" % path) from None
    return parse_truth(text, str(path))

