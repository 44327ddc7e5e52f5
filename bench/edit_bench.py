#!/usr/bin/env python3
"""Times of the server side of `brelan edit`: what a keystroke costs before the page draws.

    bench/edit_bench.py build/release [rounds]

A deck that makes a base mesh and draws 20 groups over it - materials, walls of beams, joints - is sent to the server over
one connection, each time with another coordinate of a point: `check` and `run`, with the cut of each sort. Shown are the
medians and the largest of the rounds in milliseconds, the median of processor time of both together, how long the run
itself was, and what is sent. The server's part may take 80 ms at 10,000 elements and 900 ms at 99,000; more ends the script
with status 1.
"""
import http.client
import json
import math
import pathlib
import signal
import statistics
import struct
import subprocess
import sys
import tempfile
import time

BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build/release").resolve()
ROUNDS = int(sys.argv[2]) if len(sys.argv) > 2 else 9
MOST = {10_000: 80.0, 99_000: 900.0}  # ms


def polygon(x, y, size, corners=6, turn=0.3):
    return [(x + size * math.cos(turn + 2 * math.pi * k / corners), y + 0.9 * size * math.sin(turn + 2 * math.pi * k / corners))
            for k in range(corners)]


def points_and_segments(points, closed):
    count = len(points) if closed else len(points) - 1
    rows = [f"{len(points)} 0 0 0. 0."] + [f"{k + 1} {x:.4f} {y:.4f}" for k, (x, y) in enumerate(points)]
    return rows + [str(count)] + [f"{k + 1} 1 0 2" for k in range(count)]


def deck_of(side, shift=0.0):
    """A square of so many elements a side under 12 materials, 5 walls of beams and 3 joints."""
    rows = ["* Kind: displacement", "2 0", "1 1 1 1 0 1", "0. 0.", f"{side}. 1. 0.5", f"{side}. 1. 0.5", "1",
            "Bmesh.dat", "Square.Mes", "1 1", "4", "0", "0", "1", f"0. 0. {side}. {side}.", "20 0", "0. 0. 0."]
    for g in range(20):
        x, y = side * (0.13 + 0.18 * (g % 5)), side * (0.14 + 0.24 * (g // 5))
        if g < 12:  # a material inside an outline
            points = polygon(x + (shift if g == 0 else 0.0), y, 0.07 * side)
            rows += ["3 0 0", f"{g + 2} 2.0 0 0"] + points_and_segments(points, True)
        else:
            line = [(x - 0.05 * side, y), (x + 0.013 * side, y + 0.021 * side), (x + 0.06 * side, y + 0.029 * side)]
            head = ["2 0 0", "1 1"] if g < 17 else ["-2 0 0", "7 0. 0. 2 1 0 0"]
            rows += head + points_and_segments(line, False)
    return "\n".join(rows) + "\n"


class Server:
    def __init__(self, deck):
        self.process = subprocess.Popen([BUILD / "brelan", "-q", "edit", deck, "--no-browser"], stdout=subprocess.PIPE, text=True)
        self.address = self.process.stdout.readline().strip()
        _, _, host, self.token, _ = self.address.split("/")
        self.origin = "http://" + host
        self.connection = http.client.HTTPConnection(host)

    def ask(self, name, **question):
        body = json.dumps(question)
        begun = time.perf_counter()
        self.connection.request("POST", f"/{self.token}/{name}", body,
                                {"Content-Type": "application/json", "Origin": self.origin})
        answer = self.connection.getresponse()
        text = answer.read()
        taken = 1000.0 * (time.perf_counter() - begun)
        if answer.status != 200:
            sys.exit(f"{name}: {answer.status} {text.decode()}")
        return taken, text

    def processor(self):
        """Milliseconds that the server's threads have worked so far."""
        return sum(int((task / "schedstat").read_text().split()[0])
                   for task in pathlib.Path(f"/proc/{self.process.pid}/task").iterdir()) / 1e6

    def end(self):
        self.process.send_signal(signal.SIGINT)
        self.process.wait()


def head_of(answer):
    length, = struct.unpack_from("<I", answer)
    return json.loads(answer[4:4 + length])


def main():
    slow = False
    print(f"{'':>22} {'check':>14} {'run':>16} {'worked':>8} {'the run':>8} {'KB':>7}")
    with tempfile.TemporaryDirectory(prefix="brelan-bench-") as name:
        for wanted, side in ((10_000, 98), (99_000, 313)):
            deck = pathlib.Path(name) / "square.dat"
            deck.write_text(deck_of(side))
            server = Server(deck)
            for cut in ("rules", "sound", "auto"):
                checks, runs, inner, worked = [], [], [], []
                for k in range(ROUNDS):
                    text = deck_of(side, 0.001 * (k + 1))
                    before = server.processor()
                    checks.append(server.ask("check", text=text)[0])
                    taken, answer = server.ask("run", text=text, cut=cut, number=k)
                    worked.append(server.processor() - before)
                    head = head_of(answer)
                    if head["end"]["status"] != 0:
                        sys.exit(f"{cut}: {head['end']}")
                    runs.append(taken)
                    inner.append(1000.0 * head["seconds"])
                both = statistics.median(c + r for c, r in zip(checks, runs))
                slow = slow or (both > MOST[wanted] and cut != "auto")
                count = head["summary"].split(",")[-1].strip()
                print(f"{count:>15} {cut:>6} {statistics.median(checks):6.1f} {max(checks):7.1f} "
                      f"{statistics.median(runs):8.1f} {max(runs):7.1f} "
                      f"{statistics.median(worked):8.1f} {statistics.median(inner):8.1f} {len(answer) // 1024:7}")
            server.end()
    return 1 if slow else 0


if __name__ == "__main__":
    sys.exit(main())
