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


def replay_camera(tool, clip, record, work, name):
    """Maps the page's frames to the clip's and replays them through the tool."""
    _, frames = read_y4m(clip)
    index = {hashlib.sha256(nv21(f)).hexdigest(): i for i, f in enumerate(frames)}
    unknown = [e["frame"] for e in record if e["sha256"] not in index]
    if unknown:
        sys.exit(f"{name}: {len(unknown)} analysed frames are none of the clip's (first: {unknown[:5]})")
    sequence = [index[e["sha256"]] for e in record]
    replay = os.path.join(work, name + "_replay.y4m")
    write_y4m(replay, [frames[i] for i in sequence])
    if answers(record) != native_results(tool, replay, 0):
        sys.exit(f"{name}: the page's answers differ from the tool's on the same frames")
    return sequence


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
                # Camera: a bit more than one pass of the 40-frame demo.
                page.driver.find_element(By.ID, "camera").click()
                page.wait("window.moloPage.record.some((e) => e.state === 'reported')", 60)
                page.driver.save_screenshot(os.path.join(work, "camera_demo.png"))
                page.wait("window.moloPage.record.length >= 60", 60)
                page.check()
                source = page.js("window.moloPage.source")
                record = page.record()
                sequence = replay_camera(tool, clips["demo"], record, work, "demo_camera")
                reports = [e for e in record if e["result"] == 1]
                far = [e for e in reports
                       if (e["row"] - DEMO_CENTRE_ROW) ** 2 + e["col"] ** 2 > DEMO_RADIUS ** 2]
                if not reports or far:
                    sys.exit(f"demo camera: {len(reports)} reports, {len(far)} away from the finger")
                print(f"camera, demo: {len(record)} frames ({source}), {len(set(sequence))} of the clip's "
                      f"40, {len(reports)} reports on the finger; the tool agrees on the same sequence")

                # File mode, once per side the finger enters from.
                for name, side in (("demo", "0"), ("mirrored", "1")):
                    Select(page.driver.find_element(By.ID, "side")).select_by_value(side)
                    page.driver.find_element(By.ID, "file").send_keys(clips[name])
                    page.wait("window.moloPage.done", 60)
                    page.check()
                    record = page.record()
                    if answers(record) != native_results(tool, clips[name], int(side)):
                        sys.exit(f"file mode, {name}: the page's answers differ from the tool's")
                    print(f"file mode, {name}: {len(record)} frames, "
                          f"{sum(e['result'] == 1 for e in record)} reports, same as the tool")
                page.driver.save_screenshot(os.path.join(work, "file_mirrored.png"))
            finally:
                page.close()
        with tempfile.TemporaryDirectory() as profile:
            page = Page(url, clips["empty"], profile)
            try:
                page.driver.find_element(By.ID, "camera").click()
                page.wait("window.moloPage.record.length >= 30", 60)
                page.check()
                record = page.record()
                replay_camera(tool, clips["empty"], record, work, "empty_camera")
                if any(e["result"] != 0 for e in record):
                    sys.exit("camera, no finger: the page reported one")
                print(f"camera, no finger: {len(record)} frames, no report; the tool agrees")
            finally:
                page.close()
    finally:
        os.kill(server.pid, signal.SIGTERM)
        server.wait(timeout=10)


if __name__ == "__main__":
    main(*sys.argv[1:])
