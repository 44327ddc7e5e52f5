"use strict";
// The pointer and the keys over the drawing: pan, zoom, what is under it, and picking of groups.

const pointer = { held: new Map(), moved: false, apart: 0, last: { x: NaN, y: NaN, turn: 0 }, rest: 0 };

const onCanvas = (event) => { const box = canvas.getBoundingClientRect(); return [event.clientX - box.left, event.clientY - box.top]; };
function pointerPlace(event) { const [x, y] = toMesh(...onCanvas(event)); return [x + DATA.origin[0], y + DATA.origin[1]]; }

function fitAll() {
    const xs = [], ys = [];
    if (hasMesh()) { xs.push(...DATA.bounds.x); ys.push(...DATA.bounds.y); }
    else for (const s of known.check.shapes) for (const p of s.points) { const [x, y] = toRelative(...p); xs.push(x); ys.push(y); }
    if (xs.length === 0) return;
    const least = (list) => list.reduce((a, b) => Math.min(a, b)), most = (list) => list.reduce((a, b) => Math.max(a, b));
    DATA.bounds = hasMesh() ? DATA.bounds : { x: [least(xs), most(xs)], y: [least(ys), most(ys)] };
    fit(DATA.bounds);
    scene.fitted = true;
}

function zoomAt(factor, sx, sy) { zoom(factor, sx, sy); scene.fitted = false; }
function panBy(dx, dy) { view.x += dx; view.y += dy; scene.fitted = false; draw(true); }

function zoomTo(x, y, size) {
    [view.x, view.y] = toRelative(x, y);
    view.scale = Math.max(view.scale, 60 / Math.max(size, 1e-12));
    view.scale = Math.min(view.scale, 0.3 * Math.min(width, height) / Math.max(size, 1e-12));
    scene.fitted = false;
    draw();
}

// ---- picking ------------------------------------------------------------------------------------

function areaOf(points) {
    let area = 0;
    points.forEach((p, k) => { const q = points[(k + 1) % points.length]; area += p[0] * q[1] - q[0] * p[1]; });
    return Math.abs(area) / 2;
}

function isInside(points, x, y) {
    let inside_ = false;
    for (let i = 0, j = points.length - 1; i < points.length; j = i++)
        if ((points[i][1] > y) !== (points[j][1] > y) && x < (points[j][0] - points[i][0]) * (y - points[i][1]) / (points[j][1] - points[i][1]) + points[i][0]) inside_ = !inside_;
    return inside_;
}

// Groups at a place: lines under the pointer first, then outlines from the smallest on.
function groupsAt(x, y) {
    const reach = 7 / view.scale, found = [];
    for (const shape of known.check.shapes) {
        if (!(shape.group > 0)) continue;
        const sides = shape.points.map((p, k) => [p, shape.points[(k + 1) % shape.points.length]]).slice(0, shape.closed ? undefined : -1);
        const far = Math.min(...sides.map(([a, b]) => fromSide(x, y, a, b)));
        if (far <= reach) found.push({ group: shape.group, order: shape.closed ? 1 + areaOf(shape.points) : far / reach });
        else if (shape.closed && isInside(shape.points, x, y)) found.push({ group: shape.group, order: 1 + areaOf(shape.points) });
    }
    return [...new Map(found.sort((a, b) => a.order - b.order).reverse().map((f) => [f.group, f])).values()].reverse().sort((a, b) => a.order - b.order);
}

function pickGroup(x, y) {
    const list = groupsAt(x, y), last = pointer.last, same = Math.hypot(x - last.x, y - last.y) * view.scale < 4;
    pointer.last = { x, y, turn: same ? last.turn + 1 : 0 };
    const found = list.length > 0 ? known.check.groups.find((g) => g.group === list[pointer.last.turn % list.length].group) : null;
    if (!found) return;
    clearTimeout(pointer.rest);  // what the pointer is on is not said over it
    goToLine(found.line, 0);
    say(`Group ${found.group}${found.title ? ": " + found.title : ""}${list.length > 1 ? `, one of ${list.length} here` : ""}`);
    showUnder(`Group ${found.group}${found.title ? "  " + found.title : ""}${list.length > 1 ? `  (one of ${list.length} here; click again for the next)` : ""}`);
}

function showUnder(text) { el("under").textContent = text; }

