#!/usr/bin/env python3
"""Random runs of the program against the independent calculation.

Each case is a small project made from a seed: start-up files, a deck and the
meshes it names.  The program and reference.py run it in separate copies, and
exit status, console text and every file of the whole tree must agree to the
byte.  A run that fails (status 2) may leave what it likes but must not have
touched the files it was given.

    compare.py [--program PATH] [--count N] [--seed N] [--only WHAT]
               [--keep DIR]

WHAT is a mode or mode/edit: 0, -1, 1, 1/0, 1/1, 1/2, 1/3, 1/6, 1/x (an edit
out of range), 2, 2/0 (base mesh alone), 2/1 (base mesh and an edit).
"""

import os
import random
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
import case_runner  # noqa: E402
import reference  # noqa: E402
from reference import (COUPLED, DISPLACEMENT, HEAD, TEMPERATURE, CODES,  # noqa
                       CODE_WORDS, kind_of)

ROAD = ["1/0", "1/1", "1/2", "1/3", "1/6", "1/x", "0", "-1", "2/0", "2/1"]
WEIGHT = [4, 6, 5, 4, 4, 1, 5, 3, 5, 5]


# --------------------------------------------------------------------------
# Text with the freedom that free-field input allows
# --------------------------------------------------------------------------


class Writer:
    """Values as text, in one of the many ways a person may write them."""

    def __init__(self, rnd):
        self.rnd = rnd
        self.tidy = rnd.random() < 0.3

    def integer(self, n, as_real=False):
        if self.tidy:
            return str(n)
        r = self.rnd.random()
        if as_real and r < 0.05:
            return "%d.0" % n
        if as_real and r < 0.08:
            return "%d." % n
        if as_real and r < 0.10:
            return "%d.%dE0" % (n, self.rnd.randint(0, 9))
        if r > 0.97 and n >= 0:
            return "+%d" % n
        return str(n)

    def real(self, x):
        if self.tidy:
            return repr(x)
        r = self.rnd.random()
        if r < 0.1:
            return ("%.6E" % x)
        if r < 0.15:
            return ("%.5E" % x).replace("E", "D")
        if r < 0.18:
            return ("%.4e" % x)
        if r < 0.20:
            text = "%.5E" % x
            return text.replace("E", "")
        if r < 0.23 and 0 < abs(x) < 1:
            return repr(x).replace("0.", ".", 1) if "e" not in repr(x) \
                else repr(x)
        if x == int(x) and abs(x) < 1e9:
            if r < 0.5:
                return "%d" % x
            if r < 0.6:
                return "%d." % x
        return repr(x)

    def join(self, tokens, tab=False):
        if self.tidy:
            return "  ".join(tokens)
        rnd, out = self.rnd, ""
        if rnd.random() < 0.5:
            out += " " * rnd.randint(0, 6)
        for k, token in enumerate(tokens):
            if k:
                r = rnd.random()
                if r < 0.80:
                    out += " " * rnd.choice((1, 1, 2, 3, 5))
                elif r < 0.88:
                    out += ","
                elif r < 0.94:
                    out += ", "
                elif tab and r < 0.97:
                    out += "\t"
                else:
                    out += " , "
            out += token
        if rnd.random() < 0.2:
            out += " " * rnd.randint(1, 9)
        return out


def some_real(rnd, scale=10.0):
    r = rnd.random()
    if r < 0.35:
        return float(rnd.randint(-int(scale), int(scale)))
    if r < 0.6:
        return rnd.randint(-int(scale) * 4, int(scale) * 4) / 4.0
    if r < 0.8:
        return round(rnd.uniform(-scale, scale), rnd.randint(1, 5))
    if r < 0.9:
        return rnd.uniform(-scale, scale)
    if r < 0.965:
        return rnd.uniform(-1, 1) * 10.0 ** rnd.randint(-6, 6)
    if r < 0.97:
        # The far ends: results that flush to zero, or leave the range.
        return rnd.uniform(-1, 1) * 10.0 ** rnd.choice((-37, -30, -20, 20, 30))
    return 0.0


# --------------------------------------------------------------------------
# Meshes
# --------------------------------------------------------------------------


