"""What the evaluation accepts and refuses in its dataset list, truth files and meta files."""

import pytest

from molo_fingerdetect.dataset import DatasetError, parse_dataset
from molo_fingerdetect.light import light_class
from molo_fingerdetect.meta import MetaError, MetaTrack
from molo_fingerdetect.truth import TruthError, parse_truth

HEADER = "video,truth,orientation,meta\n"


def test_dataset_rows_resolve_against_the_folder_and_bad_rows_are_named():
    text = ("\ufeff" + HEADER + "a.y4m,a.csv,0,\n\n"
            '"b,1.y4m",b.csv,1,b_meta.csv\n'
            "c.y4m,c.csv,2,\n"
            "d.y4m,d.csv,1\n"
            ",e.csv,0,\n")
    entries, errors = parse_dataset(text, "set.csv", "/data")
    assert [(e.video_path, e.orientation, e.meta_path) for e in entries] == [
        ("/data/a.y4m", 0, None), ("/data/b,1.y4m", 1, "/data/b_meta.csv")]
    assert [e.split(": ")[0] for e in errors] == ["set.csv:5", "set.csv:6", "set.csv:7"]
    assert "orientation must be 0 or 1" in errors[0] and "found 3" in errors[1]
    with pytest.raises(DatasetError, match="header"):
        parse_dataset("a.y4m,a.csv,0,\n", "set.csv", "/data")


@pytest.mark.parametrize("text,message", [
    ("\ufeffframe,finger\r\n0,0\r\n1,1\r\n", None),
    ("0,1\n", "t.csv:1: expected the header"),
    ("frame,finger\n", "t.csv: no frames"),
    ("frame,finger\n0,0\n2,1\n", 't.csv:3: expected frame 1, found "2"'),
    ("frame,finger\n0,2\n", 't.csv:2: finger must be 0 or 1'),
])
def test_truth_file(text, message):
    if message is None:
        assert parse_truth(text, "t.csv").tolist() == [0, 1]
    else:
        with pytest.raises(TruthError, match=message):
            parse_truth(text, "t.csv")


def test_meta_rows_hold_until_the_next_one():
    track = MetaTrack.parse("\ufeff# camera log\nframe,gain,cct\n\n2,1.5,4000\n5, 8 ,2999.5\n",
                            "m.csv")
    assert [track.at(f) for f in (0, 2, 4, 5, 99)] == [
        (1.0, 5000), (1.5, 4000), (1.5, 4000), (8.0, 3000), (8.0, 3000)]


@pytest.mark.parametrize("text,message", [
    ("frame,gain,cct\nframe,gain,cct\n", 'm.csv:2: bad frame number "frame"'),
    ("0,1,5000\n0,1,5000\n", "m.csv:2: frame 0 does not follow frame 0"),
    ("0,1,999\n", 'm.csv:1: bad colour temperature "999"'),
    ("0,1,5000" + " " * 1020 + "\n", "m.csv:1: line longer than 1024 bytes"),
])
def test_meta_refusals_name_file_and_line(text, message):
    with pytest.raises(MetaError, match=message):
        MetaTrack.parse(text, "m.csv")


def test_light_class_limits():
    cases = [(1.0199, 3000), (1.02, 5000), (1.0, 2999), (4.5, 3899), (4.51, 3899), (4.51, 3900)]
    assert [light_class(g, k) for g, k in cases] == ["bright", "dim", "warm", "dim", "warm", "dim"]
