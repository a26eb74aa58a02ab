"""The WebAssembly build against the native tool, without a browser: over
clips of several sizes, orientations and chroma orders, the page's module
under Node and the tool built for WebAssembly must print the same results
and log lines as the native molo-fingerdetect, and the WebAssembly tool's
--dump files (the working planes) must equal the native ones byte for byte.

    wasm_exactness.py NATIVE_TOOL WEB_BUILD WORK_DIR
"""
import filecmp
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


def same_tree(a, b):
    cmp = filecmp.dircmp(a, b)
    _, mismatch, errors = filecmp.cmpfiles(a, b, cmp.common_files, shallow=False)
    return not (cmp.left_only or cmp.right_only or mismatch or errors), mismatch[:3] + cmp.left_only[:3] + cmp.right_only[:3]


def main(native_tool, web_build, work):
    www = os.path.join(web_build, "www")
    wasm_tool = os.path.join(web_build, "tools", "fingerdetect", "molo-fingerdetect.js")
    failures = []
    for name, clip, args in make_clips(os.path.join(work, "clips"), web_build):
        dumps = [os.path.join(work, name, d) for d in ("native", "wasm")]
        os.makedirs(os.path.join(work, name), exist_ok=True)
        native = run([native_tool, "--json", "--log", "--dump", dumps[0]] + args + [clip])
        tool = run(["node", wasm_tool, "--json", "--log", "--dump", dumps[1]] + args + [clip])
        module = run(["node", os.path.join(os.path.dirname(__file__), "node_run.js"), www, clip, "--log"]
                     + args)
        results, log = native
        problems = []
        if tool != native:
            problems.append("the WebAssembly tool's results or log differ")
        if module != native:
            problems.append("the module's results or log differ")
        same, which = same_tree(*dumps)
        if not same:
            problems.append(f"--dump files differ ({', '.join(which)})")
        reports = sum('"result":1' in r for r in results)
        print(f"{name}: {len(results)} frames, {reports} reports, {len(log)} log lines: "
              + ("; ".join(problems) if problems else "same"))
        failures += [f"{name}: {p}" for p in problems]
    if failures:
        sys.exit("\n".join(failures))


if __name__ == "__main__":
    main(*sys.argv[1:])
