#!/usr/bin/env python3
"""Mutants of lib/: small faults put into the library on purpose, to see whether a test finds them.

choose  takes sites all over lib/ by a seed and writes a copy of the sources that holds every mutant at once: a chosen
        "a < b" becomes "(mutants::is(17) ? (a <= b) : (a < b))", and the environment says which of them is alive
reach   runs every test once, no mutant alive, and notes which sites each reaches and how long it takes
run     runs for each mutant the tests that reach it, the quickest first, until one fails
table   counts what was killed and what lived, by folder

scripts/mutants does all of it. Left out: headers, templates, what is computed by the compiler, and mutants that do not
compile. A test that takes five times as long as it should counts as failed: the mutant hangs.
"""
import argparse
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent
LIBRARY = SOURCE / "lib"
FLAGS = ["-std=c++20", f"-I{LIBRARY}", "-ffp-contract=off"]

OTHER_OPERATORS = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "&&": ["||"], "||": ["&&"], "+=": ["-="], "-=": ["+="],
}

HEADER = """#pragma once
namespace mutants {
extern int alive;
extern unsigned char* reached;
inline bool is(int number) {
    reached[number] = 1;
    return number == alive;
}
}  // namespace mutants
"""

# The notes of what is reached stand in a file that processes share, so that one that is killed leaves them too.
BEGINNING = """#include "mutants.h"
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>
namespace mutants {
namespace {
unsigned char unnoted[%(room)d];
}
int alive = 0;
unsigned char* reached = unnoted;
__attribute__((constructor(101))) void begin() {
    if (const char* number = std::getenv("BRELAN_MUTANT"))
        alive = std::atoi(number);
    if (const char* path = std::getenv("BRELAN_MUTANTS_REACHED")) {
        const int file = open(path, O_RDWR | O_CLOEXEC);
        void* notes = file < 0 ? MAP_FAILED : mmap(nullptr, %(room)d, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        if (notes != MAP_FAILED)
            reached = static_cast<unsigned char*>(notes);
        if (file >= 0)
            close(file);
    }
}
}  // namespace mutants
"""


class Site:
    """A range of a source, and the text that stands there when the mutant is alive."""

    def __init__(self, begin, end, kind, shown, other, otherwise=None):
        self.begin, self.end, self.kind, self.shown, self.other = begin, end, kind, shown, other
        self.otherwise = otherwise  # what stands there when it is not alive; the text itself unless given

    def written(self, number, text):
        here = self.otherwise or f"({text})"
        return f"(mutants::is({number}) ? {self.other} : {here})"


