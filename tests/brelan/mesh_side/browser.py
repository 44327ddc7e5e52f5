"""A headless Chromium that is driven through its debugging pipe: real clicks, wheel turns and keys."""
import base64
import fcntl
import json
import os
import shutil
import signal
import subprocess
import tempfile
import time

PROGRAM = shutil.which("chromium") or shutil.which("chromium-browser")
FLAGS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
         "--disable-background-networking", "--disable-component-update", "--disable-sync"]


class Browser:
    def __init__(self, width=1280, height=800):
        self.profile = tempfile.mkdtemp(prefix="brelan-browser-")
        commands, self.commands = os.pipe()
        self.replies, replies = os.pipe()
        # The browser reads its commands from 3 and writes to 4.
        high = [fcntl.fcntl(end, fcntl.F_DUPFD, 10) for end in (commands, replies)]

        def place():
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        self.process = subprocess.Popen(
            [PROGRAM, *FLAGS, "--remote-debugging-pipe", f"--user-data-dir={self.profile}",
             f"--window-size={width},{height}", "about:blank"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, close_fds=False,
            preexec_fn=place, start_new_session=True)
        for end in (commands, replies, *high):
            os.close(end)
        self.pending = b""
        self.number = 0
        self.session = None
        self.requests = []
        self.errors = []
        pages = self.call("Target.getTargets")["targetInfos"]
        target = next(p for p in pages if p["type"] == "page")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(domain + ".enable")
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def close(self):
        try:
            self.session = None
            self.call("Browser.close")
            self.process.wait(20)
        except Exception:  # whatever the browser does at its end: it must not outlive the test
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
        os.close(self.commands)
        os.close(self.replies)
        shutil.rmtree(self.profile, ignore_errors=True)

    def message(self, deadline):
        while b"\0" not in self.pending:
            if time.monotonic() > deadline:
                raise TimeoutError("the browser does not answer")
            data = os.read(self.replies, 1 << 20)
            if not data:
                raise EOFError("the browser has ended")
            self.pending += data
        text, self.pending = self.pending.split(b"\0", 1)
        return json.loads(text)

    def call(self, method, **parameters):
        self.number += 1
        request = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            request["sessionId"] = self.session
        os.write(self.commands, json.dumps(request).encode() + b"\0")
        deadline = time.monotonic() + 90
        while True:
            answer = self.message(deadline)
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            if answer.get("method") == "Network.requestWillBeSent":
                self.requests.append(answer["params"]["request"]["url"])
            elif answer.get("method") == "Runtime.exceptionThrown":
                details = answer["params"]["exceptionDetails"]
                self.errors.append(details.get("exception", {}).get("description", details["text"]))
            elif answer.get("method") == "Log.entryAdded" and answer["params"]["entry"]["level"] == "error":
                self.errors.append(answer["params"]["entry"]["text"])

    def value(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in result:
            raise RuntimeError(f"{expression}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def wait(self, expression):
        deadline = time.monotonic() + 60
        while not self.value(expression):
            if time.monotonic() > deadline:
                raise TimeoutError(expression)
            time.sleep(0.05)

    def open(self, url):
        self.call("Page.navigate", url="about:blank")
        self.call("Page.navigate", url=url)
        self.wait("document.body && document.body.dataset.ready === 'yes'")
        self.settle()

    def settle(self):
        """Until what has been asked for is painted."""
        self.value("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)))")

    def mouse(self, kind, x, y, **more):
        self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, **more)

    def click(self, x, y):
        self.mouse("mouseMoved", x, y)
        self.mouse("mousePressed", x, y, button="left", clickCount=1)
        self.mouse("mouseReleased", x, y, button="left", clickCount=1)
        self.settle()

    def drag(self, x1, y1, x2, y2):
        self.mouse("mousePressed", x1, y1, button="left", clickCount=1)
        for k in range(1, 6):
            self.mouse("mouseMoved", x1 + (x2 - x1) * k / 5, y1 + (y2 - y1) * k / 5, button="left", buttons=1)
        self.mouse("mouseReleased", x2, y2, button="left", clickCount=1)
        self.settle()

    def wheel(self, x, y, delta):
        self.mouse("mouseWheel", x, y, deltaX=0, deltaY=delta)
        self.settle()

    def key(self, key):
        for kind in ("keyDown", "keyUp"):
            self.call("Input.dispatchKeyEvent", type=kind, key=key, **({"text": key} if len(key) == 1 else {}))
        self.settle()

    def screenshot(self, path):
        with open(path, "wb") as file:
            file.write(base64.b64decode(self.call("Page.captureScreenshot", format="png")["data"]))