class RandomMesh:
    """A mesh on a grid, with gaps, triangles, line elements, deletions."""

    def __init__(self, rnd, kind, nx=None, ny=None, x0=None, y0=None,
                 steps=None):
        self.rnd, self.kind = rnd, kind
        self.nx = nx or rnd.randint(1, 6)
        self.ny = ny or rnd.randint(1, 5)
        self.steps = steps or (rnd.choice((1.0, 0.5, 2.5, 0.1, 7.3)),
                               rnd.choice((1.0, 0.5, 2.0, 0.3)))
        self.x0 = x0 if x0 is not None else some_real(rnd)
        self.y0 = y0 if y0 is not None else some_real(rnd)
        self.jitter = rnd.random() < 0.4
        self.odd = rnd.random() < 0.12
        self.number_nodes()
        self.number_elements()

    def numbers(self, count, first, gap):
        out, n = [], first
        for _ in range(count):
            out.append(n)
            n += 1 if self.rnd.random() > gap else self.rnd.randint(2, 9)
        return out

    def number_nodes(self):
        rnd = self.rnd
        count = (self.nx + 1) * (self.ny + 1)
        first = rnd.choice((1, 1, 1, 2, 10, 101, 5000, 99000))
        names = self.numbers(count, first, rnd.choice((0, 0, 0.2, 0.6)))
        if rnd.random() < 0.25:
            rnd.shuffle(names)
        self.nodes = {}
        self.at = {}
        words = CODE_WORDS[self.kind]
        for j in range(self.ny + 1):
            for i in range(self.nx + 1):
                n = names.pop(0)
                x = self.x0 + i * self.steps[0]
                y = self.y0 + j * self.steps[1]
                if self.jitter:
                    x += rnd.uniform(-0.2, 0.2) * self.steps[0]
                    y += rnd.uniform(-0.2, 0.2) * self.steps[1]
                codes = [rnd.choice((0, 0, 1, 1, 2, -1, -100, 999, -1000))
                         if rnd.random() < 0.6 else 0 for _ in range(words)]
                self.nodes[n] = (codes, float("%.6e" % x), float("%.6e" % y),
                                 some_real(rnd), rnd.choice((1.0, 0.5, 0.0)))
                self.at[i, j] = n

    def number_elements(self):
        rnd, at = self.rnd, self.at
        solid = []
        for i in range(self.nx):
            for j in range(self.ny):
                a, b, c, d = at[i, j], at[i + 1, j], at[i + 1, j + 1], \
                    at[i, j + 1]
                r = rnd.random()
                if r < 0.08:
                    continue
                if r < 0.22:
                    solid += [[a, b, c, 0], [a, c, d, 0]]
                else:
                    solid.append([a, b, c, d])
        if rnd.random() < 0.06:
            solid = []
        lines = [[], []]
        for k, most in ((0, 8), (1, 8)):
            if rnd.random() < 0.55:
                for _ in range(rnd.randint(1, most)):
                    i, j = rnd.randint(0, self.nx), rnd.randint(0, self.ny)
                    if rnd.random() < 0.5 and i < self.nx:
                        lines[k].append([at[i, j], at[i + 1, j]])
                    elif j < self.ny:
                        lines[k].append([at[i, j], at[i, j + 1]])
        total = len(solid) + len(lines[0]) + len(lines[1])
        first = rnd.choice((1, 1, 1, 5, 100, 3000))
        names = self.numbers(total, first, rnd.choice((0, 0, 0.3)))
        if rnd.random() < 0.12:
            rnd.shuffle(names)
        self.sections = ([], [], [])
        for section, records in enumerate([solid] + lines):
            for corners in records:
                self.sections[section].append(
                    [names.pop(0), corners, rnd.randint(1, 5)])
        if self.odd:
            self.make_odd()

    def make_odd(self):
        """Things that no sound mesh has but that have a told meaning."""
        rnd = self.rnd
        records = [r for s in self.sections for r in s]
        for record in records:
            corners = record[1]
            r = rnd.random()
            if r < 0.06:
                corners[-1] = rnd.choice((-3, -1, 0))
            elif r < 0.08:
                corners[0] = rnd.choice((0, -7))
            elif r < 0.11:
                # A node that the node section does not have.
                corners[rnd.randrange(len(corners))] = rnd.randint(1, 99990)
            elif r < 0.12:
                record[2] = rnd.choice((0, -4, 9999))
            elif r < 0.125:
                record[0] = rnd.choice(records)[0]
            elif r < 0.126:
                corners[0] = 99991

    def renumber(self, starts):
        """Consecutive numbers of the three types from the given starts."""
        for records, start in zip(self.sections, starts):
            for k, record in enumerate(records):
                record[0] = start + k

    def highest(self, section):
        return max((r[0] for r in self.sections[section]), default=0)

    def element_tokens(self, section, record, writer):
        rnd, kind = self.rnd, self.kind
        number, corners, material = record
        out = [writer.integer(number)]
        if section > 0:
            out += [writer.integer(v) for v in corners + [material]]
            if rnd.random() < 0.9:
                out.append("1")
            return out
        out += [writer.integer(v) for v in corners]
        if kind in (COUPLED, DISPLACEMENT):
            if rnd.random() < 0.2:
                out += [str(rnd.choice((0, 0, rnd.choice(list(self.nodes)))))
                        for _ in range(4)]
            elif rnd.random() < 0.1 and not writer.tidy:
                out.append("4*0")
            else:
                out += ["0"] * 4
        out.append(writer.integer(material))
        if kind == COUPLED:
            out += [writer.integer(rnd.randint(-2, 3)) for _ in range(4)]
            out.append(writer.real(some_real(rnd)))
        elif kind == DISPLACEMENT:
            out += [writer.real(some_real(rnd)) for _ in range(2)]
        else:
            out.append(writer.integer(rnd.choice(
                (0, 1, 5, -100, -105, -1, -250, -1100))))
        return out

    def fixed_element(self, section, tokens):
        """The record in columns, where a sign may touch the field before."""
        if section > 0 or self.kind in (TEMPERATURE, HEAD):
            width = {7: (7, 7, 7, 7, 7, 6, 5)}.get(len(tokens), (7,) * 5)
            return "".join(t.rjust(w) for t, w in zip(tokens, width))
        reals = {COUPLED: 1, DISPLACEMENT: 2}[self.kind]
        whole, part = tokens[:-reals], tokens[-reals:]
        line = "".join(t.rjust(7) for t in whole[:9])
        line += "".join(t.rjust(5) for t in whole[9:])
        for t in part:
            value = reference.Reader([t]).reals(1)[0]
            line += reference.E(value, 11, 4)
        return line

    def text(self, deletions=True):
        rnd, kind = self.rnd, self.kind
        writer = Writer(rnd)
        comments = rnd.random() < 0.4
        in_columns = rnd.random() < 0.25
        lines = []

        def put(line):
            if comments and rnd.random() < 0.15:
                lines.append("*" + rnd.choice(("", " remark", "  1 2 3 4",
                                               "x" * 140)))
            lines.append(line)

        put(rnd.choice(("A mesh", "..\\some.Mes", "", " title 1 2 3",
                        "\xe4\xf6 caf\xe9", "t" * 130)))
        put("  NUMNP   NCONT   NBEAM   NTRUS ")
        if rnd.random() < 0.03:
            self.sections = ([], [], [])
        put(writer.join([writer.integer(len(self.nodes))] +
                        [writer.integer(len(s)) for s in self.sections], True))
        put("   NODAL COORDINATES ")
        put("   NODE and so on")
        names = sorted(self.nodes)
        if rnd.random() < 0.1:
            rnd.shuffle(names)
        extra = rnd.random() < 0.6
        fixed = rnd.random() < 0.3
        for k, n in enumerate(names):
            codes, x, y, h, cf = self.nodes[n]
            skipped = []
            if kind in (COUPLED, DISPLACEMENT) and extra:
                skipped = [1, rnd.choice((1, 0, 7))]
            if fixed:
                reals = (x, y) if kind in (COUPLED, DISPLACEMENT) \
                    else (x, y, h, cf)
                line = " " + reference.I(n, 6) + "".join(
                    reference.I(c, 5) for c in codes + skipped) + " " + \
                    "".join(reference.E(reference.f32(v), 13, 6) + " "
                            for v in reals)
            else:
                tokens = [writer.integer(n)]
                tokens += [writer.integer(c) for c in codes + skipped]
                if extra and rnd.random() < 0.05 and not writer.tidy and \
                        len(set(codes)) == 1:
                    tokens = [writer.integer(n),
                              "%d*%d" % (len(codes), codes[0])]
                    tokens += [str(c) for c in skipped]
                tokens += [writer.real(x), writer.real(y)]
                if kind in (TEMPERATURE, HEAD):
                    tokens += [writer.real(h), writer.real(cf)]
                line = writer.join(tokens, k > 0)
                if rnd.random() < 0.03:
                    line += "  trailing words"
            put(line)
        delete = deletions and rnd.random() < 0.35
        share = rnd.choice((0.1, 0.3, 1.0))
        whole = rnd.randint(0, 3)
        for section, records in enumerate(self.sections):
            if not records:
                continue
            put("  a heading of section %d" % section)
            put("  NEL ...")
            for record in records:
                live = record
                if delete and rnd.random() < (share if section != whole
                                              else 1.0):
                    live = [-record[0]] + record[1:]
                tokens = self.element_tokens(section, live, writer)
                if in_columns and not any("*" in t for t in tokens):
                    put(self.fixed_element(section, tokens))
                    continue
                line = writer.join(tokens, True)
                if self.odd and rnd.random() < 0.02:
                    # The record runs towards, or over, the last column.
                    line = tokens[0] + " " * (
                        rnd.randint(122, 128) - len(line)) + line[
                            line.index(tokens[0]) + len(tokens[0]):]
                put(line)
        if rnd.random() < 0.5:
            lines += ["     0", "     0"]
        return as_bytes(rnd, lines)


