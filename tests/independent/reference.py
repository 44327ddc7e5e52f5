#!/usr/bin/env python3
"""A second, independent calculation of what one BRELAN-2D run leaves behind.

The program proper is fast; this one is plain.  It carries out the same run
with dictionaries, text lines and full double loops, so that a difference
between the two points at a mistake in one of them.

    reference.py run --drive-c DIR --work DIR

DIR of --drive-c stands for the drive C:, DIR of --work is the working
directory; "..\\X" is taken from the parent of the latter.  The run writes its
files in place, prints what the program prints and ends with its exit status.

Covered: edition kinds, decks of mode 1 with IEDIT 0, 1, 2, 3, 6 and out of
range, modes 0 and -1, mode 2 with and without an edit, the error report, and
IEDIT 4 (groups.py) with line-up (lineup.py), the boundary file (boundary.py)
and the output decks (outputs.py).  IEDIT 5 and mode 3 end with the text "not
covered" and status 3.
"""

import argparse
import math
import os
import re
import struct
import sys
from decimal import Decimal

# --------------------------------------------------------------------------
# Ends of a run
# --------------------------------------------------------------------------


class Stop(Exception):
    """A stop of the program's own; the argument is the stop text."""


class Failure(Exception):
    """Bad input, a missing file, a limit: the run ends with status 2."""


class NotCovered(Exception):
    """The deck asks for work that this calculation leaves out."""


# --------------------------------------------------------------------------
# 32-bit arithmetic
# --------------------------------------------------------------------------
# A double holds the sum, difference, product, quotient and square root of
# 32-bit operands with enough spare bits that one more rounding to 32 bits
# gives the correctly rounded result.  Results below the smallest normal
# number are flushed to zero.

_SINGLE = struct.Struct("<f")
SMALLEST_NORMAL = 2.0 ** -126
INT_MIN = -2147483648
INT_MAX = 2147483647


def f32(x):
    """Round a double to the nearest 32-bit real, denormal results to 0."""
    try:
        y = _SINGLE.unpack(_SINGLE.pack(x))[0]
    except OverflowError:
        return math.copysign(math.inf, x)
    if -SMALLEST_NORMAL < y < SMALLEST_NORMAL:
        return math.copysign(0.0, y)
    return y


def add(a, b):
    return f32(a + b)


def sub(a, b):
    return f32(a - b)


def mul(a, b):
    return f32(a * b)


def div(a, b):
    if b == 0.0:
        if a == 0.0 or a != a:
            return math.nan
        return math.copysign(math.inf, a) * math.copysign(1.0, b)
    return f32(a / b)


def root(a):
    if a < 0.0 or a != a:
        return math.nan
    return f32(math.sqrt(a))


def cut(x):
    """Real to integer, towards zero; what does not fit gives the lowest."""
    if x != x or x in (math.inf, -math.inf):
        return INT_MIN
    n = int(x)
    return n if INT_MIN <= n <= INT_MAX else INT_MIN


def dist2d(x1, y1, x2, y2):
    dx = sub(x1, x2)
    dy = sub(y1, y2)
    return root(add(mul(dx, dx), mul(dy, dy)))


def real_from_text(text):
    """Decimal text to the nearest 32-bit real; None when it is too large."""
    d = float(text)
    y = f32(d)
    if y in (math.inf, -math.inf):
        # Rounding went up over the edge; only then is the number too large.
        return None
    if y != 0.0 and d != y:
        # A double half way between two 32-bit reals may itself come from
        # rounding: the decimal text then decides.
        bits = struct.unpack("<I", _SINGLE.pack(y))[0]
        for other_bits in (bits - 1, bits + 1):
            other = _SINGLE.unpack(struct.pack("<I", other_bits))[0]
            if math.isfinite(other) and (other + y) / 2.0 == d:
                exact, half = Decimal(text), Decimal(d)
                if exact > half:
                    y = max(y, other)
                elif exact < half:
                    y = min(y, other)
                break
    if -SMALLEST_NORMAL < y < SMALLEST_NORMAL:
        return 0.0
    return y


# --------------------------------------------------------------------------
# Fields
# --------------------------------------------------------------------------


def I(value, width):
    text = str(value)
    return text.rjust(width) if len(text) <= width else "*" * width


def E(value, width, digits):
    """0.ddd with a two-digit exponent; the exact stored value is rounded."""
    if not math.isfinite(value):
        raise Failure("a value that is not a number cannot be written")
    if value == 0.0:
        text = "0." + "0" * digits + "E+00"
    else:
        mantissa, exponent = ("%.*e" % (digits - 1, abs(value))).split("e")
        power = int(exponent) + 1
        text = "%s0.%sE%s%02d" % ("-" if value < 0.0 else "",
                                  mantissa.replace(".", ""),
                                  "-" if power < 0 else "+", abs(power))
    return text.rjust(width) if len(text) <= width else "*" * width


def listed(*items):
    """One free-field line: texts, integers and reals in default form, and a
    blank in front of a text that follows a number."""
    line, after_text = "", False
    for item in items:
        if isinstance(item, str):
            line += ("" if after_text else " ") + item
        elif isinstance(item, int):
            line += " " + I(item, 11)
        else:
            line += " " + E(item, 16, 9)
        after_text = isinstance(item, str)
    return line


def i_lines(values):
    """Integers of the normalised deck, ten to a line, at least one line."""
    rows = [values[k:k + 10] for k in range(0, len(values), 10)] or [[]]
    return ["".join(I(v, 5) + " " for v in row) for row in rows]


def e_lines(values):
    rows = [values[k:k + 10] for k in range(0, len(values), 10)] or [[]]
    return ["".join(E(v, 12, 5) + " " for v in row) for row in rows]


def columns(line, width):
    return line[:width].ljust(width)


# --------------------------------------------------------------------------
# Files
# --------------------------------------------------------------------------


class Disk:
    """File names as the package writes them, on the directories at hand."""

    def __init__(self, drive, work):
        self.drive = os.path.abspath(drive)
        self.work = os.path.abspath(work)
        self.before = {}  # what outputs of the user's held, by their paths
        self.whole = set()

    @staticmethod
    def _match(directory, name):
        if os.path.lexists(os.path.join(directory, name)):
            return name
        try:
            alike = [entry for entry in os.listdir(directory)
                     if entry.lower() == name.lower()]
        except OSError:
            alike = []
        if len(alike) > 1:
            raise Failure("two files differ only in case: " + name)
        return alike[0] if alike else name

    def path(self, name):
        name = name.rstrip(" ")
        if not name:
            raise Failure("a blank file name")
        if name[:3].upper() == "C:\\":
            place, rest = self.drive, name[3:]
        else:
            place, rest = self.work, name
        for part in rest.split("\\"):
            if part == "..":
                place = os.path.dirname(place)
            elif part not in ("", "."):
                place = os.path.join(place, self._match(place, part))
        return place

    def exists(self, name):
        return os.path.isfile(self.path(name))

    def old(self, name):
        """The lines of a file that must be there."""
        try:
            with open(self.path(name), "rb") as stream:
                data = stream.read()
        except OSError as error:
            raise Failure(str(error))
        lines = data.decode("latin-1").split("\n")
        if lines[-1] == "":
            lines.pop()
        return [line[:-1] if line.endswith("\r") else line for line in lines]

    def put(self, name, lines):
        try:
            with open(self.path(name), "wb") as stream:
                stream.write("".join(s + "\n" for s in lines).encode("latin-1"))
        except OSError as error:
            raise Failure(str(error))

    def delete(self, name):
        try:
            os.remove(self.path(name))
        except FileNotFoundError:
            pass
        except OSError as error:
            raise Failure(str(error))

    def touch(self, name):
        """Open a user's output: made when missing, else left as it stands."""
        self.remember(name)
        try:
            with open(self.path(name), "ab"):
                pass
        except OSError as error:
            raise Failure(str(error))

    def put_result(self, name, lines):
        """A user's output, whole."""
        self.remember(name)
        self.put(name, lines)
        self.whole.add(self.path(name))

    def remember(self, name):
        path = self.path(name)
        if path in self.before:
            return
        self.before[path] = None
        if os.path.isfile(path):
            with open(path, "rb") as stream:
                self.before[path] = stream.read()

    def give_up_results(self):
        """A run that does not reach its end leaves those of its outputs that
        are whole."""
        for path, data in self.before.items():
            if path in self.whole:
                continue
            if data is not None:
                with open(path, "wb") as stream:
                    stream.write(data)
            elif os.path.isfile(path):
                os.remove(path)


SEPARATORS = " \t,/"
REAL_FORM = re.compile(r"[+-]?(?:\d+\.?\d*|\.\d+)([EeDd][+-]?\d+|[+-]\d+)?")
INTEGER_FORM = re.compile(r"[+-]?\d+")
REPEAT_FORM = re.compile(r"(\d+)\*")


