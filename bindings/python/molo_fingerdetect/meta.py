"""Per-frame gain and colour temperature, read from a meta file.

The format is the one `molo-fingerdetect --meta` reads: CSV rows
`frame,gain,cct`, frames counted from 0 in increasing order. Each row holds
from its frame until the next row; frames before the first row keep the
run's defaults. Blank lines and lines starting with `#` are skipped, a UTF-8
byte-order mark at the start is dropped, and a first row none of whose fields
is a number is taken for a header and skipped. Anything else that is not a
valid row, or a line longer than MAX_LINE bytes, is refused with
`FILE:LINE: reason`.
"""

import bisect
import math
import re

import numpy as np

MIN_COLOR_TEMP = 1000
MAX_COLOR_TEMP = 40000
MAX_GAIN = 1000.0
MAX_LINE = 1024  # bytes; a row is a few numbers, longer lines are refused

_INTEGER = re.compile(r"-?[0-9]+\Z")
_DECIMAL = re.compile(r"[+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?\Z")
_HEX = re.compile(r"[+-]?0[xX]([0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)([pP][+-]?[0-9]+)?\Z")


class MetaError(ValueError):
    """A meta file that cannot be used; the message names the file and line."""


def parse_number(text):
    """A finite number written as the whole of text (decimal or C hex float), else None."""
    try:
        if _DECIMAL.match(text):
            value = float(text)
        elif _HEX.match(text):
            value = float.fromhex(text)
        else:
            return None
    except (ValueError, OverflowError):
        return None
    return value if math.isfinite(value) else None


def parse_gain(text):
    """A gain above 0 and at most MAX_GAIN, as the detector's 32-bit float, else None."""
    value = parse_number(text)
    if value is None or not value > 0.0 or value > MAX_GAIN:
        return None
    gain = float(np.float32(value))
    return gain if gain > 0.0 else None  # too small to be told from 0


def parse_color_temp(text):
    """Whole kelvin from MIN_COLOR_TEMP to MAX_COLOR_TEMP (a fraction rounds half up), else None."""
    value = parse_number(text)
    if value is None:
        return None
    value = math.floor(abs(value) + 0.5) * (1 if value >= 0 else -1)
    if value < MIN_COLOR_TEMP or value > MAX_COLOR_TEMP:
        return None
    return int(value)


class MetaTrack:
    """Rows of (frame, gain, cct) in increasing frame order."""

    def __init__(self, rows):
        self.rows = list(rows)
        self._frames = [row[0] for row in self.rows]

    @classmethod
    def parse(cls, text, name):
        if text.startswith("\ufeff"):
            text = text[1:]
        rows = []
        first_row = True
        for number, line in enumerate(text.split("\n"), start=1):
            if len(line.encode("utf-8")) > MAX_LINE:
                raise MetaError("%s:%d: line longer than %d bytes" % (name, number, MAX_LINE))
            content = line.strip(" \t\r")
            if not content or content.startswith("#"):
                continue
            fields = [field.strip(" \t\r") for field in content.split(",")]
            if first_row:
                first_row = False
                if all(parse_number(field) is None for field in fields):
                    continue  # a header such as "frame,gain,cct"
            where = "%s:%d: " % (name, number)
            if len(fields) != 3:
                raise MetaError(where + "expected 3 fields (frame, gain, colour temperature), "
                                "found %d" % len(fields))
            if not _INTEGER.match(fields[0]) or int(fields[0]) < 0:
                raise MetaError(where + 'bad frame number "%s"' % fields[0])
            frame = int(fields[0])
            if rows and frame <= rows[-1][0]:
                raise MetaError(where + "frame %s does not follow frame %d (rows must be in "
                                "increasing frame order)" % (fields[0], rows[-1][0]))
            gain = parse_gain(fields[1])
            if gain is None:
                raise MetaError(where + 'bad gain "%s" (a number above 0)' % fields[1])
            cct = parse_color_temp(fields[2])
            if cct is None:
                raise MetaError(where + 'bad colour temperature "%s" (kelvin, %d to %d)'
                                % (fields[2], MIN_COLOR_TEMP, MAX_COLOR_TEMP))
            rows.append((frame, gain, cct))
        if not rows:
            raise MetaError(name + ": no rows (expected lines of frame, gain, colour temperature)")
        return cls(rows)

    @classmethod
    def load(cls, path):
        try:
            with open(path, "rb") as file:
                data = file.read()
        except OSError as error:
            raise MetaError("cannot open %s: %s" % (path, error.strerror or error)) from None
        # bytes that are not UTF-8 (in a header, say) cannot make a number
        return cls.parse(data.decode("utf-8", "replace"), str(path))

    def at(self, frame, default=(1.0, 5000)):
        """(gain, cct) for a frame: the last row at or before it, else default."""
        index = bisect.bisect_right(self._frames, frame)
        if index == 0:
            return default
        return self.rows[index - 1][1:]
