"""Output decks of the groups in the second calculation.

From the list of members: activity by element range, materials of their own
for groups, the two fragments of the main file, and the decks of the plotting
tools.
"""

from reference import (BEAM, CONTINUUM, COUPLED, DATA, DISPLACEMENT, E, HEAD,
                       I, TEMPERATURE, TRUSS, Failure, Reader, columns, listed,
                       numbers7, read_element)

POST, MAIN, MATERIALS = "..\\Group.Pos", "..\\Group.Man", "..\\MatAD.Man"
SCRATCH, COPY, MEMBERS = "Group.dat", "TEMPMESH.TMP", "GROUP.TMP"

STARS = "*" * 50
DOUBLE = "*" + "=" * 49
SINGLE = "*" + "-" * 49
SIDES = "*" + " " * 48 + "*"

CLASS_LINE = {CONTINUUM: "* Continuum Element", BEAM: "* Beam Element",
              TRUSS: "* Truss Element"}
CLASSES = (CONTINUUM, BEAM, TRUSS)


def banner(*texts):
    """Seven lines around two texts of 38 columns."""
    return [STARS, SIDES] + ["*         " + t.ljust(39) + "*"
                             for t in texts] + [SIDES, STARS, "*         "]


def fields(*values):
    return "".join("  " + I(v, 5) for v in values)


def trimmed(lines):
    return [line.rstrip(" ") for line in lines]


# --------------------------------------------------------------------------
# Units
# --------------------------------------------------------------------------

FORCE = {1: "N", 2: "KN", 3: "MN", 4: "Kg", 5: "ton", 6: "lb", 7: "Kip"}
LENGTH = {1: "cm", 2: "m", 3: "in", 4: "ft"}
LENGTH_LABEL = {1: "cm  ", 2: " m  ", 3: "in  ", 4: "ft  "}
TIME = {1: "sec", 2: "min", 3: "hr", 4: "day"}
TEMPERATURE_LABEL = {
    TEMPERATURE: {1: "(o C)", 2: "(o F)", 3: "(o R)", 4: "(K)  "},
    HEAD: {1: " cm  ", 2: "  m  ", 3: " in  ", 4: " ft  "}}
STRESS = {(1, 2): "(Pa)", (2, 2): "(KPa)", (3, 2): "(MPa)", (6, 3): "(psi)",
          (6, 4): "(psf)", (7, 3): "(Ksi)", (7, 4): "(Ksf)"}


class Units:
    """Title and labels; a code outside its table leaves blanks."""

    def __init__(self, disk, kind):
        reader = Reader(disk.old(DATA + "UNIT.DAT"))
        reader.skip(4)
        self.title = reader.text(80)
        reader.skip(10)
        force, length, time, _, temperature = reader.reals(5)
        f, l, t = FORCE.get(force), LENGTH.get(length), TIME.get(time)
        self.force = ("(%s)" % f if f else "").ljust(5)
        self.length = LENGTH_LABEL.get(length, "    ")
        self.time = ("(%s)" % t if t else "").ljust(5)
        self.temperature = TEMPERATURE_LABEL.get(kind, {}).get(
            temperature, " " * 5)
        self.stress = self.moment = self.velocity = self.acceleration = ""
        if f and l:
            self.stress = STRESS.get((force, length), "(%s/%s2)" % (f, l))
            self.moment = "(%s-%s)" % (f, l)
        if l and t:
            self.velocity = "(%s/%s)" % (l, t)
            self.acceleration = "(%s/%s2)" % (l, t)
        self.stress = self.stress.ljust(9)
        self.moment = self.moment.ljust(8)
        self.velocity = self.velocity.ljust(9)
        self.acceleration = self.acceleration.ljust(9)


# --------------------------------------------------------------------------
# Activity
# --------------------------------------------------------------------------


