"""A strict reader of .mdpa files and of mesh files, written from their descriptions alone, and what must hold between
the two. Whatever is amiss raises Fault."""
import collections
import math
import re
import struct

# Nodes of each type, and what it is.
TYPES = {
    "UPwSmallStrainElement2D3N": (3, "solid"), "UPwSmallStrainElement2D4N": (4, "solid"),
    "SmallStrainUPwDiffOrderElement2D6N": (6, "solid"), "SmallStrainUPwDiffOrderElement2D8N": (8, "solid"),
    "SteadyStatePwElement2D3N": (3, "solid"), "SteadyStatePwElement2D4N": (4, "solid"),
    "GeoTransientThermalElement2D3N": (3, "solid"), "GeoTransientThermalElement2D4N": (4, "solid"),
    "Geo_ULineInterfacePlaneStrainElement2Plus2N": (4, "joint"),
    "GeoLinearTrussElement2D2N": (2, "truss"), "GeoCableElement2D2N": (2, "truss"), "GeoCrBeamElement2D2N": (2, "beam"),
}
KIND_TYPES = {"coupled": ("UPw", "SmallStrainUPw", "Geo_", "GeoL", "GeoCa", "GeoCr"), "head": ("SteadyStatePw",),
              "temperature": ("GeoTransientThermal",)}
KIND_TYPES["displacement"] = KIND_TYPES["coupled"]
CODES = {"coupled": ["ISX", "ISY", "IFX", "IFY", "IRZ"], "temperature": ["ID", "IDF"], "head": ["ID", "IDF"],
         "displacement": ["IDX", "IDY", "IDT"]}


class Fault(Exception):
    pass


def require(holds, *what):
    if not holds:
        raise Fault(" ".join(map(str, what)))


def words_of(line):
    """Fields may touch where the second has a sign."""
    return re.sub(r"(?<=[\d.])(?=[-+])", " ", line).split()


def real(word):
    return struct.unpack("f", struct.pack("f", float(word)))[0]


Element = collections.namedtuple("Element", "type of properties nodes")
Part = collections.namedtuple("Part", "nodes elements")


class Mdpa:
    """Properties, nodes, elements by number, and parts by name."""

    ORDER = ["Properties", "Nodes", "Elements", "SubModelPart"]

    def __init__(self, text):
        self.properties, self.nodes, self.elements, self.parts = set(), {}, {}, {}
        self.blocks = []
        require(text.endswith("\n") and "\t" not in text and "\r" not in text, "line ends and blanks")
        self.lines = [line.split("//")[0].split() for line in text.split("\n")]
        self.lines = [words for words in self.lines if words]
        self.at, last = 0, 0
        while self.at < len(self.lines):
            kind, words = self.begin()
            require(kind in self.ORDER, "block", kind)
            require(self.ORDER.index(kind) >= last, kind, "behind", self.ORDER[last])
            require(kind != "Nodes" or last < 1, "two blocks of nodes")
            last = self.ORDER.index(kind)
            getattr(self, "read_" + kind)(words)
        require(self.nodes, "no nodes")

    def begin(self):
        words = self.lines[self.at]
        require(words[0] == "Begin" and len(words) >= 2, "expected Begin, found", *words)
        self.at += 1
        return words[1], words[2:]

    def rows(self, kind):
        """Lines up to the End of the block."""
        while True:
            require(self.at < len(self.lines), kind, "without an end")
            words = self.lines[self.at]
            self.at += 1
            if words[0] == "End":
                require(words == ["End", kind], "expected End", kind, "found", *words)
                return
            require(words[0] != "Begin", "a block within", kind)
            yield words

    def read_Properties(self, words):
        number = int(words[0])
        require(len(words) == 1 and number >= 1 and number not in self.properties, "properties", *words)
        self.properties.add(number)
        require(not list(self.rows("Properties")), "properties that are not empty")

    def read_Nodes(self, words):
        require(not words, "words behind Nodes")
        for row in self.rows("Nodes"):
            number = int(row[0])
            require(len(row) == 4 and float(row[3]) == 0.0, "node", *row)
            require(number >= 1 and number not in self.nodes, "node", number, "stands twice")
            self.nodes[number] = (float(row[1]), float(row[2]))
            require(all(map(math.isfinite, self.nodes[number])), "node", *row)

    def read_Elements(self, words):
        require(len(words) == 1 and words[0] in TYPES, "type", *words)
        name = words[0]
        require(name not in self.blocks, "two blocks of", name)
        self.blocks.append(name)
        count, of = TYPES[name]
        rows = [list(map(int, row)) for row in self.rows("Elements")]
        require(rows, "an empty block of", name)
        for number, properties, *nodes in rows:
            require(number >= 1 and number not in self.elements, "element", number, "stands twice")
            require(properties in self.properties, "element", number, "has properties without a block")
            require(len(nodes) == count and len(set(nodes)) == count, "element", number, "has the nodes", nodes)
            require(all(n in self.nodes for n in nodes), "element", number, "names a node that is not there")
            self.elements[number] = Element(name, of, properties, nodes)

    def read_SubModelPart(self, words):
        require(len(words) == 1 and words[0] not in self.parts, "part", *words)
        require(words[0].isascii() and words[0].replace("_", "").replace("-", "").isalnum(), "the name", words[0])
        lists = []
        for what, known in (("Nodes", self.nodes), ("Elements", self.elements)):
            require(self.begin() == ("SubModelPart" + what, []), "part", words[0], "without", what)
            numbers = [int(row[0]) for row in self.rows("SubModelPart" + what) if require(len(row) == 1, row) is None]
            require(numbers == sorted(set(numbers)), "the order in part", words[0])
            require(all(n in known for n in numbers), "part", words[0], "names what is not there")
            lists.append(numbers)
        require(self.lines[self.at] == ["End", "SubModelPart"], "part", words[0], "without an end")
        self.at += 1
        part = self.parts[words[0]] = Part(*lists)
        listed = set(part.nodes)
        for number in part.elements:
            require(listed.issuperset(self.elements[number].nodes), "part", words[0], "lacks nodes of", number)


