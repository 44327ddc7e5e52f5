"use strict";
// Where a point that is dragged or set comes to lie: on a node, on a line, on a grid.

const REACH = 9;  // pixels

function niceStep(least) {
    const power = 10 ** Math.floor(Math.log10(least));
    return [1, 2, 5, 10].map((m) => m * power).find((s) => s >= least * 0.999);
}

// As it stands in its field, or some pixels wide.
function gridStep() {
    const given = Number(el("grid-step").value.replace(",", "."));
    return given > 0 ? given : niceStep(8 / view.scale);
}

const rounded = (v) => Number(v.toPrecision(12));
const onGrid = (v, step) => rounded(Math.round(v / step) * step);

// What there is to snap to without the own shapes of a group, as it stands when a drag begins: the mesh follows
// the point, and would hold it where it is.
function snapTargets(without) {
    const others = known.check.shapes.filter((s) => !without || s.group !== without), own = known.check.shapes.filter((s) => without && s.group === without);
    const points = [], sides = [], ownSides = [];
    const collect = (shapes, list) => {
        for (const s of shapes)
            s.points.forEach((p, k) => { if (k > 0 || s.closed) list.push([s.points[(k + s.points.length - 1) % s.points.length], p]); });
    };
    collect(others, sides);
    collect(own, ownSides);
    for (const s of others) points.push(...s.points);
    if (hasMesh()) {
        const close = DATA.meanSide * 0.02, corners_ = ownSides.flat();
        const range = (k) => corners_.reduce(([low, high], p) => [Math.min(low, p[k] - close), Math.max(high, p[k] + close)], [Infinity, -Infinity]);
        const [x1, x2] = range(0), [y1, y2] = range(1);
        const on = (x, y) => x >= x1 && x <= x2 && y >= y1 && y <= y2 && ownSides.some(([a, b]) => fromSide(x, y, a, b) < close);
        for (let n = 0; n < nodeCount(); ++n) {
            const x = arrays.x[n], y = arrays.y[n];
            if (!on(x, y)) points.push([x, y]);
        }
    }
    return { points, sides };
}

// {x, y, to}: the place for a point that the pointer holds at x, y; `to` says what holds it.
function snapped(x, y, targets, free) {
    if (free) return { x, y, to: "" };
    const reach = REACH / view.scale;
    let best = null;
    if (pressed("snap-nodes"))
        for (const p of targets.points) {
            const far = Math.hypot(p[0] - x, p[1] - y);
            if (far <= reach && (!best || far < best.far)) best = { x: p[0], y: p[1], far, to: "node" };
        }
    // Places of the mesh have seven figures.
    if (best) { best.x = Number(best.x.toPrecision(7)); best.y = Number(best.y.toPrecision(7)); }
    if (!best && pressed("snap-lines"))
        for (const [[ax, ay], [bx, by]] of targets.sides) {
            const l2 = (bx - ax) ** 2 + (by - ay) ** 2, t = l2 > 0 ? clamp(((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / l2, 0, 1) : 0;
            let px = ax + t * (bx - ax), py = ay + t * (by - ay);
            const far = Math.hypot(px - x, py - y);
            if (far > reach || (best && far >= best.far)) continue;
            // Along a line that runs with an axis the grid still holds.
            if (pressed("snap-grid")) {
                const step = gridStep();
                if (ay === by) px = clamp(onGrid(px, step), Math.min(ax, bx), Math.max(ax, bx));
                else if (ax === bx) py = clamp(onGrid(py, step), Math.min(ay, by), Math.max(ay, by));
            }
            best = { x: rounded(px), y: rounded(py), far, to: "line" };
        }
    if (best) return best;
    if (pressed("snap-grid")) return { x: onGrid(x, gridStep()), y: onGrid(y, gridStep()), to: "grid" };
    return { x, y, to: "" };
}

// To a tenth of a pixel, in few figures: numbers that a person would write.
function inFewFigures(v) {
    const step = 10 ** Math.floor(Math.log10(0.5 / view.scale));
    return rounded(Math.round(v / step) * step);
}