def rule(group, c, m):
    """Which of the six pairs an element takes (0: none), by class c and
    material m; and the name of the way that led there."""
    mat, matj = group.whole(1), group.whole(3)
    one, other = (group.whole(6), group.whole(7)), \
        (group.whole(8), group.whole(9))
    mtype = group.mtype

    def line():
        """Line elements of a group that lies on one line."""
        return (4, "line") if (c, m) == one else (0, "line of another sort")

    def joint_lines():
        if (c, m) == one:
            return 5, "inner line"
        if (c, m) == other:
            return 6, "outer line"
        return 0, "line of another sort"

    if mtype == 1:
        return line() if c != CONTINUUM else (0, "continuum")
    if mtype == 2:
        if not any(group.pairs[0] + group.pairs[4] + group.pairs[5]):
            return line()
        return {CONTINUUM: (1, "by class 1"), BEAM: (5, "by class 2"),
                TRUSS: (6, "by class 3")}[c]
    if mtype == 3:
        if c != CONTINUUM:
            return line()
        if mat > 0 and m != mat:
            return 0, "other material"
        return 2, "MAT" if mat > 0 else "any material"
    if mtype == 4:
        if c != CONTINUUM:
            return line()
        return (2, "MAT") if m == mat else (1, "other material")
    if mtype == -2:
        if c != CONTINUUM:
            return joint_lines()
        return (3, "MATj") if m == matj else (1, "other material")
    if mtype == -3:
        if c != CONTINUUM:
            return joint_lines()
        if mat == 0:
            return (3, "no MAT, MATj") if m == matj else (2, "no MAT, other")
        if m == mat:
            return 2, "MAT"
        return (3, "MATj") if m == matj else (0, "other material")
    if mtype == -4:
        if c != CONTINUUM:
            return joint_lines()
        if m == mat:
            return 2, "MAT"
        return (3, "MATj") if m == matj else (1, "other material")
    return 0, "no rule"


# The classes of each section; some leave out what lies on a line or in a strip.
SECTION_CLASSES = {1: CLASSES, 2: (CONTINUUM,), 3: CLASSES, 4: (BEAM,),
                   5: (TRUSS,), 6: (CONTINUUM,)}
INSIDE_OUTLINES = (1, 2, 6)


def refuse(groups, kind, members):
    """No output lists an element of a material below 0."""
    def plotted(group, c, row):
        for n, classes in SECTION_CLASSES.items():
            if c not in classes or (n in INSIDE_OUTLINES and row in (1, 2)) \
                    or (kind == TEMPERATURE and n not in (1, 6)):
                continue
            if group.switches[n - 1] != 0 or n in (4, 5) and not any(
                    other.switches[n - 1] > 0 for other in groups):
                return True
        return False

    for number, material, element, c, row in members:
        group = groups[number - 1]
        if material >= 0 or group.post == 0:
            continue
        k, _ = rule(group, c, material)
        if (k and any(group.pairs[k - 1])) or plotted(group, c, row):
            raise Failure("group %d: element %d of material %d in an output"
                          % (number, element, material))


def ranges(numbers):
    """First and last of each run of consecutive numbers."""
    out = []
    for n in sorted(numbers):
        if out and out[-1][1] == n - 1:
            out[-1][1] = n
        else:
            out.append([n, n])
    return out


