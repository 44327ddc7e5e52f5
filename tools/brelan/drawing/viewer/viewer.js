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
    sample.className = "swatch" + (swatch && swatch.line ? " line" : "");
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
        layerRow(group.name, true, (on) => { group.shown = on; }, { color: group.color, line: group.class !== "solid" }, group.count);
    });
    const add = (key, text, swatch, count) => layerRow(text, shown[key], (on) => { shown[key] = on; }, swatch, count);
    add("sides", "sides of elements");
    add("codes", "node codes", { color: DATA.colors.code });
    add("nodeNumbers", "node numbers");
    add("elementNumbers", "element numbers");
    if (DATA.shapes.length > 0) add("deck", "outlines of the deck", { color: DATA.colors.shape, line: true }, DATA.shapes.length);
    if (DATA.faults.length > 0) add("faults", "unsound places", { color: DATA.colors.fault }, DATA.faults.length);
}

// ---- drawing ------------------------------------------------------------------------------------

const paths = { regions: [], over: [], sides: null };  // doubles are drawn over the others, hatched

function buildPaths() {
    const polylines = (name, closed) => {
        const path = new Path2D(), points = arrays[name + "Points"], ends = arrays[name + "Ends"];
        let k = 0;
        for (const end of ends) {
            for (let first = true; k < end; ++k, first = false)
                first ? path.moveTo(points[2 * k], points[2 * k + 1]) : path.lineTo(points[2 * k], points[2 * k + 1]);
            if (closed) path.closePath();
        }
        return path;
    };
    DATA.groups.forEach((group, g) => {
        const solid = group.class === "solid";
        paths.regions[g] = solid ? polylines("region" + g, true) : null;
        paths.over[g] = solid && arrays["over" + g + "Ends"].length > 0 ? polylines("over" + g, true) : null;
        group.hatching = hatching(group.color);
    });
    paths.sides = polylines("sides", false);
}

// Slanted stripes of a colour, 8 pixels apart whatever the zoom.
function hatching(color) {
    const tile = document.createElement("canvas"), size = 11;
    tile.width = tile.height = size;
    const c = tile.getContext("2d");
    c.strokeStyle = color;
    c.lineWidth = 4;
    c.beginPath();
    for (const d of [-size, 0, size]) { c.moveTo(d - 1, size + 1); c.lineTo(d + size + 1, -1); }
    c.stroke();
    return ctx.createPattern(tile, "repeat");
}

const meshTransform = () => ctx.setTransform(ratio * view.scale, 0, 0, -ratio * view.scale,
    ratio * (width / 2 - view.x * view.scale), ratio * (height / 2 + view.y * view.scale));
const screenTransform = () => ctx.setTransform(ratio, 0, 0, ratio, 0, 0);

const stats = { milliseconds: 0, detailed: false, drawn: 0 };
let pending = 0, settled = 0, slowSides = false;

// Draws at the next frame. While the view moves, sides that take long are left out and follow when it rests.
function draw(moving) {
    const full = !moving || !slowSides;
    clearTimeout(settled);
    if (!full) settled = setTimeout(() => draw(), 150);
    if (pending) cancelAnimationFrame(pending);
    pending = requestAnimationFrame(() => { pending = 0; paint(full); });
}

function paint(full) {
    const begun = performance.now();
    screenTransform();
    ctx.fillStyle = "#fff";
    ctx.fillRect(0, 0, width, height);
    ctx.lineJoin = ctx.lineCap = "round";
    const [x1, y2] = toMesh(0, 0), [x2, y1] = toMesh(width, height);
    const near = inside(grid.elements, x1, y1, x2, y2, DETAIL);
    stats.detailed = near !== null;
    const before = performance.now();
    near ? paintElements(near) : paintRegions(full);
    if (!near && full) slowSides = performance.now() - before > SLOW;
    paintLineElements(near);
    if (shown.codes) paintCodes(x1, y1, x2, y2);
    if (shown.deck) paintShapes();
    if (shown.faults) paintFaults();
    paintNumbers(near, x1, y1, x2, y2);
    paintSelection();
    paintScale();
    stats.milliseconds = performance.now() - begun;
    stats.drawn += 1;
}

