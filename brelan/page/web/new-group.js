"use strict";
// A new group that is drawn: a line, an outline or an arc by its points. Its cards are written at the cursor.

const drawn = { form: "", points: [], at: null, targets: { points: [], sides: [] }, cross: null };

const HINTS = {
    line: "Click points; Enter or a double click ends, Backspace takes the last one back, Esc drops.",
    outline: "Click corners; Enter or a double click closes it, Backspace takes the last one back, Esc drops.",
    arc: "Click the start, a point on the way and the end; Esc drops.",
};

function useTool(form) {
    drawn.form = form;
    drawn.points = [];
    drawn.at = drawn.cross = null;
    for (const name of ["select", "line", "outline", "arc"]) press("tool-" + name, name === (form || "select"));
    el("draw-options").hidden = form === "";
    el("draw-hint").textContent = HINTS[form] || "";
    canvas.classList.toggle("drawing", form !== "");
    marks.snap = marks.hover = null;
    if (form) drawn.targets = snapTargets(0);
    sizeChanged();
}

function startTools() {
    for (const name of ["select", "line", "outline", "arc"])
        el("tool-" + name).addEventListener("click", () => { useTool(name === "select" ? "" : name); canvas.focus(); });
    el("draw-done").addEventListener("click", endDrawing);
    el("draw-drop").addEventListener("click", () => useTool(""));
    el("draw-options").addEventListener("keydown", (event) => {
        if (event.key === "Enter" && event.target.tagName === "INPUT") endDrawing();
        if (event.key === "Escape") { useTool(""); canvas.focus(); }
    });
}

function snappedPoint(x, y, free) {
    const own = { points: [...drawn.targets.points, ...drawn.points], sides: drawn.targets.sides };
    const to = snapped(x, y, own, free);
    if (to.to === "") { to.x = inFewFigures(to.x); to.y = inFewFigures(to.y); }
    return to;
}

function aimAt(x, y, free) {
    const to = snappedPoint(x, y, free);
    drawn.at = [to.x, to.y];
    marks.snap = { at: drawn.at, to: `${shortNumber(to.x)}, ${shortNumber(to.y)}${to.to ? "  " + to.to : ""}` };
    draw();
}

function setPoint() {
    if (!drawn.at) return;
    const last = drawn.points[drawn.points.length - 1];
    if (last && last[0] === drawn.at[0] && last[1] === drawn.at[1]) return;
    const first = drawn.points[0];
    if (drawn.form === "outline" && drawn.points.length > 2 && first[0] === drawn.at[0] && first[1] === drawn.at[1]) { endDrawing(); return; }
    drawn.points.push(drawn.at);
    say(`Point ${drawn.points.length}: ${shortNumber(drawn.at[0])}, ${shortNumber(drawn.at[1])}`);
    if (drawn.form === "arc" && drawn.points.length === 3) endDrawing();
    draw();
}

async function endDrawing() {
    const least = { line: 2, outline: 3, arc: 3 }[drawn.form];
    if (!least) return;
    if (drawn.points.length < least) { el("draw-hint").textContent = `It takes ${least} points at least. ${HINTS[drawn.form]}`; return; }
    const material = Number(el("draw-material").value), text = deckText();
    if (!Number.isInteger(material)) { el("draw-hint").textContent = "The material is a whole number."; el("draw-material").focus(); return; }
    try {
        const answer = await ask("draw", { text, line: cm.getCursor().line, form: drawn.form, points: drawn.points, material, title: el("draw-title").value });
        if (deckText() !== text) { el("draw-hint").textContent = "The deck was changed meanwhile; press Enter again."; return; }
        applyEdits(answer.edits, "*draw" + ++handles.drags);
        goToLine(answer.line, 0);
        say("The cards of the new group are written.");
        useTool("");
    } catch (error) {
        if (error instanceof Refused) el("draw-hint").textContent = error.message;
    }
}

// Keys while a group is drawn: a cross that the arrows move by a grid step, and a point where it is.
function drawingKey(event) {
    if (event.key === "Escape") { useTool(""); return true; }
    if (event.key === "Enter") { endDrawing(); return true; }
    if (event.key === "Backspace") { drawn.points.pop(); draw(); return true; }
    if (event.key === " ") { setPoint(); return true; }
    const step = gridStep() * (event.shiftKey ? 10 : 1);
    const moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
    if (!moves[event.key]) return false;
    const at = drawn.at || [onGrid(view.x + DATA.origin[0], step), onGrid(view.y + DATA.origin[1], step)];
    drawn.at = [rounded(at[0] + moves[event.key][0]), rounded(at[1] + moves[event.key][1])];
    marks.snap = { at: drawn.at, to: `${shortNumber(drawn.at[0])}, ${shortNumber(drawn.at[1])}` };
    say(`${shortNumber(drawn.at[0])}, ${shortNumber(drawn.at[1])}`);
    draw();
    return true;
}

// The arc through three points as a polyline; two points, or three in a line, as they are.
function arcPoints([a, b, c]) {
    if (!c) return [a, b].filter(Boolean);
    const d = 2 * (a[0] * (b[1] - c[1]) + b[0] * (c[1] - a[1]) + c[0] * (a[1] - b[1]));
    if (Math.abs(d) < 1e-12) return [a, b, c];
    const s = (p) => p[0] * p[0] + p[1] * p[1];
    const x = (s(a) * (b[1] - c[1]) + s(b) * (c[1] - a[1]) + s(c) * (a[1] - b[1])) / d;
    const y = (s(a) * (c[0] - b[0]) + s(b) * (a[0] - c[0]) + s(c) * (b[0] - a[0])) / d;
    const angle = (p) => Math.atan2(p[1] - y, p[0] - x), turn = 2 * Math.PI, from = angle(a), radius = Math.hypot(a[0] - x, a[1] - y);
    const ahead = (p) => ((angle(p) - from) % turn + turn) % turn;
    const sweep = ahead(b) <= ahead(c) ? ahead(c) : ahead(c) - turn;
    return Array.from({ length: 49 }, (_, k) => [x + radius * Math.cos(from + sweep * k / 48), y + radius * Math.sin(from + sweep * k / 48)]);
}

function paintNewGroup() {
    if (!drawn.form) return;
    const points = drawn.at ? [...drawn.points, drawn.at] : drawn.points;
    const line = drawn.form === "arc" ? arcPoints(points) : points;
    if (line.length > 1) {
        ctx.beginPath();
        line.forEach((p, k) => (k === 0 ? ctx.moveTo(...shapeToScreen(p)) : ctx.lineTo(...shapeToScreen(p))));
        if (drawn.form === "outline") ctx.closePath();
        ctx.strokeStyle = colors.accent;
        ctx.lineWidth = 2.4;
        ctx.setLineDash([7, 4]);
        ctx.stroke();
        ctx.setLineDash([]);
    }
    ctx.fillStyle = colors.accent;
    for (const p of drawn.points) dot(...shapeToScreen(p), 4);
}