class GroupOut:
    """One writing of the output decks."""

    def __init__(self, run, groups, declared, members, highest, node_lists,
                 counts, target, lines):
        """Highest is the highest continuum material of the mesh."""
        self.run, self.disk, self.kind = run, run.disk, run.kind
        self.groups, self.declared = groups, declared
        self.members, self.highest = members, highest
        self.node_lists = node_lists
        self.counts, self.target, self.lines = counts, target, lines
        self.note = run.note

    def trace(self, level, *items):
        if self.run.debug > level:
            self.run.trace_line(listed(*items))

    def write(self):
        """All files; gives the lines of the mesh as they stand then."""
        self.trace(0, " Pass 27.1.1 ")
        self.trace(0, " GROUP_SORT: Beginning NGROUP = ", self.declared)
        self.units = Units(self.disk, self.kind)
        self.activity(self.highest)
        self.post = []
        self.graf_2d()
        self.graf_xy()
        self.disk.put_result(POST, self.post)
        self.disk.delete(MEMBERS)
        self.disk.delete(SCRATCH)
        return self.lines

    # -- groups -----------------------------------------------------------

    def gathered(self, number, wanted):
        """Elements of a group by class and material."""
        found = {}
        if self.groups[number - 1].post == 0:
            return found
        for group, material, element, c, row in self.members:
            if group == number and c in CLASSES and element > 0 and \
                    material != 0 and wanted(c, material, row):
                found.setdefault(c, {}).setdefault(material, set()).add(
                    element)
        return found

    def title_lines(self, number):
        return ["*", DOUBLE, "*", "* Group No = " + I(number, 3),
                "* " + columns(self.groups[number - 1].title, 80), "*"]

    @staticmethod
    def class_lines(c):
        return [SINGLE, "*", CLASS_LINE[c], "*"]

    @staticmethod
    def material_lines(material):
        return [SINGLE, "*", "* Material No = " + I(material, 3), "*"]

    # -- main file ----------------------------------------------------------

    def activity(self, highest):
        with_mch = self.kind == DISPLACEMENT
        first_new = highest + 1
        made, new_of, block, count = [], {}, [], 0
        for number, group in enumerate(self.groups, 1):
            pairs = {}

            def wanted(c, m, _, group=group, pairs=pairs):
                k, way = rule(group, c, m)
                pair = tuple(group.pairs[k - 1]) if k else (0, 0)
                self.note("MTYPE %d, class %d, %s%s" % (
                    group.mtype, c, way,
                    "" if k == 0 or any(pair) else ", zero pair"))
                if not any(pair):
                    return False
                pairs[c, m] = pair
                return True

            found = self.gathered(number, wanted)
            if not found:
                continue
            most = max(m for c in found for m in found[c])
            block += self.title_lines(number)
            for c in sorted(found):
                block += self.class_lines(c)
                for m in sorted(found[c]):
                    nac, ndac = pairs[c, m]
                    if c == CONTINUUM:
                        made.append((m, nac, ndac))
                    block += self.material_lines(m)
                    block.append("*    NEL    NAC   NDAC    MCH" if with_mch
                                 else "*    NEL    NAC   NDAC       ")
                    lines = 0
                    for low, high in ranges(found[c][m]):
                        self.trace(1, " Pass 27.1.2 ", " II = ", c, " K = ",
                                   m, " NSS = ", low, " MAXMC = ", most)
                        for n in (low, high) if high > low else (low,):
                            block.append("  " + I(n, 6) + fields(
                                nac, ndac, *((0,) if with_mch else ())))
                            lines += 1
                        self.note("activity range of one" if low == high
                                  else "activity range of more")
                        if c == CONTINUUM:
                            for n in range(low, high + 1):
                                if n in new_of:
                                    self.note("element of two groups")
                                new_of[n] = first_new + len(made) - 1
                    block += ["* Number of Elements = " + I(lines, 5), "*",
                              "*"]
                    count += lines
        self.trace(1, " Pass 27.1.3 ", " NEWMAT(1261) = ",
                   new_of.get(1261, 0))
        if count == 0:
            self.note("no activity")
            return
        if made:
            self.rewrite(new_of)
        self.materials(first_new, made)
        self.disk.put_result(MAIN, banner("MAIN FILE: ELEMENT ACTIVITY",
                                   "(CARD 8)") +
                      ["* Card 8.1", "*   NFAD", "  " + I(count, 6), "*",
                       "* Card 8.2", "*  KSTEP", "       1", "*"] +
                      trimmed(block))

    def materials(self, first_new, made):
        head = self.run.edition == 1
        lines = []
        if made:
            lines.append("* Continuum Materials To Be Added")
            lines += ["* Card 5.3.2.1", "* MATNO  MODEL  GAMAW  MATNP"] \
                if head else ["* Card 5.3.2.0", "* MATNO  MATNP"]
            for k, (old, _, _) in enumerate(made):
                lines.append(fields(first_new + k, 0, 0, old) if head
                             else fields(first_new + k, old))
            lines.append("*")
        lines += ["* Main File: Material Activity", "* Card 8.1",
                  "*  NFAD  MCFAD  MBFAD  MTFAD",
                  fields(len(made), len(made), 0, 0), "* Card 8.2",
                  "* KSTEP ", "      1 "]
        if made:
            lines += ["* Continuum Element",
                      "*   MAT    NAC   NDAC" + ("    MCH" if head else "")]
            for k, (_, nac, ndac) in enumerate(made):
                lines.append(fields(first_new + k, nac, ndac,
                                    *((0,) if head else ())))
        lines.append("* End Of Data ")
        self.note("main file with materials" if made
                  else "main file without materials")
        self.disk.put_result(MATERIALS, lines)

    def rewrite(self, new_of):
        """The mesh once more, with the materials of the groups."""
        self.trace(1, " Pass 27.1.4 IPROGM = ", self.run.edition)
        copied = trimmed(self.lines)
        self.disk.put(COPY, copied)
        self.trace(1, " Pass 27.1.5 ")
        numnp, ncont, nbeam, ntrus = self.counts
        head = numnp + 7
        out = copied[:head]
        self.trace(1, " Pass 27.1.6 ")
        reader = Reader(copied[head:])
        for k in range(1, ncont + 1):
            number, element = read_element(self.kind, CONTINUUM, reader)
            self.trace(1, " Pass 27.1.7 ", " I = ", k, " N = ", number,
                       " NEWMAT(I) = ", new_of.get(k, 0), " NEWMAT(N) = ",
                       new_of.get(number, 0))
            w, a = element.words, element.attributes
            material = new_of.get(number, 0) or w[8]
            if self.kind == COUPLED:
                out.append(numbers7([number] + w[:8]) + I(material, 5) +
                           I(a[0], 3) + I(a[1], 3) + I(a[2], 5) +
                           I(a[3], 5) + E(a[4], 11, 4))
            elif self.kind == DISPLACEMENT:
                out.append(numbers7([number] + w[:8]) + I(material, 5) +
                           E(a[0], 11, 3) + E(a[1], 11, 3))
            else:
                out.append(numbers7([number] + w[:4] + [material] + a[:1]))
        self.trace(1, " Pass 27.1.8 ", " NBEAMA= ", nbeam, " NNBEAMA= ",
                   nbeam, " NTRUSA = ", ntrus)
        for count in (nbeam, ntrus):
            if count > 0:
                out += [reader.line(), reader.line()]
                for _ in range(count):
                    out.append(numbers7(reader.integers(5)))
        out += reader.lines[reader.at:]
        self.lines = out
        self.disk.put_result(self.target, out)

    # -- GRAF-2D ------------------------------------------------------------

    def put(self, *lines):
        self.post.extend(lines)

    def wants(self, nptype):
        """The condition of a section on a group, as a function of it."""
        def word(group):
            return group.switches[nptype - 1]

        if nptype not in (4, 5):
            return lambda group: word(group) != 0
        if any(word(group) > 0 for group in self.groups):
            self.note("section %d by switches" % nptype)
            return lambda group: word(group) != 0
        self.note("section %d with all" % nptype)
        return lambda group: True

    def section(self, nptype, heading, range_lines):
        """Blocks of a section and the count of their ranges."""
        classes = SECTION_CLASSES[nptype]
        outlines = nptype in INSIDE_OUTLINES
        marked = self.wants(nptype)
        block, total = [], 0
        for number, group in enumerate(self.groups, 1):
            if not marked(group):
                continue
            found = self.gathered(
                number, lambda c, m, row: c in classes and
                not (outlines and row in (1, 2)))
            if not found:
                continue
            block += self.title_lines(number)
            for c in sorted(found):
                block += self.class_lines(c)
                for m in sorted(found[c]):
                    block += self.material_lines(m) + heading
                    runs = ranges(found[c][m])
                    for low, high in runs:
                        block += range_lines(low, high)
                        if low >= 10000 and nptype == 3:
                            self.note("stars in section 3")
                    block += ["* Number of Element Groups = " +
                              I(len(runs), 3), "*", "*"]
                    total += len(runs)
                    self.note("section %d, class %d" % (nptype, c))
        self.note("section %d %s ranges" % (nptype, "with" if total
                                            else "without"))
        return total, trimmed(block) if total else []

    def head(self, nptype, card, stepped=True):
        """Cards of a section from 11.1 to the times of the picture."""
        self.put("* Card 11.1  ", "*  NPTYPE    ", "    %d        " % nptype,
                 "* Card %s.1" % card, "*  TITLE     ", self.units.title,
                 "* Card %s.2" % card, "*  IUNIT     ", "    4        ",
                 "* Card %s.4" % card)
        if stepped:
            self.put("*  NLTIME  TIMEref", "    1       0.0   ",
                     "*  TIME1  TIME2  TIME3  TIME4  TIME5  TIME6  TIME7",
                     "    1.0           ")

    def section_banner(self, nptype, card):
        self.put(*banner("POST FILE: GRAF-2D PLOT",
                         "NPTYPE = %d (CARD %s)" % (nptype, card)))

    def node_list(self, card, inner):
        chosen = [(number, self.node_lists.get(number, []))
                  for number, group in enumerate(self.groups, 1)
                  if group.post != 0 and group.switches[6] != 0 and
                  self.node_lists.get(number)]
        self.put(card, "*   NRL      ", fields(len(chosen)))
        self.note("node lists" if chosen else "no node list")
        for number, nodes in chosen:
            self.put(*self.title_lines(number))
            self.put("* Number of Nodes = " + I(len(nodes), 4), "*", inner,
                     "* NODE1  NODE2  NODE3  NODE4  NODE5")
            for k in range(0, len(nodes), 5):
                self.put(numbers7(nodes[k:k + 5]))

    def graf_2d(self):
        elements = ["*    NSS    NEE    NIC    NNN"]

        def whole(low, high):
            return [" " + fields(low, high - low + 1, 1, 1)]

        self.section_banner(1, "11.2")
        total, block = self.section(1, elements, whole)
        self.head(1, "11.2", stepped=False)
        self.put("*  IMODE     ", "    1        ", "* Card 11.2.5",
                 "*  NGROUP    ", "  " + I(total, 6), "*", *block)
        if self.kind != TEMPERATURE:
            self.section_banner(2, "11.3")
            total, block = self.section(2, elements, whole)
            self.head(2, "11.3")
            self.put("* Card 11.3.5",
                     "*  NGROUP  IAVG  ISCRIN  IMESH  IPSTRS",
                     "   " + I(total, 5) + "   1     0       0      0", "*",
                     *block)
            self.node_list("* Card 11.3.7", "* Card 11.3.8")
            self.displaced()
            self.lines_section(4, "11.5", MOMENTS,
                               ["*  NBLIST", "*      0 ", "*  NFBEAM NLBEAM"])
            self.lines_section(5, "11.6", AXIAL,
                               ["*  NTLIST", "*      0 ", "*  NFTRUS NLTRUS"])
        self.section_banner(6, "11.7")
        total, block = self.section(6, elements, whole)
        if self.kind == TEMPERATURE:
            self.head(2, "11.3")
            self.put(*TEMPERATURES)
        else:
            self.head(6, "11.7")
            self.put("* Card 11.7.5", "*  NCTS", "*  ----", "*")
            for name, number in CONTOURS:
                self.put("*  " + name.ljust(30),
                         "    %d" % number if number == 26
                         else "*   %d" % number)
        self.put("* Card 11.7.6", "*  DELTA   IRES  IRGP  IENL  RX      RY",
                 "     0.00  0     0     0       0.00    0.00",
                 "* Card 11.7.7", "*  NGROUP", "   " + I(total, 5), *block)
        self.node_list("* Card 11.7.9", "* Card 11.7.10")
        self.end("* For End of GRAF-2D   ", "* Card 11.1            ",
                 "*  NPTYPE              ")

    def end(self, *texts):
        what, card, code = texts
        star = "*".ljust(23)
        self.put(star, DOUBLE, star, star, what, star, card, code,
                 "    0                  ", star)

    def displaced(self):
        """Section 3: each range once for every kind of displacement."""
        def shapes(low, length):
            out = []
            for code in (0, 1, 2):
                out += [" " + fields(1, code),
                        " " + fields(-low, 1, length, 1, 1)]
            return out

        self.section_banner(3, "11.4")
        total, block = self.section(
            3, ["*      1  IDISP ", "*    NSR    JCR    NJR    ICR    NIR"],
            lambda low, high: shapes(low, high - low + 1))
        self.head(3, "11.4")
        self.put("*")
        if total == 0:
            before = 0
            for c, count in zip(CLASSES, self.counts[1:]):
                if count > 0:
                    self.put(CLASS_LINE[c], *shapes(before + 1, count))
                    self.note("default list, class %d" % c)
                before += count
        else:
            self.put(*block)
        self.put("* For End of Plot", "*  0,    0       ",
                 "   0,    0       ")

    def lines_section(self, nptype, card, table, heading):
        self.section_banner(nptype, card)
        total, block = self.section(
            nptype, heading,
            lambda low, high: [" " + fields(0), " " + fields(low, high)])
        self.head(nptype, card)
        self.put(*table)
        self.put("* Card %s.6" % card, "*  NTGROUP", "   " + I(total, 5),
                 *block)
        self.node_list("* Card %s.8" % card, "* Card %s.9" % card)

    # -- GRAF-XY ------------------------------------------------------------

    def graf_xy(self):
        u = self.units
        time = " Time " + u.time
        self.put(*banner("POST FILE: GRAF-XY PLOT", "IPTYPE = 1 (CARD 12.2)"))
        if self.kind == TEMPERATURE:
            self.history(1, TEMPERATURE_PAIRS,
                         ["*  TMFAC  TPFAC", "    1.0    1.0"],
                         " Temperature" + u.temperature)
        else:
            plain, percent = (["*  TMFAC  STFAC  SNFAC", line] for line in
                              ("    1.0    1.0    1.0",
                               "    1.0    1.0    100."))
            for pairs, factors, label in (
                    (STRESS_PAIRS, plain, " Stress " + u.stress),
                    (STRAIN_PAIRS, percent, " Strain (%)"),
                    (FORCE_PAIRS, plain, " Force " + u.force),
                    (MOMENT_PAIRS, plain, " Moment " + u.moment)):
                self.history(1, pairs, factors, label)
            both = "*  ELEMENT1  ELEMENT2", "    1         2"
            label = " Stress " + u.stress
            text = " Mean & Pore Fluid Pressure: Element %d"
            self.two_plots(1, 0, both, ["    1    8", "    1    9"], plain,
                           [(text % k, time, label) for k in (1, 2)])
            self.two_plots(1, 1, both, ["    8   14"], plain,
                           [(" Stress Path for Elements 1 and 2",
                             " Effective Mean Pressure " + u.stress,
                             " Deviatoric Stress " + u.stress)])
        self.put(*banner("POST FILE: GRAF-XY PLOT", "IPTYPE = 2 (CARD 12.3)"))
        simple = ["*  TMFAC  TPFAC", "    1.0    1.0"]
        node = ["*  TMFAC  SND  SNV  SNA  NC  ANGLE",
                "    1.0   1.0  1.0  1.0  0   0.0"]
        if self.kind == TEMPERATURE:
            self.history(2, [(None, [("TEMPERATURE", 31)])], simple,
                         " Temperature  " + u.temperature, active=False)
        elif self.kind == HEAD:
            self.history(2, [(None, [("TOTAL HEAD", 41)])], simple,
                         " Total Head   " + u.temperature, active=False)
        else:
            displacement = " Displacement " + u.length
            self.history(2, DISPLACEMENT_PAIRS, node, displacement)
            self.history(2, VELOCITY_PAIRS, node, " Velocity " + u.velocity,
                         factor_card=False)
            self.history(2, ACCELERATION_PAIRS, node,
                         " Acceleration " + u.acceleration)
            both = "*  NODE1  NODE2", "    1      2"
            pairs = ["    1    2", "    1    3"]
            for plot, texts in (
                    (0, (" Hor. & Ver. Displacement: Node 1",
                         " Hor. & Ver. Displacement: Node 2")),
                    (1, (" Horizontal Displacement: Node 1 & 2",
                         " Vertical Displacement: Node 1 & 2"))):
                self.two_plots(2, plot, both, pairs, node,
                               [(t, time, displacement) for t in texts])
        self.end("* For End of GRAF-XY   ", "* Card 12.1            ",
                 "*  IPTYPE              ")

    def wide(self, *lines):
        self.put(*(line.ljust(40) for line in lines))

    def frame(self, iptype, plot, count, names, quantities):
        """Cards 12.1 to the last but one before the pairs."""
        card = "* Card 12.%d." % (iptype + 1)
        what = "ELEMENTS" if iptype == 1 else "NODES"
        self.wide("*", "* Card 12.1", "*  IPTYPE", "    %d" % iptype,
                  card + "1", "*  IPLOT", "    %d" % plot,
                  card + "2", "*  NUMBER OF " + what, "    %d" % count,
                  card + "3", *names)
        self.wide(card + "4", "*  NDPQ", "    %d" % quantities, card + "5")
        return card

    def plot(self, card, title, x_label, y_label):
        self.wide(card + "7")
        self.put(SINGLE)
        self.wide("*  TITLE")
        self.put(title)
        self.wide("*  X - LABEL")
        self.put(x_label)
        self.wide("*  Y - LABEL")
        self.put(y_label, DOUBLE)

    def history(self, iptype, groups, factors, y_label, active=True,
                factor_card=True):
        name = "*  ELEMENT" if iptype == 1 else "*  NODE"
        card = self.frame(iptype, 0, 1, (name, "    1"), 1)
        self.wide("*  Kx        Ky", "*  --        --")
        for title, pairs in groups:
            if title:
                self.wide("*", "*  [%s]" % title, "*")
            for quantity, number in pairs:
                self.wide("*  TIME      " + quantity,
                          ("   " if active else "*  ") +
                          "1         %d" % number)
                active = False
        if factor_card:
            self.wide(card + "6")
        self.wide(*factors)
        self.plot(card, self.units.title, " Time " + self.units.time,
                  y_label)

    def two_plots(self, iptype, plot, names, pairs, factors, plots):
        card = self.frame(iptype, plot, 2, names, len(pairs))
        self.wide("*  Kx   Ky", *pairs)
        self.wide(card + "6", *factors)
        for title, x_label, y_label in plots:
            self.plot(card, title.ljust(40), x_label, y_label)