def as_bytes(rnd, lines):
    end = "\r\n" if rnd.random() < 0.25 else "\n"
    text = end.join(lines)
    if rnd.random() < 0.85:
        text += end
    return text.encode("latin-1")


# --------------------------------------------------------------------------
# Decks
# --------------------------------------------------------------------------


class Deck:
    """Cards in order: names, counted cards and free-field lists."""

    def __init__(self, rnd):
        self.rnd, self.writer, self.cards = rnd, Writer(rnd), []

    def name(self, text):
        if not self.writer.tidy and "\\" not in text and \
                self.rnd.random() < 0.15:
            text = " " * self.rnd.randint(1, 3) + text
        self.cards.append(("name", text))

    def card(self, *values, least=None):
        """A card; trailing values down to least may be left out when they
        equal what is given as (value, default)."""
        values = list(values)
        if least is not None and self.rnd.random() < 0.5:
            values = values[:self.rnd.randint(least, len(values))]
        self.cards.append(("card", [self.token(v) for v in values]))

    def token(self, v):
        if isinstance(v, int):
            return self.writer.integer(v, True)
        return self.writer.real(v)

    def list(self, values):
        tokens = []
        k = 0
        while k < len(values):
            same = 1
            while k + same < len(values) and values[k + same] == values[k]:
                same += 1
            if same > 1 and self.rnd.random() < 0.5:
                tokens.append("%d*%d" % (same, values[k]))
                k += same
            else:
                tokens.append(self.token(values[k]))
                k += 1
        while tokens:
            n = min(len(tokens), self.rnd.randint(1, 12))
            self.cards.append(("list", tokens[:n]))
            tokens = tokens[n:]

    # -- mistakes ---------------------------------------------------------

    def spoil(self):
        rnd = self.rnd
        r = rnd.random()
        counted = [k for k, c in enumerate(self.cards) if c[0] == "card"]
        k = rnd.choice(counted)
        tokens = list(self.cards[k][1])
        if r < 0.10:
            how = rnd.randint(0, 9)
            if how < 3:
                tokens = tokens[:-1]
            elif how < 7:
                tokens += [rnd.choice(("7", "0.5", "text", "-1"))
                           for _ in range(rnd.randint(1, 9))]
            elif how == 7:
                tokens = []
            elif how == 8:
                tokens = ["x" * 126]
            else:
                tokens += ["2" * rnd.randint(30, 100)]
            self.cards[k] = ("card", tokens)
        elif r < 0.13:
            # A value close to the last columns of a line.
            if tokens:
                line = " ".join(tokens[:-1])
                end = rnd.choice((124, 125, 126, 127))
                line += " " * (end - len(line) - len(tokens[-1])) + tokens[-1]
                self.cards[k] = ("line", line)
        elif r < 0.17:
            self.cards = self.cards[:rnd.randint(0, len(self.cards))]
        elif r < 0.22 and tokens:
            t = rnd.randrange(len(tokens))
            tokens[t] = rnd.choice(("abc", "1E3", "1.5+3", "2*3", "-0.5",
                                    "2.9", "1E", "1e99", "1e-40", "100000",
                                    "99999", "-9999", "0", "NaN", "3", "7",
                                    "*", "1D1", "+1", "1.E0", ".", "/", "2*",
                                    "4/", "1E2-3", "0*1", "1.7-1"))
            self.cards[k] = ("card", tokens)
        elif r < 0.25 and tokens:
            t = rnd.randrange(len(tokens))
            tokens[t:t] = [rnd.choice((",", ",,"))]
            self.cards[k] = ("line", " ".join(tokens))
        elif r < 0.26 and len(tokens) > 1:
            self.cards[k] = ("line", "\t".join(tokens))
        elif r < 0.30:
            lists = [k for k, c in enumerate(self.cards) if c[0] == "list"]
            if lists:
                k = rnd.choice(lists)
                tokens = list(self.cards[k][1])
                t = rnd.randrange(len(tokens))
                how = rnd.randint(0, 5)
                if how == 0:
                    tokens[t] = rnd.choice((",", "2*", "/", "5/", "1.9",
                                            "1E1", "12E-1"))
                elif how == 1:
                    tokens[t:t] = ["5,,"]
                elif how == 2:
                    tokens = tokens[:t]
                elif how == 3:
                    tokens += ["1", "2"]
                elif how == 4:
                    tokens[0] = " " * rnd.randint(116, 126) + tokens[0]
                else:
                    tokens[t] = "abc"
                self.cards[k] = ("list", tokens)

    def text(self):
        rnd, lines = self.rnd, []
        remarks = rnd.random() < 0.5
        for what, content in self.cards:
            if remarks and rnd.random() < 0.4:
                lines.append(rnd.choice(("* Card", "*", "*** 1 2 3 ***",
                                         "* caf\xe9 " + "z" * 130)))
            if what in ("name", "line"):
                lines.append(content)
            else:
                lines.append(self.writer.join(content))
        if remarks:
            lines.append("* end")
        return as_bytes(rnd, lines)