def sites_of(path, cindex, index):
    """All places of a source at which one thing can be changed."""
    kinds = cindex.CursorKind
    data = path.read_bytes()
    unit = index.parse(str(path), args=FLAGS)
    found = []

    def piece(begin, end):
        return data[begin:end].decode()

    def range_of(cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def operator(cursor):
        """Operands and operator of an expression with two operands, where all are in the source as written."""
        children = list(cursor.get_children())
        begin, end = range_of(cursor)
        if cursor.kind == kinds.CALL_EXPR:
            if len(children) != 3 or not cursor.spelling.startswith("operator"):
                return None
            children = [children[0], children[2]]
        if len(children) != 2:
            return None
        left, right = range_of(children[0]), range_of(children[1])
        if left[0] != begin or right[1] != end or left[1] > right[0]:
            return None
        sign = piece(left[1], right[0]).strip()
        return (left, sign, right) if sign in OTHER_OPERATORS else None

    def add_operators(cursor):
        parts = operator(cursor)
        if parts is None:
            return
        left, sign, right = parts
        begin, end = range_of(cursor)
        for other in OTHER_OPERATORS[sign]:
            changed = f"({piece(*left)} {other} {piece(*right)})"
            found.append(Site(begin, end, "operator", f"{piece(begin, end)}  ->  {other}", changed))

    def add_constant(cursor):
        begin, end = range_of(cursor)
        number = piece(begin, end)
        if cursor.kind == kinds.INTEGER_LITERAL:
            if not re.fullmatch(r"\d[\d']*", number):
                return
            value = int(number.replace("'", ""))
            others = [str(value + 1)] + ([str(value - 1)] if value > 0 else [])
        else:
            match = re.fullmatch(r"([\d.]+(?:[Ee][-+]?\d+)?)(F?)", number)
            if not match:
                return
            value = float(match[1])
            others = [f"{value * 2 if value else 1.0}{match[2]}"]
            if value == 1 and "." in number:
                others = [f"0.0{match[2]}"]
        for other in others:
            found.append(Site(begin, end, "constant", f"{number}  ->  {other}", other))

    def add_condition(cursor):
        condition = next((c for c in cursor.get_children()), None)
        if condition is None or condition.kind in (kinds.DECL_STMT, kinds.VAR_DECL):
            return
        begin, end = range_of(condition)
        shown = piece(begin, end)
        if end <= begin or not re.search(r"\(\s*$", piece(max(0, begin - 40), begin)):
            return
        found.append(Site(begin, end, "condition", f"if ({shown})  ->  if (!...)", f"!({shown})"))

    def add_removal(cursor):
        begin, end = range_of(cursor)
        shown = piece(begin, end)
        found.append(Site(begin, end, "statement", f"{shown};  ->  ;", "void()", f"void({shown})"))

    def add_jump(cursor):
        begin, end = range_of(cursor)
        shown = piece(begin, end)
        site = Site(begin, end, "statement", f"{shown};  ->  ;", "")
        site.written = lambda number, text: f"if (!mutants::is({number})) {text}"
        found.append(site)

    def add_sign(cursor):
        begin, end = range_of(cursor)
        operand = next(iter(cursor.get_children()))
        sign = piece(begin, range_of(operand)[0]).strip()
        if sign in ("!", "-"):
            found.append(Site(begin, end, "operator", f"{piece(begin, end)}  ->  no {sign}", f"({piece(*range_of(operand))})"))

    statements = (kinds.CALL_EXPR, kinds.BINARY_OPERATOR, kinds.COMPOUND_ASSIGNMENT_OPERATOR, kinds.UNARY_OPERATOR)
    bodies = (kinds.COMPOUND_STMT, kinds.IF_STMT, kinds.FOR_STMT, kinds.WHILE_STMT, kinds.CXX_FOR_RANGE_STMT)

    def is_statement(cursor, parent, place, end):
        if cursor.kind not in statements and cursor.kind != kinds.UNEXPOSED_EXPR:
            return False
        if parent.kind == kinds.COMPOUND_STMT:
            return True
        if parent.kind not in bodies or place == 0:
            return False
        return piece(end, end + 1) == ";" and re.search(r"(\)|else)\s*$", piece(max(0, range_of(cursor)[0] - 60), range_of(cursor)[0]))

    def walk(cursor, parent, place):
        if cursor.location.file is None or cursor.location.file.name != str(path):
            return
        begin, end = range_of(cursor)
        if cursor.kind in (kinds.STATIC_ASSERT, kinds.FUNCTION_TEMPLATE, kinds.CLASS_TEMPLATE, kinds.ENUM_DECL,
                           kinds.FIELD_DECL, kinds.PARM_DECL):
            return
        if cursor.kind in (kinds.VAR_DECL, kinds.FUNCTION_DECL, kinds.CXX_METHOD):
            before = piece(begin, data.find(cursor.spelling.encode(), begin))
            if re.search(r"\b(constexpr|consteval|constinit)\b", before):
                return
        if cursor.kind in (kinds.BINARY_OPERATOR, kinds.COMPOUND_ASSIGNMENT_OPERATOR, kinds.CALL_EXPR):
            add_operators(cursor)
        if cursor.kind in (kinds.INTEGER_LITERAL, kinds.FLOATING_LITERAL):
            add_constant(cursor)
        if cursor.kind == kinds.IF_STMT:
            add_condition(cursor)
        if cursor.kind == kinds.UNARY_OPERATOR and not is_statement(cursor, parent, place, end):
            add_sign(cursor)
        if is_statement(cursor, parent, place, end):
            add_removal(cursor)
        if cursor.kind in (kinds.CONTINUE_STMT, kinds.BREAK_STMT):
            add_jump(cursor)
        children = list(cursor.get_children())
        if cursor.kind == kinds.CASE_STMT:
            children = children[1:]
        for number, child in enumerate(children):
            walk(child, cursor, number)

    for child in unit.cursor.get_children():
        walk(child, unit.cursor, 0)
    unique = {}
    for site in found:
        unique.setdefault((site.begin, site.end, site.shown), site)
    return data, list(unique.values())


def instrumented(path, data, chosen):
    """The source with its mutants, and where in it each stands."""
    out, at, places = [f'#include "{HEADER_NAME}"\n#line 1 "{path}"\n'], 0, []
    length = len(out[0])
    for number, site in chosen:
        for text in (data[at:site.begin].decode(), site.written(number, data[site.begin:site.end].decode())):
            out.append(text)
            length += len(text.encode())
        places.append((length - len(out[-1].encode()), length, number))
        at = site.end
    out.append(data[at:].decode())
    return "".join(out), places


HEADER_NAME = "mutants.h"


def choose(arguments):
    from clang import cindex
    for library in sorted(Path("/usr/lib").glob("llvm-*/lib/libclang.so.1")):
        cindex.Config.set_library_file(str(library))
    index = cindex.Index.create()
    rng = random.Random(arguments.seed)
    shelf = arguments.shelf
    copy = shelf / "lib"
    shutil.rmtree(copy, ignore_errors=True)
    copy.mkdir(parents=True)
    (copy / HEADER_NAME).write_text(HEADER)
    paths = sorted(LIBRARY.rglob("*.cpp"))
    # By their size: the same share of lines everywhere.
    lines = {path: len(path.read_text().splitlines()) for path in paths}
    in_all = sum(lines.values())
    mutants, number = [], 0
    for path in paths:
        data, sites = sites_of(path, cindex, index)
        rng.shuffle(sites)
        wanted = lines[path] * arguments.count / in_all
        wanted = int(wanted) + (rng.random() < wanted % 1)
        dropped, unit = set(), None

        def faults_of(numbered):
            """The text, and those of its mutants that do not compile."""
            nonlocal unit
            text, places = instrumented(path, data, numbered)
            unsaved = [(str(path), text)]
            if unit:
                unit.reparse(unsaved)
            else:
                unit = index.parse(str(path), args=FLAGS + [f"-I{copy}"], unsaved_files=unsaved,
                                   options=cindex.TranslationUnit.PARSE_PRECOMPILED_PREAMBLE)
            at = [d.location.offset for d in unit.diagnostics if d.severity >= 3]
            blamed = {n for offset in at for begin, end, n in places if begin <= offset < end}
            if at and not blamed:  # what a changed constant spoils stands somewhere else
                blamed = {row[0] for row in numbered if len(numbered) == 1 or faults_of([row])[1]}
            return text, blamed

        while True:
            chosen = []
            for site in sites:
                if len(chosen) == wanted:
                    break
                apart = all(site.end <= other.begin or other.end <= site.begin for other in chosen)
                if id(site) not in dropped and apart:
                    chosen.append(site)
            chosen.sort(key=lambda site: site.begin)
            numbered = list(enumerate(chosen, number + 1))
            text, blamed = faults_of(numbered)
            if not blamed:
                break
            dropped |= {id(site) for n, site in numbered if n in blamed}
        number += len(numbered)
        target = copy / path.relative_to(LIBRARY)
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text)
        for n, site in numbered:
            line = data[:site.begin].count(b"\n") + 1
            mutants.append({"number": n, "file": str(path.relative_to(SOURCE)), "line": line, "kind": site.kind,
                            "change": re.sub(r"\s+", " ", site.shown)})
    (copy / "mutants.cpp").write_text(BEGINNING % {"room": number + 1})
    (shelf / "mutants.json").write_text(json.dumps(mutants, indent=0))
    print(f"{len(mutants)} mutants in {len({m['file'] for m in mutants})} of {len(paths)} sources")