function paintRegions(full) {
    meshTransform();
    DATA.groups.forEach((group, g) => {
        if (!group.shown || !paths.regions[g]) return;
        ctx.fillStyle = group.color;
        ctx.fill(paths.regions[g], "nonzero");
    });
    DATA.groups.forEach((group, g) => {
        if (!group.shown || !paths.over[g]) return;
        group.hatching.setTransform(new DOMMatrix([1 / view.scale, 0, 0, -1 / view.scale, 0, 0]));
        ctx.fillStyle = group.hatching;
        ctx.fill(paths.over[g], "nonzero");
    });
    const side = DATA.meanSide * view.scale;
    if (shown.sides && full && side >= 1.5) {
        ctx.strokeStyle = DATA.colors.side;
        ctx.globalAlpha = 0.35 + 0.65 * Math.min(1, side / 10);
        ctx.lineWidth = (0.25 + 0.45 * Math.min(1, side / 10)) / view.scale;
        ctx.stroke(paths.sides);
        ctx.globalAlpha = 1;
    }
    ctx.strokeStyle = DATA.colors.region;
    ctx.lineWidth = 1.1 / view.scale;
    DATA.groups.forEach((group, g) => {
        if (group.shown && paths.regions[g]) ctx.stroke(paths.regions[g]);
        if (group.shown && paths.over[g]) ctx.stroke(paths.over[g]);
    });
}

function trace(e) {
    const list = corners(e);
    list.forEach((c, k) => { const [x, y] = toScreen(X(c), Y(c)); k === 0 ? ctx.moveTo(x, y) : ctx.lineTo(x, y); });
    if (list.length > 2) ctx.closePath();
}

function paintElements(near) {
    screenTransform();
    for (const over of [0, 1]) for (const e of near) {
        if (groupOf(e).class !== "solid" || !groupOf(e).shown || arrays.over[e] !== over) continue;
        ctx.beginPath();
        trace(e);
        if (over) groupOf(e).hatching.setTransform(new DOMMatrix());
        ctx.fillStyle = over ? groupOf(e).hatching : groupOf(e).color;
        ctx.fill();
        if (shown.sides) {
            ctx.strokeStyle = DATA.colors.side;
            ctx.lineWidth = 0.7;
            ctx.stroke();
        }
    }
}

// Joints, beams and trusses: those in view, or all of them.
function paintLineElements(near) {
    screenTransform();
    DATA.groups.forEach((group, g) => {
        if (!group.shown || group.class === "solid") return;
        const list = near ? near.filter((e) => arrays.elementGroup[e] === g) : group.elements;
        if (list.length === 0) return;
        const stroke = (color, width_, dash) => { ctx.strokeStyle = color; ctx.lineWidth = width_; ctx.setLineDash(dash); ctx.stroke(); ctx.setLineDash([]); };
        if (group.class === "joint") {
            ctx.beginPath();
            for (const e of list) trace(e);
            ctx.fillStyle = group.color;
            ctx.fill();
        }
        ctx.beginPath();
        for (const e of list) {
            const [a, b] = lineOf(e);
            ctx.moveTo(...toScreen(...a));
            ctx.lineTo(...toScreen(...b));
        }
        if (group.class === "joint") { stroke(group.color, 6, []); stroke("#fff", 1.6, []); }
        else if (group.class === "beam") stroke(group.color, 3, []);
        else {
            stroke(group.color, 2.2, [9, 4]);
            ctx.fillStyle = group.color;
            for (const e of list) for (const c of corners(e)) dot(...toScreen(X(c), Y(c)), 2.5);
        }
    });
}

// The ends of a beam or truss, and of the middle line of a joint.
function lineOf(e) {
    const c = corners(e);
    if (c.length === 2) return c.map((n) => [X(n), Y(n)]);
    const far = (a, b) => Math.hypot(X(a) - X(b), Y(a) - Y(b)), mid = (a, b) => [(X(a) + X(b)) / 2, (Y(a) + Y(b)) / 2];
    if (c.length === 3) return far(c[0], c[1]) < far(c[1], c[2]) ? [mid(c[0], c[1]), mid(c[2], c[2])] : [mid(c[0], c[0]), mid(c[1], c[2])];
    const across = far(c[0], c[3]) + far(c[1], c[2]), along = far(c[0], c[1]) + far(c[2], c[3]);
    return along < 0.01 * across ? [mid(c[0], c[1]), mid(c[2], c[3])] : [mid(c[0], c[3]), mid(c[1], c[2])];
}

