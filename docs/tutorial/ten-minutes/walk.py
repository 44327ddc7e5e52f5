#!/usr/bin/env python3
"""Does what the chapter tells in a real browser, and leaves its pictures and the deck that comes out.

    walk.py --brelan build/release/brelan --pictures docs/tutorial/ten-minutes

It needs Chromium with its driver, python3-selenium and python3-pil. The deck is written to standard output: it is
first_pit.dat of the examples.
"""
import argparse
import io
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

from PIL import Image
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

FLAGS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-sync",
         "--disable-background-networking", "--disable-component-update", "--window-size=1280,760",
         "--use-angle=swiftshader", "--enable-unsafe-swiftshader"]


class Walk:
    def __init__(self, driver, pictures):
        self.driver = driver
        self.pictures = pictures

    def script(self, text, *values):
        return self.driver.execute_script(text, *values)

    def rest(self, seconds=0.5):
        time.sleep(seconds)

    def picture(self, name):
        self.rest(1)
        shot = Image.open(io.BytesIO(self.driver.get_screenshot_as_png())).convert("RGB")
        shot.quantize(128, dither=Image.Dither.NONE).save(self.pictures / (name + ".png"), optimize=True)

    def find(self, name):
        return self.driver.find_element(By.ID, name)

    # --- the deck --------------------------------------------------------------------------------

    def text(self):
        return self.script("return cm.getValue()")

    def line(self, part):
        return next(k for k, line in enumerate(self.text().split("\n")) if part in line)

    def select(self, line, start, end):
        self.script("cm.setSelection({line: arguments[0], ch: arguments[1]}, {line: arguments[0], ch: arguments[2]});"
                    "cm.scrollIntoView(null, 120); cm.focus()", line, start, end)
        self.rest(0.3)

    def type(self, keys):
        ActionChains(self.driver).send_keys(keys).perform()
        self.rest(0.4)

    # --- the drawing -----------------------------------------------------------------------------

    def place(self, x, y):
        x, y = self.script("const box = canvas.getBoundingClientRect(), at = shapeToScreen(arguments[0]);"
                           "return [at[0] + box.left, at[1] + box.top]", [x, y])
        return round(x), round(y)

    def drag(self, start, end):
        (x, y), (u, v) = self.place(*start), self.place(*end)
        actions = ActionChains(self.driver, duration=50)
        pointer = actions.w3c_actions.pointer_action
        pointer.move_to_location(x, y)
        pointer.pointer_down()
        for k in range(1, 6):
            pointer.move_to_location(x + (u - x) * k // 5, y + (v - y) * k // 5)
        pointer.pause(0.1)
        pointer.pointer_up()
        actions.perform()
        self.rest()

    def draw(self, tool, material, title, points):
        self.find("tool-" + tool).click()
        for name, value in (("draw-material", material), ("draw-title", title)):
            self.find(name).clear()
            self.find(name).send_keys(value)
        for point in points:
            actions = ActionChains(self.driver)
            pointer = actions.w3c_actions.pointer_action
            pointer.move_to_location(*self.place(*point))
            pointer.pause(0.05)
            pointer.click()
            actions.perform()
            self.rest(0.2)

    def done(self):
        self.find("draw-done").click()
        self.rest(1)


def walk(page):
    page.select(page.line("10.0   1.0    0.5"), 3, 3)
    page.picture("begin")
    page.drag((23, 7.5), (25, 7.5))
    page.select(page.line("* Kind"), 21, 21)
    page.type("\n* material 1: Ground\n* beam 1: Sheet pile")
    page.draw("line", "1", "Wall", [(13, 15), (13, 12), (13, 7)])
    page.picture("line")
    page.done()
    page.drag((13, 7), (13, 5.9))
    page.picture("wall")
    page.draw("outline", "2", "Pit", [(13, 15), (13, 12), (20, 12), (23, 15)])
    page.done()
    page.picture("outline")
    line = page.line("  3      0       0")
    page.select(line, 2, 3)
    page.type("1")
    page.picture("error")
    page.select(line + 2, 2, 12)
    page.type(Keys.DELETE)
    page.select(line + 1, 2, 12)
    page.type(Keys.DELETE)
    page.picture("dug")
    page.find("tab-quality").click()
    Select(page.find("colour")).select_by_value("quality")
    page.picture("quality")
    page.find("save").click()
    page.rest()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--brelan", type=pathlib.Path, required=True)
    parser.add_argument("--pictures", type=pathlib.Path, required=True)
    options = parser.parse_args()
    brelan = options.brelan.resolve()
    with tempfile.TemporaryDirectory(prefix="brelan-walk-") as work:
        subprocess.run([brelan, "-q", "new", "base-mesh", "-o", work, "--name", "pit.dat"], check=True)
        deck = pathlib.Path(work, "pit.dat")
        server = subprocess.Popen([brelan, "-q", "edit", deck, "--no-browser"], stdout=subprocess.PIPE, text=True)
        flags = webdriver.ChromeOptions()
        for flag in [*FLAGS, f"--user-data-dir={work}/profile"]:
            flags.add_argument(flag)
        driver = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=flags)
        try:
            driver.get(server.stdout.readline().strip())
            time.sleep(2)
            walk(Walk(driver, options.pictures))
            sys.stdout.write(deck.read_text())
        finally:
            driver.quit()
            server.terminate()
            server.wait()


if __name__ == "__main__":
    main()
