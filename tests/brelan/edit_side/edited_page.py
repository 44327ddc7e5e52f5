"""The page of `brelan edit` in a Chromium that its driver guides: one browser for a file, a server for each test."""
import contextlib
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.action_chains import ActionChains
    from selenium.webdriver.common.keys import Keys
except ImportError:
    webdriver = None

DRIVER = shutil.which("chromedriver")
FLAGS = ["--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--hide-scrollbars",
         "--disable-background-networking", "--disable-component-update", "--disable-sync", "--window-size=1280,800"]
EXAMPLES = pathlib.Path(os.environ["BRELAN_SOURCE"]) / "examples"


@unittest.skipUnless(webdriver and DRIVER, "python3-selenium or chromium-driver is not installed")
class PageCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        options = webdriver.ChromeOptions()
        for flag in FLAGS:
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        cls.driver = webdriver.Chrome(service=Service(DRIVER), options=options)
        cls.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                   {"width": 1280, "height": 800, "deviceScaleFactor": 1, "mobile": False})

    @classmethod
    def tearDownClass(cls):
        cls.driver.quit()

    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.deck = self.root / "stage.dat"
        # Parts of what the console may say: a run that a newer text ends is told so.
        self.expected = ["/run - Failed to load resource: the server responded with a status of 409",
                         "/details - Failed to load resource: the server responded with a status of 409"]

    def tearDown(self):
        with contextlib.suppress(Exception):
            self.js("editing.saved = cm.changeGeneration(true)")  # nothing holds the page back
        self.driver.set_network_conditions(offline=False, latency=0, throughput=-1)
        said = [entry["message"] for entry in self.driver.get_log("browser") if entry["level"] == "SEVERE"]
        self.assertEqual([s for s in said if not any(part in s for part in self.expected)], [])

    def leave(self):
        """The page, before its server ends."""
        self.driver.get("about:blank")
        self.driver.get_log("browser")

    def open(self, text=None, *options):
        """Serves a deck, the stages of the examples where none is given, and waits for its mesh."""
        self.deck.write_text(text or (EXAMPLES / "stage.dat").read_text())
        server = subprocess.Popen([os.environ["BRELAN"], "-q", "edit", self.deck, "--no-browser", *options],
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end, server)
        self.addCleanup(self.leave)
        self.address = server.stdout.readline().strip()
        self.driver.get(self.address)
        self.wait("document.body.dataset.ready === 'yes' && runs.shown > 0 && !runs.current && !runs.checking")
        self.text = self.js("return deckText()")
        return server

    @staticmethod
    def end(server):
        server.kill()
        server.wait()
        server.stdout.close()

    def js(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def wait(self, expression, seconds=30):
        end = time.monotonic() + seconds
        while not self.js("return " + expression):
            self.assertLess(time.monotonic(), end, "waited for " + expression)
            time.sleep(0.01)

    def settle(self):
        """Until the text is checked and run, and what has been asked for is drawn."""
        self.wait("!handles.moving && !runs.checking && !runs.current")
        self.driver.execute_async_script("const done = arguments[0]; requestAnimationFrame(() => requestAnimationFrame(() => requestAnimationFrame(done)))")
        self.wait("!painting.pending && !sizing.pending")

    def keys(self, *keys, held=()):
        chain = ActionChains(self.driver, duration=0)
        for key in held:
            chain.key_down(key)
        chain.send_keys(*keys)
        for key in held:
            chain.key_up(key)
        chain.perform()

    def line_of(self, row, after=""):
        lines = self.text.split("\n")
        first = next((k for k, line in enumerate(lines) if line.startswith(after)), 0) if after else 0
        return next(k for k, line in enumerate(lines) if k >= first and line.strip() == row)

    def put_cursor(self, line, column=0):
        self.js("cm.focus(); goToLine(arguments[0], arguments[1])", line, column)

    # --- the drawing -------------------------------------------------------------------------

    def on_screen(self, x, y):
        return self.js("const b = canvas.getBoundingClientRect(), p = shapeToScreen([...arguments]);"
                       "return [b.left + p[0], b.top + p[1]]", x, y)

    def mouse(self, kind, x, y, buttons=0, count=1):
        at = self.on_screen(x, y)
        button = "left" if buttons or kind != "mouseMoved" else "none"
        self.driver.execute_cdp_cmd("Input.dispatchMouseEvent", {"type": kind, "x": at[0], "y": at[1], "button": button,
                                                                 "buttons": buttons, "clickCount": count})

    def click(self, x, y):
        self.mouse("mouseMoved", x, y)
        self.mouse("mousePressed", x, y, 1)
        self.mouse("mouseReleased", x, y)

    def drag(self, start, to):
        """In ten steps, all of them in places as they are on the screen when the drag begins."""
        self.mouse("mouseMoved", *start)
        self.mouse("mousePressed", *start, 1)
        for k in range(1, 11):
            self.mouse("mouseMoved", *(a + (b - a) * k / 10 for a, b in zip(start, to)), 1)
        self.mouse("mouseReleased", *to)
        self.settle()

    def color_at(self, x, y):
        """Of the mesh itself, without what is drawn over it."""
        return tuple(self.js("""
            const copy = document.createElement("canvas"), c = copy.getContext("2d"), p = shapeToScreen([...arguments]);
            copy.width = layer.canvas.width; copy.height = layer.canvas.height;
            layer.image = null;  // what is shown already is no longer to be had
            showMeshLayer(false);
            c.drawImage(layer.canvas, 0, 0);
            return [...c.getImageData(p[0] * ratio, p[1] * ratio, 1, 1).data].slice(0, 3);""", x, y))

    def changed_lines(self):
        """[old, new] of each line that differs from the deck as it was opened."""
        now = self.js("return deckText()").split("\n")
        self.assertEqual(len(now), len(self.text.split("\n")))
        return [[a, b] for a, b in zip(self.text.split("\n"), now) if a != b]
