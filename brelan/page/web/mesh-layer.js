"use strict";
// Solids and joints on a canvas of their own, by WebGL: one triangle after the other, and the sides of elements
// in the same pass from how far a point of a triangle is from them. Without WebGL, by hand.

const layer = { canvas: el("mesh"), gl: null, plain: null, program: null, count: 0, margin: 0, image: null, isNew: false, rest: 0, at: {} };

const CORNER_SHADER = `#version 300 es
in vec2 place; in vec4 color; in vec3 side;
uniform vec4 part;
out vec4 fill; out vec3 far;
void main() { fill = color; far = side; gl_Position = vec4((place - part.xy) * part.zw, 0.0, 1.0); }`;

const POINT_SHADER = `#version 300 es
precision highp float;
in vec4 fill; in vec3 far;
uniform vec4 line; uniform float width; uniform vec3 paper;
out vec4 color;
void main() {
    if (fill.a == 0.0) discard;
    vec3 steps = max(fwidth(far), vec3(1e-12));
    vec3 pixels = far / steps;
    float near = min(min(pixels.x, pixels.y), pixels.z);
    float cover = clamp(width + 0.5 - near, 0.0, 1.0);
    // Where sides crowd they fade, for the colours to show.
    float crowd = clamp(2.2 - 8.0 * max(max(steps.x, steps.y), steps.z), 0.12, 1.0);
    vec3 base = fill.rgb;
    float stripe = step(0.5, fract((gl_FragCoord.x + gl_FragCoord.y * (fill.a < 0.5 || fill.a > 0.8 ? 1.0 : -1.0)) / 9.0));
    if (fill.a > 0.8 && fill.a < 0.95) {
        if (stripe == 0.0 && cover == 0.0) discard;
    } else if (fill.a < 0.8) {
        base = fill.a < 0.5 ? mix(paper, fill.rgb, 0.15 + 0.35 * stripe) : mix(fill.rgb, vec3(0.12, 0.62, 0.32), 0.25 + 0.35 * stripe);
    }
    color = vec4(mix(base, line.rgb, cover * crowd * line.a), 1.0);
}`;

function startMeshLayer() {
    const gl = layer.gl = layer.canvas.getContext("webgl2", { antialias: false, alpha: false, powerPreference: "high-performance" });
    if (!gl) { layer.plain = layer.canvas.getContext("2d"); return; }
    const program = layer.program = gl.createProgram();
    for (const [type, source] of [[gl.VERTEX_SHADER, CORNER_SHADER], [gl.FRAGMENT_SHADER, POINT_SHADER]]) {
        const shader = gl.createShader(type);
        gl.shaderSource(shader, source);
        gl.compileShader(shader);
        gl.attachShader(program, shader);
    }
    gl.linkProgram(program);
    if (!gl.getProgramParameter(program, gl.LINK_STATUS)) throw new Error(gl.getProgramInfoLog(program) || "no drawing by WebGL");
    gl.useProgram(program);
    layer.buffer = {};
    for (const [name, size, type] of [["place", 2, gl.FLOAT], ["color", 4, gl.UNSIGNED_BYTE], ["side", 3, gl.UNSIGNED_BYTE]]) {
        const at = gl.getAttribLocation(program, name);
        layer.buffer[name] = gl.createBuffer();
        gl.bindBuffer(gl.ARRAY_BUFFER, layer.buffer[name]);
        gl.enableVertexAttribArray(at);
        // Each in four bytes.
        gl.vertexAttribPointer(at, size, type, type === gl.UNSIGNED_BYTE, type === gl.UNSIGNED_BYTE ? 4 : 8, 0);
    }
    for (const name of ["part", "line", "width", "paper"]) layer.at[name] = gl.getUniformLocation(program, name);
    layer.canvas.addEventListener("webglcontextlost", (event) => event.preventDefault());
    layer.canvas.addEventListener("webglcontextrestored", () => { startMeshLayer(); if (hasMesh()) buildMeshLayer(); draw(); });
}

// How a corner is painted, in the fourth part of its colour.
const GOES = 90, COMES = 180, LIES_OVER = 225, STANDS = 255;

// Distances of the corners of a triangle from its sides; a diagonal inside of a quadrilateral is no side.
const WHOLE = [255, 0, 0, 0, 255, 0, 0, 0, 255], FIRST = [255, 255, 0, 0, 255, 0, 0, 255, 255], SECOND = [255, 0, 255, 0, 255, 255, 0, 0, 255];

