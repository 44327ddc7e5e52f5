"use strict";
// A mesh as pages draw it: what its arrays say of nodes and elements, what lies where, and the part in view.
// It stands in DATA, a head in plain words, and in `arrays`; places are relative to DATA.origin, so that the
// finest element of a mesh far away from zero shows.

const arrays = {};

const nodeCount = () => arrays.nodeNumber.length;
const elementCount = () => arrays.elementNumber.length;
const groupOf = (e) => DATA.groups[arrays.elementGroup[e]];
const isLine = (e) => groupOf(e).class === "beam" || groupOf(e).class === "truss";
const X = (n) => arrays.x[n] - DATA.origin[0], Y = (n) => arrays.y[n] - DATA.origin[1];

function corners(e) {
    const list = [];
    for (let k = 4 * e; k < 4 * e + 4; ++k) if (arrays.corners[k] >= 0) list.push(arrays.corners[k]);
    return list;
}

// ---- index by place: a grid of cells with the nodes and elements in them ------------------------

let grid;

function buildGrid() {
    const b = DATA.bounds, n = Math.max(1, elementCount());
    const w = Math.max(b.x[1] - b.x[0], 1e-30), h = Math.max(b.y[1] - b.y[0], 1e-30);
    const lay = (cell) => { grid = { cell, columns: Math.floor(w / cell) + 1, rows: Math.floor(h / cell) + 1 }; };
    lay(Math.max(Math.sqrt(w * h / n) * 1.5, Math.max(w, h) / 2000));
    const box = (e) => {
        let x1 = Infinity, y1 = Infinity, x2 = -Infinity, y2 = -Infinity;
        for (const c of corners(e)) {
            x1 = Math.min(x1, X(c)); x2 = Math.max(x2, X(c));
            y1 = Math.min(y1, Y(c)); y2 = Math.max(y2, Y(c));
        }
        return [column(x1), row(y1), column(x2), row(y2)];
    };
    // Elements across many cells, as only broken meshes have them in number, get larger cells.
    for (let entries = Infinity; entries > 20 * n + 1e6;) {
        entries = 0;
        for (let e = 0; e < elementCount(); ++e) {
            const [c1, r1, c2, r2] = box(e);
            entries += (c2 - c1 + 1) * (r2 - r1 + 1);
        }
        if (entries > 20 * n + 1e6) lay(grid.cell * 2);
    }
    const cells = grid.columns * grid.rows;
    const fill = (count, cellsOf) => {
        const start = new Uint32Array(cells + 1);
        for (let i = 0; i < count; ++i) cellsOf(i, (c) => { ++start[c + 1]; });
        for (let c = 0; c < cells; ++c) start[c + 1] += start[c];
        const next = start.slice(0, cells), items = new Uint32Array(start[cells]);
        for (let i = 0; i < count; ++i) cellsOf(i, (c) => { items[next[c]++] = i; });
        return { start, items };
    };
    grid.elements = fill(elementCount(), (e, use) => {
        const [c1, r1, c2, r2] = box(e);
        for (let c = c1; c <= c2; ++c) for (let r = r1; r <= r2; ++r) use(c * grid.rows + r);
    });
    grid.nodes = fill(nodeCount(), (n, use) => use(column(X(n)) * grid.rows + row(Y(n))));
}

const clamp = (v, low, high) => Math.min(high, Math.max(low, v));
const column = (x) => clamp(Math.floor((x - DATA.bounds.x[0]) / grid.cell), 0, grid.columns - 1) || 0;
const row = (y) => clamp(Math.floor((y - DATA.bounds.y[0]) / grid.cell), 0, grid.rows - 1) || 0;

// Indices of what lies in the cells of a rectangle, each once; null when there are more than `most`.
function inside(list, x1, y1, x2, y2, most) {
    const seen = new Set();
    for (let c = column(x1); c <= column(x2); ++c)
        for (let r = row(y1); r <= row(y2); ++r) {
            const at = c * grid.rows + r;
            for (let k = list.start[at]; k < list.start[at + 1]; ++k) seen.add(list.items[k]);
            if (seen.size > most) return null;
        }
    return [...seen].sort((a, b) => a - b);
}

// ---- elements and what lies at a place ---------------------------------------------------------