Record = collections.namedtuple("Record", "of material nodes midsides")


class Mes:
    """A mesh file: nodes with codes, and elements by number."""

    def __init__(self, text, kind):
        self.flow_lines = False
        self.kind, self.nodes, self.codes, self.values, self.elements = kind, {}, {}, {}, {}
        lines = [line for line in text.split("\n") if not line.startswith("*")]
        counts = list(map(int, lines[2].split()))
        at, codes = 5, len(CODES[kind])
        edges = 2 if kind in ("coupled", "displacement") and len(lines[at].split()) > codes + 3 else 0
        for line in lines[at:at + counts[0]]:
            words = words_of(line)
            self.nodes[int(words[0])] = tuple(real(w) for w in words[1 + codes + edges:3 + codes + edges])
            self.codes[int(words[0])] = [int(w) for w in words[1:1 + codes]]
            self.values[int(words[0])] = [real(w) for w in words[3 + codes + edges:5 + codes + edges]]
        at += counts[0]
        if kind == "head" and len(lines) > at and counts[3] == 0:  # flow lines stand behind, and are not counted
            rest = lines[at + (counts[1] + 2 if counts[1] else 0) + (counts[2] + 2 if counts[2] else 0) + 2:]
            for line in rest:
                if len(line.split()) < 5:
                    break
                counts[3] += 1
                self.flow_lines = True
        for of, count in zip(("solid", "beam", "truss"), counts[1:]):
            for line in lines[at + 2:at + 2 + count] if count else []:
                self.read_element(of, words_of(line))
            at += count + 2 if count else 0

    def read_element(self, of, words):
        number = int(words[0])
        if number < 1:
            return
        if of != "solid":
            self.elements[number] = Record(of, int(words[3]), [int(words[1]), int(words[2])], [])
            return
        corners = [n for n in map(int, words[1:5]) if n > 0]
        first = 9 if self.kind in ("coupled", "displacement") else 5
        mark = {"coupled": lambda: int(words[10]) > 0, "displacement": lambda: real(words[11]) < 0}.get(
            self.kind, lambda: int(words[6]) < 0 or int(words[6]) >= 100)
        midsides = [int(w) for w in words[5:9]][:len(corners)] if first == 9 else []
        if not midsides or not all(n in self.nodes for n in midsides):
            midsides = []
        of = "joint" if mark() else "solid"
        self.elements[number] = Record(of, int(words[first]), corners, midsides if of == "solid" else [])