function buildMeshLayer() {
    if (!layer.gl) return;
    const gl = layer.gl, count = elementCount();
    let triangles = 0;
    const quad = arrays.corners, solid = DATA.groups.map((g) => g.class === "solid");
    for (let e = 0; e < count; ++e) if (solid[arrays.elementGroup[e]] && quad[4 * e + 2] >= 0) triangles += quad[4 * e + 3] >= 0 ? 2 : 1;
    const place = new Float32Array(6 * triangles), color = new Uint8Array(12 * triangles), side = new Uint8Array(12 * triangles);
    const [ox, oy] = DATA.origin, x = arrays.x, y = arrays.y, over = arrays.over;
    let v = 0;
    const add = (a, b, c, sides, paint, alpha) => {
        for (let k = 0; k < 3; ++k, ++v) {
            const n = k === 0 ? a : k === 1 ? b : c;
            place[2 * v] = x[n] - ox;
            place[2 * v + 1] = y[n] - oy;
            color[4 * v] = paint[0]; color[4 * v + 1] = paint[1]; color[4 * v + 2] = paint[2]; color[4 * v + 3] = alpha;
            side[4 * v] = sides[3 * k]; side[4 * v + 1] = sides[3 * k + 1]; side[4 * v + 2] = sides[3 * k + 2];
        }
    };
    // Those that lie over others come last.
    for (const turn of over ? [0, 1] : [0])
        for (let e = 0; e < count; ++e) {
            const g = arrays.elementGroup[e];
            if (!solid[g] || !DATA.groups[g].shown || quad[4 * e + 2] < 0 || (over && (over[e] !== 0 ? 1 : 0) !== turn)) continue;
            const goes = goesNow(e);
            if (!goes && !isStanding(e)) continue;
            const alpha = goes ? GOES : comesNow(e) ? COMES : turn === 1 ? LIES_OVER : STANDS;
            const paint = goes ? [208, 60, 60] : elementColor(e), a = quad[4 * e], b = quad[4 * e + 1], c = quad[4 * e + 2], d = quad[4 * e + 3];
            if (d < 0) { add(a, b, c, WHOLE, paint, alpha); continue; }
            add(a, b, c, FIRST, paint, alpha);
            add(a, c, d, SECOND, paint, alpha);
        }
    layer.count = v;
    layer.image = null;
    for (const [name, values] of [["place", place.subarray(0, 2 * v)], ["color", color.subarray(0, 4 * v)], ["side", side.subarray(0, 4 * v)]]) {
        gl.bindBuffer(gl.ARRAY_BUFFER, layer.buffer[name]);
        gl.bufferData(gl.ARRAY_BUFFER, values, gl.STATIC_DRAW);
    }
    buildOutlines();
}

// What has many elements takes longer to draw than a frame may: while the view moves the image of it is moved,
// drawn a bit larger than what is seen for that, and drawn anew when the view rests.
const MANY_CORNERS = 12000;

function sizeMeshLayer() {
    layer.margin = layer.count > MANY_CORNERS ? Math.round(0.2 * Math.max(width, height)) : 0;
    const one = layer.canvas, w = Math.max(1, Math.round((width + 2 * layer.margin) * ratio)), h = Math.max(1, Math.round((height + 2 * layer.margin) * ratio));
    if (one.width === w && one.height === h) return;
    one.width = w;
    one.height = h;
    one.style.width = width + 2 * layer.margin + "px";
    one.style.height = height + 2 * layer.margin + "px";
    one.style.left = one.style.top = -layer.margin + "px";
    layer.image = null;
}

function showMeshLayer(moving) {
    if (moving && layer.image && layer.count > MANY_CORNERS) {
        const was = layer.image, share = view.scale / was.scale, edge = (size) => (1 - share) * (size / 2 + layer.margin);
        const x = edge(width) + (was.x - view.x) * view.scale, y = edge(height) - (was.y - view.y) * view.scale;
        layer.canvas.style.transform = `translate(${x}px, ${y}px) scale(${share})`;
        clearTimeout(layer.rest);
        layer.rest = setTimeout(draw, 110);
        return;
    }
    clearTimeout(layer.rest);
    sizeMeshLayer();
    const was = layer.image;
    // The image stays where only what lies over it is drawn anew.
    if (was && was.x === view.x && was.y === view.y && was.scale === view.scale && layer.canvas.style.transform === "") return;
    paintMeshLayer();
    layer.image = { x: view.x, y: view.y, scale: view.scale };
    layer.canvas.style.transform = "";
    if (!layer.isNew) return;
    // The part that cannot be seen follows.
    layer.isNew = false;
    if (layer.margin > 0) layer.rest = setTimeout(() => { layer.image = null; draw(); }, 250);
}