# --- running tests ---------------------------------------------------------------------------------------------------

TOGETHER = 8  # C++ tests of a suite that are told apart no further
LARGEST_MEMORY = 6 << 30
LARGEST_FILE = 256 << 20
NOBODY = 65534  # a mutant that mistakes a file's name must not harm anything


def limits():
    resource.setrlimit(resource.RLIMIT_AS, (LARGEST_MEMORY, LARGEST_MEMORY))
    resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def start(command, environment, seconds):
    """Runs a test in a temporary directory of its own; true when it ends well in time."""
    home = Path(tempfile.mkdtemp(prefix="mutant-"))
    rights = {}
    if os.geteuid() == 0:
        os.chown(home, NOBODY, NOBODY)
        rights = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
    values = {**os.environ, **environment, "TMPDIR": str(home), "HOME": str(home)}
    try:
        process = subprocess.Popen(command, env=values, cwd=home, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, start_new_session=True, preexec_fn=limits, **rights)
        try:
            return process.wait(seconds) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
    except OSError:  # a program that is not there, or not for a user without rights
        return False
    finally:
        shutil.rmtree(home, ignore_errors=True)


def all_tests(build):
    """The C++ tests, few at a time, and what else ctest runs."""
    program = build / "tests/brelan_tests"
    listed = subprocess.run([program, "--gtest_list_tests"], capture_output=True, text=True, check=True).stdout
    tests, suite, together = [], "", []
    for line in listed.splitlines():
        name = line.split("#")[0].rstrip()
        if not name.startswith(" "):
            suite, together = name, []
        elif together and len(together[0]["name"].split(":")) < TOGETHER:
            together[0]["name"] += ":" + suite + name.strip()
        else:
            together = [{"name": suite + name.strip(), "command": None, "environment": {}}]
            tests += together
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, capture_output=True, text=True, check=True).stdout
    for test in json.loads(shown)["tests"]:
        if "command" not in test or re.search(r"slice|faults|side_by_side|package|browser", test["name"]):
            continue
        environment = {}
        for row in test.get("properties", []):
            if row["name"] == "ENVIRONMENT":
                environment = dict(entry.split("=", 1) for entry in row["value"])
        command = test["command"]
        if "--count" in command:
            command[command.index("--count") + 1] = "30"
        tests.append({"name": test["name"], "command": command, "environment": environment})
    return tests