function dot(x, y, radius) { ctx.beginPath(); ctx.arc(x, y, radius, 0, 2 * Math.PI); ctx.fill(); }

function paintCodes(x1, y1, x2, y2) {
    const taken = new Set(), b = DATA.bounds, [mx] = toScreen((b.x[0] + b.x[1]) / 2, 0), s = 7;
    screenTransform();
    for (const n of DATA.coded) {
        if (X(n) < x1 || X(n) > x2 || Y(n) < y1 || Y(n) > y2) continue;
        const [x, y] = toScreen(X(n), Y(n));
        DATA.codes.forEach((code, k) => {
            const value = arrays["code" + k][n];
            if (value === 0 || !code.symbol) return;
            const key = code.symbol + ":" + Math.round(x / 6) + ":" + Math.round(y / 6);
            if (taken.has(key)) return;
            taken.add(key);
            ctx.fillStyle = ctx.strokeStyle = code.symbol === "ring" || code.symbol === "square" ? DATA.colors.code2 : DATA.colors.code;
            ctx.lineWidth = 1.4;
            if (code.symbol === "x") { const d = x < mx ? -s : s; triangle(x, y, x + d, y - s / 2, x + d, y + s / 2); }
            else if (code.symbol === "y") { const d = Y(n) >= b.y[1] && b.y[1] > b.y[0] ? -s : s; triangle(x, y, x - s / 2, y + d, x + s / 2, y + d); }
            else if (code.symbol === "disc") dot(x, y, 3.2);
            else if (code.symbol === "ring") { ctx.beginPath(); ctx.arc(x, y, 3.5, 0, 2 * Math.PI); ctx.stroke(); }
            else ctx.strokeRect(x - 4, y - 4, 8, 8);
        });
    }
}

function triangle(ax, ay, bx, by, cx, cy) { ctx.beginPath(); ctx.moveTo(ax, ay); ctx.lineTo(bx, by); ctx.lineTo(cx, cy); ctx.closePath(); ctx.fill(); }

function label(text, x, y, color) {
    ctx.lineWidth = 3;
    ctx.strokeStyle = "#fff";
    ctx.strokeText(text, x, y);
    ctx.fillStyle = color;
    ctx.fillText(text, x, y);
}

function paintShapes() {
    screenTransform();
    ctx.font = "bold 12px Helvetica, Arial, sans-serif";
    const boxes = [];
    for (const shape of DATA.shapes) {
        ctx.beginPath();
        shape.points.forEach(([x, y], k) => { const p = toScreen(x, y); k === 0 ? ctx.moveTo(...p) : ctx.lineTo(...p); });
        if (shape.closed) ctx.closePath();
        ctx.strokeStyle = DATA.colors.shape;
        ctx.lineWidth = 1.8;
        ctx.setLineDash(shape.dash);
        ctx.stroke();
        ctx.setLineDash([]);
        if (!shape.title || shape.points.length === 0) continue;
        let [x, y] = toScreen(...shape.points[0]);
        if (x < 0 || x > width || y < 0 || y > height) continue;
        const w = ctx.measureText(shape.title).width;
        x = Math.max(4, Math.min(x + 5, width - w - 4));
        y = Math.max(y - 5, 14);
        const covered = () => boxes.some((o) => Math.abs(o.y - y) < 13 && x < o.x + o.w && o.x < x + w);
        for (let k = 1; covered() && k < 40; ++k) y += (k % 2 === 1 ? k : -k) * 14;
        boxes.push({ x, y, w });
        label(shape.title, x, y, DATA.colors.shape);
    }
}

function paintFaults() {
    screenTransform();
    ctx.strokeStyle = DATA.colors.fault;
    ctx.lineWidth = 2.2;
    for (const fault of DATA.faults) {
        const [x, y] = toScreen(fault.x, fault.y);
        if (x < -10 || y < -10 || x > width + 10 || y > height + 10) continue;
        ctx.beginPath();
        ctx.arc(x, y, 9, 0, 2 * Math.PI);
        ctx.stroke();
    }
}