function lookUnder(sx, sy) {
    if (!needGrid()) return;
    const found = hits(...toMesh(sx, sy)).find((h) => h.type === "node" || isStanding(h.index));
    marks.hover = found ? { ...found, number: scene.number } : null;
    if (!found) showUnder("");
    else if (found.type === "node") showUnder(`Node ${arrays.nodeNumber[found.index]}   x ${shortNumber(arrays.x[found.index])}  y ${shortNumber(arrays.y[found.index])}`);
    else {
        const e = found.index, nodes = corners(e).map((n) => arrays.nodeNumber[n]).join(" ");
        const quality = arrays.elementQuality && groupOf(e).class === "solid" ? `   smallest angle ${arrays.elementQuality[e].toFixed(1)}\u00b0` : "";
        showUnder(`Element ${arrays.elementNumber[e]}   ${groupOf(e).class}, material ${groupOf(e).material || groupOf(e).name}   nodes ${nodes}${quality}`);
    }
    draw();
}

// ---- events -------------------------------------------------------------------------------------

function startPointer() {
    canvas.addEventListener("pointerdown", (event) => {
        canvas.setPointerCapture(event.pointerId);
        pointer.held.set(event.pointerId, onCanvas(event));
        pointer.moved = false;
        pointer.apart = 0;
    });
    canvas.addEventListener("pointermove", pointerMoved);
    const up = (event) => {
        const was = pointer.held.delete(event.pointerId);
        canvas.classList.remove("panning");
        pointer.apart = 0;
        if (!was || pointer.moved || event.type !== "pointerup" || event.button !== 0) return;
        if (drawn.form) { aimAt(...pointerPlace(event), event.altKey || event.ctrlKey); setPoint(); }
        else pickGroup(...pointerPlace(event));
    };
    canvas.addEventListener("pointerup", up);
    canvas.addEventListener("pointercancel", up);
    canvas.addEventListener("pointerleave", () => {
        clearTimeout(pointer.rest);
        el("place").textContent = "";
        if (marks.hover || (marks.snap && !handles.held)) { marks.hover = marks.snap = null; showUnder(""); draw(); }
    });
    el("stage").addEventListener("wheel", (event) => {
        event.preventDefault();
        zoomAt(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)), ...onCanvas(event));
    }, { passive: false });
    canvas.addEventListener("dblclick", () => { if (drawn.form) endDrawing(); });
    el("stage").addEventListener("keydown", stageKey);
    el("fit").addEventListener("click", fitAll);
    el("zoom-in").addEventListener("click", () => zoomAt(1.4, width / 2, height / 2));
    el("zoom-out").addEventListener("click", () => zoomAt(1 / 1.4, width / 2, height / 2));
}

function pointerMoved(event) {
    const [sx, sy] = onCanvas(event), [x, y] = pointerPlace(event), last = pointer.held.get(event.pointerId);
    el("place").textContent = `x ${shortNumber(inFewFigures(x))}  y ${shortNumber(inFewFigures(y))}`;
    if (!last) {
        if (drawn.form) { aimAt(x, y, event.altKey || event.ctrlKey || event.metaKey); return; }
        clearTimeout(pointer.rest);
        pointer.rest = setTimeout(() => lookUnder(sx, sy), grid ? 0 : 80);
        return;
    }
    if (pointer.held.size === 1) {
        if (!pointer.moved && Math.hypot(sx - last[0], sy - last[1]) < 4) return;
        pointer.moved = true;
        canvas.classList.add("panning");
        panBy(-(sx - last[0]) / view.scale, (sy - last[1]) / view.scale);
    }
    pointer.held.set(event.pointerId, [sx, sy]);
    if (pointer.held.size === 2) {
        const [a, b] = [...pointer.held.values()], now = Math.hypot(a[0] - b[0], a[1] - b[1]);
        pointer.moved = true;
        if (pointer.apart > 0) zoomAt(now / pointer.apart, (a[0] + b[0]) / 2, (a[1] + b[1]) / 2);
        pointer.apart = now;
    }
}

function stageKey(event) {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (event.target === canvas && drawn.form && drawingKey(event)) { event.preventDefault(); return; }
    const step = 80 / view.scale, moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
    const tools = { s: "", l: "line", o: "outline", a: "arc" };
    if (moves[event.key]) panBy(...moves[event.key]);
    else if (event.key === "+" || event.key === "=") zoomAt(1.4, width / 2, height / 2);
    else if (event.key === "-") zoomAt(1 / 1.4, width / 2, height / 2);
    else if (event.key === "0") fitAll();
    else if (event.key === "[") stepBy(-1);
    else if (event.key === "]") stepBy(1);
    else if (event.key === "Enter" && event.target === canvas) pickGroup(view.x + DATA.origin[0], view.y + DATA.origin[1]);
    else if (event.key === "Escape") { marks.place = marks.hover = null; draw(); }
    else if (event.key in tools) useTool(tools[event.key]);
    else return;
    event.preventDefault();
}
