"use strict";
// Lists beneath the drawing: materials, what is unsound, quality, areas by step.

const TABS = ["materials", "sound", "quality", "areas"];
const lists = { now: "materials" };

function useTab(name) {
    lists.now = name;
    for (const tab of TABS) {
        const on = tab === name, button = el("tab-" + tab);
        button.setAttribute("aria-selected", on ? "true" : "false");
        button.tabIndex = on ? 0 : -1;
        el("list-" + tab).hidden = !on;
    }
    showLists();
}

function startLists() {
    for (const tab of TABS) el("tab-" + tab).addEventListener("click", () => useTab(tab));
    el("tabs").addEventListener("keydown", (event) => {
        const way = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (!way) return;
        const there = TABS.filter((t) => !el("tab-" + t).hidden), next = there[(there.indexOf(lists.now) + way + there.length) % there.length];
        useTab(next);
        el("tab-" + next).focus();
        event.preventDefault();
    });
    useTab("materials");
}

// Only the list that is seen is made.
function showLists() {
    const hasAreas = Boolean(hasMesh() && stages.steps.length > 0);
    el("tab-areas").hidden = !hasAreas;
    if (lists.now === "areas" && !hasAreas) { useTab("materials"); return; }
    const unsound = unsoundPlaces();
    el("tab-sound").replaceChildren("Soundness", ...(unsound > 0 ? [make("span", { className: "count", textContent: unsound })] : []));
    ({ materials: showMaterials, sound: showSoundness, quality: showQuality, areas: showAreas })[lists.now]();
    showLegend();
}

function swatch(group) {
    const sample = make("span", { className: "swatch" + (group.class === "solid" ? "" : " line " + group.class) });
    sample.style[group.class === "solid" ? "background" : "borderTopColor"] = group.color;
    return sample;
}

function showMaterials() {
    const place = el("list-materials");
    if (!hasMesh()) { place.replaceChildren(make("p", { className: "said-line", textContent: "No mesh yet." })); return; }
    const had = document.activeElement && place.contains(document.activeElement) ? [...place.querySelectorAll("input")].indexOf(document.activeElement) : -1;
    place.replaceChildren(make("div", { className: "columns" }, ...DATA.groups.map((group) => {
        const box = make("input", { type: "checkbox", checked: group.shown });
        box.addEventListener("change", () => { group.shown = box.checked; recolor(); });
        return make("label", { className: "layer" }, box, swatch(group), group.name, make("span", { className: "amount", textContent: group.count }));
    })));
    if (had >= 0) place.querySelectorAll("input")[had].focus();
}

// ---- soundness ----------------------------------------------------------------------------------

const isUnsound = (finding) => finding.severity === "error";
const unsoundPlaces = () => (DATA.findings || []).filter(isUnsound).reduce((sum, f) => sum + f.count, 0);

function showSoundness() {
    const MOST = 60, parts = [], list = [...(DATA.findings || [])].sort((a, b) => isUnsound(b) - isUnsound(a));
    if (!hasMesh()) parts.push(make("p", { className: "said-line", textContent: "No mesh yet." }));
    else if (list.length === 0) parts.push(make("p", { className: "said-line", textContent: "The mesh is sound." }));
    for (const finding of list) {
        parts.push(make("div", { className: "check-title", textContent: finding.title }));
        for (const place of finding.places.slice(0, MOST)) {
            const button = make("button", { type: "button", className: "place", textContent: place.text });
            button.addEventListener("click", () => {
                marks.place = [place.x + DATA.origin[0], place.y + DATA.origin[1]];
                zoomTo(...marks.place, 6 * DATA.meanSide);
                say(finding.title + ": " + button.textContent);
            });
            parts.push(button);
        }
        const more = finding.count - Math.min(MOST, finding.places.length);
        if (more > 0) parts.push(make("span", { className: "said-line", textContent: ` and ${more} more` }));
    }
    el("list-sound").replaceChildren(...parts);
}

// ---- quality ------------------------------------------------------------------------------------

const short = (v) => String(Number(v.toPrecision(3)));