# --------------------------------------------------------------------------
# Texts
# --------------------------------------------------------------------------

MOMENTS = [line.ljust(32) for line in (
    "* Card 11.5.5", "*  NBTS", "*  ----", "*", "*  BENDING MOMENT", "    1",
    "*  THRUST", "*   2", "*  SHEAR", "*   3", "*  INNER EXTREME FIBER STRESS",
    "*   4", "*  OUTER EXTREME FIBER STRESS", "*   5",
    "*  INNER EXTREME FIBER STRAIN", "*   6", "*  OUTER EXTREME FIBER STRAIN",
    "*   7", "*  INNER REINFORCING BAR STRESS", "*   8",
    "*  OUTER REINFORCING BAR STRESS", "*   9")]

AXIAL = [line.ljust(16) for line in (
    "* Card 11.6.5", "*  NTTS", "*  ----", "*", "*  AXIAL FORCE", "    1",
    "*  AXIAL STRESS", "*   2", "*  AXIAL STRAIN", "*   3")]

TEMPERATURES = [line.ljust(33) for line in (
    "* Card 11.3.5", "*  NCTS", "*  ----", "*  Temperature Distribution",
    "    31")]

CONTOURS = tuple(zip((
    "Normal XX Stress", "Normal YY Stress", "Normal ZZ Stress",
    "Shear XY Stress", "Shear YZ Stress", "Shear XZ Stress", "Mean Pressure",
    "Fluid Pressure", "Normal XX Total Stress", "Normal YY Total Stress",
    "Normal ZZ Total Stress", "Total Mean Pressure", "Deviatoric Stress",
    "Normal XX Strain", "Normal YY Strain", "Normal ZZ Strain",
    "Shear XY Strain", "Shear YZ Strain", "Shear XZ Strain",
    "Volumetric Strain", "Octahedral Shear Strain",
    "Octahedral Shear Stress", "Safety Factor", "Yield Flag",
    "Major Principal Stress", "Intermediate Principal Stress",
    "Minor Principal Stress", "Safety Factor"), range(2, 30)))