function paintMeshLayer() {
    if (!layer.gl) { paintPlain(); return; }
    const gl = layer.gl, paper = rgbOf(colors.paper).map((c) => c / 255), line = rgbOf(colors.side).map((c) => c / 255);
    gl.viewport(0, 0, layer.canvas.width, layer.canvas.height);
    gl.clearColor(...paper, 1);
    gl.clear(gl.COLOR_BUFFER_BIT);
    if (layer.count === 0) return;
    const side = DATA.meanSide * view.scale;
    gl.uniform4f(layer.at.part, view.x, view.y, 2 * view.scale / (width + 2 * layer.margin), 2 * view.scale / (height + 2 * layer.margin));
    gl.uniform4f(layer.at.line, ...line, shown.sides ? clamp((side - 1) / 4, 0, 1) * 0.7 : 0);
    gl.uniform1f(layer.at.width, (0.25 + 0.25 * clamp(side / 10, 0, 1)) * ratio);
    gl.uniform3f(layer.at.paper, ...paper);
    if (layer.isNew && layer.margin > 0) {
        gl.enable(gl.SCISSOR_TEST);
        gl.scissor(layer.margin * ratio, layer.margin * ratio, width * ratio, height * ratio);
    }
    gl.drawArrays(gl.TRIANGLES, 0, layer.count);
    gl.disable(gl.SCISSOR_TEST);
}

function paintPlain() {
    const c = layer.plain, groups = DATA.groups.map(() => null);
    c.setTransform(ratio, 0, 0, ratio, 0, 0);
    c.fillStyle = colors.paper;
    c.fillRect(0, 0, width, height);
    if (!hasMesh()) return;
    for (let e = 0; e < elementCount(); ++e) {
        if (groupOf(e).class !== "solid" || !groupOf(e).shown || !isStanding(e)) continue;
        const path = groups[arrays.elementGroup[e]] || (groups[arrays.elementGroup[e]] = new Path2D());
        corners(e).forEach((n, k) => { const p = toScreen(X(n), Y(n)); k === 0 ? path.moveTo(...p) : path.lineTo(...p); });
        path.closePath();
    }
    c.strokeStyle = colors.side;
    c.lineWidth = 0.7;
    groups.forEach((path, g) => {
        if (!path) return;
        c.fillStyle = DATA.groups[g].color;
        c.fill(path);
        if (shown.sides) c.stroke(path);
    });
}

// ---- outlines of materials ----------------------------------------------------------------------

// For the whole mesh they come with it; for a step they are the sides that one element only, or two of
// different materials, have.
function buildOutlines() {
    scene.outline = new Path2D();
    const path = scene.outline;
    if (known.step === null || !arrays.elementComes) {
        DATA.groups.forEach((group, g) => {
            for (const name of ["region" + g, "over" + g]) {
                const points = arrays[name + "Points"], ends = arrays[name + "Ends"];
                if (!points || !group.shown) continue;
                let k = 0;
                for (const end of ends) {
                    for (let first = true; k < end; ++k, first = false)
                        first ? path.moveTo(points[2 * k], points[2 * k + 1]) : path.lineTo(points[2 * k], points[2 * k + 1]);
                    path.closePath();
                }
            }
        });
        return;
    }
    const sides = new Map(), nodes = nodeCount();
    for (let e = 0; e < elementCount(); ++e) {
        if (groupOf(e).class !== "solid" || !groupOf(e).shown || !isStanding(e)) continue;
        const list = corners(e), paint = elementColor(e);
        list.forEach((a, k) => {
            const b = list[(k + 1) % list.length], key = Math.min(a, b) * nodes + Math.max(a, b), other = sides.get(key);
            if (other === paint) sides.delete(key);
            else sides.set(key, paint);
        });
    }
    for (const key of sides.keys()) {
        const a = Math.floor(key / nodes), b = key % nodes;
        path.moveTo(X(a), Y(a));
        path.lineTo(X(b), Y(b));
    }
}