def area(points):
    return sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(points, points[1:] + points[:1])) / 2.0


def left_of(a, b, c):
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])


class Comparison:
    """What a .mdpa file must have from its mesh."""

    def __init__(self, mdpa, mes, cables=(), names=None, sound=True):
        """`names`: those of parts whose material has a name, by word and number. In an unsound mesh the sides of a joint
        may run against each other, or have no solids that lie as they should."""
        self.mdpa, self.mes, self.cables, self.names, self.sound = mdpa, mes, cables, names or {}, sound
        self.turned = 0

    def all(self):
        require(self.mdpa.nodes.keys() == self.mes.nodes.keys(), "other nodes")
        for number, point in self.mdpa.nodes.items():
            require((real(point[0]), real(point[1])) == self.mes.nodes[number], "node", number, point)
        require(all(n in self.mes.elements for n in self.mdpa.elements), "elements that the mesh does not have")
        self.solids_at = collections.defaultdict(list)
        for number, record in self.mes.elements.items():
            if record.of == "solid":
                for a, b in zip(record.nodes, record.nodes[1:] + record.nodes[:1]):
                    self.solids_at[frozenset((a, b))].append(record.nodes)
        for number, record in self.mes.elements.items():
            element = self.mdpa.elements.get(number)
            if element is None:
                self.may_be_left_out(number, record)
                continue
            require(element.type.startswith(KIND_TYPES[self.mes.kind]), "type", element.type, "in", self.mes.kind)
            require(element.of == record.of, "element", number, "is a", element.of)
            getattr(self, element.of)(number, element, record)
        self.materials()
        self.codes()

    def may_be_left_out(self, number, record):
        stresses = self.mes.kind in ("coupled", "displacement")
        nodes = record.nodes + record.midsides
        twice = len(set(nodes)) < len(nodes) or (record.of == "joint" and len(record.nodes) < 4)
        require(twice or (record.of != "solid" and not stresses), "element", number, "is left out")

    def places(self, nodes):
        return [self.mes.nodes[n] for n in nodes]

    def solid(self, number, element, record):
        count = len(record.nodes)
        corners, midsides = element.nodes[:count], element.nodes[count:]
        require(sorted(corners) == sorted(record.nodes), "element", number, "has other corners")
        ours = area(self.places(record.nodes))
        require(area(self.places(corners)) == abs(ours) or abs(ours) < 1e-6 or
                math.isclose(area(self.places(corners)), abs(ours)), "element", number, "runs clockwise")
        self.turned += ours < 0.0
        round_mesh = {frozenset(p) for p in zip(record.nodes, record.nodes[1:] + record.nodes[:1])}
        round_file = {frozenset(p) for p in zip(corners, corners[1:] + corners[:1])}
        require(round_mesh == round_file, "the corners of element", number, "do not run round")
        require(len(midsides) == len(record.midsides), "element", number, "is of another order")
        behind = dict(zip(map(frozenset, zip(record.nodes, record.nodes[1:] + record.nodes[:1])), record.midsides))
        for a, b, middle in zip(corners, corners[1:] + corners[:1], midsides):
            require(behind[frozenset((a, b))] == middle, "element", number, "has", middle, "between", a, b)
            (xa, ya), (xb, yb), (x, y) = self.places((a, b, middle))
            require(not self.sound or math.hypot(x - (xa + xb) / 2, y - (ya + yb) / 2) <= 0.25 * math.hypot(xb - xa, yb - ya),
                    "node", middle, "does not lie between", a, b)

    def joint(self, number, element, record):
        """Both sides in one direction, twins at their places, the second side on the left."""
        a, b, d, c = element.nodes
        require(sorted(element.nodes) == sorted(record.nodes), "joint", number, "has other nodes")
        round_mesh = [frozenset(p) for p in zip(record.nodes, record.nodes[1:] + record.nodes[:1])]
        for pair in ((a, b), (b, c), (c, d), (d, a)):
            require(frozenset(pair) in round_mesh, "joint", number, "crosses itself")
        if not self.sound:
            return
        pa, pb, pc, pd = self.places((a, b, c, d))
        along = (pb[0] - pa[0]) * (pc[0] - pd[0]) + (pb[1] - pa[1]) * (pc[1] - pd[1])
        require(along > 0.0, "the sides of joint", number, "run against each other")
        length = math.dist(pa, pb)
        if math.dist(pa, pd) + math.dist(pb, pc) > 1e-3 * length:
            require(area([pa, pb, pc, pd]) > 0.0, "joint", number, "has its second side on the right")
            return
        hand = 0
        for one, two, sign in ((a, b, -1), (d, c, 1)):
            for nodes in self.solids_at[frozenset((one, two))]:
                centre = [sum(v) / len(nodes) for v in zip(*self.places(nodes))]
                hand += sign * math.copysign(1, left_of(*self.places((one, two)), centre))
        require(hand >= 0, "joint", number, "has its second side on the right")

    def beam(self, number, element, record):
        require(element.nodes == record.nodes, "element", number, "has other nodes")

    def truss(self, number, element, record):
        self.beam(number, element, record)
        cable = element.type.startswith("GeoCable")
        require(cable == (record.material in self.cables), "truss", number, "is", element.type)

    def materials(self):
        """Each element in the part of its class and material, and lines in one of their lines."""
        wanted = collections.defaultdict(lambda: (set(), set()))
        for number, record in self.mes.elements.items():
            word = {"solid": "material", "truss": "flow_line" if self.mes.flow_lines else "truss"}.get(record.of, record.of)
            nodes, elements = wanted[word, record.material]
            if number in self.mdpa.elements:
                elements.add(number)
                nodes.update(self.mdpa.elements[number].nodes)
            else:
                nodes.update(record.nodes + record.midsides)
        for (word, material), (nodes, elements) in wanted.items():
            name = self.names.get((word, material), f"{word}_{material}")
            part = self.mdpa.parts.get(name)
            require(part and set(part.elements) == elements and set(part.nodes) == nodes, "part", name)
            require(len({self.mdpa.elements[n].properties for n in elements}) <= 1, name, "has several properties")
            if word != "material":
                lines = {n: p for n, p in self.mdpa.parts.items() if re.fullmatch(re.escape(name) + r"_line_\d+", n)}
                self.lines(word, material, lines, nodes, elements)
        used = [self.mdpa.elements[n].properties for n in self.mdpa.elements]
        require(set(used) == self.mdpa.properties, "properties that nothing uses")
        require(len(self.mdpa.properties) == sum(1 for _, elements in wanted.values() if elements),
                "properties that two materials share")

    def lines(self, word, material, lines, nodes, elements):
        """Parts that hang together in themselves, and not with each other."""
        require(sorted(n for part in lines.values() for n in part.nodes) == sorted(nodes), "the lines of", word, material)
        require(sorted(n for part in lines.values() for n in part.elements) == sorted(elements), word, material)
        records = [set(r.nodes) for r in self.mes.elements.values()
                   if r.of == word.replace("flow_line", "truss") and r.material == material]
        for part in lines.values():
            reached, waiting = set(), [part.nodes[0]]
            while waiting:
                node = waiting.pop()
                if node not in reached:
                    reached.add(node)
                    waiting.extend(n for r in records if node in r for n in r)
            require(reached == set(part.nodes), "a line of", word, material, "does not hang together")

    def codes(self):
        fields = CODES[self.mes.kind]
        wanted = collections.defaultdict(set)
        for number, codes in self.mes.codes.items():
            for field, code in zip(fields, codes):
                if code:
                    wanted[f"{field}_{code}"].add(number)
            if len(fields) == 2 and codes[0]:
                wanted["ID_%d_IDF_%d" % tuple(codes)].add(number)
        for name, nodes in wanted.items():
            part = self.mdpa.parts.get(name)
            require(part and set(part.nodes) == nodes and not part.elements, "part", name)
        one = "(%s)_-?\\d+" % "|".join(fields)
        others = [n for n in self.mdpa.parts if re.fullmatch(f"{one}(_{one})?", n) and n not in wanted]
        require(not others, "parts of codes that no node has:", *others)


def is_there(pair, step):
    comes, goes = pair
    return (comes <= 0 or step >= comes) and not (goes > 0 and (step >= goes or comes >= goes))
