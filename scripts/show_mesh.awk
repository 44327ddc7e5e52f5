# Shows a mesh file of the displacement kind: its counts, its extent, and a sketch in which each character is the
# material of the continuum element that lies there.
#
#     awk -v width=60 -f tools/show_mesh.awk mesh.Mes

/^\*/ { next }
{ sub(/\r$/, ""); line++ }

/NODAL COORDINATES/ { section = "node"; getline; next }
/CONTINUUM ELEMENT INDEX/ { section = "continuum"; getline; next }
/BEAM ELEMENT|TRUSS ELEMENT/ { section = ""; getline; next }

line == 3 { printf "%d nodes; %d continuum, %d beam and %d truss elements\n", $1, $2, $3, $4 }

section == "node" {
    x[$1] = $7 + 0
    y[$1] = $8 + 0
    if (!nodes++) { left = right = x[$1]; bottom = top = y[$1] }
    if (x[$1] < left) left = x[$1]
    if (x[$1] > right) right = x[$1]
    if (y[$1] < bottom) bottom = y[$1]
    if (y[$1] > top) top = y[$1]
}

section == "continuum" && NF == 12 && $1 > 0 {
    corners[++elements] = $2 " " $3 " " $4 ($5 > 0 ? " " $5 : "")
    material[elements] = $10
}

# True when the point lies on one side of all edges of the element.
function holds(element, px, py,    c, n, i, j, turn, side) {
    n = split(corners[element], c, " ")
    side = 0
    for (i = 1; i <= n; i++) {
        j = i % n + 1
        turn = (x[c[j]] - x[c[i]]) * (py - y[c[i]]) - (y[c[j]] - y[c[i]]) * (px - x[c[i]])
        if (turn * side < 0) return 0
        if (turn != 0) side = turn
    }
    return 1
}

END {
    printf "x from %g to %g, y from %g to %g\n", left, right, bottom, top
    lines = int((top - bottom) / (right - left) * width / 2 + 0.5)  # a character is twice as high as wide
    for (row = 1; row <= lines; row++) {
        py = top - (row - 0.5) * (top - bottom) / lines
        text = "    "
        for (column = 1; column <= width; column++) {
            px = left + (column - 0.5) * (right - left) / width
            for (e = 1; e <= elements && !holds(e, px, py); e++);
            text = text (e <= elements ? material[e] : " ")
        }
        print text
    }
}
