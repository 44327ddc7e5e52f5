"use strict";
// The panes: how wide the deck is, sizes of the canvases, keys of the whole page.

const isNarrow = () => matchMedia("(max-width: 760px)").matches;
const sizing = { share: Number(remembered("share")) || 42, pending: 0 };

function resize() {
    const box = el("stage").getBoundingClientRect();
    ratio = window.devicePixelRatio || 1;
    width = box.width;
    height = box.height;
    const w = Math.max(1, Math.round(width * ratio)), h = Math.max(1, Math.round(height * ratio));
    if (canvas.width !== w) canvas.width = w;
    if (canvas.height !== h) canvas.height = h;
}

// What is shown or hidden above the drawing changes its height.
function sizeChanged() {
    if (sizing.pending) return;
    sizing.pending = requestAnimationFrame(() => {
        sizing.pending = 0;
        resize();
        scene.fitted ? fitAll() : draw();
        paint();
    });
}

function useShare(percent) {
    sizing.share = clamp(percent, 15, 85);
    el("deck-pane").style[isNarrow() ? "height" : "width"] = sizing.share + "%";
    el("deck-pane").style[isNarrow() ? "width" : "height"] = "";
    el("divider").setAttribute("aria-valuenow", Math.round(sizing.share));
    el("divider").setAttribute("aria-orientation", isNarrow() ? "horizontal" : "vertical");
    el("divider").setAttribute("aria-label", isNarrow() ? "Height of the deck" : "Width of the deck");
    remember("share", String(sizing.share));
    if (cm) { cm.refresh(); cm.scrollIntoView(null); }
    sizeChanged();
}

function startDivider() {
    const divider = el("divider");
    divider.addEventListener("pointerdown", (event) => { divider.setPointerCapture(event.pointerId); event.preventDefault(); divider.focus(); });
    divider.addEventListener("pointermove", (event) => {
        if (!divider.hasPointerCapture(event.pointerId)) return;
        const box = el("panes").getBoundingClientRect();
        useShare(100 * (isNarrow() ? (event.clientY - box.top) / box.height : (event.clientX - box.left) / box.width));
    });
    divider.addEventListener("keydown", (event) => {
        const way = { ArrowLeft: -3, ArrowUp: -3, ArrowRight: 3, ArrowDown: 3, Home: -100, End: 100 }[event.key];
        if (!way) return;
        useShare(sizing.share + way);
        event.preventDefault();
    });
    new ResizeObserver(sizeChanged).observe(el("stage"));
    matchMedia("(max-width: 760px)").addEventListener("change", () => useShare(sizing.share));
}

// ---- keys ---------------------------------------------------------------------------------------

const KEYS = [["Ctrl-S", "save the deck"], ["Ctrl-Z, Ctrl-Y", "undo and redo, also of what was dragged or drawn"], ["Ctrl-Space", "values of the field at the cursor"],
    ["Ctrl-Left, Ctrl-Right", "field before and after"], ["F8, Shift-F8", "next and last finding"], ["Ctrl-F, Ctrl-G", "search, and search on"], ["Alt-G", "go to a line"],
    ["F6, Shift-F6", "next and last part of the page"], ["In the drawing", ""], ["arrows, + and -, 0", "pan, zoom, all of it"], ["[ and ]", "step before and after"],
    ["Enter", "the group in the middle; again: what lies under it"], ["Tab", "to the handles of the group at the cursor"], ["arrows on a handle", "move it by a step of the grid; with Shift by ten"],
    ["S, L, O, A", "select; draw a line, an outline, an arc"], ["While drawing", ""], ["click, or arrows and Space", "set a point"], ["Enter, Backspace, Esc", "done; last point back; drop"], ["Alt", "while dragging or drawing: no snapping"]];

function startKeys() {
    const table = make("table");
    for (const [keys, what] of KEYS) table.insertRow().append(make("th", { textContent: keys, scope: "row" }), make("td", { textContent: what }));
    el("keys-body").append(table);
    el("help-button").addEventListener("click", () => el("keys").showModal());
    el("keys-close").addEventListener("click", () => el("keys").close());
    const stops = () => [el("save"), cm.getInputField(), el("divider"), el("tool-select"), canvas, ...(el("steps").hidden ? [] : [el("step")]), el("tab-" + lists.now)];
    document.addEventListener("keydown", (event) => {
        if (event.key === "F1") el("keys").showModal();
        else if (event.key === "F6") {
            const list = stops(), at = list.findIndex((s) => s === document.activeElement || (s === canvas && el("stage").contains(document.activeElement)));
            list[(at + (event.shiftKey ? -1 : 1) + list.length) % list.length].focus();
        } else if (event.key === "F8" && !cm.hasFocus()) nextFinding(event.shiftKey ? -1 : 1);
        else if ((event.ctrlKey || event.metaKey) && event.key.toLowerCase() === "s") { if (!event.defaultPrevented) save(false); }
        else return;
        event.preventDefault();
    });
}

function startShown() {
    toggle("show-sides", (on) => { shown.sides = on; layer.image = null; draw(); });
    toggle("show-codes", (on) => { shown.codes = on; if (on && hasMesh() && !scene.details) askDetails(); draw(); });
    toggle("show-shapes", (on) => { shown.shapes = on; draw(); });
    toggle("show-numbers", (on) => { shown.numbers = on; if (on && hasMesh() && !scene.details) askDetails(); draw(); });
    for (const name of ["nodes", "lines", "grid"]) toggle("snap-" + name, () => {});
    el("colour").addEventListener("change", () => useColor(el("colour").value));
}
