#!/usr/bin/env python3
"""Times of the page of `brelan edit` in a Chromium without a screen or graphics hardware.

    bench/page_bench.py build/release [rounds]

A square of 10,000 and of 99,000 elements with 20 groups is opened. Keys change a coordinate; the time goes from the
keystroke to the frame after the new mesh is drawn. Then the mesh is dragged to and fro for some seconds, and the frames in
which it was drawn are counted. Medians above 150 ms and 1.5 s, or fewer than 30 frames a second, end the script with
status 1.
"""
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

from selenium import webdriver
from selenium.webdriver.chrome.service import Service

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from edit_bench import BUILD, deck_of  # noqa: E402

ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 9
MOST = {100: 150.0, 312: 1500.0}  # ms, by elements along a side
LEAST_FRAMES = 30.0
FLAGS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--hide-scrollbars",
         "--disable-background-networking", "--disable-component-update", "--disable-sync", "--window-size=1280,800"]


def browser():
    options = webdriver.ChromeOptions()
    for flag in FLAGS:
        options.add_argument(flag)
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def wait(driver, expression, seconds=60.0):
    end = time.monotonic() + seconds
    while not driver.execute_script("return " + expression):
        if time.monotonic() > end:
            sys.exit("waited for " + expression)
        time.sleep(0.01)


def keystrokes(driver):
    """Digits of the first point of the first group: each is typed over the one before."""
    line = driver.execute_script("return known.check.groups[0].line + 3")
    taken = []
    for k in range(ROUNDS + 1):
        driver.execute_script("performance.clearMeasures(); const at = cm.getLine(arguments[0]).indexOf('.') + 1;"
                              "cm.setSelection({line: arguments[0], ch: at}, {line: arguments[0], ch: at + 1}); cm.focus();", line)
        driver.execute_cdp_cmd("Input.dispatchKeyEvent", {"type": "keyDown", "key": str(k % 10), "text": str(k % 10)})
        driver.execute_cdp_cmd("Input.dispatchKeyEvent", {"type": "keyUp", "key": str(k % 10)})
        wait(driver, "performance.getEntriesByName('brelan-picture').length > 0")
        taken.append(driver.execute_script("const m = performance.getEntriesByName('brelan-picture')[0];"
                                           "return [m.duration, m.detail.answer, stats.milliseconds, m.detail.taken]"))
        time.sleep(0.7)  # what follows the picture is over
    return [statistics.median(column) for column in zip(*taken[1:])]


def frames(driver, seconds=4.0):
    driver.execute_script("""
        window.frames_ = []; let last = stats.drawn;
        const watch = (t) => { if (stats.drawn !== last) { last = stats.drawn; frames_.push(t); } requestAnimationFrame(watch); };
        requestAnimationFrame(watch);""")
    x, y = driver.execute_script("const b = canvas.getBoundingClientRect(); return [b.left + b.width / 2, b.top + b.height / 2]")

    def mouse(kind, dx, dy, **more):
        driver.execute_cdp_cmd("Input.dispatchMouseEvent", {"type": kind, "x": x + dx, "y": y + dy, **more})

    mouse("mousePressed", 0, 0, button="left", clickCount=1)
    begun, k = time.monotonic(), 0
    while time.monotonic() - begun < seconds:
        k += 1
        mouse("mouseMoved", abs(k % 80 - 40) * 4 - 80, abs(k % 60 - 30) * 3 - 45, button="left", buttons=1)
    mouse("mouseReleased", 0, 0, button="left", clickCount=1)
    times = driver.execute_script("return frames_")
    return 1000.0 * (len(times) - 1) / (times[-1] - times[0]), max(b - a for a, b in zip(times, times[1:]))


def main():
    good = True
    for side, most in MOST.items():
        with tempfile.TemporaryDirectory() as place:
            deck = pathlib.Path(place) / "square.dat"
            deck.write_text(deck_of(side))
            server = subprocess.Popen([BUILD / "brelan", "-q", "edit", deck, "--no-browser"], stdout=subprocess.PIPE, text=True)
            driver = browser()
            try:
                driver.get(server.stdout.readline().strip())
                wait(driver, "document.body.dataset.status === '0' && scene.details")
                elements = driver.execute_script("return elementCount()")
                median, answer, painted, taken = keystrokes(driver)
                rate, longest = frames(driver)
            finally:
                driver.quit()
                server.terminate()
                server.wait()
        print(f"{elements} elements: keystroke to picture {median:.0f} ms (answer {answer:.0f}, mesh taken {taken:.0f}, "
              f"drawn {painted:.0f}), most {most:.0f}; panning {rate:.0f} frames/s, longest {longest:.0f} ms")
        good = good and median <= most and rate >= LEAST_FRAMES
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