function showQuality() {
    const place = el("list-quality"), quality = DATA.quality;
    if (!quality || !quality.histogram) { place.replaceChildren(make("p", { className: "said-line", textContent: "No mesh yet." })); return; }
    const most = Math.max(1, ...quality.histogram), edges = quality.edges, middles = quality.histogram.map((_, k) => (edges[k] + edges[k + 1]) / 2);
    const bars = quality.histogram.map((count, k) => {
        const words = `${short(edges[k])} to ${short(edges[k + 1])}: ${count} elements`;
        const bar = make("div", { className: "bar", title: words, role: "listitem", "aria-label": words });
        // A single bad element is seen beside thousands of good ones.
        bar.style.height = (count === 0 ? 0 : 4 + 96 * Math.log1p(count) / Math.log1p(most)) + "%";
        bar.style.background = cssColor(qualityColor(middles[k]));
        return bar;
    });
    const button = make("button", { type: "button", textContent: shown.color === "quality" ? "Colour by material" : "Colour by quality" });
    button.addEventListener("click", () => { useColor(shown.color === "quality" ? "material" : "quality"); });
    place.replaceChildren(make("p", { className: "said-line" }, `Smallest angle of each element, in degrees; the smallest of all is ${short(quality.smallest)}. Heights grow with the logarithm. `, button),
        make("div", { className: "bars", role: "list", "aria-label": "Elements by quality" }, ...bars),
        make("div", { className: "edges" }, ...[edges[0], edges[edges.length >> 1], edges[edges.length - 1]].map((v) => make("span", { textContent: short(v) }))));
}

function useColor(name) {
    shown.color = name;
    el("colour").value = name;
    recolor();
}

function showLegend() {
    const rows = [], row_ = (color, text) => {
        const sample = make("span", { className: "swatch" });
        sample.style.background = color;
        rows.push(make("div", { className: "row" }, sample, text));
    };
    if (hasMesh() && shown.color === "quality") for (const angle of [0, 15, 30, 45, 60]) row_(cssColor(qualityColor(angle)), `${angle}\u00b0${angle === 60 ? " and more" : ""}`);
    if (hasMesh() && known.step !== null && known.step > 0) {
        row_("repeating-linear-gradient(135deg, #1f9e52 0 3px, transparent 3px 6px)", "comes");
        row_("repeating-linear-gradient(45deg, #d03c3c 0 3px, transparent 3px 6px)", "goes");
    }
    el("legend").hidden = rows.length === 0;
    el("legend").replaceChildren(...rows);
}

// ---- areas --------------------------------------------------------------------------------------

// Of solids and joints, each in the material that it has in the step.
function areasByStep(steps) {
    if (lists.areas && lists.areas.number === scene.number) return lists.areas.list;
    const list = DATA.groups.map((group) => ({ name: group.name, values: steps.map(() => 0) }));
    for (let e = 0; e < elementCount(); ++e) {
        const c = corners(e);
        if (c.length < 3) continue;
        let area = 0;
        c.forEach((a, k) => { const b = c[(k + 1) % c.length]; area += ((X(a) - X(c[0])) * (Y(b) - Y(c[0])) - (X(b) - X(c[0])) * (Y(a) - Y(c[0]))) / 2; });
        steps.forEach((step, k) => { if (stands(e, step)) list[groupIn(e, step)].values[k] += area; });
    }
    lists.areas = { number: scene.number, list: list.filter((area) => area.values.some((v) => Math.abs(v) > 1e-9)) };
    return lists.areas.list;
}

function showAreas() {
    const table = make("table"), head = table.createTHead().insertRow(), body = table.createTBody();
    const heading = (row_, text, now) => row_.append(make("th", { textContent: text, scope: "col", className: now ? "now" : "" }));
    const steps = [0, ...stages.steps];
    heading(head, "Area of material");
    for (const step of steps) heading(head, "step " + step, step === known.step);
    for (const area of areasByStep(steps)) {
        const line = body.insertRow();
        line.append(make("th", { scope: "row" }, area.name));
        area.values.forEach((value, k) => line.append(make("td", { textContent: Number(value.toPrecision(6)), className: steps[k] === known.step ? "now" : "" })));
    }
    el("list-areas").replaceChildren(table);
}
