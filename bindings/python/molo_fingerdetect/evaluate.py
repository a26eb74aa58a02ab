"""Evaluates the detector on labelled clips.

    python3 -m molo_fingerdetect.evaluate DATASET.csv [--json METRICS.json]
                                          [--report REPORT.html] [--jobs N]

Every clip of DATASET.csv runs through its own fresh detector handle, frame
by frame in order; the metrics go to standard output in short, to METRICS.json
in full, and REPORT.html shows them with plots and the frames where the
detector was wrong. A clip that cannot be evaluated gets one line on standard
error naming the file and the reason, the others are still evaluated, and the
exit status is 1; a bad command line exits with 2.
"""

import argparse
import concurrent.futures
import json
import multiprocessing
import os
import sys

PROGRAM = "evaluate"


def _parse_args(argv):
    parser = argparse.ArgumentParser(
        prog="python3 -m molo_fingerdetect.evaluate",
        description="Runs the finger detector over the clips of a dataset and measures how often "
                    "it is right.")
    parser.add_argument("dataset", metavar="DATASET.csv",
                        help="header video,truth,orientation,meta, then one row per clip")
    parser.add_argument("--json", metavar="METRICS.json", help="write every metric as JSON")
    parser.add_argument("--report", metavar="REPORT.html", help="write the report page")
    parser.add_argument("--jobs", metavar="N", type=int, default=1,
                        help="clips evaluated at once, each in its own process (default 1)")
    args = parser.parse_args(argv)
    if args.jobs < 1:
        parser.error("--jobs must be at least 1")
    for option in ("json", "report"):
        path = getattr(args, option)
        if path is not None and _same_file(path, args.dataset):
            parser.error("--%s would overwrite the dataset %s" % (option, args.dataset))
    return args


def _same_file(a, b):
    try:
        return os.path.samefile(a, b)
    except OSError:
        return os.path.abspath(a) == os.path.abspath(b)


def _run(entry, with_cases):
    """One clip in a worker: (result, None) or (None, message)."""
    from .clip_run import ClipError, run_clip

    try:
        return run_clip(entry, with_cases), None
    except ClipError as error:
        return None, str(error)
    except Exception as error:  # a fault in one clip must not stop the others
        return None, "%s: %s: %s" % (entry.video_path, type(error).__name__, error)


def _evaluate(entries, jobs, with_cases, progress):
    outcomes = [None] * len(entries)
    if jobs == 1 or len(entries) <= 1:
        for index, entry in enumerate(entries):
            outcomes[index] = _run(entry, with_cases)
            progress.update(index + 1)
        return outcomes
    # The workers' detectors run their row loops on one thread unless
    # MOLO_THREADS says otherwise, so that N processes share the cores instead
    # of N times the hardware's threads waiting on each other. Decisions do not
    # depend on it; the times per frame are then one thread's. The library
    # reads the variable once, early in each process, so it is set before
    # the processes start.
    context = multiprocessing.get_context("spawn")
    unset = "MOLO_THREADS" not in os.environ
    if unset:
        os.environ["MOLO_THREADS"] = "1"
    try:
        with concurrent.futures.ProcessPoolExecutor(max_workers=jobs, mp_context=context) as pool:
            futures = {pool.submit(_run, entry, with_cases): index
                       for index, entry in enumerate(entries)}
            for done, future in enumerate(concurrent.futures.as_completed(futures), start=1):
                outcomes[futures[future]] = future.result()
                progress.update(done)
    finally:
        if unset:
            del os.environ["MOLO_THREADS"]
    return outcomes


def _outputs_read(entries, args):
    """An output path that is one of the clips' inputs, else None."""
    for option in ("json", "report"):
        path = getattr(args, option)
        if path is None:
            continue
        for entry in entries:
            for source in (entry.video_path, entry.truth_path, entry.meta_path):
                if source is not None and _same_file(path, source):
                    return "--%s would overwrite %s" % (option, source)
    return None


def _describe(overall):
    def number(value, form):
        return "n/a" if value is None else form % value

    lines = ["frames: %d, %d with a finger, %d reported" % (
        overall["frames"], overall["finger_frames"], overall["reported_frames"])]
    ci = overall["event_recall_ci"]
    lines.append("events: %d of %d detected (recall %s%s), median latency %s frames" % (
        overall["detected_events"], overall["events"], number(overall["event_recall"], "%.3f"),
        ", 95%% CI %.3f-%.3f" % tuple(ci) if ci else "",
        number(overall["median_latency_frames"], "%d")))
    ci = overall["false_alarms_per_hour_ci"]
    lines.append("false alarms: %d in %.1f s without a finger (%s per hour%s)" % (
        overall["false_alarms"], overall["finger_free_seconds"],
        number(overall["false_alarms_per_hour"], "%.1f"),
        ", 95%% CI %.1f-%.1f" % tuple(ci) if ci else ""))
    lines.append("frame precision %s, frame recall %s" % (
        number(overall["frame_precision"], "%.3f"), number(overall["frame_recall"], "%.3f")))
    lines.append("time per frame: mean %s ms, 99th percentile %s ms" % (
        number(overall["mean_ms"], "%.3f"), number(overall["p99_ms"], "%.3f")))
    return "\n".join(lines)


def main(argv=None):
    args = _parse_args(argv)
    from .dataset import DatasetError, load_dataset
    from .progress import ProgressBar
    from .slices import summarise

    try:
        entries, failures = load_dataset(args.dataset)
    except DatasetError as error:
        print("%s: %s" % (PROGRAM, error), file=sys.stderr)
        return 1
    clash = _outputs_read(entries, args)
    if clash:
        print("%s: %s" % (PROGRAM, clash), file=sys.stderr)
        return 2
    for message in failures:
        print("%s: %s" % (PROGRAM, message), file=sys.stderr)
    progress = ProgressBar(len(entries), "clips")
    outcomes = _evaluate(entries, args.jobs, args.report is not None, progress)
    progress.finish()
    results = []
    for result, message in outcomes:
        if message is None:
            results.append(result)
        else:
            failures.append(message)
            print("%s: %s" % (PROGRAM, message), file=sys.stderr)
    summary = summarise(results)
    print("clips: %d evaluated, %d failed" % (len(results), len(failures)))
    print(_describe(summary["overall"]))
    try:
        if args.json:
            with open(args.json, "w", encoding="utf-8") as out:
                json.dump(dict(summary, failed=failures), out, indent=1, allow_nan=False)
                out.write("\n")
        if args.report:
            from .report import render

            with open(args.report, "w", encoding="utf-8") as out:
                out.write(render(summary, results, failures))
    except OSError as error:
        print("%s: cannot write %s: %s" % (PROGRAM, error.filename, error.strerror),
              file=sys.stderr)
        return 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