class Reader:
    """A text channel that is read: whole lines or free-field values."""

    def __init__(self, lines):
        self.lines = lines
        self.at = 0

    def line(self):
        if self.at >= len(self.lines):
            raise Failure("read past the end of a file")
        self.at += 1
        return self.lines[self.at - 1]

    def text(self, width=126):
        return columns(self.line(), width)

    def skip(self, count):
        for _ in range(count):
            self.line()

    def back(self, count):
        self.at = max(0, self.at - count)

    @staticmethod
    def _number(line, p, kind):
        """One value at column p: its value and the column behind it."""
        form = (REAL_FORM if kind == "r" else INTEGER_FORM).match(line, p)
        if not form:
            raise Failure("not a number: " + line[p:p + 20])
        end = form.end()
        sign_begins_next = kind == "i" or form.group(1) is not None
        if end < len(line) and line[end] not in SEPARATORS and not (
                sign_begins_next and line[end] in "+-"):
            raise Failure("not a number: " + line[p:p + 20])
        text = form.group(0)
        if kind == "i":
            value = int(text)
            if not INT_MIN <= value <= INT_MAX:
                raise Failure("integer out of range: " + text)
            return value, end
        exponent = form.group(1)
        if exponent:
            text = text[:len(text) - len(exponent)] + "e" + \
                exponent.lstrip("EeDd")
        value = real_from_text(text)
        if value is None:
            raise Failure("real out of range: " + text)
        return value, end

    def values(self, kinds, stand=None):
        """Read len(kinds) values ("i" or "r" each), across lines if need be.

        An empty value keeps the entry of stand, which must be there then.
        """
        out = list(stand) if stand is not None else [None] * len(kinds)
        wanted, k, p = len(kinds), 0, 0
        line = self.line()
        behind_value = False
        while k < wanted:
            while p < len(line) and line[p] in " \t":
                p += 1
            if p >= len(line):
                line, p = self.line(), 0
            elif line[p] == ",":
                if behind_value:
                    behind_value = False
                else:
                    k += 1
                p += 1
            elif line[p] == "/":
                break
            else:
                times, empty = 1, False
                repeat = REPEAT_FORM.match(line, p)
                if repeat:
                    times, p = int(repeat.group(1)), repeat.end()
                    if times < 1:
                        raise Failure("a repeat count of zero")
                    empty = p >= len(line) or line[p] in SEPARATORS
                if empty:
                    k = min(wanted, k + times)
                else:
                    start = p
                    for _ in range(min(times, wanted - k)):
                        out[k], p = self._number(line, start, kinds[k])
                        k += 1
                behind_value = True
        if any(v is None for v in out):
            raise NotCovered("an empty value where nothing stood before")
        return out

    def integers(self, count):
        return self.values("i" * count)

    def reals(self, count):
        return self.values("r" * count)


# --------------------------------------------------------------------------
# Editions
# --------------------------------------------------------------------------

COUPLED, TEMPERATURE, HEAD, DISPLACEMENT = "coupled", "temperature", "head", \
    "displacement"

CODES = {1: "P1", 2: "P2", 3: "P3", 4: "P4", 5: "P5", 6: "P6", 9: "P7",
         10: "P8", 11: "P9", 12: "P0"}


def kind_of(edition):
    if edition in (2, 3, 4, 11, 12):
        return COUPLED
    if edition in (5, 6):
        return TEMPERATURE
    if edition in (9, 10):
        return HEAD
    return DISPLACEMENT


CODE_WORDS = {COUPLED: 5, TEMPERATURE: 2, HEAD: 2, DISPLACEMENT: 3}
LINE_ATTRIBUTES = {COUPLED: (0, 1, 2, 2, 0.0), TEMPERATURE: (0,), HEAD: (0,),
                   DISPLACEMENT: (1.0, 1.0)}

CONTINUUM, BEAM, TRUSS = 1, 2, 3
MAXNUMBER = 99990
NOMIN = 100000

DATA = "C:\\VORK\\QX\\QXDATA\\"
PLOT_NAME = "C:\\Vork\\Qx\\Qxdata\\FnPlot2D.dat"
COUNT_HEADING = " NUMNP   NCONT   NBEAM   NTRUS "
ERROR_LINE = "************* ERROR IN THE USER INPUT **************"

NODE_HEADING = {
    COUPLED: "   NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY"
             "       XC            YC ",
    DISPLACEMENT: "   NODE  IDX  IDY  IDT  IEX  IEY"
                  "       XC            YC ",
    TEMPERATURE: "   NODE   ID  IDF          XC            YC "
                 "            T            CF ",
    HEAD: "   NODE   ID  IDF          XC            YC "
          "            H            CF ",
}

CONTINUUM_HEADING = {
    COUPLED: "    NEL     I1     I2     I3     I4     M5     M6     M7     M8"
             " MATC    KS   KF INTR INTS   TBJWL",
    DISPLACEMENT: "    NEL     I1     I2     I3     I4     M5     M6     M7"
                  "     M8  MATC   THIC        DEN",
    TEMPERATURE: "    NEL     I1     I2     I3     I4 MATNO  IDH",
    HEAD: "    NEL     I1     I2     I3     I4 MATNO  IDH",
}


def in_table(number, what):
    if not 1 <= number <= MAXNUMBER:
        raise Failure("%s %d lies outside 1 to %d" % (what, number, MAXNUMBER))
    return number


# --------------------------------------------------------------------------
# Mesh records
# --------------------------------------------------------------------------


class Node:
    def __init__(self, codes, x, y, h=0.0, cf=0.0):
        self.codes, self.x, self.y, self.h, self.cf = codes, x, y, h, cf

    def copy(self):
        return Node(list(self.codes), self.x, self.y, self.h, self.cf)


class Element:
    """Nine words (four corners, four midside nodes, material), attributes."""

    def __init__(self, words, attributes):
        self.words, self.attributes = list(words), list(attributes)

    def copy(self):
        return Element(self.words, self.attributes)


def count_columns(line):
    """Values on a 126-column line as a card counts them, and where the last
    counted one ends.  A value that reaches column 126 is not counted."""
    flags = [c not in " ," for c in columns(line, 126)]
    count = last = 0
    before = flags[0]
    for i in range(2, 126):
        flag = flags[i - 1]
        if not flag and before:
            count += 1
            last = i - 1
        before = flag
    if not flags[125] and flags[124]:
        count += 1
        last = 125
    return count, last


def node_line(kind, number, node):
    codes = list(node.codes[:CODE_WORDS[kind]])
    reals = [node.x, node.y]
    if kind in (COUPLED, DISPLACEMENT):
        codes += [1, 1]
    else:
        reals += [node.h, node.cf]
    return " " + I(number, 6) + "".join(I(c, 5) for c in codes) + " " + \
        "".join(E(v, 13, 6) + " " for v in reals)


def numbers7(values):
    return "".join(" " + I(v, 6) for v in values)


def continuum_line(kind, number, element, closing_idh=False):
    w, a = element.words, element.attributes
    if kind == COUPLED:
        return numbers7([number] + w[:8]) + \
            "".join(I(v, 5) for v in [w[8]] + a[:4]) + E(a[4], 11, 4)
    if kind == DISPLACEMENT:
        return numbers7([number] + w[:8]) + I(w[8], 5) + E(a[0], 11, 4) + \
            E(a[1], 11, 4)
    idh = a[0]
    if closing_idh and idh < 0:
        idh = -idh - 100
    return numbers7([number] + w[:4]) + " " + I(w[8], 5) + I(idh, 5)


def line_line(number, element):
    return numbers7([number, element.words[0], element.words[1],
                     element.words[8], 1])


class Mesh:
    """A stripped mesh file: its lines, and how its records are laid out."""

    def __init__(self, kind, lines, fields, source_counts):
        self.kind, self.lines, self.fields = kind, lines, fields
        self.source_counts = source_counts

    def open(self):
        reader = Reader(self.lines)
        reader.skip(2)
        return reader, reader.integers(4)


def read_node(kind, fields, reader):
    """A node record: number and node.  IEX and IEY are passed over."""
    words = CODE_WORDS[kind]
    if kind in (TEMPERATURE, HEAD):
        v = reader.values("iiirrrr")
        number, node = v[0], Node(v[1:3], *v[3:7])
    else:
        plain = 8 if kind == COUPLED else 6
        extra = 0 if fields == plain else 2
        v = reader.values("i" * (1 + words + extra) + "rr")
        number, node = v[0], Node(v[1:1 + words], v[-2], v[-1])
    return number, node


def checked_words(number, words):
    for word in words:
        if word > MAXNUMBER:
            raise Failure("element %d names node %d" % (number, word))


