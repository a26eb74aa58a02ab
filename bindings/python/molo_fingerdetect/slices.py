"""The evaluation's counts over the whole dataset, per clip, and sliced by
frame size, light class and orientation."""

import numpy as np

from .metrics import Tally, tally_clip

DIMENSIONS = ("frame_size", "light", "orientation")


def _keys(result, dimension):
    """The slice key of every frame of a clip."""
    if dimension == "frame_size":
        return [result.size] * len(result.truth)
    if dimension == "orientation":
        return [str(result.orientation)] * len(result.truth)
    return result.light


def summarise(results):
    """{"overall", "clips", "slices"} as metric dictionaries; overall and the
    slices add the clips' counts before any rate is taken."""
    overall = Tally()
    clips = []
    slices = {dimension: {} for dimension in DIMENSIONS}
    for result in results:
        tally = tally_clip(result.truth, result.reported, result.fps, result.times_ms)
        overall.add(tally)
        clips.append(dict(video=result.video, **tally.metrics()))
        for dimension in DIMENSIONS:
            keys = np.array(_keys(result, dimension))
            for key in sorted(set(keys.tolist())):
                part = tally_clip(result.truth, result.reported, result.fps, result.times_ms,
                                  select=keys == key)
                slices[dimension].setdefault(key, Tally()).add(part)
    return {
        "overall": overall.metrics(),
        "clips": clips,
        "slices": {dimension: {key: tally.metrics() for key, tally in sorted(table.items())}
                   for dimension, table in slices.items()},
    }
