"use strict";
// The mesh stands in DATA: a head in plain words and the arrays as one compressed block. What is drawn is
// relative to DATA.origin, so that the finest element of a mesh far away from zero shows.

const el = (id) => document.getElementById(id);
const canvas = el("canvas"), ctx = canvas.getContext("2d");
const DETAIL = 4000;   // elements in view up to which each is drawn by itself
const NUMBERS = 1500;  // numbers in view up to which they are shown
const SLOW = 40;       // milliseconds of drawing from which sides of elements wait for the end of a movement

// ---- data ---------------------------------------------------------------------------------------

const arrays = {};

async function unpack() {
    const text = atob(DATA.arrays.base64), bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate"));
    const buffer = await new Response(stream).arrayBuffer();
    const types = { i32: Int32Array, f32: Float32Array, u32: Uint32Array };
    for (const a of DATA.arrays.list) arrays[a.name] = new types[a.type](buffer, a.offset, a.count);
}

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

function resize() {
    const box = canvas.getBoundingClientRect();
    ratio = window.devicePixelRatio || 1;
    width = box.width;
    height = box.height;
    canvas.width = Math.round(width * ratio);
    canvas.height = Math.round(height * ratio);
}

// ---- layers -------------------------------------------------------------------------------------

const shown = { sides: true, codes: true, nodeNumbers: false, elementNumbers: false, deck: true, faults: true };
const shows = (group) => DATA.groups[group].shown;

function layerRow(text, on, change, swatch, count) {
    const row_ = document.createElement("label"), box = document.createElement("input"), sample = document.createElement("span");
    row_.className = "layer";
    box.type = "checkbox";
    box.checked = on;
    box.addEventListener("change", () => { change(box.checked); draw(); });
    sample.className = "swatch" + (swatch && swatch.line ? " line " + swatch.line : "");
    if (swatch) sample.style[swatch.line ? "borderTopColor" : "background"] = swatch.color;
    else sample.style.visibility = "hidden";
    row_.append(box, sample, text);
    if (count !== undefined) {
        const number = document.createElement("span");
        number.className = "count";
        number.textContent = count;
        row_.append(number);
    }
    el("layers").append(row_);
    return box;
}

function buildLayers() {
    DATA.groups.forEach((group) => {
        group.shown = true;
        layerRow(group.name, true, (on) => { group.shown = on; }, { color: group.color, line: group.class === "solid" ? "" : group.class }, group.count);
    });
    const add = (key, text, swatch, count) => layerRow(text, shown[key], (on) => { shown[key] = on; }, swatch, count);
    add("sides", "sides of elements");
    add("codes", "node codes", { color: DATA.colors.code });
    add("nodeNumbers", "node numbers");
    add("elementNumbers", "element numbers");
    if (DATA.shapes.length > 0) add("deck", "outlines of the deck", { color: DATA.colors.shape, line: "outline" }, DATA.shapes.length);
    for (const shape of DATA.shapes) {
        if (shape.number === 0) continue;
        const title = document.createElement("div"), mark = document.createElement("span");
        title.className = "title";
        mark.className = "mark";
        mark.textContent = shape.number;
        mark.style.color = DATA.colors.shape;
        title.append(mark, shape.title);
        el("layers").append(title);
    }
    if (DATA.faults.length > 0) add("faults", "unsound places", { color: DATA.colors.fault },
        DATA.faults.length < DATA.faultCount ? `${DATA.faults.length} of ${DATA.faultCount}` : DATA.faultCount);
}
