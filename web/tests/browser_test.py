"""The page in a real browser: headless Chromium with a fake camera that
plays a Y4M clip, driven through chromedriver.

    browser_test.py NATIVE_TOOL WEB_BUILD WORK_DIR

Camera: the page starts, reports the finger where it is in the demo clip and
nothing on a clip without one; the SHA-256 of every frame the page analysed
maps back to a frame of the clip, and that sequence replayed through the
native tool gives the page's answers. File mode: playing a clip gives the
native tool's answers frame for frame. A screenshot of the camera run is
kept in WORK_DIR.
"""
import json
import hashlib
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import Select

from clips import make_clips, nv21, read_y4m, write_y4m

SERVER_SECONDS = 600  # the server ends by itself after this, whatever happens here
DEMO_CENTRE_ROW, DEMO_RADIUS = 248, 144  # the demo's finger: a disc on the left edge


def native_results(tool, clip, orientation):
    out = subprocess.run([tool, "--json", "--orientation", str(orientation), clip],
                         capture_output=True, text=True, check=True).stdout
    return [json.loads(line) for line in out.splitlines()]


def answers(record):
    return [{k: e[k] for k in ("frame", "result", "row", "col")} for e in record]


class Page:
    def __init__(self, url, camera_clip, profile):
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--no-first-run", "--disable-quic",
                     f"--user-data-dir={profile}", "--use-fake-device-for-media-stream",
                     "--use-fake-ui-for-media-stream", f"--use-file-for-fake-video-capture={camera_clip}",
                     "--window-size=900,900"):
            options.add_argument(flag)
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.driver.set_page_load_timeout(30)
        self.driver.get(url + "?record")
        self.wait("window.moloPage && (window.moloPage.ready || window.moloPage.error)", 30)
        self.check()

    def js(self, expression):
        return self.driver.execute_script("return " + expression)

    def check(self):
        error = self.js("window.moloPage.error")
        if error:
            sys.exit("page: " + error)

    def wait(self, expression, seconds):
        end = time.monotonic() + seconds
        while not self.js(expression):
            if time.monotonic() > end:
                sys.exit(f"page: timed out waiting for {expression}")
            time.sleep(0.1)

    def record(self):
        self.wait("window.moloPage.record.every((e) => e.sha256)", 10)
        return self.js("window.moloPage.record")

    def close(self):
        self.driver.quit()


def camera_run(page, tool, clip, frames, work, name):
    """Starts the camera, waits for frames analysed frames (a screenshot at the
    first report), and checks them against the tool on the same frames."""
    page.driver.find_element(By.ID, "camera").click()
    page.wait(f"window.moloPage.record.length >= {frames} || "
              "window.moloPage.record.some((e) => e.state === 'reported')", 90)
    page.driver.save_screenshot(os.path.join(work, name + ".png"))
    page.wait(f"window.moloPage.record.length >= {frames}", 90)
    page.check()
    record = page.record()
    _, pictures = read_y4m(clip)
    index = {hashlib.sha256(nv21(f)).hexdigest(): i for i, f in enumerate(pictures)}
    unknown = [e["frame"] for e in record if e["sha256"] not in index]
    if unknown:
        sys.exit(f"{name}: {len(unknown)} analysed frames are none of the clip's (first: {unknown[:5]})")
    sequence = [index[e["sha256"]] for e in record]
    replay = os.path.join(work, name + "_replay.y4m")
    write_y4m(replay, [pictures[i] for i in sequence])
    if answers(record) != native_results(tool, replay, 0):
        sys.exit(f"{name}: the page's answers differ from the tool's on the same frames")
    reports = [e for e in record if e["result"] == 1]
    print(f"{name}: {len(record)} frames ({page.js('window.moloPage.source')}), "
          f"{len(set(sequence))} of the clip's {len(pictures)}, {len(reports)} reports; "
          "the tool agrees on the same sequence")
    return reports


def main(tool, web_build, work):
    clips = {name: path for name, path, _ in make_clips(os.path.join(work, "clips"), web_build)}
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        port = s.getsockname()[1]
    server = subprocess.Popen(["timeout", str(SERVER_SECONDS), sys.executable, "-m", "http.server",
                               "--bind", "127.0.0.1", "--directory", os.path.join(web_build, "www"),
                               str(port)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        for _ in range(100):
            with socket.socket() as s:
                if s.connect_ex(("127.0.0.1", port)) == 0:
                    break
            time.sleep(0.1)
        url = f"http://127.0.0.1:{port}/index.html"
        with tempfile.TemporaryDirectory() as profile:
            page = Page(url, clips["demo"], profile)
            try:
                # A bit more than one pass of the 40-frame demo.
                reports = camera_run(page, tool, clips["demo"], 60, work, "camera_demo")
                far = [e for e in reports
                       if (e["row"] - DEMO_CENTRE_ROW) ** 2 + e["col"] ** 2 > DEMO_RADIUS ** 2]
                if not reports or far:
                    sys.exit(f"camera, demo: {len(reports)} reports, {len(far)} away from the finger")
                # File mode, once per side the finger enters from.
                for name, side in (("demo", "0"), ("mirrored", "1")):
                    Select(page.driver.find_element(By.ID, "side")).select_by_value(side)
                    page.js("window.moloPage.done = false")  # still set by the clip before
                    page.driver.find_element(By.ID, "file").send_keys(clips[name])
                    page.wait("window.moloPage.done", 60)
                    page.check()
                    record = page.record()
                    if answers(record) != native_results(tool, clips[name], int(side)):
                        sys.exit(f"file mode, {name}: the page's answers differ from the tool's")
                    print(f"file mode, {name}: {len(record)} frames, "
                          f"{sum(e['result'] == 1 for e in record)} reports, same as the tool")
            finally:
                page.close()
        with tempfile.TemporaryDirectory() as profile:
            page = Page(url, clips["empty"], profile)
            try:
                if camera_run(page, tool, clips["empty"], 30, work, "camera_no_finger"):
                    sys.exit("camera, no finger: the page reported one")
            finally:
                page.close()
    finally:
        os.kill(server.pid, signal.SIGTERM)
        server.wait(timeout=10)


if __name__ == "__main__":
    main(*sys.argv[1:])
