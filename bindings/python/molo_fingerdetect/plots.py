"""The report's plots, drawn with matplotlib's Agg backend and returned as
PNG data: URIs so the page carries them itself."""

import base64
import io

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402  (after the backend is chosen)
from matplotlib.ticker import MaxNLocator  # noqa: E402

from .metrics import runs  # noqa: E402

TRUTH_COLOUR = "#2b6cb0"
HELD_COLOUR = "#f0a800"
REPORTED_COLOUR = "#d62728"


def data_uri(png):
    return "data:image/png;base64," + base64.b64encode(png).decode("ascii")


def _figure_uri(figure):
    out = io.BytesIO()
    figure.savefig(out, format="png", dpi=80)
    plt.close(figure)
    return data_uri(out.getvalue())


def timeline(result):
    """Truth, held and reported frames of a clip, one above the other."""
    frames = len(result.truth)
    figure, axes = plt.subplots(figsize=(9, 1.5))
    rows = (("truth", result.truth, TRUTH_COLOUR), ("held", result.held, HELD_COLOUR),
            ("reported", result.reported, REPORTED_COLOUR))
    for level, (_, flags, colour) in enumerate(reversed(rows)):
        spans = [(start, stop - start) for start, stop in runs(flags)]
        axes.broken_barh(spans, (level + 0.15, 0.7), facecolors=colour)
    axes.set_yticks([0.5, 1.5, 2.5])
    axes.set_yticklabels([name for name, _, _ in reversed(rows)])
    axes.set_xlim(0, max(frames, 1))
    axes.set_ylim(0, 3)
    axes.set_xlabel("frame")
    axes.grid(axis="x", alpha=0.3)
    figure.tight_layout()
    return _figure_uri(figure)


def histogram(values, xlabel, integer_bins=False):
    figure, axes = plt.subplots(figsize=(6, 2.6))
    if values:
        if integer_bins:
            low, high = min(values), max(values)
            bins = [edge - 0.5 for edge in range(low, high + 2)]
            axes.xaxis.set_major_locator(MaxNLocator(integer=True))
        else:
            bins = 40
        axes.hist(values, bins=bins, color=TRUTH_COLOUR)
    else:
        axes.text(0.5, 0.5, "nothing to show", ha="center", va="center", transform=axes.transAxes)
    axes.set_xlabel(xlabel)
    axes.set_ylabel("count")
    axes.yaxis.set_major_locator(MaxNLocator(integer=True))
    figure.tight_layout()
    return _figure_uri(figure)
