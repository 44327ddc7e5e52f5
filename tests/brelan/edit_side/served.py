"""`brelan edit` as a program asks it."""
import http.client
import json
import os
import pathlib
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest

BRELAN = os.environ["BRELAN"]
SOURCE = pathlib.Path(os.environ["BRELAN_SOURCE"])
DECK = (SOURCE / "examples" / "stage.dat").read_bytes()
SECONDS = 60  # that an answer may take at most, sanitizers included


class Served:
    def __init__(self, deck, *options):
        self.process = subprocess.Popen([BRELAN, "-q", "edit", deck, "--no-browser", *options], text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.address = self.process.stdout.readline().strip()
        if not self.address:
            raise AssertionError(self.process.stderr.read())
        _, _, self.host, self.token, _ = self.address.split("/")
        self.port = int(self.host.split(":")[1])
        self.own = {"Content-Type": "application/json", "Origin": "http://" + self.host}

    def request(self, method, path, body=None, headers=None):
        """Status, headers and body of an answer; the path is one from the root on."""
        connection = http.client.HTTPConnection(self.host, timeout=SECONDS)
        try:
            connection.request(method, path, body, headers or {})
            answer = connection.getresponse()
            return answer.status, answer.headers, answer.read()
        finally:
            connection.close()

    def get(self, name):
        status, _, body = self.request("GET", f"/{self.token}/{name}")
        return status, body

    def post(self, name, **question):
        status, _, body = self.request("POST", f"/{self.token}/{name}", json.dumps(question), self.own)
        return status, body if name in ("run", "details") and status == 200 else json.loads(body)

    def deck(self):
        status, body = self.get("deck")
        assert status == 200, body
        return json.loads(body)

    def events(self):
        """Name and data of each event, as they come; signs of life alone do not do for ever."""
        connection = http.client.HTTPConnection(self.host, timeout=SECONDS)
        connection.request("GET", f"/{self.token}/events")
        answer = connection.getresponse()
        name = None
        begun = time.monotonic()
        try:
            for line in iter(answer.readline, b""):
                if line.startswith(b"event: "):
                    name = line[7:-1].decode()
                elif line.startswith(b"data: "):
                    yield name, json.loads(line[6:])
                    begun = time.monotonic()
                elif time.monotonic() - begun > SECONDS:
                    raise AssertionError("no event came")
        finally:
            connection.close()

    def end(self):
        self.process.send_signal(signal.SIGINT)
        said = self.process.communicate(timeout=SECONDS)
        return self.process.returncode, said[1]


def head_of(answer):
    length, = struct.unpack_from("<I", answer)
    return json.loads(answer[4:4 + length])


def arrays_of(answer):
    """The arrays of an answer by their names."""
    length, = struct.unpack_from("<I", answer)
    forms = {"f32": "f", "i32": "i", "u32": "I"}
    return {a["name"]: struct.unpack_from(f"<{a['count']}{forms[a['type']]}", answer, 4 + length + a["offset"])
            for a in head_of(answer)["arrays"]}


class ServedCase(unittest.TestCase):
    def setUp(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="brelan-test-"))
        self.addCleanup(shutil.rmtree, self.root, ignore_errors=True)
        self.file = self.root / "deck.dat"

    def serve(self, content=DECK, *options):
        if content is not None:
            self.file.write_bytes(content)
        served = Served(self.file, *options)
        self.addCleanup(served.process.wait, SECONDS)
        self.addCleanup(served.process.stderr.close)
        self.addCleanup(served.process.stdout.close)
        self.addCleanup(served.process.kill)
        return served