function paintNumbers(near, x1, y1, x2, y2) {
    screenTransform();
    ctx.font = "11px Helvetica, Arial, sans-serif";
    let left_out = false;
    if (shown.elementNumbers) {
        ctx.textAlign = "center";
        if (near && near.length <= NUMBERS)
            for (const e of near) { if (shows(arrays.elementGroup[e])) { const [x, y] = toScreen(...middle(e)); label(arrays.elementNumber[e], x, y + 4, DATA.colors.beam); } }
        else left_out = true;
        ctx.textAlign = "start";
    }
    if (shown.nodeNumbers) {
        const nodes = inside(grid.nodes, x1, y1, x2, y2, NUMBERS);
        if (nodes) for (const n of nodes) { const [x, y] = toScreen(X(n), Y(n)); label(arrays.nodeNumber[n], x + 3, y - 3, "#222830"); }
        else left_out = true;
    }
    if (left_out) label("zoom in to see numbers", 10, 18, DATA.colors.fault);
}

function middle(e) {
    const list = corners(e);
    return [list.reduce((s, n) => s + X(n), 0) / list.length, list.reduce((s, n) => s + Y(n), 0) / list.length];
}

function paintSelection() {
    if (!selection) return;
    screenTransform();
    ctx.strokeStyle = ctx.fillStyle = DATA.colors.fault;
    ctx.lineWidth = 2.5;
    if (selection.type === "node") {
        const [x, y] = toScreen(X(selection.index), Y(selection.index));
        dot(x, y, 4);
        ctx.beginPath();
        ctx.arc(x, y, 9, 0, 2 * Math.PI);
        ctx.stroke();
    } else {
        ctx.beginPath();
        trace(selection.index);
        ctx.stroke();
        for (const c of corners(selection.index)) dot(...toScreen(X(c), Y(c)), 3);
    }
}

function paintScale() {
    const power = 10 ** Math.floor(Math.log10(120 / view.scale));
    const length = [5, 2, 1].map((m) => m * power).find((l) => l * view.scale <= 120) || power;
    const right = width - 16, y = height - 14;
    screenTransform();
    ctx.strokeStyle = "#222830";
    ctx.lineWidth = 1.5;
    ctx.beginPath();
    ctx.moveTo(right - length * view.scale, y - 4);
    ctx.lineTo(right - length * view.scale, y);
    ctx.lineTo(right, y);
    ctx.lineTo(right, y - 4);
    ctx.stroke();
    ctx.font = "11px Helvetica, Arial, sans-serif";
    ctx.textAlign = "right";
    label(shortNumber(length), right, y - 8, "#222830");
    ctx.textAlign = "start";
}

// ---- picking and records ------------------------------------------------------------------------

let selection = null, lastPick = { x: NaN, y: NaN, turn: 0 };
const shortNumber = (v) => String(Number(v.toPrecision(7)));

function contains(e, x, y) {
    const list = corners(e);
    let inside_ = false;
    for (let i = 0, j = list.length - 1; i < list.length; j = i++) {
        const yi = Y(list[i]), yj = Y(list[j]);
        if ((yi > y) !== (yj > y) && x < (X(list[j]) - X(list[i])) * (y - yi) / (yj - yi) + X(list[i])) inside_ = !inside_;
    }
    return inside_;
}

function distanceToLine(e, x, y) {
    const [[ax, ay], [bx, by]] = lineOf(e), l2 = (bx - ax) ** 2 + (by - ay) ** 2;
    const t = l2 > 0 ? clamp(((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / l2, 0, 1) : 0;
    return Math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay));
}

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

function pick(x, y) {
    const list = hits(x, y), same = Math.hypot(x - lastPick.x, y - lastPick.y) * view.scale < 3;
    lastPick = { x, y, turn: same ? lastPick.turn + 1 : 0 };
    select(list.length === 0 ? null : list[lastPick.turn % list.length], list.length);
}

function select(what, among) {
    selection = what;
    el("record").replaceChildren();
    el("message").textContent = "";
    if (what) what.type === "node" ? showNode(what.index) : showElement(what.index);
    if (among > 1) el("record").append(`One of ${among} at this place; click again for the next.`);
    draw();
}

