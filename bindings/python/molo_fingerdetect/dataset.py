"""The list of clips to evaluate: a CSV file with the header row
`video,truth,orientation,meta` and one row per clip. `video`, `truth` and
`meta` are paths relative to the folder of the list; `meta` may be empty;
`orientation` is 0 or 1 for the whole clip. Fields may be quoted as CSV
allows, so paths can hold commas."""

import csv
import io
import os
from dataclasses import dataclass
from typing import Optional

HEADER = ["video", "truth", "orientation", "meta"]


class DatasetError(ValueError):
    """A row or file of the list that cannot be used; the message names the file and line."""


@dataclass(frozen=True)
class ClipEntry:
    video: str              # as written in the list
    truth: str
    orientation: int
    meta: Optional[str]
    video_path: str         # resolved against the list's folder
    truth_path: str
    meta_path: Optional[str]


def parse_dataset(text, name, folder):
    """(entries, errors): the usable rows, and one message per refused row.

    A list without the header row is refused as a whole (DatasetError)."""
    if text.startswith("\ufeff"):
        text = text[1:]
    reader = csv.reader(io.StringIO(text, newline=""))
    try:
        # line_num is the line a row ends on; a quoted field may span lines
        numbered = [(reader.line_num, row) for row in reader if any(f.strip() for f in row)]
    except csv.Error as error:
        raise DatasetError("%s:%d: %s" % (name, reader.line_num, error)) from None
    if not numbered or [field.strip() for field in numbered[0][1]] != HEADER:
        raise DatasetError('%s: expected the header row "%s"' % (name, ",".join(HEADER)))
    entries, errors = [], []
    for number, row in numbered[1:]:
        where = "%s:%d: " % (name, number)
        fields = [field.strip() for field in row]
        if len(fields) != 4:
            errors.append(where + "expected 4 fields (video, truth, orientation, meta), found %d"
                          % len(fields))
            continue
        video, truth, orientation, meta = fields
        if not video or not truth:
            errors.append(where + "video and truth must not be empty")
            continue
        if orientation not in ("0", "1"):
            errors.append(where + 'orientation must be 0 or 1, found "%s"' % orientation)
            continue
        entries.append(ClipEntry(
            video=video, truth=truth, orientation=int(orientation), meta=meta or None,
            video_path=os.path.join(folder, video), truth_path=os.path.join(folder, truth),
            meta_path=os.path.join(folder, meta) if meta else None))
    return entries, errors


def load_dataset(path):
    try:
        with open(path, "rb") as file:
            data = file.read()
    except OSError as error:
        raise DatasetError("cannot open %s: %s" % (path, error.strerror or error)) from None
    try:
        text = data.decode("utf-8")
    except UnicodeDecodeError:
        raise DatasetError("%s: not UTF-8 text" % path) from None
    return parse_dataset(text, str(path), os.path.dirname(os.path.abspath(path)))