def read_element(kind, section, reader):
    """An element record; line elements become two-cornered quadrilaterals."""
    if section != CONTINUUM:
        number, i, j, material = reader.integers(4)
        element = Element([i, j, j, i, 0, 0, 0, 0, material],
                          LINE_ATTRIBUTES[kind])
    elif kind == COUPLED:
        v = reader.values("i" * 14 + "r")
        number, element = v[0], Element(v[1:10], v[10:15])
    elif kind == DISPLACEMENT:
        v = reader.values("i" * 10 + "rr")
        number, element = v[0], Element(v[1:10], v[10:12])
    else:
        v = reader.integers(7)
        number = v[0]
        element = Element(v[1:5] + [0, 0, 0, 0] + v[5:6], v[6:7])
    return number, element


# --------------------------------------------------------------------------
# The run
# --------------------------------------------------------------------------


class Run:
    def __init__(self, drive, work, typed=b""):
        self.disk = Disk(drive, work)
        self.printed = []
        self.typed = Reader([s.rstrip("\r") for s in
                             typed.decode("latin-1").split("\n")])
        self.debug = 0
        self.debug_pass = 0.0
        self.trace_name = None      # file the trace channel is open on
        self.trace_files = {}       # name -> lines written in this run
        self.cardval = [0.0] * 500
        self.name_field = [" "] * 126
        self.seen = {}              # how often each way was taken

    def note(self, what):
        self.seen[what] = self.seen.get(what, 0) + 1

    # -- console, status, trace -------------------------------------------

    def show(self, line):
        self.printed.append(line + "\n")

    def write_status(self, value):
        self.disk.put(DATA + "BRELAN2D.DAT", [listed(value)])

    def one_integer(self, name):
        return Reader(self.disk.old(DATA + name)).integers(1)[0]

    def trace_line(self, line):
        if self.trace_name is None:
            self.trace_name = "fort.888"
        self.trace_files.setdefault(self.trace_name, []).append(line)
        self.disk.put(self.trace_name, self.trace_files[self.trace_name])

    def trace(self, text, number, *values):
        number = f32(number)
        if self.debug <= 0 or self.debug_pass < number:
            return
        self.trace_line(listed(text, *values))
        if self.debug_pass == number:
            self.trace_name = None

    # -- start-up -----------------------------------------------------------

    def start(self):
        self.edition = self.one_integer("PROGRAM.DAT")
        self.kind = kind_of(self.edition)
        code = CODES.get(self.edition)
        debug_file = DATA + "DEBUG\\Brelan_%s.dat" % code
        if code and self.disk.exists(debug_file):
            self.debug, self.debug_pass = \
                Reader(self.disk.old(debug_file)).values("ir")
            if self.debug > 0:
                self.trace_name = "Brelan_%s.deb" % code
                self.trace_line(listed(" Start debugging ... "))
        if self.debug > 0 and self.debug_pass >= 1.0:
            self.trace_line(listed(" 32 BIT RELEASE: MODULESIZE = ", 4))
            self.trace_line(listed(" Pass 1 "))
            if self.debug_pass == 1.0:
                self.trace_name = None
        manual = self.one_integer("MANUAL.DAT")
        front_end = self.one_integer("HUBPLOT.DAT")
        if front_end != 1 and manual == 1:
            self.show(" BRELAN-2D is running ... ")
            self.printed.append(" Type Input  File Name : ")
            name = self.typed.text()
        else:
            name = Reader(self.disk.old("TFNAME.TMP")).text()
        if not name.strip(" "):
            raise Failure("a blank deck name")
        self.trace(" Pass 2 ", 2.0)
        return name

    # -- error report ---------------------------------------------------------

    def list_error(self, listing, count):
        manual = self.one_integer("MANUAL.DAT")
        shown = [columns(line, 60) for line in listing[-count:]]
        shown += [" " * 60] * (8 - len(shown))
        if manual == 0:
            self.disk.put("MESSAGE.INP", [listed(count)] + shown)
        else:
            for line in shown:
                self.show(line)
            if self.typed.at < len(self.typed.lines):
                self.typed.line()

    # -- checker --------------------------------------------------------------

    def check_card(self, label, low, high):
        """Check the count of the next card and read it into the buffer."""
        line = self.cards.text()
        count, last = count_columns(line)
        if not low <= count <= high:
            if count == 0:
                tail = [listed("------------"), listed(" Blank data "),
                        listed("------------")]
            else:
                tail = [" " + "-" * last, " " + line[:last], " " + "-" * last]
            listing = [
                listed(ERROR_LINE),
                " Card Group No: " + columns(label, 11) + " requires " +
                I(high, 5) + " data entry",
                " But user input contains " + I(count, 5) + " data ",
                " Please check the following listing of input data   ",
                ""] + tail
            self.disk.put("T7.TMP", listing)
            self.disk.put("BRELAN.TMP", self.normal)
            self.list_error(listing, 7)
            self.write_status(1)
            raise Stop("300")
        self.cards.back(1)
        self.cardval[:count] = self.cards.values("r" * count,
                                                 self.cardval[:count])

    def card_integers(self, count):
        return [cut(v) for v in self.cardval[:count]]

    def put_integers(self, count):
        values = self.card_integers(count)
        self.normal += i_lines(values)
        return values

    def put_reals(self, count):
        self.normal += e_lines(self.cardval[:count])

    def default(self, position, value):
        self.cardval[position - 1] = f32(value)

    def put_list(self, count):
        """A free-field list behind its count card."""
        if count > 0:
            if count > len(self.cardval):
                raise Failure("a list of more than 500 values")
            self.cardval[:count] = self.cards.values("r" * count,
                                                     self.cardval[:count])
        self.normal += i_lines(self.card_integers(max(count, 0)))

    def put_name(self, plot=False):
        name = self.trim_name(self.cards.text())
        self.normal.append(name)
        if plot:
            self.disk.put(PLOT_NAME, [name])

    def trim_name(self, field):
        if not field.strip(" "):
            raise Failure("a blank file name")
        if "\\" in field[:30]:
            return field
        lead = len(field) - len(field.lstrip(" "))
        self.name_field[:3] = "..\\"
        copied = field[lead:123]
        self.name_field[3:3 + len(copied)] = copied
        return "".join(self.name_field)

    def check_deck(self, name):
        deck = self.disk.old(name)
        stripped = [columns(s, 126) for s in deck if s[:1] != "*"]
        self.disk.put("TT55.TMP", stripped)
        self.disk.put("BRELAN.TMP", [])
        self.disk.put("T7.TMP", [])
        self.cards = Reader(stripped)
        self.normal = []
        self.default(2, 0.0)
        self.check_card("1.1", 1, 2)
        mode = cut(self.cardval[0])
        if mode == 3:
            raise NotCovered("mode 3")
        self.put_integers(2)
        if mode <= 0:
            self.check_combination()
        else:
            if mode == 2:
                mode = self.check_base_mesh()
            if mode == 1:
                self.check_edit()
        self.disk.put("BRELAN.TMP", self.normal)

    def check_combination(self):
        self.put_name()
        self.put_name()
        self.put_name(plot=True)
        self.check_card("1.1", 1, 1)
        if self.put_integers(1)[0] == 1:
            self.check_card("2.3", 1, 1)
            pairs = self.put_integers(1)[0]
            self.put_list(pairs)
            self.put_list(pairs)

    def check_base_mesh(self):
        for position, value in ((3, 1), (4, 1), (5, 0), (6, 1)):
            self.default(position, value)
        self.check_card("4.1", 2, 6)
        wide, high = self.put_integers(6)[:2]
        if not (1 <= wide <= 100 and 1 <= high <= 100):
            raise Failure("a block count outside 1 to 100")
        if self.kind == DISPLACEMENT:
            self.check_card("4.2", 2, 2)
            self.put_reals(2)
        else:
            self.default(3, -1.0e30 if self.kind == COUPLED else 0.0)
            self.check_card("4.2", 2, 3)
            self.put_reals(3)
        for label, rows in (("4.3", wide), ("4.4", high)):
            for _ in range(rows):
                self.check_card(label, 3, 3)
                self.put_reals(3)
        self.check_card("4.5", 1, 1)
        return self.put_integers(1)[0]

    def check_selection(self, group):
        """Location, window or list, and side of IEDIT 1, 2 and 3."""
        self.check_card(group + ".1", 1, 1)
        location = self.put_integers(1)[0]
        if location == 0:
            self.check_card(group + ".2.1", 4, 4)
            self.put_reals(4)
        else:
            self.check_card(group + ".2.2", 1, 1)
            self.put_list(self.put_integers(1)[0])
        self.check_card(group + ".3", 1, 1)
        self.put_integers(1)

    def check_edit(self):
        # The edit code is needed before its card is due: it decides whether
        # the first name counts.
        self.cards.skip(3)
        edit = cut(self.cards.values("r", [0.0])[0])
        self.cards.back(4)
        if edit == 5:
            raise NotCovered("IEDIT 5")
        self.put_name()
        self.put_name(plot=True)
        self.default(3, 0.0)
        self.default(4, 0.0)
        self.check_card("3.2", 2, 4)
        self.put_integers(4)
        for position in range(2, 7):
            self.default(position, 0.0)
        self.check_card("3.3", 1, 6)
        edit = self.put_integers(6)[0]
        if edit == 5:
            raise NotCovered("IEDIT 5")
        if edit == 0:
            self.check_card("3.3.1.1", 4, 4)
            self.put_reals(4)
            self.check_card("3.3.1.2", 2, 2)
            self.put_reals(2)
        elif edit == 1:
            self.check_selection("3.3.2")
            words = CODE_WORDS[self.kind]
            self.check_card("3.3.2.4", words, words)
            self.put_integers(words)
        elif edit == 2:
            self.check_selection("3.3.3")
        elif edit == 3:
            self.check_selection("3.3.4")
            self.check_card("3.3.4.4", 3, 3)
            self.put_integers(3)
        elif edit == 4:
            group_engine().check_cards(self)
        elif edit == 6:
            self.check_rebuild()

    def row_count(self):
        """The count of rows that follow, at most 100."""
        count = self.put_integers(1)[0]
        if count > 100:
            raise Failure("more than 100 records")
        return count

    def check_rebuild(self):
        self.check_card("3.6.1", 1, 1)
        for _ in range(self.row_count()):
            for position in (6, 7, 8):
                self.default(position, -10.0)
            self.check_card("3.6.1-1", 5, 8)
            if self.kind == COUPLED:
                self.put_integers(8)
            elif self.kind == DISPLACEMENT:
                self.normal.append(
                    "".join(I(v, 5) + " " for v in self.card_integers(6)) +
                    "".join(E(v, 12, 5) + " " for v in self.cardval[6:8]))
            else:
                self.put_integers(7)
        for label in ("3.6.2", "3.6.3"):
            self.check_card(label, 1, 1)
            for _ in range(self.row_count()):
                self.default(4, -10.0)
                self.default(5, -10.0)
                self.check_card(label + "-1", 3, 5)
                self.put_integers(5)

    # -- mesh stripper ----------------------------------------------------------

    def strip_mesh(self, source, target):
        """Copy a mesh without comments and deleted elements, fixed layouts."""
        kind = self.kind
        lines = [columns(s, 126) for s in source if s[:1] != "*"]
        reader = Reader(lines)
        reader.skip(2)
        counts = reader.integers(4)
        reader.skip(2)
        fields = count_columns(reader.line())[0]
        reader.back(1)
        for _ in range(counts[0]):
            in_table(read_node(kind, fields, reader)[0], "node")
        dropped = [0, 0, 0]
        for section in (CONTINUUM, BEAM, TRUSS):
            if counts[section] > 0:
                reader.skip(2)
                for _ in range(counts[section]):
                    number, element = read_element(kind, section, reader)
                    if number < 0:
                        dropped[section - 1] += 1
                    else:
                        in_table(number, "element")
                        checked_words(number, element.words[:8])
        reader = Reader(lines)
        out = [reader.line(), reader.line()]
        out.append(listed(counts[0], *(counts[s] - dropped[s - 1]
                                       for s in (CONTINUUM, BEAM, TRUSS))))
        reader.line()
        out += [reader.line() for _ in range(max(counts[0], 0) + 2)]
        for section in (CONTINUUM, BEAM, TRUSS):
            if counts[section] > 0:
                out += [reader.line(), reader.line()]
                for _ in range(counts[section]):
                    number, element = read_element(kind, section, reader)
                    if number >= 0:
                        out.append(continuum_line(kind, number, element)
                                   if section == CONTINUUM
                                   else line_line(number, element))
        self.disk.put(target, out)
        return Mesh(kind, out, fields, counts)

    def load(self, mesh):
        """All records of a stripped mesh: nodes in order, and elements of
        each type in order.  A section that lost all its records keeps its two
        headings in the copy, so headings go by the counts of the source."""
        reader, counts = mesh.open()
        reader.skip(2)
        nodes = [read_node(self.kind, mesh.fields, reader)
                 for _ in range(counts[0])]
        elements = {}
        for section in (CONTINUUM, BEAM, TRUSS):
            if mesh.source_counts[section] > 0:
                reader.skip(2)
            elements[section] = [read_element(self.kind, section, reader)
                                 for _ in range(counts[section])]
        return counts, nodes, elements

    # -- deck loop --------------------------------------------------------------

    def deck(self, name):
        self.check_deck(name)
        cards = Reader(self.normal)
        mode, _ = cards.integers(2)
        keep_first = mode == -1
        if keep_first:
            mode = 0
        self.trace(" Pass 3 ...", 3.0)
        base_only = False
        if mode == 2:
            self.trace(" Pass 4A ", 4.1)
            base_only = self.base_mesh(cards) == 0
            mode = 1
            self.trace(" Pass 4B ", 4.2)
        if base_only:
            edit = Edit()
            edit.source, edit.target = "..\\Bmesh.dat", "Basic.Tmp"
            mesh = self.open_edit(edit)
            self.trace(" Pass 4C ", 4.3)
            self.edit_mesh(edit, mesh)
        else:
            self.trace(" Pass 4D ", 4.4)
            if mode == 1:
                edit = Edit()
                edit.source, edit.target = cards.text(), cards.text()
                mesh = self.open_edit(edit)
                self.read_edit(cards, edit)
                self.edit_mesh(edit, mesh)
            elif mode == 0:
                self.combine(cards, keep_first)
            else:
                raise Failure("no mesh to read")
        self.write_status(0)
        self.trace(" Pass 43 ", 43.0)

    def open_edit(self, edit):
        self.disk.put("FILEA.TMP", [])
        source = self.disk.old(edit.source)
        self.disk.touch(edit.target)
        self.disk.put("TEMPO.TMP", [])
        return self.strip_mesh(source, "FILEA.TMP")

    # -- edit ---------------------------------------------------------------------

    def read_edit(self, cards, edit):
        edit.first_element, edit.first_node, edit.first_beam, \
            edit.first_truss = cards.integers(4)
        edit.code, *edit.spared = cards.integers(6)
        for codes, text, number in (((0,), "A", 5.1), ((1,), "B", 5.2),
                                    ((2,), "C", 5.3), ((3,), "D", 5.4),
                                    ((4,), "E", 5.5), ((6,), "F", 5.6)):
            if edit.code in codes:
                self.trace(" Pass 5%s " % text, number)
        if edit.code == 0:
            edit.old_x, edit.old_y, edit.new_x, edit.new_y = cards.reals(4)
            edit.scale_x, edit.scale_y = cards.reals(2)
        elif edit.code in (1, 2, 3):
            edit.location = cards.integers(1)[0]
            if edit.location == 0:
                edit.window = cards.reals(4)
            else:
                count = cards.integers(1)[0]
                edit.list = cards.integers(max(count, 0))
            edit.side = cards.integers(1)[0]
            if edit.code == 1:
                edit.new_codes = cards.integers(CODE_WORDS[self.kind])
            elif edit.code == 3:
                edit.new_material = cards.integers(3)
        elif edit.code == 4:
            edit.cards = cards
        elif edit.code == 6:
            kinds = {COUPLED: "iiiiiiii", DISPLACEMENT: "iiiiiirr",
                     TEMPERATURE: "iiiiiii", HEAD: "iiiiiii"}[self.kind]
            for section, form in ((CONTINUUM, kinds), (BEAM, "iiiii"),
                                  (TRUSS, "iiiii")):
                count = cards.integers(1)[0]
                if count > 100:
                    raise Failure("more than 100 records")
                edit.records[section] = [cards.values(form)
                                         for _ in range(max(count, 0))]

    def edit_mesh(self, edit, mesh):
        self.disk.put("MeshFile.Mes", [])
        self.trace(" Pass 6 ", 6.0)
        counts, nodes, elements = self.load(mesh)
        if edit.code == 1 and edit.location == 2:
            self.trace(" Pass 7A ", 7.1)
            edit.chosen = along_polyline(nodes, edit.list)
            self.trace(" Pass 7B ", 7.2)
            self.trace(" Pass 7C-1 ", 7.31)
            self.trace(" Pass 7C-2 ", 7.32)
            self.trace(" Pass 7D ", 7.4)
        elif edit.location == 1:
            edit.chosen = expand_list(edit.list)
        self.trace(" Pass 8 ", 8.0)
        result = Result()
        shift = self.edit_nodes(edit, nodes, result)
        self.trace(" Pass 9 ", 9.0)
        starts = start_numbers(edit, elements)
        if counts[CONTINUUM] > 0:
            self.trace(" Pass 10 ", 10.0)
        for section, text, number in ((CONTINUUM, " Pass 11 ", 11.0),
                                      (BEAM, " Pass 12 ", 12.0),
                                      (TRUSS, " Pass 13 ", 13.0)):
            if counts[section] > 0:
                self.edit_elements(edit, section, elements[section],
                                   starts[section], shift, result)
                self.trace(text, number)
        if edit.code == 4:
            edit.engine = group_engine().load(self, edit, result)
        value, moves = line_up_switch(self), 0
        if edit.code == 4:
            moves = group_engine().line_up(self, edit.engine, value)
        self.trace(" Pass 14.7  NMOVE = ", 14.6, moves)
        if edit.code == 4:
            edit.engine.collapse_and_move()
        if edit.code in (2, 3, 4):
            self.compact(edit, result)
        self.write_edited(edit, result)

    def edit_nodes(self, edit, nodes, result):
        """Nodes into the tables; gives the shift of the node numbers."""
        if not nodes:
            return 0
        shift = edit.first_node - min(number for number, _ in nodes)
        for number, node in nodes:
            if edit.code == 0:
                node.x = add(mul(sub(node.x, edit.old_x), edit.scale_x),
                             edit.new_x)
                node.y = add(mul(sub(node.y, edit.old_y), edit.scale_y),
                             edit.new_y)
            elif edit.code == 1 and edit.location != 3:
                if edit.location == 0:
                    inside = edit.in_window(node.x, node.y)
                else:
                    inside = number in edit.chosen
                if edit.selects(inside):
                    node.codes = list(edit.new_codes)
            if edit.code in (0, 1, 6):
                new = in_table(number + shift, "node")
                result.nodes[new] = node
                result.active.add(new)
            elif edit.code in (2, 3, 4):
                result.nodes[number] = node
        return shift

    def edit_elements(self, edit, section, records, start, shift, result):
        if edit.code not in (0, 1, 2, 3, 4, 6):
            return
        lowest = min(number for number, _ in records)
        for number, element in records:
            words = element.words
            if edit.code in (2, 3, 4):
                result.elements[number] = element
                result.types[number] = section
                if edit.code == 4:
                    continue
                if self.chooses(edit, section, number, element, result):
                    if edit.code == 2:
                        result.types[number] = 0
                    elif edit.new_material[section - 1] != 0:
                        words[8] = edit.new_material[section - 1]
                continue
            corners = [w + shift if w > 0 else w for w in words[:4]]
            checked_words(number, corners)
            if section == CONTINUUM:
                row = edit.corner_row(words[3] == 0)
                words[:4] = [corners[p - 1] if p else 0 for p in row]
            else:
                words[:4] = corners
            if edit.code == 1 and edit.location == 3 and \
                    words[8] in edit.list:
                for word in words[:4]:
                    if word > 0 and word in result.nodes:
                        result.nodes[word].codes = list(edit.new_codes)
            if edit.code == 6:
                self.rebuild(edit.records[section], section, element)
            new = in_table(number + start - lowest, "element")
            result.elements[new] = element
            result.kept[new] = section

    def chooses(self, edit, section, number, element, result):
        """Is the element selected, and its material not a spared one?"""
        words = element.words
        if edit.location == 0:
            used = words[:4] if section == CONTINUUM else words[:2]
            x = y = 0.0
            for word in used:
                if word <= 0 and section != CONTINUUM:
                    raise Failure("element %d lacks a node" % number)
                if word > 0:
                    node = result.nodes.get(word)
                    x = add(x, node.x if node else 0.0)
                    y = add(y, node.y if node else 0.0)
            if section != CONTINUUM:
                parts = 2.0
            else:
                parts = 3.0 if words[3] == 0 else 4.0
            inside = edit.in_window(div(x, parts), div(y, parts))
        elif edit.location == 1:
            inside = number in edit.chosen
        else:
            inside = False
        if not edit.selects(inside):
            return False
        spared = {CONTINUUM: edit.spared[:3], BEAM: edit.spared[3:4],
                  TRUSS: edit.spared[4:5]}[section]
        return words[8] not in spared

    def rebuild(self, records, section, element):
        words = element.words
        record = next((r for r in records if r[0] == words[8]), None)
        if record is None:
            return
        corners = words[:4]
        sources = record[1:5] if section == CONTINUUM else record[1:3]
        for slot, source in enumerate(sources):
            if source == 0:
                words[slot] = 0
            elif 1 <= source <= 4:
                words[slot] = corners[source - 1]
        if section != CONTINUUM:
            words[2], words[3] = words[1], words[0]
            if record[3] != -10:
                words[8] = record[3]
            return
        if record[5] != -10:
            words[8] = record[5]
        for k, value in enumerate(record[6:]):
            if value != -10:
                element.attributes[k] = value

    def compact(self, edit, result):
        """Close up elements and nodes and number them from the starts."""
        self.trace(" Pass 15 ", 15.0)
        packed = []
        used = set()
        for number in sorted(result.elements):
            if result.types[number] != 0:
                element = result.elements[number]
                packed.append((result.types[number], element))
                used.update(w for w in element.words[:4] if w > 0)
        self.trace(" Pass 16 ", 16.0)
        # Midside words stay at their positions while the other words move.
        midside = [list(result.elements[p].words[4:8])
                   if p in result.elements else [0, 0, 0, 0]
                   for p in range(1, len(packed) + 1)]
        order = sorted(used)
        position = {old: p for p, old in enumerate(order, 1)}
        self.trace(" Pass 17 ", 17.0)
        nodes = []
        for p, old in enumerate(order, 1):
            here = result.nodes.get(old, Node([0] * 5, 0.0, 0.0)).copy()
            if self.kind == HEAD:
                # Head and factor stay behind when nodes close up.
                there = result.nodes.get(p)
                here.h = there.h if there else 0.0
                here.cf = there.cf if there else 0.0
            nodes.append(here)
        self.trace(" Pass 18 ", 18.0)
        result.nodes = {in_table(edit.first_node + k, "node"): node
                        for k, node in enumerate(nodes)}
        result.renumbered = {old: edit.first_node - 1 + p
                             for old, p in position.items()}
        result.active = set(result.nodes)
        self.trace(" Pass 19 ", 19.0)
        result.elements, result.kept = {}, {}
        for k, (section, element) in enumerate(packed):
            new = in_table(edit.first_element + k, "element")
            moved = element.copy()
            moved.words[:4] = [edit.first_node - 1 + position[w]
                               if w > 0 else w for w in moved.words[:4]]
            moved.words[4:8] = midside[k]
            result.elements[new] = moved
            result.kept[new] = section

    def write_edited(self, edit, result):
        self.trace(" Pass 20 ", 20.0)
        self.trace(" Pass 21 ", 21.0)
        self.trace(" Pass 22.1 ", 22.1)
        self.trace(" Pass 22.2 ", 22.2)
        self.trace(" Pass 23 ", 23.0)
        sections = {s: [(n, result.elements[n]) for n in sorted(result.kept)
                        if result.kept[n] == s]
                    for s in (CONTINUUM, BEAM, TRUSS)}
        nodes = [(n, result.nodes[n]) for n in sorted(result.active)]
        counts = [len(nodes)] + [len(sections[s])
                                 for s in (CONTINUUM, BEAM, TRUSS)]
        if edit.code == 4:
            edit.engine.before_writing(result, nodes, sections)
        lines = self.mesh_lines(edit.target, counts, nodes, sections)
        if edit.code == 4:
            edit.engine.after_writing(result, sections, lines)
        for section, text, number in ((CONTINUUM, " Pass 24 ", 24.0),
                                      (BEAM, " Pass 25 ", 25.0),
                                      (TRUSS, " Pass 26 ", 26.0)):
            if counts[section] > 0:
                self.trace(text, number)
        lines += [listed("    0"), listed("    0")]
        self.disk.put_result(edit.target, lines)
        self.trace(" Pass 27.1 ", 27.1)
        if edit.code == 4:
            lines = edit.engine.write_outputs(edit.target, counts, result,
                                              sections, lines)
        self.trace(" Pass 27.2 ", 27.2)
        self.copy_result(lines)

    def copy_result(self, lines):
        self.disk.put("MeshFile.Mes", [columns(s, 126) for s in lines[:320000]])

    def mesh_lines(self, name, counts, nodes, sections):
        lines = [columns(name, 126), listed(COUNT_HEADING),
                 " " + I(counts[0], 5) +
                 "".join("   " + I(c, 5) for c in counts[1:]),
                 listed("   NODAL COORDINATES "),
                 listed(NODE_HEADING[self.kind])]
        lines += [node_line(self.kind, n, node) for n, node in nodes]
        if counts[CONTINUUM] > 0:
            lines += [listed("   CONTINUUM ELEMENT INDEX "),
                      CONTINUUM_HEADING[self.kind]]
            lines += [continuum_line(self.kind, n, e, closing_idh=True)
                      for n, e in sections[CONTINUUM]]
        if counts[BEAM] > 0:
            lines += [listed("   BEAM ELEMENT "),
                      listed("   NEL      I      J   MSEC  NODEK ")]
            lines += [line_line(n, e) for n, e in sections[BEAM]]
        if counts[TRUSS] > 0:
            lines += [listed("   TRUSS ELEMENT "),
                      listed("   NEL      I      J   MATT  NODEK ")]
            lines += [line_line(n, e) for n, e in sections[TRUSS]]
        return lines

    # -- combination ----------------------------------------------------------------

    def combine(self, cards, keep_first):
        self.trace(" Pass 5G ", 5.7)
        name_b, name_a, target = cards.text(), cards.text(), cards.text()
        interface = cards.integers(1)[0]
        list_b = list_a = []
        if interface != 0:
            pairs = cards.integers(1)[0]
            list_b = cards.integers(max(pairs, 0))
            list_a = cards.integers(max(pairs, 0))
        self.disk.put("FILEA.TMP", [])
        self.disk.put("FILEB.TMP", [])
        source_a, source_b = self.disk.old(name_a), self.disk.old(name_b)
        self.disk.touch(target)
        mesh_a = self.strip_mesh(source_a, "FILEA.TMP")
        mesh_b = self.strip_mesh(source_b, "FILEB.TMP")
        counts_a, nodes_a, elements_a = self.load(mesh_a)
        counts_b, nodes_b, elements_b = self.load(mesh_b)
        starts_a, starts_b = combined_starts(elements_a, elements_b)
        self.disk.put("MeshFile.Mes", [])
        self.trace(" Pass 6 ", 6.0)
        self.trace(" Pass 8 ", 8.0)
        first = dict(nodes_a)
        self.trace(" Pass 9 ", 9.0)
        table, type_a, type_b = {}, {}, {}

        def place(elements, starts, types, section):
            records = elements[section]
            for number, element in records:
                lowest = min(n for n, _ in records)
                new = in_table(number - lowest + starts[section], "element")
                table[new] = element
                types[new] = section

        if counts_a[CONTINUUM] > 0:
            self.trace(" Pass 10 ", 10.0)
        for section, text, number in ((CONTINUUM, " Pass 11 ", 11.0),
                                      (BEAM, " Pass 12 ", 12.0),
                                      (TRUSS, " Pass 13 ", 13.0)):
            if counts_a[section] > 0:
                place(elements_a, starts_a, type_a, section)
                self.trace(text, number)
        self.trace(" Pass 28 ", 28.0)
        second = dict(nodes_b)
        for section in (CONTINUUM, BEAM, TRUSS):
            if counts_b[section] > 0:
                place(elements_b, starts_b, type_b, section)
        self.trace(" Pass 29 ", 29.0)
        if min(type_a, default=NOMIN) == min(type_b, default=NOMIN):
            listing = [listed(ERROR_LINE),
                       listed(" REGION A element no. duplicates "
                              "REGION B element no. ")]
            self.disk.put(target, listing)
            self.list_error(listing, 2)
            self.write_status(1)
            raise Stop("100")
        mapped = {}
        if interface == 1:
            for a, b in zip(list_a, list_b):
                if b not in second:
                    raise Failure("node %d is not in the second region" % b)
                mapped[in_table(a, "node")] = -b
        else:
            least = smallest_spacing(first, f32(1.0e35))
            self.trace(" Pass 30 ", 30.0)
            least = smallest_spacing(second, least)
            self.trace(" Pass 31 ", 31.0)
            mapped = match_nodes(first, second, mul(0.5, least))
        self.trace(" Pass 32 ", 32.0)
        self.trace(" Pass 33 ", 33.0)
        following = max(second, default=0) + 1
        for number in sorted(first):
            partner = mapped.get(number, number)
            if partner < 0:
                if keep_first:
                    second[-partner] = first[number].copy()
                mapped[number] = -partner
            else:
                second[in_table(following, "node")] = first[number].copy()
                mapped[number] = following
                following += 1
        self.trace(" Pass 34 ", 34.0)
        words = 8 if self.kind in (COUPLED, DISPLACEMENT) else 4
        for number in type_a:
            element = table[number]
            element.words[:words] = [abs(mapped.get(w, w)) if w > 0 else w
                                     for w in element.words[:words]]
        for number in (35, 36):
            self.trace(" Pass %d " % number, float(number))
        numbers = sorted(set(type_a) | set(type_b))
        counts = [len(second), 0, 0, 0]
        for number in numbers:
            counts[type_a.get(number) or type_b[number]] += 1
        sections = {s: [(n, table[n]) for n in numbers
                        if s in (type_a.get(n), type_b.get(n))]
                    for s in (CONTINUUM, BEAM, TRUSS)}
        nodes = [(n, second[n]) for n in sorted(second)]
        for number in (37, 38):
            self.trace(" Pass %d " % number, float(number))
        lines = self.mesh_lines(target, counts, nodes, sections)
        for section in (CONTINUUM, BEAM, TRUSS):
            if counts[section] > 0:
                self.trace(" Pass %d " % (38 + section), 38.0 + section)
        self.disk.put_result(target, lines)
        self.copy_result(lines)

    # -- base mesh ------------------------------------------------------------------

    def base_mesh(self, cards):
        """Cards of the block table to the base mesh; gives IGMOD."""
        nbx, nby, *sides = cards.integers(6)
        for count in (nbx, nby):
            if not 1 <= count <= 100:
                raise Failure("a block count outside 1 to 100")
        if self.kind == DISPLACEMENT:
            (xo, yo), third = cards.reals(2), 0.0
        else:
            xo, yo, third = cards.reals(3)
        columns_ = [cards.reals(3) for _ in range(nbx)]
        rows = [cards.reals(3) for _ in range(nby)]
        igmod = cards.integers(1)[0]

        ndx, fractions_x = zip(*(divisions(*c) for c in columns_))
        ndy, fractions_y = zip(*(divisions(*r) for r in rows))
        key_x = [xo]
        for (width, _, _), part in zip(columns_, fractions_x):
            start = key_x[-1]
            key_x += [add(start, part), add(start, width)]
        height = 0.0
        for row in rows:
            height = add(height, row[0])
        key_y = [add(yo, height)]
        for (length, _, _), part in zip(rows, fractions_y):
            start = key_y[-1]
            key_y += [sub(start, part), sub(start, length)]
        bounds = (key_x[0], key_x[-1], key_y[-1], key_y[0])

        self.write_blocks(nbx, nby, key_x, key_y, ndx, ndy, third)
        if self.kind != DISPLACEMENT and max(ndx + ndy) > 99999:
            raise Failure("a division count that its field cannot hold")
        self.disk.put("Coord.dat", [])
        self.disk.put("Index.dat", [])
        self.disk.touch("..\\Bmesh.dat")
        keys = (2 * nbx + 1) * (2 * nby + 1)
        blocks = nbx * nby
        nxt, nyt = sum(ndx), sum(ndy)
        grid = (nyt + 1) * (nxt + 1)
        cells = nxt * nyt
        longest = max(ndx + ndy) + 1
        largest = (max(ndx) + 1) * (max(ndy) + 1)
        size = 1 + 2 * keys + nbx + nby + 44 * blocks + 7 * grid + \
            3 * cells + 8 * longest + 2 * largest
        if size > 60000000:
            self.disk.put("Coord.dat",
                          [" PROGRAM DIMENSION =  " + I(60000000, 10),
                           "REQUIRED DIMENSION =  " + I(size, 10)])
            raise Stop("100")
        if grid >= 100000:
            raise Failure("more nodes than a mesh holds")
        self.number_blocks(nbx, nby, key_x, key_y, ndx, ndy)
        self.base_out(bounds, sides, third)
        return igmod

    def write_blocks(self, nbx, nby, key_x, key_y, ndx, ndy, third):
        tall = 2 * nby + 1
        lines = [listed(" Base Mesh "), listed(0)]
        counts = [nbx * nby, (2 * nbx + 1) * tall, 1, 1.0]
        if self.kind in (TEMPERATURE, HEAD):
            counts.append(third)
        lines += [listed(*counts), listed(nbx, nby, 0, 0, 0, 1)]
        number = 0
        for x in key_x:
            for y in key_y:
                number += 1
                lines.append(listed(number, x, y))

        def key(column, row):
            return column * tall + row + 1

        def in_fives(values):
            return "".join(I(v, 5) + " " for v in values)

        block = 0
        for p in range(nbx):
            left, middle, right = 2 * p, 2 * p + 1, 2 * p + 2
            for q in range(nby):
                top, centre, bottom = 2 * q, 2 * q + 1, 2 * q + 2
                block += 1
                lines += [listed(" BLOCK NO = ", block), listed(block)]
                lines.append(in_fives(
                    [key(right, top), key(left, top), key(left, bottom),
                     key(right, bottom), key(middle, top), key(left, centre),
                     key(middle, bottom), key(right, centre),
                     key(middle, centre)]))
                if self.kind == COUPLED:
                    lines += [in_fives([12] * 9),
                              in_fives([1, ndx[p], ndy[q], 0, 1])]
                elif self.kind == DISPLACEMENT:
                    lines += [in_fives([0] * 8),
                              listed(1, ndx[p], ndy[q], 1.0, f32(2.3))]
                else:
                    lines.append(in_fives([1, ndx[p], ndy[q], 0]))
                lines.append(listed(0))
        lines.append(listed(0))
        self.disk.put("Bmesh.Tmp", lines)

    def number_blocks(self, nbx, nby, key_x, key_y, ndx, ndy):
        """Nodes and cells of all blocks, numbered by columns from the top."""
        x_keys = {(c, r): x for c, x in enumerate(key_x)
                  for r in range(len(key_y))}
        y_keys = {(c, r): y for c in range(len(key_x))
                  for r, y in enumerate(key_y)}
        for keys in (x_keys, y_keys):
            fill_absent(keys, nbx, nby)
        x_nodes, y_nodes = {}, {}
        column = 0
        for p in range(nbx):
            row = 0
            for q in range(nby):
                for keys, nodes in ((x_keys, x_nodes), (y_keys, y_nodes)):
                    map_block({(i, j): keys[2 * p + i, 2 * q + j]
                               for i in range(3) for j in range(3)},
                              ndx[p], ndy[q], column, row, nodes)
                row += ndy[q]
            column += ndx[p]
        wide, tall = sum(ndx), sum(ndy)
        codes = {COUPLED: 4, DISPLACEMENT: 3, TEMPERATURE: 2, HEAD: 2}
        coord, number, numbers = [], 0, {}
        for i in range(wide + 1):
            for j in range(tall + 1):
                number += 1
                numbers[i, j] = number
                coord.append(" " + I(number, 6) + " " +
                             (I(0, 5) + " ") * codes[self.kind] +
                             E(x_nodes[i, j], 13, 6) + " " +
                             E(y_nodes[i, j], 13, 6) + " ")
        index, number = [], 0
        for i in range(wide):
            for j in range(tall):
                number += 1
                corners = [numbers[i + 1, j], numbers[i, j],
                           numbers[i, j + 1], numbers[i + 1, j + 1]]
                if self.kind == COUPLED:
                    index.append(numbers7([number] + corners + [0] * 4) +
                                 "".join(I(v, 5) for v in (1, 0, 1, 2, 2)) +
                                 E(0.0, 11, 4))
                elif self.kind == DISPLACEMENT:
                    index.append(numbers7([number] + corners + [0] * 4) +
                                 I(1, 5) + E(1.0, 11, 4) + E(f32(2.3), 11, 4))
                else:
                    index.append(numbers7([number] + corners) + I(1, 5) +
                                 I(0, 5))
        self.disk.put("Coord.dat", coord)
        self.disk.put("Index.dat", index)
        self.coord, self.index = coord, index

    def base_out(self, bounds, sides, third):
        kind = self.kind
        xmin, xmax, ymin, ytop = bounds
        left, right, top, bottom = (side == 1 for side in sides)
        codes = {COUPLED: 4, DISPLACEMENT: 3, TEMPERATURE: 2, HEAD: 2}[kind]
        reader = Reader(self.coord)
        points = []
        for _ in self.coord:
            v = reader.values("i" * (1 + codes) + "rr")
            points.append((v[0], v[-2], v[-1]))
        near = f32(0.0001)
        new = {number: number for number, _, _ in points}
        for k, (a, xa, ya) in enumerate(points):
            for b, xb, yb in points[k + 1:]:
                # Points this far apart cannot be one; spares the square root.
                if abs(xa - xb) < 0.001 and abs(ya - yb) < 0.001:
                    if dist2d(xa, ya, xb, yb) <= near:
                        new[b] = -a
        kept = []
        for number, x, y in points:
            if new[number] >= 0:
                kept.append((x, y))
                new[number] = len(kept)
        for number, _, _ in points:
            if new[number] < 1:
                new[number] = new[-new[number]]

        out = [columns(listed(" Base Mesh "), 60), listed(COUNT_HEADING),
               " " + "".join(I(c, 5) + "   "
                             for c in (len(kept), len(self.index), 0, 0)),
               listed("   NODAL COORDINATES ")]
        out.append(listed({
            COUPLED: "   NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY"
                     "       XC            YC ",
            TEMPERATURE: "   NODE   ID  IDF            XC            YC"
                         "             T            CF ",
            HEAD: "   NODE   ID  IDF            XC            YC"
                  "             H            CF ",
            DISPLACEMENT: "   NODE  IDX  IDY  IDT  IEX  IEY"
                          "       XC            YC "}[kind]))
        for number, (x, y) in enumerate(kept, 1):
            cx = cy = 0
            if not x > add(xmin, near):
                x, cx = xmin, int(left)
            elif not x < sub(xmax, near):
                x, cx = xmax, int(right)
            if not y > add(ymin, near):
                y, cy = ymin, int(bottom)
            elif not y < sub(ytop, near):
                y, cy = ytop, int(top)
            if kind == DISPLACEMENT:
                node = Node([cx, cy, 1], x, y)
            elif kind in (TEMPERATURE, HEAD):
                if kind == TEMPERATURE:
                    cx, cy = -100 * cx, -100 * cy
                node = Node([cx, cy], x, y, third, 1.0)
            else:
                if y >= add(third, near):
                    fx = fy = 1
                else:
                    fx = int((left and not x > add(xmin, near)) or
                             (right and not x < sub(xmax, near)))
                    fy = int((bottom and not y > add(ymin, near)) or
                             (top and not y < sub(ytop, near)))
                node = Node([cx, cy, fx, fy, 1], x, y)
            out.append(node_line(kind, number, node))
        out.append(listed("   ELEMENT INDEX "))
        out.append({
            COUPLED: "    NEL     I1     I2     I3     I4     M5     M6"
                     "     M7     M8 MATC KS KF INTR INTS   TBJWL",
            TEMPERATURE: listed("   NEL      I      J      K      L  MATNO"
                                "    IDH"),
            HEAD: listed("   NEL      I      J      K      L  MATNO    IDH"),
            DISPLACEMENT: "   NEL     I1     I2     I3     I4     M5     M6"
                          "     M7     M8  MATC   THIC        DEN"}[kind])
        reader = Reader(self.index)
        for _ in self.index:
            if kind == COUPLED:
                v = reader.values("i" * 14 + "r")
                v[1:9] = [new[n] if n > 0 else n for n in v[1:9]]
                out.append(numbers7(v[:9]) + I(v[9], 5) + I(v[10], 3) +
                           I(v[11], 3) + I(v[12], 5) + I(v[13], 5) +
                           E(v[14], 11, 4))
            elif kind == DISPLACEMENT:
                v = reader.values("i" * 10 + "rr")
                v[1:9] = [new[n] if n > 0 else n for n in v[1:9]]
                out.append(numbers7(v[:9]) + I(v[9], 5) + E(v[10], 11, 4) +
                           E(v[11], 11, 4))
            else:
                v = reader.integers(7)
                v[1:5] = [new[n] if n > 0 else n for n in v[1:5]]
                out.append(numbers7(v[:5]) + I(v[5], 5) + I(v[6], 5))
        out += [listed("    0"), listed("    0")]
        self.disk.put_result("..\\Bmesh.dat", out)