function table(title, rows) {
    const head = document.createElement("h3"), body = document.createElement("table");
    head.textContent = title;
    for (const [name, value] of rows) {
        const line = body.insertRow(), th = document.createElement("th"), td = document.createElement("td");
        th.textContent = name;
        Array.isArray(value) ? td.append(...value) : td.textContent = value;
        line.append(th, td);
    }
    el("record").append(head, body);
}

function link(type, index) {
    const a = document.createElement("a");
    a.textContent = type === "node" ? arrays.nodeNumber[index] : arrays.elementNumber[index];
    a.addEventListener("click", () => { select({ type, index }); });
    return a;
}

const spaced = (list) => list.flatMap((item, k) => (k === 0 ? [item] : [" ", item]));

function showNode(n) {
    const users = inside(grid.elements, X(n), Y(n), X(n), Y(n), Infinity).filter((e) => corners(e).includes(n));
    table("Node " + arrays.nodeNumber[n], [
        ["x, y", shortNumber(arrays.x[n]) + ", " + shortNumber(arrays.y[n])],
        ...DATA.codes.map((code, k) => [code.name, arrays["code" + k][n]]),
        ...DATA.nodeValues.map((name) => [name, shortNumber(arrays["node" + name][n])]),
        ["elements", spaced(users.map((e) => link("element", e)))],
    ]);
}

function showElement(e) {
    const group = groupOf(e), list = corners(e);
    let area = 0;
    list.forEach((a, k) => { const b = list[(k + 1) % list.length]; area += ((X(a) - X(list[0])) * (Y(b) - Y(list[0])) - (X(b) - X(list[0])) * (Y(a) - Y(list[0]))) / 2; });
    const rows = [["type", list.length === 2 ? group.class : group.class === "joint" ? "joint" : list.length === 3 ? "triangle" : "quadrilateral"],
        ["material", group.material], ["nodes", spaced(list.map((n) => link("node", n)))]];
    if (arrays.midsides && !isLine(e)) rows.push(["midside nodes", [...arrays.midsides.slice(4 * e, 4 * e + 4)].join(" ")]);
    if (!isLine(e)) {
        DATA.attributes.forEach((name) => rows.push([name, shortNumber(arrays["attribute" + name][e])]));
        rows.push(["area", shortNumber(area)]);
    } else rows.push(["length", shortNumber(Math.hypot(X(list[0]) - X(list[1]), Y(list[0]) - Y(list[1])))]);
    for (const fault of DATA.faults) if (fault.element === arrays.elementNumber[e]) rows.push(["unsound", fault.text]);
    table("Element " + arrays.elementNumber[e], rows);
}

// ---- search -------------------------------------------------------------------------------------

function find(type, number) {
    const index = (type === "node" ? arrays.nodeNumber : arrays.elementNumber).indexOf(number);
    return index < 0 ? null : { type, index };
}

function search(text) {
    const match = /^\s*([a-z]*)\s*(\d+)\s*$/i.exec(text);
    if (!match || (match[1] && !"nodes".startsWith(match[1].toLowerCase()) && !"elements".startsWith(match[1].toLowerCase()))) {
        el("message").textContent = "expected a number, n 12 for a node or e 34 for an element";
        return;
    }
    const number = Number(match[2]), word = match[1].toLowerCase();
    const wantsNode = word && "nodes".startsWith(word), wantsElement = word && !wantsNode;
    const found = (wantsNode ? null : find("element", number)) || (wantsElement ? null : find("node", number));
    if (!found) {
        el("message").textContent = `there is no ${wantsNode ? "node" : wantsElement ? "element" : "node or element"} ${number}`;
        return;
    }
    goTo(found);
}

function goTo(what) {
    const list = what.type === "node" ? [what.index] : corners(what.index);
    const [x, y] = what.type === "node" ? [X(what.index), Y(what.index)] : middle(what.index);
    view.x = x;
    view.y = y;
    const size = Math.max(DATA.meanSide, ...list.map((n) => 2 * Math.hypot(X(n) - x, Y(n) - y)));
    view.scale = clamp(view.scale, 60 / size, Math.max(60 / size, 0.5 * Math.min(width, height) / size));
    select(what);
}

