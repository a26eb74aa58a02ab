"""The page in a real browser: headless Chromium with a fake camera that
plays a Y4M clip, driven through chromedriver.

    browser_test.py NATIVE_TOOL WEB_BUILD WORK_DIR

The page starts, reports the finger in the demo clip, and every frame it
analysed (by its SHA-256) is a frame of the demo clip, so the camera path
hands the detector the clip's bytes; where and when it reports is then the
tool's decision on those bytes, which wasm_exactness.py compares under Node.
A screenshot of the run is kept in WORK_DIR. (NATIVE_TOOL is not used.)
"""
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

from clips import make_clips, nv21

SERVER_SECONDS = 600  # the server ends by itself after this, whatever happens here


def camera_run(url, clip, frames, known, work, name):
    """Opens the page on a camera playing clip, waits for frames analysed
    frames (a screenshot at the first report), checks that each is one of
    the known (SHA-256 of the NV21 bytes) and returns the reports."""
    with tempfile.TemporaryDirectory() as profile:
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in ("--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking",
                     "--disable-component-update", "--disable-sync", "--no-first-run", "--disable-quic",
                     f"--user-data-dir={profile}", "--use-fake-device-for-media-stream",
                     "--use-fake-ui-for-media-stream", f"--use-file-for-fake-video-capture={clip}",
                     "--window-size=900,900"):
            options.add_argument(flag)
        driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        try:
            driver.set_page_load_timeout(30)
            driver.get(url + "?record")

            def wait(expression, seconds):
                end = time.monotonic() + seconds
                while not driver.execute_script("return " + expression):
                    if time.monotonic() > end:
                        sys.exit(f"{name}: timed out waiting for {expression}")
                    time.sleep(0.1)
                error = driver.execute_script("return window.moloPage.error")
                if error:
                    sys.exit(f"{name}: page: {error}")

            wait("window.moloPage && (window.moloPage.ready || window.moloPage.error)", 30)
            driver.find_element(By.ID, "camera").click()
            wait(f"window.moloPage.record.length >= {frames} || "
                 "window.moloPage.record.some((e) => e.state === 'reported')", 90)
            driver.save_screenshot(os.path.join(work, name + ".png"))
            wait(f"window.moloPage.record.length >= {frames}", 90)
            wait("window.moloPage.record.every((e) => e.sha256)", 10)
            record = driver.execute_script("return window.moloPage.record")
        finally:
            driver.quit()
    unknown = [e["frame"] for e in record if e["sha256"] not in known]
    if unknown:
        sys.exit(f"{name}: {len(unknown)} analysed frames are none of the demo's (first: {unknown[:5]})")
    reports = [e for e in record if e["result"] == 1]
    print(f"{name}: {len(record)} frames, all of the demo's, {len(reports)} reports")
    return reports


def main(_tool, web_build, work):
    made, frames = make_clips(os.path.join(work, "clips"), web_build)
    clips = {name: path for name, path, _ in made}
    known = {hashlib.sha256(nv21(f)).hexdigest() for f in frames}
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
        # A bit more than one pass of the 40-frame demo.
        if not camera_run(url, clips["demo"], 60, known, work, "camera_demo"):
            sys.exit("camera, demo: no report")
    finally:
        os.kill(server.pid, signal.SIGTERM)
        server.wait(timeout=10)


if __name__ == "__main__":
    main(*sys.argv[1:])
