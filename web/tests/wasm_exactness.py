"""The page's WebAssembly module under Node against the native tool, without
a browser: over clips of several sizes, orientations and chroma orders, the
module must print the same results and log lines as molo-fingerdetect.

    wasm_exactness.py NATIVE_TOOL WEB_BUILD WORK_DIR
"""
import os
import subprocess
import sys

from clips import make_clips


def run(cmd):
    p = subprocess.run(cmd, capture_output=True, text=True)
    if p.returncode != 0:
        sys.exit(f"failed ({p.returncode}): {' '.join(cmd)}\n{p.stderr[-2000:]}")
    # The timing summary differs from run to run; the detector's lines and
    # the frame markers do not.
    log = [l for l in p.stderr.splitlines() if l.startswith(("[frame ", "D/", "E/"))]
    return p.stdout.splitlines(), log


def main(native_tool, web_build, work):
    node_run = os.path.join(os.path.dirname(__file__), "node_run.js")
    failures = []
    for name, clip, args in make_clips(os.path.join(work, "clips"), web_build)[0]:
        native = run([native_tool, "--json", "--log"] + args + [clip])
        module = run(["node", node_run, os.path.join(web_build, "www"), clip, "--log"] + args)
        reports = sum('"result":1' in r for r in native[0])
        print(f"{name}: {len(native[0])} frames, {reports} reports, {len(native[1])} log lines: "
              + ("same" if module == native else "the module's results or log differ"))
        if module != native:
            failures.append(name)
    if failures:
        sys.exit("the module differs from the tool on: " + ", ".join(failures))


if __name__ == "__main__":
    main(*sys.argv[1:])
