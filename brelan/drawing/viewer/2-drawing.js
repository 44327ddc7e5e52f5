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
    if (!near && DATA.leftOut > 0) label(`${DATA.leftOut} elements reach across the others: zoom in to see them`, 10, 34, DATA.colors.fault);
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

function paintShapes() {
    screenTransform();
    for (const shape of DATA.shapes) {
        ctx.beginPath();
        shape.points.forEach(([x, y], k) => { const p = toScreen(x, y); k === 0 ? ctx.moveTo(...p) : ctx.lineTo(...p); });
        if (shape.closed) ctx.closePath();
        ctx.strokeStyle = DATA.colors.shape;
        ctx.lineWidth = 1.8;
        ctx.setLineDash(shape.dash);
        ctx.stroke();
        ctx.setLineDash([]);
    }
    ctx.font = "bold 10px Helvetica, Arial, sans-serif";
    ctx.textAlign = "center";
    stats.marks = placeMarks();
    for (const mark of stats.marks) {
        ctx.fillStyle = "#fff";
        dot(mark.x, mark.y, MARK);
        ctx.strokeStyle = ctx.fillStyle = DATA.colors.shape;
        ctx.lineWidth = 1.4;
        ctx.stroke();
        ctx.fillText(mark.number, mark.x, mark.y + 3.5);
    }
    ctx.textAlign = "start";
}

const MARK = 8.5;   // radius of the ring round the number of a shape
const CROWD = 600;  // sides of shapes in view from which numbers are kept off each other only

// Where the numbers stand whose titles the list at the side tells: on their shapes, off each other and as far
// as can be off the other shapes; inside a shape where others run along all of it. One without room waits for
// a closer look.
function placeMarks() {
    const enough = 1.5 * MARK, marks = [], shapes = DATA.shapes.filter((shape) => shape.number > 0);
    const within = (x, y) => x > MARK && x < width - MARK && y > MARK && y < height - MARK;
    const sides = shapes.map((shape) => {
        const p = shape.points.map(([x, y]) => toScreen(x, y));
        return p.map((from, k) => [from, p[(k + 1) % p.length]]).slice(0, shape.closed || p.length === 1 ? p.length : -1).map(partInView).filter(Boolean);
    });
    const free = (x, y) => marks.every((m) => Math.hypot(m.x - x, m.y - y) >= 2 * MARK + 2);
    const crowded = sides.reduce((sum, list) => sum + list.length, 0) > CROWD;
    const roomAt = (x, y, own, least) => {
        let room = enough;
        if (crowded) return room;
        for (let k = 0; k < sides.length && room > least; ++k)
            if (k !== own) for (const [a, b] of sides[k]) room = Math.min(room, fromSide(x, y, a, b));
        return room;
    };
    shapes.forEach((shape, own) => {
        let best = null;
        const tryAt = (points, without) => {
            for (const [x, y] of points) {
                if (best && best.room >= enough) return;
                if (!within(x, y) || !free(x, y)) continue;
                const room = roomAt(x, y, without, best ? best.room : -1);
                if (!best || room > best.room) best = { number: shape.number, x, y, room };
            }
        };
        tryAt(alongSides(sides[own]), own);
        if (shape.closed && (!best || best.room < MARK)) tryAt(insideShape(shape), -1);
        if (best) marks.push(best);
    });
    return marks;
}

// The part of a side that lies on the canvas; null where there is none.
function partInView([[ax, ay], [bx, by]]) {
    let first = 0, last = 1;
    for (const [from, step, size] of [[ax, bx - ax, width], [ay, by - ay, height]]) {
        if (step === 0) { if (from < 0 || from > size) return null; continue; }
        first = Math.max(first, Math.min(-from / step, (size - from) / step));
        last = Math.min(last, Math.max(-from / step, (size - from) / step));
    }
    const at = (t) => [ax + t * (bx - ax), ay + t * (by - ay)];
    return first <= last ? [at(first), at(last)] : null;
}

// Points some pixels apart, fewer of very many; the middles first, to keep corners in sight.
function alongSides(sides) {
    const points = [], some = (list) => list.filter((p, k) => k % (Math.floor(list.length / 150) + 1) === 0);
    for (const [[ax, ay], [bx, by]] of sides) {
        const steps = 1 + Math.floor(Math.hypot(bx - ax, by - ay) / 6);
        for (let k = 0; k <= steps; ++k) points.push([ax + (bx - ax) * k / steps, ay + (by - ay) * k / steps]);
    }
    return [...some(sides.map(([a, b]) => [(a[0] + b[0]) / 2, (a[1] + b[1]) / 2])), ...some(points)];
}

function insideShape(shape) {
    const path = new Path2D(), points = [], list = shape.points.map(([x, y]) => toScreen(x, y));
    list.forEach(([x, y]) => path.lineTo(x, y));
    const range = (k, size) => [Math.max(0, Math.min(...list.map((p) => p[k]))), Math.min(size, Math.max(...list.map((p) => p[k])))];
    const [x1, x2] = range(0, width), [y1, y2] = range(1, height);
    for (let i = 1; i < 12; ++i)
        for (let j = 1; j < 12; ++j) {
            const x = x1 + (x2 - x1) * j / 12, y = y1 + (y2 - y1) * i / 12;
            if (ctx.isPointInPath(path, x * ratio, y * ratio, "evenodd")) points.push([x, y]);
        }
    return points;
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
            for (const e of near) { if (shows(arrays.elementGroup[e])) { const [x, y] = toScreen(...middle(e)); label(arrays.elementNumber[e], x, y + 4 + 11 * arrays.numberLine[e], DATA.colors.number); } }
        else left_out = true;
        ctx.textAlign = "start";
    }
    if (shown.nodeNumbers) {
        const nodes = inside(grid.nodes, x1, y1, x2, y2, NUMBERS);
        if (nodes) for (const n of nodes) labelNode(n);
        else left_out = true;
    }
    if (left_out) label("zoom in to see numbers", 10, 18, DATA.colors.fault);
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