def group_engine():
    """The other half of this calculation; it builds on what stands here."""
    sys.modules.setdefault("reference", sys.modules[__name__])
    import groups
    return groups


def line_up_switch(run):
    sys.modules.setdefault("reference", sys.modules[__name__])
    import lineup
    return lineup.switch(run)


# --------------------------------------------------------------------------
# Edit tables and selections
# --------------------------------------------------------------------------


class Edit:
    """One edit; as it stands it is the identity on a base mesh."""

    def __init__(self):
        self.source = self.target = ""
        self.first_element = self.first_node = 1
        self.first_beam = self.first_truss = 0
        self.code = 0
        self.spared = [0] * 5
        self.old_x = self.old_y = self.new_x = self.new_y = 0.0
        self.scale_x = self.scale_y = 1.0
        self.location = None
        self.window = self.list = None
        self.chosen = frozenset()
        self.side = 0
        self.new_codes = self.new_material = None
        self.records = {CONTINUUM: [], BEAM: [], TRUSS: []}

    def in_window(self, x, y):
        xmin, ymin, xmax, ymax = self.window
        return xmin < x < xmax and ymin < y < ymax

    def selects(self, inside):
        return (self.side == 0 and inside) or (self.side == 1 and not inside)

    def corner_row(self, triangle):
        """Source of each corner slot; a mirrored mesh turns its corners."""
        flip_x = flip_y = False
        if self.code == 0:
            flip_x, flip_y = self.scale_x < 0.0, self.scale_y < 0.0
        if triangle:
            return {(False, False): (1, 2, 3, 0), (True, False): (2, 1, 3, 0),
                    (False, True): (3, 2, 1, 0),
                    (True, True): (3, 1, 2, 0)}[flip_x, flip_y]
        return {(False, False): (1, 2, 3, 4), (True, False): (2, 1, 4, 3),
                (False, True): (4, 3, 2, 1),
                (True, True): (3, 4, 1, 2)}[flip_x, flip_y]


