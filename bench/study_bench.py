#!/usr/bin/env python3
"""What a study costs above its runs: `brelan study` of many decks of some 1,000 elements, and the same decks run in
process with their decks and meshes written. CPU time of all processes, memory of the gatherer, bytes and files.

    bench/study_bench.py [COUNT] [BUILD]        10,000 cases and build/release unless given
"""
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
import time

COUNT = int(sys.argv[1]) if len(sys.argv) > 1 else 10000
BUILD = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else "build/release").resolve()

STUDY = """deck = "pit.dat"
cut = "rules"
time_limit = 60
gather = {gather}
[values]
depth = {{ from = 4.0, to = 8.0 }}
width = {{ from = 8.0, to = 12.0 }}
spacing = {{ from = 0.37, to = 0.41 }}
[sample]
method = "latin"
count = {count}
"""


def used(*commands):
    """Seconds of CPU time and of the clock of commands side by side."""
    before, begun = resource.getrusage(resource.RUSAGE_CHILDREN), time.monotonic()
    running = [subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
               for command in commands]
    if any([process.wait() for process in running]):
        sys.exit("a command has failed")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, time.monotonic() - begun)


def study(place, gather):
    (place / "pit.toml").write_text(STUDY.format(count=COUNT, gather=gather))
    os.chdir(place)
    cpu, wall = used([BUILD / "brelan", "study", "pit.toml", "-j", "2"])
    print(f"study, gather {gather}: {cpu:.1f} s CPU, {wall:.1f} s, {COUNT / wall:.0f} cases/s; "
          f"largest process {resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024:.0f} MB")
    return cpu


def main():
    with tempfile.TemporaryDirectory(dir="/dev/shm") as directory:
        place = pathlib.Path(directory)
        subprocess.run([BUILD / "brelan", "-q", "study", "new", place / "pit.toml"], check=True)
        counts = study(place, '["nodes", "elements"]')
        results = place / "pit.study"
        files = [f for f in (results / "cases").rglob("*") if f.is_file()]
        print(f"{len(files)} files, {sum(f.stat().st_size for f in files) / COUNT:.0f} bytes a case; "
              f"study.sqlite {(results / 'study.sqlite').stat().st_size / COUNT:.0f} bytes a case")
        # Two processes as well: runs on two cores are in each other's way at the memory.
        cpu, wall = used(*([BUILD / "bench/study_baseline", BUILD / "brelan", results, "pit.dat", first, last, place / "plain"]
                           for first, last in ((1, COUNT // 2), (COUNT // 2 + 1, COUNT))))
        print(f"the same decks in two processes: {cpu:.1f} s CPU, {wall:.1f} s; load {os.getloadavg()[0]:.1f}")
        subprocess.run(["rm", "-r", place / "plain", results])
        print(f"a study costs {counts / cpu:.2f} times as much")


if __name__ == "__main__":
    main()
