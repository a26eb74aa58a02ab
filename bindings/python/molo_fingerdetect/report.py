"""The evaluation as one HTML page that carries everything it shows (pictures
as data: URIs, no scripts, nothing fetched), so it can be mailed or archived
and opened in any browser."""

import html

from . import plots
from .slices import DIMENSIONS

SECTIONS = (("overall", "Overall"), ("timelines", "Timeline per clip"),
            ("latency", "Latency"), ("timing", "Time per frame"), ("slices", "Slices"),
            ("cases", "Missed events and false alarms"))
SLICE_TITLES = {"frame_size": "frame size", "light": "light class", "orientation": "orientation"}

STYLE = """
body { font-family: sans-serif; margin: 1.5em; color: #222; }
table { border-collapse: collapse; margin: 0.5em 0 1.5em; }
th, td { border: 1px solid #ccc; padding: 0.2em 0.6em; text-align: right; }
th:first-child, td:first-child { text-align: left; }
figure { display: inline-block; vertical-align: top; margin: 0.5em; max-width: 340px; }
figcaption { font-size: 0.85em; }
pre { white-space: pre-wrap; font-size: 0.8em; background: #f4f4f4; padding: 0.3em; }
.failed { color: #b00; }
"""


def _fmt(value, digits=3):
    if value is None:
        return "&ndash;"
    if isinstance(value, float):
        return "%.*f" % (digits, value)
    return html.escape(str(value))


def _with_ci(value, ci, digits=3):
    if value is None:
        return "&ndash;"
    if ci is None:
        return _fmt(value, digits)
    return "%s (%s&ndash;%s)" % (_fmt(value, digits), _fmt(ci[0], digits), _fmt(ci[1], digits))


ROWS = (
    ("frames", lambda m: _fmt(m["frames"])),
    ("finger frames", lambda m: _fmt(m["finger_frames"])),
    ("reported frames", lambda m: _fmt(m["reported_frames"])),
    ("frame precision", lambda m: _fmt(m["frame_precision"])),
    ("frame recall", lambda m: _fmt(m["frame_recall"])),
    ("events (detected)", lambda m: "%d (%d)" % (m["events"], m["detected_events"])),
    ("event recall (95 % CI)", lambda m: _with_ci(m["event_recall"], m["event_recall_ci"])),
    ("median latency, frames", lambda m: _fmt(m["median_latency_frames"])),
    ("false alarms", lambda m: _fmt(m["false_alarms"])),
    ("finger-free time, s", lambda m: _fmt(m["finger_free_seconds"], 1)),
    ("false alarms per hour (95 % CI)",
     lambda m: _with_ci(m["false_alarms_per_hour"], m["false_alarms_per_hour_ci"], 1)),
    ("mean time per frame, ms", lambda m: _fmt(m["mean_ms"])),
    ("99th percentile, ms", lambda m: _fmt(m["p99_ms"])),
)


def _overall_table(metrics):
    rows = "".join("<tr><td>%s</td><td>%s</td></tr>" % (name, cell(metrics))
                   for name, cell in ROWS)
    return "<table><tr><th>metric</th><th>value</th></tr>%s</table>" % rows


def _slice_table(title, table):
    head = "".join("<th>%s</th>" % name for name, _ in ROWS)
    body = "".join("<tr><td>%s</td>%s</tr>" % (html.escape(key), "".join(
        "<td>%s</td>" % cell(metrics) for _, cell in ROWS)) for key, metrics in table.items())
    return "<h3>By %s</h3><table><tr><th>%s</th>%s</tr>%s</table>" % (title, title, head, body)


def _case_figure(result, case):
    span = ("frame %d" % case.first if case.stop - case.first == 1
            else "frames %d&ndash;%d" % (case.first, case.stop - 1))
    log = "\n".join(case.messages) or "(no message on this frame)"
    picture = ('<img src="%s" alt="frame %d of %s">' % (plots.data_uri(case.png), case.frame,
                                                        html.escape(result.video))
               if case.png else "")
    return ("<figure>%s<figcaption><b>%s</b> in %s, %s; shown: frame %d (%s)<pre>%s</pre>"
            "</figcaption></figure>" % (picture, case.kind, html.escape(result.video), span,
                                        case.frame, case.state, html.escape(log)))


def render(summary, results, failures, title="Finger detection: evaluation"):
    """The page as text. summary: slices.summarise(results); failures: messages."""
    overall = summary["overall"]
    parts = ["<!DOCTYPE html><html lang='en'><head><meta charset='utf-8'>",
             "<title>%s</title><style>%s</style></head><body>" % (html.escape(title), STYLE),
             "<h1>%s</h1>" % html.escape(title),
             "<p>%d clips evaluated%s.</p>" % (len(results), ", %d failed" % len(failures)
                                               if failures else "")]
    if failures:
        parts.append("<ul class='failed'>%s</ul>" % "".join(
            "<li>%s</li>" % html.escape(message) for message in failures))
    sections = {
        "overall": _overall_table(overall) + (
            "<p>Events are runs of finger frames; a false alarm is a run of reported frames "
            "without a finger frame. Intervals: Wilson (event recall), exact Poisson "
            "(false alarms).</p>"),
        "timelines": "".join(
            "<h3>%s</h3><p>%s, orientation %d, %d frames: %d of %d events detected, "
            "%d false alarms</p><img src='%s' alt='timeline of %s'>"
            % (html.escape(r.video), r.size, r.orientation, len(r.truth), clip["detected_events"],
               clip["events"], clip["false_alarms"], plots.timeline(r), html.escape(r.video))
            for r, clip in zip(results, summary["clips"])),
        "latency": "<img src='%s' alt='latency histogram'>" % plots.histogram(
            overall["latency_frames"], "frames from the event's first frame to its first report",
            integer_bins=True),
        "timing": "<img src='%s' alt='time per frame histogram'>" % plots.histogram(
            [t for r in results for t in r.times_ms.tolist()], "ms per execute call"),
        "slices": "".join(_slice_table(SLICE_TITLES[d], summary["slices"][d]) for d in DIMENSIONS),
        "cases": "".join(_case_figure(r, case) for r in results for case in r.cases)
        or "<p>None: every event was detected and nothing else was reported.</p>",
    }
    for key, heading in SECTIONS:
        parts.append("<section id='%s'><h2>%s</h2>%s</section>" % (key, heading, sections[key]))
    parts.append("</body></html>\n")
    return "".join(parts)