class Result:
    """The tables of an edit: what is there, and what is in use."""

    def __init__(self):
        self.nodes, self.active = {}, set()
        self.elements, self.types, self.kept = {}, {}, {}


def expand_list(entries):
    chosen, previous = set(), None
    for entry in entries:
        if abs(entry) > MAXNUMBER:
            raise Failure("a listed number beyond %d" % MAXNUMBER)
        if entry < 0:
            if previous is None:
                raise Failure("a list begins with a negative number")
            chosen.update(range(previous + 1, -entry + 1))
            previous = -entry
        else:
            if entry > 0:
                chosen.add(entry)
            previous = entry
    return chosen


def along_polyline(nodes, entries):
    """Numbers of the nodes that lie on the line through the listed nodes."""
    place = {number: (node.x, node.y) for number, node in nodes}
    points = []
    for number in entries:
        in_table(number, "node")
        points.append(place.get(number, (0.0, 0.0)))
    tiny, near = f32(1.0e-6), f32(0.001)
    chosen = set()
    for number, (x, y) in place.items():
        for (xa, ya), (xb, yb) in zip(points, points[1:]):
            dx, dy = sub(xb, xa), sub(yb, ya)
            square = add(mul(dx, dx), mul(dy, dy))
            if square < tiny:
                continue
            length = root(square)
            ux, uy = div(dx, length), div(dy, length)
            vx, vy = sub(x, xa), sub(y, ya)
            cross = sub(mul(ux, vy), mul(uy, vx))
            dot = add(mul(ux, vx), mul(uy, vy))
            if add(mul(vx, vx), mul(vy, vy)) < tiny or (
                    abs(cross) <= near and
                    -near <= dot <= add(length, near)):
                chosen.add(number)
                break
    return chosen