// The part behind # opens the page at a place: #node=12, #element=34, or #at=10,20 as if that point were clicked.
function readAddress() {
    for (const part of location.hash.slice(1).split("&")) {
        const [key, value] = part.split("=");
        if (key === "node" || key === "element") search((key === "node" ? "n " : "e ") + value);
        if (key === "at") pick(...value.split(",").map((v, k) => Number(v) - DATA.origin[k]));
    }
}

// ---- events -------------------------------------------------------------------------------------

function listen() {
    const pointers = new Map();
    let moved = false, apart = 0;
    const at = (event) => { const box = canvas.getBoundingClientRect(); return [event.clientX - box.left, event.clientY - box.top]; };
    canvas.addEventListener("pointerdown", (event) => {
        canvas.setPointerCapture(event.pointerId);
        pointers.set(event.pointerId, at(event));
        moved = false;
        apart = 0;
    });
    canvas.addEventListener("pointermove", (event) => {
        const [sx, sy] = at(event), [x, y] = toMesh(sx, sy);
        el("place").textContent = `x ${shortNumber(x + DATA.origin[0])}  y ${shortNumber(y + DATA.origin[1])}`;
        const last = pointers.get(event.pointerId);
        if (!last) return;
        if (pointers.size === 1) {
            if (!moved && Math.hypot(sx - last[0], sy - last[1]) < 4) return;
            moved = true;
            canvas.classList.add("dragging");
            view.x -= (sx - last[0]) / view.scale;
            view.y += (sy - last[1]) / view.scale;
            draw(true);
        }
        pointers.set(event.pointerId, [sx, sy]);
        if (pointers.size === 2) {
            const [a, b] = [...pointers.values()], now = Math.hypot(a[0] - b[0], a[1] - b[1]);
            moved = true;
            if (apart > 0) zoom(now / apart, (a[0] + b[0]) / 2, (a[1] + b[1]) / 2);
            apart = now;
        }
    });
    const up = (event) => {
        if (pointers.delete(event.pointerId) && !moved && event.type === "pointerup") pick(...toMesh(...at(event)));
        canvas.classList.remove("dragging");
        apart = 0;
        if (moved) draw();
    };
    canvas.addEventListener("pointerup", up);
    canvas.addEventListener("pointercancel", up);
    canvas.addEventListener("wheel", (event) => { event.preventDefault(); zoom(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)), ...at(event)); }, { passive: false });
    canvas.addEventListener("dblclick", (event) => zoom(2, ...at(event)));
    el("search").addEventListener("submit", (event) => { event.preventDefault(); search(el("query").value); });
    document.addEventListener("keydown", (event) => {
        if (event.target === el("query")) return;
        const step = 80 / view.scale, moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
        if (moves[event.key]) { view.x += moves[event.key][0]; view.y += moves[event.key][1]; draw(true); }
        else if (event.key === "+" || event.key === "=") zoom(1.4, width / 2, height / 2);
        else if (event.key === "-") zoom(1 / 1.4, width / 2, height / 2);
        else if (event.key === "0") fit(DATA.bounds);
        else if (event.key === "Escape") select(null);
        else if (event.key === "/") el("query").focus();
        else return;
        event.preventDefault();
    });
    window.addEventListener("resize", () => { resize(); draw(); });
    window.addEventListener("hashchange", readAddress);
}

async function start() {
    el("title").textContent = DATA.title;
    el("summary").textContent = DATA.summary;
    if (typeof DecompressionStream === "undefined") {
        el("message").textContent = "This browser is too old to show the mesh.";
        return;
    }
    await unpack();
    DATA.groups.forEach((group) => { group.elements = []; });
    for (let e = 0; e < elementCount(); ++e) if (groupOf(e).class !== "solid") groupOf(e).elements.push(e);
    DATA.coded = [];
    for (let n = 0; n < nodeCount(); ++n) if (DATA.codes.some((code, k) => code.symbol && arrays["code" + k][n] !== 0)) DATA.coded.push(n);
    buildGrid();
    buildPaths();
    buildLayers();
    resize();
    listen();
    fit(DATA.window || DATA.bounds);
    readAddress();
    document.body.dataset.ready = "yes";
}

window.brelan = { view, stats, toScreen, toMesh, arrays, shown, selected: () => selection };
start().catch((error) => { el("message").textContent = "The page cannot be shown: " + error.message; });