# --------------------------------------------------------------------------
# Cases
# --------------------------------------------------------------------------


class Case:
    def __init__(self, seed, road):
        self.rnd = rnd = random.Random("%d %s" % (seed, road))
        self.road = road
        self.files, self.guarded, self.typed = {}, set(), b""
        self.long_name = False
        self.edition = rnd.choice((1, 1, 2, 3, 4, 5, 5, 6, 7, 8, 9, 9, 10, 11,
                                   12, 13, 0))
        self.kind = kind_of(self.edition)
        self.data = rnd.choice(("VORK/QX/QXDATA", "Vork/Qx/Qxdata",
                                "vork/qx/qxdata", "VORK/QX/QxData"))
        self.deck = Deck(rnd)
        if road == "0" or road == "-1":
            self.combination()
        elif road.startswith("2"):
            self.base_mesh()
        else:
            self.deck.card(*((1,) if rnd.random() < 0.5
                             else (1, rnd.randint(0, 9))))
            self.edit(RandomMesh(rnd, self.kind), None)
        if rnd.random() < 0.6:
            self.deck.spoil()
        self.start_up()

    # -- surroundings -------------------------------------------------------

    def label(self):
        return "--only %s, edition %d (%s)" % (self.road, self.edition,
                                               self.kind)

    def put(self, path, data, guarded=True):
        self.files[path] = data
        if guarded:
            self.guarded.add(path)

    def start_up(self):
        rnd, data = self.rnd, "drive/" + self.data + "/"

        def put(name, text):
            r = rnd.random()
            if r < 0.004:
                return
            if r < 0.008:
                text = rnd.choice(("", "x", "1.5", ",", "99999999999"))
            if rnd.random() < 0.1:
                name = rnd.choice((name.lower(), name.capitalize()))
            self.put(data + name, as_bytes(rnd, [text]))

        put("PROGRAM.DAT", rnd.choice((" %d", "%d", "\t%d,", "%d edition"))
            % self.edition)
        prompt = rnd.random() < 0.08
        manual = 1 if prompt else rnd.choice((0, 0, 0, 0, 0, 1, 2))
        front = rnd.choice((0, 2)) if prompt else \
            1 if manual == 1 else rnd.choice((0, 1, 1))
        put("MANUAL.DAT", str(manual))
        put("HUBPLOT.DAT", " %d" % front)
        code = CODES.get(self.edition)
        if code and rnd.random() < 0.6:
            level = rnd.choice((0, 1, 1, 1, 2))
            last = rnd.choice(("0.5", "1.0", "1", "2.0", "3", "4.1", "4.3",
                               "5.1", "5.7", "6", "7.31", "11", "14.6", "15",
                               "22.1", "27.2", "32.0", "43", "99", "4.3E1"))
            self.put(data + "DEBUG/Brelan_%s.dat" % code,
                     as_bytes(rnd, [rnd.choice((" %d  %s", "%d,%s", "%d\n%s"))
                                    % (level, last)]))
            if level and rnd.random() < 0.1:
                self.put("project/run/Brelan_%s.deb" % code, b"old\nlines\n",
                         False)
        if rnd.random() < 0.5:
            self.put(data + "BRELAN2D.DAT", b"   77\n", False)
        if rnd.random() < 0.3:
            self.put(data + rnd.choice(("FnPlot2D.dat", "FNPLOT2D.DAT")),
                     b"old\n", False)
        if rnd.random() < 0.2:
            for name in ("BRELAN.TMP", "T7.TMP", "MESSAGE.INP",
                         "MeshFile.Mes", "TEMPO.TMP", "FILEA.TMP"):
                self.put("project/run/" + name, b"left over\n" * 9, False)
        deck = rnd.choice(("..\\Deck1.dat", "deck.dat", "..\\DECKS\\d 1.dat",
                           "C:\\decks\\d.dat"))
        place = {"..\\Deck1.dat": "project/Deck1.dat",
                 "deck.dat": "project/run/deck.dat",
                 "..\\DECKS\\d 1.dat": "project/decks/D 1.dat",
                 "C:\\decks\\d.dat": "drive/Decks/d.dat"}[deck]
        self.put(place, self.deck.text())
        if prompt:
            self.typed = as_bytes(rnd, [deck]) + b"\n"
        else:
            self.put("project/run/TFNAME.TMP",
                     as_bytes(rnd, [deck + " " * rnd.choice((0, 0, 5, 130))]))
            self.typed = rnd.choice((b"", b"\n"))

    def mesh_file(self, stem, data):
        """Place a mesh; gives the name by which a deck calls for it."""
        rnd = self.rnd
        r = rnd.random()
        if rnd.random() < 0.03:
            # So long that the end of the name field is in use.
            self.long_name = True
            stem = stem.ljust(rnd.choice((118, 121, 122, 123)), "n")
            self.put("project/" + stem, data)
            return stem
        if rnd.random() < 0.02:
            # The backslash stands too far right to be seen as one.
            place = "d" * rnd.choice((29, 30, 31))
            self.put("project/" + ("run/" if len(place) == 29 else "") +
                     place + "/" + stem, data)
            return place + "\\" + stem
        if rnd.random() < 0.01:
            return "nowhere.Mes"
        if r < 0.6:
            self.put("project/" + stem, data)
            return rnd.choice((stem, stem, stem.upper(), "..\\" + stem))
        if r < 0.8:
            self.put("project/run/Sub/" + stem, data)
            return rnd.choice(("Sub\\", "sub\\")) + stem
        self.put("drive/Proj/" + stem, data)
        return "C:\\Proj\\" + stem

    def result_name(self, source):
        rnd = self.rnd
        r = rnd.random()
        if self.long_name:
            return rnd.choice(("  Short.Mes", "Short.Mes", " " * 9 + "S",
                               "R" * 119 + ".Mes", "  " + "R" * 124))
        if r < 0.08:
            return source
        if r < 0.25:
            self.put("project/Old.Mes", b"earlier\nresult\n")
            return rnd.choice(("Old.Mes", "OLD.mes"))
        return rnd.choice(("Result.Mes", "..\\Result.Mes", "out file.Mes",
                           ".\\Result.Mes"))

    # -- roads ----------------------------------------------------------------

    def combination(self):
        rnd, kind = self.rnd, self.kind
        first = RandomMesh(rnd, kind)
        reach = first.nx * first.steps[0]
        second = RandomMesh(rnd, kind, nx=rnd.randint(1, 4),
                            ny=rnd.choice((first.ny, first.ny, 2)),
                            x0=first.x0 + reach, y0=first.y0,
                            steps=first.steps)
        if rnd.random() < 0.6:
            # Meet exactly, or nearly, along the line between the two.
            for j in range(min(first.ny, second.ny) + 1):
                a, b = first.at[first.nx, j], second.at[0, j]
                codes, _, _, h, cf = second.nodes[b]
                dx = rnd.choice((0, 0, 0.1, 0.3, 0.49)) * first.steps[1]
                second.nodes[b] = (codes,
                                   float("%.6e" % (first.nodes[a][1] + dx)),
                                   first.nodes[a][2], h, cf)
        if rnd.random() < 0.05:
            one, other = rnd.choice(list(second.nodes)), \
                rnd.choice(list(second.nodes))
            second.nodes[one] = second.nodes[one][:1] + \
                second.nodes[other][1:3] + second.nodes[one][3:]
        if rnd.random() < 0.15:
            # A node half way between two nodes of the other region.
            one, other = (first, second) if rnd.random() < 0.5 \
                else (second, first)
            i, j = rnd.randrange(one.nx), rnd.randint(0, one.ny)
            p, q = (one.nodes[one.at[i + k, j]] for k in (0, 1))
            if one.ny > 0 and one.steps[1] < one.steps[0]:
                i, j = rnd.randint(0, one.nx), rnd.randrange(one.ny)
                p, q = (one.nodes[one.at[i, j + k]] for k in (0, 1))
            n = rnd.choice(sorted(other.nodes))
            other.nodes[n] = (other.nodes[n][0],
                              float("%.6e" % ((p[1] + q[1]) / 2)),
                              float("%.6e" % ((p[2] + q[2]) / 2))) + \
                other.nodes[n][3:]
        b, a = (first, second) if rnd.random() < 0.5 else (second, first)
        how = rnd.random()
        if how < 0.45:
            n, starts_a, starts_b = rnd.choice((1, 1, 20)), [], []
            for section in range(3):
                for mesh, starts in ((b, starts_b), (a, starts_a)):
                    starts.append(n)
                    n += len(mesh.sections[section]) + rnd.choice((0, 0, 3))
            a.renumber(starts_a)
            b.renumber(starts_b)
        elif how < 0.75:
            # Overlapping numbers; a type that is missing pulls others out of
            # the table, so most of these keep to what can be numbered.
            for mesh in (a, b):
                n, starts = 1, []
                for records in mesh.sections:
                    starts.append(n)
                    n += len(records)
                mesh.renumber(starts)
            if not (a.sections[1] and b.sections[1]):
                for mesh in (a, b):
                    mesh.sections[2].clear()
                a.sections[1].clear()
        elif how < 0.80:
            for mesh in (a, b):
                for records in mesh.sections:
                    records.clear()
        elif how < 0.88:
            # The order test does not see line elements of the first region
            # that lie below its continuum elements: numbers may collide.
            b.sections[1].clear()
            b.sections[2].clear()
            b.renumber((rnd.randint(2, 30), 1, 1))
            n = b.highest(0) + 1
            a.renumber((n + 40, rnd.randint(1, 30), rnd.randint(1, 30)))
        text_b, text_a = b.text(), a.text()
        deck = self.deck
        deck.card(*((int(self.road),) if rnd.random() < 0.5
                    else (int(self.road), 3)))
        source = self.mesh_file("Left.Mes", text_b)
        deck.name(source)
        deck.name(self.mesh_file("Right.Mes", text_a))
        deck.name(self.result_name(source))
        r = rnd.random()
        if r < 0.65:
            deck.card(0)
        elif r < 0.97:
            deck.card(1)
            pairs = rnd.choice((0, 1, 2, 3, 12, 25))
            pairs = min(pairs, len(a.nodes), len(b.nodes))
            deck.card(pairs)
            names_b = rnd.sample(sorted(b.nodes), pairs)
            names_a = rnd.sample(sorted(a.nodes), pairs)
            if pairs and rnd.random() < 0.1:
                names_b[0] = rnd.choice((names_b[-1], 77777))
            if pairs and rnd.random() < 0.1:
                names_a[0] = names_a[-1]
            deck.list(names_b)
            deck.list(names_a)
        else:
            deck.card(2)

    def base_mesh(self):
        rnd, deck = self.rnd, self.deck
        deck.card(*((2,) if rnd.random() < 0.5 else (2, 1)))
        nbx, nby = rnd.choice((1, 1, 2, 3)), rnd.choice((1, 1, 2, 3))
        if rnd.random() < 0.02:
            nbx = rnd.choice((0, -1, 101))
        deck.card(nbx, nby, *(rnd.choice((0, 1, 1, 2)) for _ in range(4)),
                  least=2)
        large = rnd.random() < 0.1
        xo, yo = (some_real(rnd, 20000.0 if large else 10.0)
                  for _ in range(2))
        if rnd.random() < 0.3:
            xo, yo = 0.0, 0.0
        rows = []
        limit = 8.0 / max(nbx, nby, 1) ** 0.5
        for _ in range(max(nbx, 0) + max(nby, 0)):
            w = rnd.choice((1.0, 2.0, 5.0, 10.0, round(rnd.uniform(0.5, 30),
                                                       rnd.randint(0, 4))))
            r = rnd.random()
            if r < 0.03:
                w = rnd.choice((0.0, 0.00005, 0.0001, 0.0002))
            if rnd.random() < 0.3:
                size = w * rnd.choice((1.0, 1.5, 0.9, 0.5))
            else:
                size = round(w / rnd.uniform(1.2, limit + 1.2), 4)
            if rnd.random() < 0.01:
                size = rnd.choice((0.0, -1.0))
            grade = rnd.choice((0.5, 0.5, 0.4, -0.4, 0.3, -0.3, 0.35, -0.35,
                                0.0, 1.0, -0.7, round(rnd.uniform(-0.6, 0.6),
                                                      3)))
            rows.append([w, size, grade])
        if rnd.random() < 0.25 and rows and nbx > 0:
            # A middle point that falls on zero.
            w, _, grade = rows[0]
            part = min(max(abs(grade), 0.3), 0.5) * w
            xo = -(part if grade >= 0 else w - part)
        if rnd.random() < 0.01:
            rows[0], rows[-1] = [1000.0, 0.3, 0.5], [1000.0, 0.3, 0.5]
        third = []
        if self.kind == COUPLED:
            third = [rnd.choice((yo, yo + 1.0, yo + 5.0, yo - 5.0, yo + 2.5,
                                 1.0e30, some_real(rnd)))]
        elif self.kind != DISPLACEMENT:
            third = [some_real(rnd)]
        deck.card(xo, yo, *third, least=2)
        for row in rows:
            deck.card(*row)
        if rnd.random() < 0.3:
            self.put("project/Bmesh.dat", b"earlier base mesh\n", False)
        if self.road == "2/0":
            deck.card(0)
            return
        deck.card(rnd.choice((1, 1, 1, 1, 1, 1, 1, 2)))
        mesh = RandomMesh(rnd, self.kind, nx=4, ny=4, x0=xo, y0=yo)
        renamed = {n: k for k, n in enumerate(sorted(mesh.nodes), 1)}
        mesh.nodes = {renamed[n]: v for n, v in mesh.nodes.items()}
        mesh.at = {k: renamed[n] for k, n in mesh.at.items()}
        for k, records in enumerate(mesh.sections):
            for record in records:
                record[1] = [renamed.get(n, n) for n in record[1]]
        mesh.renumber((1, 1, 1))
        self.edit(mesh, rnd.choice(("Bmesh.dat", "..\\Bmesh.dat",
                                    "BMESH.DAT")))

    def edit(self, mesh, source):
        rnd, deck, kind = self.rnd, self.deck, self.kind
        text = mesh.text()
        if source is None:
            source = self.mesh_file("Source.Mes", text)
        deck.name(source)
        deck.name(self.result_name(source))
        starts = [rnd.choice((1, 1, 1, 1, 10, 50, 2000, 90000)),
                  rnd.choice((1, 1, 1, 1, 7, 1000, 90000)),
                  rnd.choice((0, 1, 10, 300, 20000)),
                  rnd.choice((0, 1, 20, 400, 30000))]
        if rnd.random() < 0.03:
            starts[rnd.randrange(4)] = rnd.choice((0, -5, 99980, 99999))
        deck.card(*starts, least=2)
        edit = self.road[2:] if self.road.startswith("1/") else \
            rnd.choice("01236")
        if edit == "x":
            deck.card(rnd.choice((7, 8, -1, 99, -3)), 1, 2, 3, 4, 5, least=1)
            return
        edit = int(edit)
        spared = [rnd.choice((0, 1, 2, 3, 4, 5, 9)) for _ in range(5)]
        deck.card(edit, *spared, least=1)
        if edit == 0:
            deck.card(*(some_real(rnd) for _ in range(4)))
            deck.card(*(rnd.choice((1.0, -1.0, 2.0, -0.5, 0.0, 1.0, -1.0,
                                    some_real(rnd))) for _ in range(2)))
        elif edit in (1, 2, 3):
            self.selection(mesh, edit)
            if edit == 1:
                deck.card(*(rnd.choice((0, 1, 2, -100, 55))
                            for _ in range(CODE_WORDS[kind])))
            elif edit == 3:
                deck.card(*(rnd.choice((0, 1, 7, 88)) for _ in range(3)))
        else:
            self.rebuild()

    def selection(self, mesh, edit):
        rnd, deck = self.rnd, self.deck
        xs = sorted(v[1] for v in mesh.nodes.values())
        ys = sorted(v[2] for v in mesh.nodes.values())
        location = rnd.choice((0, 0, 1, 1, 2, 2, 3, 3, 4, -1) if edit == 1
                              else (0, 0, 0, 0, 1, 1, 1, 1, 2, 3, 5))
        deck.card(location)
        if location == 0:
            x1, x2 = sorted(rnd.choice((rnd.choice(xs),
                                        rnd.uniform(xs[0] - 1, xs[-1] + 1)))
                            for _ in range(2))
            y1, y2 = sorted(rnd.choice((rnd.choice(ys),
                                        rnd.uniform(ys[0] - 1, ys[-1] + 1)))
                            for _ in range(2))
            deck.card(x1, y1, x2, y2)
        else:
            if location == 1:
                if edit == 1:
                    pool = sorted(mesh.nodes)
                else:
                    pool = sorted(r[0] for s in mesh.sections for r in s)
                values = self.number_list(pool or [1])
            elif location == 2:
                values = self.polyline(mesh)
            elif location == 3:
                values = [rnd.randint(1, 5)
                          for _ in range(rnd.choice((1, 2, 3, 12)))]
            else:
                values = [rnd.randint(1, 50) for _ in range(3)]
            if rnd.random() < 0.04:
                deck.card(rnd.choice((0, -2)))
            else:
                deck.card(len(values))
                deck.list(values)
        deck.card(rnd.choice((0, 0, 0, 1, 1, 2)))

    def number_list(self, pool):
        rnd = self.rnd
        values = []
        for _ in range(rnd.choice((1, 1, 2, 4, 8, 25))):
            values.append(rnd.choice(pool))
            r = rnd.random()
            if r < 0.3:
                end = min(values[-1] + rnd.choice((0, 1, 5, 30, 2000)), 99990)
                values.append(-end)
            elif r < 0.35:
                values.append(values[-1])
            elif r < 0.38:
                values.append(0)
            elif r < 0.40:
                values.append(-rnd.choice(pool))
        if rnd.random() < 0.02:
            values[0] = rnd.choice((-5, 99991))
        return values

    def polyline(self, mesh):
        rnd = self.rnd
        r = rnd.random()
        if r < 0.3:
            j = rnd.randint(0, mesh.ny)
            ends = [mesh.at[0, j], mesh.at[mesh.nx, j]]
        elif r < 0.6:
            i, j = rnd.randint(0, mesh.nx), rnd.randint(0, mesh.ny)
            ends = [mesh.at[i, 0], mesh.at[i, j], mesh.at[mesh.nx, j]]
        else:
            ends = [rnd.choice(sorted(mesh.nodes))
                    for _ in range(rnd.randint(1, 12))]
        if rnd.random() < 0.1:
            ends.append(ends[-1])
        return ends

    def rebuild(self):
        rnd, deck, kind = self.rnd, self.deck, self.kind

        def source():
            return rnd.choice((1, 2, 3, 4, -10, -10, 0, 5, 7, -1))

        count = rnd.choice((0, 1, 2, 3, 5))
        deck.card(count if count else rnd.choice((0, -1)))
        for _ in range(count):
            row = [rnd.randint(1, 6)] + [source() for _ in range(4)]
            row.append(rnd.choice((-10, 3, 8, 21)))
            if kind == DISPLACEMENT:
                row += [rnd.choice((-10.0, some_real(rnd)))
                        for _ in range(2)]
            else:
                row += [rnd.choice((-10, 0, 1, 4, -105)) for _ in range(2)]
            if kind in (TEMPERATURE, HEAD) and rnd.random() < 0.7:
                row.pop()
            deck.card(*row, least=5)
        for _ in range(2):
            count = rnd.choice((0, 1, 2, 4))
            deck.card(count)
            for _ in range(count):
                deck.card(rnd.randint(1, 6), source(), source(),
                          rnd.choice((-10, 4, 33)), rnd.choice((-10, 6)),
                          least=3)

    # -- running ----------------------------------------------------------------

    def lay_out(self, root):
        for path in ("project/run", "drive/" + self.data):
            os.makedirs(os.path.join(root, path))
        for path, data in self.files.items():
            full = os.path.join(root, path)
            os.makedirs(os.path.dirname(full), exist_ok=True)
            with open(full, "wb") as stream:
                stream.write(data)