// The ends of a beam or truss, and of the middle line of a joint.
function lineOf(e) {
    const c = corners(e);
    if (c.length === 2) return c.map((n) => [X(n), Y(n)]);
    const far = (a, b) => Math.hypot(X(a) - X(b), Y(a) - Y(b)), mid = (a, b) => [(X(a) + X(b)) / 2, (Y(a) + Y(b)) / 2];
    if (c.length === 3) return far(c[0], c[1]) < far(c[1], c[2]) ? [mid(c[0], c[1]), mid(c[2], c[2])] : [mid(c[0], c[0]), mid(c[1], c[2])];
    const across = far(c[0], c[3]) + far(c[1], c[2]), along = far(c[0], c[1]) + far(c[2], c[3]);
    return along < 0.01 * across ? [mid(c[0], c[1]), mid(c[2], c[3])] : [mid(c[0], c[3]), mid(c[1], c[2])];
}

function middle(e) {
    const list = corners(e);
    return [list.reduce((s, n) => s + X(n), 0) / list.length, list.reduce((s, n) => s + Y(n), 0) / list.length];
}

function fromSide(x, y, [ax, ay], [bx, by]) {
    const l2 = (bx - ax) ** 2 + (by - ay) ** 2, t = l2 > 0 ? clamp(((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / l2, 0, 1) : 0;
    return Math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay));
}

function contains(e, x, y) {
    const list = corners(e);
    let inside_ = false;
    for (let i = 0, j = list.length - 1; i < list.length; j = i++) {
        const yi = Y(list[i]), yj = Y(list[j]);
        if ((yi > y) !== (yj > y) && x < (X(list[j]) - X(list[i])) * (y - yi) / (yj - yi) + X(list[i])) inside_ = !inside_;
    }
    return inside_;
}

const distanceToLine = (e, x, y) => fromSide(x, y, ...lineOf(e));

// What lies at a point of the mesh: nodes, then lines and joints, then solids.
function hits(x, y) {
    const reach = 7 / view.scale, list = [];
    for (const n of inside(grid.nodes, x - reach, y - reach, x + reach, y + reach, Infinity)) {
        const far = Math.hypot(X(n) - x, Y(n) - y);
        if (far <= reach) list.push({ type: "node", index: n, order: far / reach });
    }
    for (const e of inside(grid.elements, x - reach, y - reach, x + reach, y + reach, Infinity)) {
        if (!groupOf(e).shown || corners(e).length < 2) continue;
        if (groupOf(e).class !== "solid") {
            const far = distanceToLine(e, x, y);
            if (far <= reach || contains(e, x, y)) list.push({ type: "element", index: e, order: 1 + Math.min(1, far / reach) });
        } else if (contains(e, x, y)) list.push({ type: "element", index: e, order: 3 });
    }
    return list.sort((a, b) => a.order - b.order);
}

// ---- view ---------------------------------------------------------------------------------------

const view = { x: 0, y: 0, scale: 1 };  // mesh point in the middle of the canvas; CSS pixels for a unit of length
let width = 0, height = 0, ratio = 1;

const toScreen = (x, y) => [width / 2 + (x - view.x) * view.scale, height / 2 - (y - view.y) * view.scale];
const toMesh = (sx, sy) => [view.x + (sx - width / 2) / view.scale, view.y - (sy - height / 2) / view.scale];

function fit(window_) {
    const w = Math.max(window_.x[1] - window_.x[0], 1e-30), h = Math.max(window_.y[1] - window_.y[0], 1e-30);
    view.x = (window_.x[0] + window_.x[1]) / 2;
    view.y = (window_.y[0] + window_.y[1]) / 2;
    view.scale = Math.min(width / w, height / h) * 0.92;
    draw();
}

function zoom(factor, sx, sy) {
    const [x, y] = toMesh(sx, sy), extent = Math.max(DATA.bounds.x[1] - DATA.bounds.x[0], DATA.bounds.y[1] - DATA.bounds.y[0], 1e-30);
    view.scale = clamp(view.scale * factor, 20 / extent, 1e7 * Math.max(width, 1) / extent);
    view.x = x - (sx - width / 2) / view.scale;
    view.y = y + (sy - height / 2) / view.scale;
    draw(true);
}