TEMPERATURE_PAIRS = [("Continuum Element", [("TEMPERATURE", 31)])]

STRESS_PAIRS = [
    ("Continuum Element",
     [("STRESS-XX", 2), ("STRESS-YY", 3), ("STRESS-ZZ", 4), ("STRESS-XY", 5),
      ("STRESS-YZ", 6), ("STRESS-XZ", 7), ("PRESSURE", 8), ("FLUID-PRES", 9),
      ("TSTRESS-XX", 10), ("TSTRESS-YY", 11), ("TSTRESS-ZZ", 12),
      ("TPRESSURE", 13), ("D.STRES(Q)", 14), ("TAU-COT.", 23),
      ("STRESS-1", 26), ("STRESS-2", 27), ("STRESS-3", 28)]),
    ("Beam Element", [("STRESS-FT", 42), ("STRESS-RT", 44),
                      ("STRESS-RB", 46), ("STRESS-FB", 48)]),
    ("Truss Element", [("STRESS-XX", 62)])]

STRAIN_PAIRS = [
    ("Continuum Element",
     [("STRAIN-XX", 15), ("STRAIN-YY", 16), ("STRAIN-ZZ", 17),
      ("STRAIN-XY", 18), ("STRAIN-YZ", 19), ("STRAIN-XZ", 20),
      ("VOL-STRAIN", 21), ("GAMMA-OCT.", 22)]),
    ("Beam Element", [("STRAIN-FT", 41), ("STRAIN-RT", 43),
                      ("STRAIN-RB", 45), ("STRAIN-FB", 47)]),
    ("Truss Element", [("STRAIN-XX", 63)])]