def span(records):
    numbers = [number for number, _ in records]
    return min(numbers, default=NOMIN), max(numbers, default=0)


def start_numbers(edit, elements):
    """First new numbers; a start is raised where types would overlap."""
    top = 0
    if elements[CONTINUUM]:
        low, high = span(elements[CONTINUUM])
        top = edit.first_element - low + high
    beam, truss = edit.first_beam, edit.first_truss
    if elements[BEAM]:
        low, high = span(elements[BEAM])
        if beam <= top:
            beam = top + 1
        top = high + beam - low
    if elements[TRUSS] and truss <= top:
        truss = top + 1
    return {CONTINUUM: edit.first_element, BEAM: beam, TRUSS: truss}


# --------------------------------------------------------------------------
# Combination
# --------------------------------------------------------------------------


def combined_starts(first, second):
    """Start numbers of both regions.  A type that a region lacks enters with
    the untouched minimum and maximum, which pulls later starts down."""
    (mn_c1, mx_c1), (mn_b1, mx_b1), (mn_t1, _) = (
        span(first[s]) for s in (CONTINUUM, BEAM, TRUSS))
    (mn_c2, mx_c2), (mn_b2, mx_b2), (mn_t2, mx_t2) = (
        span(second[s]) for s in (CONTINUUM, BEAM, TRUSS))
    if mx_c2 < mn_c1 and mx_c1 < mn_b2 and mx_b2 < mn_b1 and \
            mx_b1 < mn_t2 and mx_t2 < mn_t1:
        return ({CONTINUUM: mn_c1, BEAM: mn_b1, TRUSS: mn_t1},
                {CONTINUUM: mn_c2, BEAM: mn_b2, TRUSS: mn_t2})
    ncb = 1
    nca = (mx_c2 - mn_c2) + 2
    e = (mx_c1 - mn_c1) + 2 + (mx_c2 - mn_c2)
    nbb = e + 1
    e = e + (mx_b2 - mn_b2) + 1
    nba = e + 1
    e = e + (mx_b1 - mn_b1) + 1
    ntb = e + 1
    nta = e + (mx_t2 - mn_t2) + 2
    return ({CONTINUUM: nca, BEAM: nba, TRUSS: nta},
            {CONTINUUM: ncb, BEAM: nbb, TRUSS: ntb})


