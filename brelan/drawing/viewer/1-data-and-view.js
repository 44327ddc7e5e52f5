"use strict";
// DATA stands in the page with the arrays as one compressed block.

const el = (id) => document.getElementById(id);
const canvas = el("canvas"), ctx = canvas.getContext("2d");
const DETAIL = 4000;   // elements in view up to which each is drawn by itself
const NUMBERS = 1500;  // numbers in view up to which they are shown
const SLOW = 40;       // milliseconds of drawing from which sides of elements wait for the end of a movement

// ---- data ---------------------------------------------------------------------------------------

async function unpack() {
    const text = atob(DATA.arrays.base64), bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate"));
    const buffer = await new Response(stream).arrayBuffer();
    const types = { i32: Int32Array, f32: Float32Array, u32: Uint32Array };
    for (const a of DATA.arrays.list) arrays[a.name] = new types[a.type](buffer, a.offset, a.count);
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