FORCE_PAIRS = [("Beam Element", [("THRUST", 35), ("SHEAR-Y", 36)]),
               ("Truss Element", [("FORCE-XX", 61)])]

MOMENT_PAIRS = [("Beam Element", [("MOMENT-Z", 40)])]

DISPLACEMENT_PAIRS = [
    ("Skeleton Displacement", [("X-DIS.", 2), ("Y-DIS.", 3), ("Z-DIS.", 4)]),
    ("Relative Fluid Displacement",
     [("R.FL.X-DIS", 11), ("R.FL.Y-DIS", 12), ("R.FL.Z-DIS", 13)])]

VELOCITY_PAIRS = [
    ("Skeleton Velocity", [("X-VEL.", 5), ("Y-VEL.", 6), ("Z-VEL.", 7)]),
    ("Relative Fluid Velocity",
     [("R.FL.X-VEL", 14), ("R.FL.Y-VEL", 15), ("R.FL.Z-VEL", 16)])]

ACCELERATION_PAIRS = [
    ("Skeleton Acceleration",
     [("X-ACC.", 8), ("Y-ACC.", 9), ("Z-ACC.", 10)]),
    ("Relative Fluid Acceleration",
     [("R.FL.X-ACC", 17), ("R.FL.Y-ACC", 18), ("R.FL.Z-ACC", 19)])]
