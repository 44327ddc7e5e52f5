"""What the comparing scripts have in common: their options, the copy of the
program that they run, and the loop over the cases with its summary."""

import argparse
import os
import shutil
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))


def options_of(description, count):
    """Parser of the options that every script has."""
    default = os.path.join(HERE, "..", "..", "build", "release", "brelan2d")
    parser = argparse.ArgumentParser(
        description=description,
        formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--program", default=default)
    parser.add_argument("--count", type=int, default=count)
    parser.add_argument("--seed", type=int, default=1,
                        help="seed of the first case; the next ones follow")
    parser.add_argument("--keep", metavar="DIR",
                        help="keep the two trees of failing cases here")
    parser.add_argument("--show", action="store_true",
                        help="a line for each case, with its time")
    return parser


def with_copy_of(path, action):
    """action(program) on a copy: a build may replace the program meanwhile."""
    program = os.path.abspath(path)
    if not os.path.exists(program):
        sys.exit("no program at " + program)
    shelf = tempfile.mkdtemp(prefix="brelan-compare-")
    try:
        return action(shutil.copy(program, shelf))
    finally:
        shutil.rmtree(shelf, ignore_errors=True)


def run_cases(options, new_case, run_case, summary=None):
    """Runs cases of consecutive seeds.

    new_case(seed) gives a case with a label; run_case(case, directory) gives
    status, reason and the differences found.  Status 3 is a case that the
    calculation leaves out.  summary() prints what a script shows besides.
    Returns the exit status of the script.
    """
    passed = failed = 0
    ends = {}
    for seed in range(options.seed, options.seed + options.count):
        case = new_case(seed)
        label = "seed %d, %s" % (seed, case.label())
        directory = tempfile.mkdtemp(prefix="brelan-compare-")
        begun = time.time()
        try:
            status, reason, found = run_case(case, directory)
            ends[status] = ends.get(status, 0) + 1
            if options.show:
                print("%s, status %d %s, %.1f s" % (
                    label, status, reason, time.time() - begun), flush=True)
            if status == 3:
                continue
            if not found:
                passed += 1
                continue
            failed += 1
            print(label)
            print("\n".join(found), flush=True)
            if options.keep:
                target = os.path.join(options.keep, "seed-%d" % seed)
                shutil.rmtree(target, ignore_errors=True)
                shutil.copytree(directory, target)
        finally:
            shutil.rmtree(directory, ignore_errors=True)
    if summary:
        summary()
    print("ends: " + ", ".join("%d with status %d" % (n, s)
                               for s, n in sorted(ends.items())))
    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0
