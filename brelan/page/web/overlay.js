"use strict";
// What lies over the mesh: outlines of materials, lines, symbols, the shapes of the deck, marks, a scale.

const meshTransform = () => ctx.setTransform(ratio * view.scale, 0, 0, -ratio * view.scale,
    ratio * (width / 2 - view.x * view.scale), ratio * (height / 2 + view.y * view.scale));
const toRelative = (x, y) => [x - DATA.origin[0], y - DATA.origin[1]];
const shapeToScreen = ([x, y]) => toScreen(...toRelative(x, y));

const painting = { pending: 0, after: [], moving: false };

// Draws at the next frame, once however often it is asked. `how` is true where only the view has moved; a
// function is called when it is done.
function draw(how) {
    if (typeof how === "function") painting.after.push(how);
    painting.moving = how === true && (painting.moving || !painting.pending);
    if (!painting.pending) painting.pending = requestAnimationFrame(paint);
}

function paint() {
    painting.pending = 0;
    if (width === 0 || height === 0) return;
    const begun = performance.now();
    showMeshLayer(painting.moving);
    painting.moving = false;
    screenTransform();
    ctx.clearRect(0, 0, width, height);
    ctx.lineJoin = ctx.lineCap = "round";
    if (hasMesh()) {
        paintOutlines();
        paintLineElements(null);
        if (shown.codes && scene.details) paintStandingCodes();
        if (shown.numbers && scene.details) paintNumbers();
    }
    if (shown.shapes) paintShapes();
    paintPlaces();
    paintHover();
    paintNewGroup();
    placeHandles();
    paintScale();
    stats.milliseconds = performance.now() - begun;
    stats.drawn += 1;
    const after = painting.after;
    painting.after = [];
    for (const call of after) call();
}

function paintOutlines() {
    if (!scene.outline) return;
    meshTransform();
    ctx.strokeStyle = colors.region;
    ctx.lineWidth = 1.1 / view.scale;
    ctx.stroke(scene.outline);
    screenTransform();
}

// Symbols of what stands in the step shown: a node that no element uses has none.
function paintStandingCodes() {
    const [x1, y2] = toMesh(0, 0), [x2, y1] = toMesh(width, height);
    if (known.step === null || !arrays.elementComes) { paintCodes(x1, y1, x2, y2); return; }
    if (!scene.used || scene.used.step !== known.step || scene.used.number !== scene.number) {
        const used = new Uint8Array(nodeCount());
        for (let e = 0; e < elementCount(); ++e) if (isStanding(e)) for (const n of corners(e)) used[n] = 1;
        scene.used = { step: known.step, number: scene.number, coded: DATA.coded.filter((n) => used[n]) };
    }
    const all = DATA.coded;
    DATA.coded = scene.used.coded;
    paintCodes(x1, y1, x2, y2);
    DATA.coded = all;
}

function paintNumbers() {
    const MOST = 1200, [x1, y2] = toMesh(0, 0), [x2, y1] = toMesh(width, height);
    if (!needGrid()) return;
    ctx.font = "11px Helvetica, Arial, sans-serif";
    const near = inside(grid.elements, x1, y1, x2, y2, MOST), nodes = inside(grid.nodes, x1, y1, x2, y2, MOST);
    if (near) {
        ctx.textAlign = "center";
        for (const e of near)
            if (shows(arrays.elementGroup[e]) && isStanding(e)) { const [x, y] = toScreen(...middle(e)); label(arrays.elementNumber[e], x, y + 4 + 11 * arrays.numberLine[e], colors.accent); }
        ctx.textAlign = "start";
    }
    if (nodes) for (const n of nodes) labelNode(n);
    if (!near || !nodes) label("Zoom in to see numbers", 12, height - 12, colors.error);
}

// ---- shapes of the deck -------------------------------------------------------------------------

const DASHES = { block: [1, 4], window: [6, 4], "free-line": [5, 3], joint: [2, 2], dam: [7, 3] };

function paintShapes() {
    const shapes = known.check.shapes, now = (shape) => known.group > 0 && shape.group === known.group;
    for (const shape of [...shapes.filter((s) => !now(s)), ...shapes.filter(now)]) {
        const points = shape.points.map(shapeToScreen);
        const trace_ = () => {
            ctx.beginPath();
            points.forEach((p, k) => (k === 0 ? ctx.moveTo(...p) : ctx.lineTo(...p)));
            if (shape.closed) ctx.closePath();
        };
        if (now(shape)) {
            trace_();
            ctx.strokeStyle = colors.paper;
            ctx.lineWidth = 6;
            ctx.stroke();
        }
        trace_();
        ctx.strokeStyle = now(shape) ? colors.now : colors.shape;
        ctx.lineWidth = now(shape) ? 2.6 : shape.role === "block" ? 1 : 1.5;
        ctx.setLineDash(now(shape) ? [] : DASHES[shape.role] || []);
        ctx.stroke();
        ctx.setLineDash([]);
    }
}

// ---- places of findings and what the pointer is on ----------------------------------------------

const marks = { place: null, hover: null, snap: null };

function paintPlaces() {
    ctx.strokeStyle = colors.error;
    ctx.lineWidth = 2;
    let left = 2000;
    for (const finding of DATA.findings || []) {
        if (!isUnsound(finding)) continue;
        for (const place of finding.places) {
            if (left-- === 0) return;
            const [x, y] = toScreen(place.x, place.y);
            if (x < -10 || y < -10 || x > width + 10 || y > height + 10) continue;
            ctx.beginPath();
            ctx.arc(x, y, 8, 0, 2 * Math.PI);
            ctx.stroke();
        }
    }
    if (marks.place) {
        const [x, y] = shapeToScreen(marks.place);
        for (const [width_, color] of [[6, colors.paper], [3, colors.error]]) {
            ctx.lineWidth = width_;
            ctx.strokeStyle = color;
            ctx.beginPath();
            ctx.arc(x, y, 14, 0, 2 * Math.PI);
            ctx.stroke();
        }
    }
}

function paintHover() {
    const what = marks.hover;
    if (what && hasMesh() && what.number === scene.number) {
        ctx.strokeStyle = ctx.fillStyle = colors.accent;
        ctx.lineWidth = 2;
        if (what.type === "node") dot(...toScreen(X(what.index), Y(what.index)), 4);
        else { ctx.beginPath(); trace(what.index); ctx.stroke(); }
    }
    if (marks.snap) {
        const [x, y] = shapeToScreen(marks.snap.at);
        ctx.strokeStyle = colors.accent;
        ctx.lineWidth = 1.5;
        ctx.strokeRect(x - 6, y - 6, 12, 12);
        if (marks.snap.to) { ctx.font = "11px Helvetica, Arial, sans-serif"; label(marks.snap.to, x + 10, y - 8, colors.accent); }
    }
}