def tree(root):
    found = {}
    for place, _, names in os.walk(root):
        for name in names:
            full = os.path.join(place, name)
            with open(full, "rb") as stream:
                found[os.path.relpath(full, root)] = stream.read()
    return found


def difference(what, expected, got):
    """The first lines in which two contents differ."""
    out = []
    if expected is None or got is None:
        return ["  %s: only with the %s" % (what, "program" if expected is None
                                            else "reference")]
    if expected == got:
        return out
    old, new = expected.split(b"\n"), got.split(b"\n")
    shown = 0
    for k in range(max(len(old), len(new))):
        a = old[k] if k < len(old) else None
        b = new[k] if k < len(new) else None
        if a != b:
            shown += 1
            if shown > 3:
                out.append("    ...")
                break
            out.append("    line %d reference %r" % (k + 1, a))
            out.append("    line %d program   %r" % (k + 1, b))
    return ["  %s (%d and %d lines)" % (what, len(old), len(new))] + out


def compare(case, program, directory):
    """Both runs; gives the status of the reference and the differences."""
    one, other = (os.path.join(directory, n) for n in ("reference", "program"))
    case.lay_out(one)
    case.lay_out(other)
    with open(os.path.join(directory, "typed"), "wb") as stream:
        stream.write(case.typed)
    status, printed, reason = reference.run(
        os.path.join(one, "drive"), os.path.join(one, "project", "run"),
        case.typed)
    if status == 3:
        return 3, []
    environment = dict(os.environ,
                       BRELAN_DRIVE_C=os.path.join(other, "drive"))
    try:
        done = subprocess.run(
            [program], cwd=os.path.join(other, "project", "run"),
            env=environment, input=case.typed, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, timeout=120)
    except subprocess.TimeoutExpired:
        return status, ["  the program does not end"]
    found = []
    if done.returncode != status:
        found.append("  status: reference %d (%s), program %d (%s)" % (
            status, reason, done.returncode,
            done.stderr.decode("latin-1").strip()[:300]))
        return status, found
    left, right = tree(one), tree(other)
    if status == 2:
        for path in sorted(case.guarded):
            for whose, files in (("reference", left), ("program", right)):
                if files.get(path) != case.files[path]:
                    found.append("  %s: changed by the %s" % (path, whose))
        if not done.stderr.strip():
            found.append("  a failure without a message")
        return status, found
    found += difference("console", printed, done.stdout)
    for path in sorted(set(left) | set(right)):
        found += difference(path, left.get(path), right.get(path))
    return status, found


def roads(only):
    if only is None:
        return ROAD, WEIGHT
    chosen = [(r, w) for r, w in zip(ROAD, WEIGHT)
              if r == only or r.startswith(only + "/")]
    if not chosen:
        sys.exit("no such mode or edit: " + only)
    return [r for r, _ in chosen], [w for _, w in chosen]


def main():
    parser = case_runner.options_of(__doc__, 300)
    parser.add_argument("--only", help="mode or mode/edit")
    options = parser.parse_args()
    names, weights = roads(options.only)

    def new_case(seed):
        return Case(seed, random.Random(seed).choices(names, weights)[0])

    def run_with(program):
        def run_case(case, directory):
            status, found = compare(case, program, directory)
            return status, "", found
        return case_runner.run_cases(options, new_case, run_case)

    return case_runner.with_copy_of(options.program, run_with)


if __name__ == "__main__":
    sys.exit(main())