def smallest_spacing(nodes, least):
    numbers = sorted(nodes)
    for k, a in enumerate(numbers):
        for b in numbers[k + 1:]:
            least = min(least, dist2d(nodes[a].x, nodes[a].y,
                                      nodes[b].x, nodes[b].y))
    return least


def match_nodes(first, second, tolerance):
    """Partners by distance; of several the highest number stands."""
    mapped = {}
    for a in sorted(first):
        for b in sorted(second):
            if dist2d(first[a].x, first[a].y,
                      second[b].x, second[b].y) <= tolerance:
                mapped[a] = -b
    return mapped


# --------------------------------------------------------------------------
# Blocks
# --------------------------------------------------------------------------


def divisions(length, size, grade):
    """Division count of one block side and the way to its middle point."""
    if not size < length:
        return 1, div(length, 2.0)
    a = min(max(abs(grade), f32(0.3)), 0.5)
    slope = sub(mul(4.0, a), 1.0)
    b = div(mul(slope, length), mul(2.0, size))
    inner = sub(mul(b, b),
                div(mul(length, sub(mul(4.0, a), 2.0)), size))
    count = cut(add(b, root(inner)))
    if count < 1:
        raise Failure("a division count below 1")
    part = mul(a, length)
    return count, part if grade >= 0.0 else sub(length, part)