def start_tests(build, tests, environment, seconds):
    """C++ tests together in one process, or one of ctest's."""
    if tests[0]["command"]:
        return start(tests[0]["command"], {**tests[0]["environment"], **environment}, seconds)
    with tempfile.NamedTemporaryFile("w", prefix="tests-") as flags:
        flags.write("--gtest_filter=" + ":".join(test["name"] for test in tests) + "\n")
        flags.flush()
        os.chmod(flags.name, 0o644)
        return start([str(build / "tests/brelan_tests"), f"--gtest_flagfile={flags.name}", "--gtest_fail_fast",
                      "--gtest_brief=1"], environment, seconds)


def reach(arguments):
    mutants = json.loads((arguments.shelf / "mutants.json").read_text())
    notes = Path(tempfile.mkdtemp(prefix="reached-"))
    notes.chmod(0o755)
    file = notes / "reached"
    rows, known = [], set()
    table = arguments.shelf / "reached.jsonl"
    if table.exists():
        rows = [json.loads(line) for line in table.read_text().splitlines()]
        known = {row["name"] for row in rows}
    for test in all_tests(arguments.build):
        if test["name"] in known:
            continue
        file.write_bytes(bytes(len(mutants) + 1))
        file.chmod(0o666)
        begun = time.monotonic()
        good = start_tests(arguments.build, [test], {"BRELAN_MUTANTS_REACHED": str(file)}, 900)
        seconds = time.monotonic() - begun
        if not good:
            print("left out, as it fails without a mutant:", test["name"], flush=True)
            continue
        data = file.read_bytes()
        rows.append({**test, "seconds": round(seconds, 3), "reached": [n for n, byte in enumerate(data) if byte]})
        with table.open("a") as out:
            out.write(json.dumps(rows[-1]) + "\n")
    shutil.rmtree(notes)
    print(f"{len(rows)} tests, {sum(row['seconds'] for row in rows):.0f} s")


