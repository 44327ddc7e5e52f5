"""The boundary file in the second calculation: pipes and convection lines of
the temperature kind, flow sections of the head kind."""

from reference import BEAM, TRUSS, I

NAME = "..\\Boundary.Man"
PIPE, CONVECTION = 2, 3
BAR = "* " + "=" * 52 + "=" * 16


def F103(value):
    return ("%.3f" % value).rjust(10)


def in_tens(values, blanks, width):
    """Whole numbers ten to a line, each behind its blanks.  An empty list
    still takes the line that its layout begins."""
    rows = [values[k:k + 10] for k in range(0, len(values), 10)] or [[]]
    return ["".join(" " * blanks + I(v, width) for v in row) for row in rows]


def fields(*values):
    return "".join("  " + I(v, 5) for v in values)


# --------------------------------------------------------------------------
# Pipes and convection lines
# --------------------------------------------------------------------------


def line_nodes(nodes, code, count):
    """Nodes that belong to one of the lines of a code, ascending."""
    return [(n, node) for n, node in nodes
            if node.codes[0] == code and 1 <= node.codes[2] <= count]


def line_card(run, nodes, code, g):
    """Nodes of line g in their places; takes their codes away."""
    size, first, taken, places = 0, 0, 0, {}
    for n, node in nodes:
        codes = node.codes
        if codes[0] != code or codes[2] != g:
            continue
        if taken == 0:
            size, first = abs(codes[4]), codes[1]
        if taken == size:
            break
        taken += 1
        if 1 <= codes[3] <= size:
            places[codes[3]] = n
        codes[0] = codes[1] = 0
    listing = [places.get(k, 0) for k in range(1, size + 1)]
    name = "pipe" if code == PIPE else "convection line"
    run.note("boundary, %s %s" % (
        name, "without nodes" if size == 0 else "of more than ten"
        if size > 10 else "of ten" if size == 10 else "of fewer than ten"))
    if 0 in listing:
        run.note("boundary, %s with a place left open" % name)
    return size, first, listing


def thermal(run, counters, nodes):
    """Cards 9.1 to 9.3, in front of the mesh file."""
    pipes, convections = counters[BEAM], counters[TRUSS]
    if pipes == 0 and convections == 0:
        return
    properties = sorted({node.codes[1]
                         for _, node in line_nodes(nodes, PIPE, pipes)})
    run.note("boundary, %d pipes" % pipes if pipes < 2
             else "boundary, more pipes")
    run.note("boundary, %d convection lines" % convections if convections < 2
             else "boundary, more convection lines")
    run.note("boundary, %d properties" % len(properties)
             if len(properties) < 2 else "boundary, more properties")
    lines = ["* Card 9.1.1", "* NTNP ", "  " + I(len(properties), 4), "*"]
    for k, value in enumerate(properties, 1):
        lines += ["* Card 9.1.2.1", "* TITLE       ",
                  "  Property No : " + I(k, 3), "* Card 9.1.2.2",
                  "*  MATP       FVOL       SPHL        ROL        HCL",
                  "  " + I(value, 5) + (" " + F103(0.0)) * 4]
    lines += ["* Card 9.2.1", "* NPIPE", fields(pipes), "*"]
    for g in range(1, pipes + 1):
        size, first, listing = line_card(run, nodes, PIPE, g)
        lines += ["* Card 9.2.2.1", "* TITLE       ",
                  "  Group No : " + I(g, 3), "* Card 9.2.2.2-1",
                  "*   IDP   MATP  IDFNP  NODEP",
                  fields(g, first, 0, size), "* Card 9.2.2.2-2",
                  "* Listing of Nodes --- "] + in_tens(listing, 2, 5)
    lines += ["* Card 9.3.1", "* NCONV", fields(convections), "*"]
    for g in range(1, convections + 1):
        size, first, listing = line_card(run, nodes, CONVECTION, g)
        lines += ["* Card 9.3.2.1", "* TITLE       ",
                  "  Group No : " + I(g, 3), "* Card 9.3.2.2-1",
                  "*   IDC  IDFNC  IDFNT  NODEC",
                  fields(g, first, 0, size), "* Card 9.3.2.2-2",
                  "* Listing of Nodes --- "] + in_tens(listing, 2, 5)
    run.disk.put_result(NAME, lines)


# --------------------------------------------------------------------------
# Flow sections
# --------------------------------------------------------------------------


def flow_sections(run, count, trusses, mark_of, title_of):
    """Cards 10.8: the trusses (pairs of nodes, ascending) cut into runs."""
    if count <= 0 or not trusses:
        if count > 0:
            run.note("flow, sections without trusses")
        return
    lines = ["* Card 10.8 ", "* NFSEC   IBFQ", fields(count, 0), "*"]

    def head(section, mark):
        lines.extend(["* ", "* FLOW SECTION" + I(section, 3), BAR,
                      "* " + title_of(mark).ljust(80), BAR, "*"])

    def card(listing):
        lines.extend(["* Card 10.8.1", "* NODES", fields(len(listing)),
                      "* LIST OF NODES"] + in_tens(listing, 1, 6))

    section, listing, mark, previous = 0, [], 0, None
    for i1, i2 in trusses:
        if section > 0 and i1 == previous and mark_of(i1) == mark:
            listing.append(i2)
        else:
            if section > 0:
                run.note("flow, break by mark" if i1 == previous
                         else "flow, break by node")
                if section > count:
                    run.note("flow, run beyond the count")
                card(listing)
            section += 1
            listing, mark = [i1, i2], mark_of(i2)
            if section <= count:
                head(section, mark)
                run.note("flow, title %s" % (
                    "of a group" if title_of(mark).strip() else
                    "blank, mark 0" if mark == 0 else "blank"))
                if mark > 127:
                    run.note("flow, mark beyond 127")
            else:
                run.note("flow, no head")
        previous = i2
    run.note("flow, last run %s" % ("within" if section <= count
                                    else "beyond"))
    if section <= count:
        card(listing)
    run.disk.put_result(NAME, lines)