def fill_absent(keys, nbx, nby):
    """A middle point at zero counts as not given."""
    def absent(value):
        return abs(value) <= f32(1.0e-15)

    for c in range(1, 2 * nbx, 2):
        for r in range(0, 2 * nby + 1, 2):
            if absent(keys[c, r]):
                keys[c, r] = div(add(keys[c - 1, r], keys[c + 1, r]), 2.0)
    for c in range(0, 2 * nbx + 1, 2):
        for r in range(1, 2 * nby, 2):
            if absent(keys[c, r]):
                keys[c, r] = div(add(keys[c, r - 1], keys[c, r + 1]), 2.0)


def biquadratic(s, r, v):
    """Nine-point value; v[i, j] with i from the left and j from the top."""
    rows = (div(mul(r, add(r, 1.0)), 2.0), sub(1.0, mul(r, r)),
            div(mul(r, sub(r, 1.0)), 2.0))
    cols = (div(mul(s, sub(s, 1.0)), 2.0), sub(1.0, mul(s, s)),
            div(mul(s, add(s, 1.0)), 2.0))
    total = None
    for j in range(3):
        for i in range(3):
            term = mul(mul(rows[j], cols[i]), v[i, j])
            total = term if total is None else add(total, term)
    return total


def map_block(v, ndx, ndy, c0, r0, grid):
    grid[c0, r0] = v[0, 0]
    grid[c0 + ndx, r0] = v[2, 0]
    grid[c0, r0 + ndy] = v[0, 2]
    grid[c0 + ndx, r0 + ndy] = v[2, 2]
    across, down = div(2.0, float(ndx)), div(2.0, float(ndy))
    for i, s in ((0, -1.0), (ndx, 1.0)):
        r = 1.0
        for j in range(1, ndy):
            r = sub(r, down)
            grid[c0 + i, r0 + j] = biquadratic(s, r, v)
    s = -1.0
    for i in range(1, ndx):
        s = add(s, across)
        r = 1.0
        for j in range(ndy + 1):
            grid[c0 + i, r0 + j] = biquadratic(s, r, v)
            r = sub(r, down)


# --------------------------------------------------------------------------
# Command line
# --------------------------------------------------------------------------


def run(drive, work, typed=b"", seen=None):
    """One run: exit status, what it printed, and why it ended.  A dictionary
    given as seen gets the ways that the output decks took."""
    job = Run(drive, work, typed)
    if seen is not None:
        job.seen = seen
    try:
        job.deck(job.start())
        status, reason = 0, ""
    except Stop as stop:
        job.show(str(stop))
        status, reason = 1, "stop " + str(stop)
        job.disk.give_up_results()
    except Failure as failure:
        status, reason = 2, str(failure)
        job.disk.give_up_results()
    except NotCovered as gap:
        status, reason = 3, "not covered: " + str(gap)
    return status, "".join(job.printed).encode("latin-1"), reason


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    commands = parser.add_subparsers(dest="command", required=True)
    command = commands.add_parser("run", help="carry out one run in place")
    command.add_argument("--drive-c", required=True, metavar="DIR")
    command.add_argument("--work", required=True, metavar="DIR")
    options = parser.parse_args()
    typed = b"" if sys.stdin is None or sys.stdin.isatty() \
        else sys.stdin.buffer.read()
    status, printed, reason = run(options.drive_c, options.work, typed)
    sys.stdout.buffer.write(printed)
    sys.stdout.flush()
    if status in (2, 3):
        print(reason, file=sys.stderr)
    return status


if __name__ == "__main__":
    sys.exit(main())