def batches(tests, first, limit):
    """C++ tests in processes of growing length, the quickest first, then the others one by one."""
    together, seconds = [], 0
    for test in sorted((t for t in tests if not t["command"]), key=lambda t: t["seconds"]):
        if limit and sum_of(together) + seconds + test["seconds"] > limit:
            break
        together.append(test)
        if sum_of(together) > first:
            yield together
            seconds += sum_of(together)
            together, first = [], 2 * first
    if together:
        yield together
    for test in sorted((t for t in tests if t["command"]), key=lambda t: t["seconds"]):
        if not limit or test["seconds"] <= limit:
            yield [test]


def sum_of(tests):
    return sum(test["seconds"] for test in tests)


def run(arguments):
    mutants = json.loads((arguments.shelf / "mutants.json").read_text())
    tests = [json.loads(line) for line in (arguments.shelf / "reached.jsonl").read_text().splitlines()]
    results = arguments.shelf / "results.jsonl"
    done = {}
    if results.exists():
        done = {row["number"]: row for row in map(json.loads, results.read_text().splitlines())}
    order = list(mutants)
    random.Random(1).shuffle(order)  # what is done when it is stopped is a sample
    for mutant in order:
        number = mutant["number"]
        if arguments.only and number not in arguments.only:
            continue
        if number in done and not (arguments.lived and not done[number]["killer"]):
            continue
        reaching = [test for test in tests if number in test["reached"]]
        if arguments.tests:
            reaching = [test for test in reaching if re.search(arguments.tests, test["name"])]
        begun, killer = time.monotonic(), ""
        for batch in batches(reaching, 0.5, arguments.limit):
            if not start_tests(arguments.build, batch, {"BRELAN_MUTANT": str(number)}, 10 + 5 * sum_of(batch)):
                killer = batch[0]["name"].split(":")[0] + (f" or one of {len(batch) - 1} more" if len(batch) > 1 else "")
                break
        row = {"number": number, "reaching": len(reaching), "killer": killer,
               "seconds": round(time.monotonic() - begun, 1)}
        with results.open("a") as out:
            out.write(json.dumps(row) + "\n")
        if not killer:
            print(f"lived: {number}: {mutant['file']}:{mutant['line']}: {mutant['change']} ({len(reaching)} tests)",
                  flush=True)


def table(arguments):
    mutants = json.loads((arguments.shelf / "mutants.json").read_text())
    results = arguments.shelf / "results.jsonl"
    done = {row["number"]: row for row in map(json.loads, results.read_text().splitlines())}
    folders = {}
    for mutant in mutants:
        if mutant["number"] not in done:
            continue
        counts = folders.setdefault(str(Path(mutant["file"]).parent), [0, 0])
        counts[0 if done[mutant["number"]]["killer"] else 1] += 1
    folders["lib"] = [sum(c[0] for c in folders.values()), sum(c[1] for c in folders.values())]
    print(f"{'':16}{'mutants':>9}{'killed':>9}{'lived':>9}{'share':>9}")
    for folder, (killed, lived) in sorted(folders.items(), key=lambda row: (row[0] == "lib", row[0])):
        print(f"{folder:16}{killed + lived:9}{killed:9}{lived:9}{100 * killed / (killed + lived):8.1f}%")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("step", choices=["choose", "reach", "run", "table"])
    parser.add_argument("--shelf", type=Path, default=SOURCE / "build/mutants", help="where mutants and results stand")
    parser.add_argument("--build", type=Path, default=SOURCE / "build/mutants/build")
    parser.add_argument("--count", type=int, default=600, help="so many mutants")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--limit", type=float, default=30, help="run: seconds of C++ tests for a mutant; 0 for all")
    parser.add_argument("--lived", action="store_true", help="run: those again that lived")
    parser.add_argument("--only", type=int, nargs="*", help="run: these alone")
    parser.add_argument("--tests", default="", help="run: only tests whose names match")
    arguments = parser.parse_args()
    arguments.shelf, arguments.build = arguments.shelf.resolve(), arguments.build.resolve()
    {"choose": choose, "reach": reach, "run": run, "table": table}[arguments.step](arguments)


if __name__ == "__main__":
    sys.exit(main())
