"use strict";
const data = JSON.parse(document.getElementById("data").textContent);
const columns = data.columns;
const count = columns[0].values.length;
const numbers = columns[0].values;
const states = columns[1].values;
const messages = new Map(data.messages.map((entry) => [entry[0], entry]));
const bare = new Set(data.bare);  // cases without a picture
const ROW = 64;
const byId = (id) => document.getElementById(id);
const table = byId("table"), rows = byId("rows"), detail = byId("detail");

function element(name, text, style) {
    const made = document.createElement(name);
    if (text !== undefined)
        made.textContent = text;
    if (style)
        made.className = style;
    return made;
}

const folder = (number) => `${String(Math.floor(number / 1000)).padStart(5, "0")}/${String(number).padStart(6, "0")}`;
const picture = (number) => `pictures/${folder(number)}.svg`;

function shown(value) {
    if (value === null || value === undefined)
        return "";
    return typeof value === "number" ? String(Number(value.toPrecision(7))) : String(value);
}

for (const column of columns)
    column.numeric = column.values.some((v) => typeof v === "number") && column.values.every((v) => v === null || typeof v === "number");

// --- sorting and filters -------------------------------------------------------------------------

let order = numbers.map((_, at) => at);  // of the rows that are shown
let sorted = {column: 0, down: false};
const filters = columns.map(() => null);
let chosen = -1;

// ">3", "<=4.5", "2..5", "=7", or a part of the text; undefined where it is none of these.
function test(text, numeric) {
    text = text.trim();
    if (text === "")
        return null;
    if (!numeric) {
        const low = text.toLowerCase();
        return (value) => shown(value).toLowerCase().includes(low);
    }
    const between = /^(\S+?)\s*\.\.\s*(\S+)$/.exec(text);
    if (between) {
        const low = Number(between[1]), high = Number(between[2]);
        return Number.isNaN(low) || Number.isNaN(high) ? undefined : (v) => v !== null && v >= low && v <= high;
    }
    const compared = /^(<=|>=|<|>|=)?\s*(\S+)$/.exec(text);
    const limit = compared ? Number(compared[2]) : NaN;
    if (Number.isNaN(limit))
        return undefined;
    switch (compared[1]) {
    case "<": return (v) => v !== null && v < limit;
    case "<=": return (v) => v !== null && v <= limit;
    case ">": return (v) => v !== null && v > limit;
    case ">=": return (v) => v !== null && v >= limit;
    default: return (v) => v !== null && Math.abs(v - limit) <= 1e-6 * Math.max(1, Math.abs(limit));
    }
}

function compare(a, b) {
    if (a === b)
        return 0;
    if (a === null || b === null)
        return a === null ? 1 : -1;  // what has no value comes last
    return a < b ? -1 : 1;
}

function arrange() {
    const failedOnly = byId("only-failed").checked;
    order = [];
    for (let at = 0; at < count; ++at) {
        if (failedOnly && states[at] === "finished")
            continue;
        if (filters.every((filter, k) => !filter || filter(columns[k].values[at])))
            order.push(at);
    }
    const values = columns[sorted.column].values;
    const sign = sorted.down ? -1 : 1;
    order.sort((a, b) => {
        const one = values[a], other = values[b];
        return (one === null || other === null ? compare(one, other) : sign * compare(one, other)) || a - b;
    });
    const failed = states.reduce((sum, state) => sum + (state !== "finished"), 0);
    byId("summary").textContent = `${count} cases, ${count - failed} finished, ${failed} not; ${order.length} shown`;
    rows.style.height = `${order.length * ROW}px`;
    paintRows();
    repaintPlots();
}

// --- table ---------------------------------------------------------------------------------------

const widths = ["110px", ...columns.map((column) => `${Math.min(240, Math.max(92, 9 * column.name.length + 16))}px`)].join(" ");
const drawn = new Map();  // rows that stand in the page, by their place

function paintHead() {
    const head = byId("head");
    head.style.gridTemplateColumns = widths;
    head.append(element("div", "picture"));
    columns.forEach((column, k) => {
        const cell = element("div");
        const button = element("button", column.name, column.role);
        button.type = "button";
        button.title = column.name;
        button.addEventListener("click", () => {
            sorted = {column: k, down: sorted.column === k && !sorted.down};
            head.querySelectorAll("button").forEach((other, at) => {
                other.textContent = columns[at].name + (at === k ? (sorted.down ? " \u25bc" : " \u25b2") : "");
            });
            arrange();
        });
        const input = element("input");
        input.setAttribute("aria-label", `filter of ${column.name}`);
        input.placeholder = column.numeric ? ">3  2..5" : "text";
        input.addEventListener("input", () => {
            const made = test(input.value, column.numeric);
            input.classList.toggle("wrong", made === undefined);
            filters[k] = made || null;
            arrange();
        });
        cell.append(button, input);
        head.append(cell);
    });
}

function row(place) {
    const at = order[place];
    const line = element("div", undefined, at === chosen ? "row chosen" : "row");
    line.style.gridTemplateColumns = widths;
    line.style.top = `${place * ROW}px`;
    const frame = element("div");
    if (!bare.has(numbers[at])) {
        const image = element("img");
        image.loading = "lazy";
        image.alt = "";
        image.src = picture(numbers[at]);
        frame.append(image);
    }
    line.append(frame);
    columns.forEach((column) => {
        const value = column.values[at];
        const bad = column.role === "state" && value !== "finished";
        const message = bad && messages.has(numbers[at]) ? `: ${messages.get(numbers[at])[1]}` : "";
        const cell = element("div", shown(value) + message, bad ? "bad" : column.numeric ? "number" : "");
        cell.title = cell.textContent;
        line.append(cell);
    });
    line.addEventListener("click", () => choose(at));
    return line;
}

// Only rows that can be seen stand in the page.
function paintRows(kept) {
    if (!kept) {
        for (const line of drawn.values())
            line.remove();
        drawn.clear();
    }
    const top = Math.max(0, table.scrollTop - byId("head").offsetHeight);
    const first = Math.max(0, Math.floor(top / ROW) - 3);
    const last = Math.min(order.length, Math.ceil((top + table.clientHeight) / ROW) + 3);
    for (const [place, line] of drawn)
        if (place < first || place >= last) {
            line.remove();
            drawn.delete(place);
        }
    for (let place = first; place < last; ++place)
        if (!drawn.has(place)) {
            const line = row(place);
            drawn.set(place, line);
            rows.append(line);
        }
}

// --- one case ------------------------------------------------------------------------------------

function choose(at) {
    chosen = at;
    const number = numbers[at];
    detail.textContent = "";
    detail.hidden = false;
    const close = element("button", "Close", "close");
    close.type = "button";
    close.addEventListener("click", () => {
        detail.hidden = true;
        chosen = -1;
        paintRows();
        repaintPlots();
    });
    detail.append(close, element("h2", `Case ${number}`));
    const [, message, details] = messages.get(number) || [number, "", ""];
    if (message)
        detail.append(element("p", message, "bad"));
    if (details)
        detail.append(element("pre", details));
    if (!bare.has(numbers[at])) {
        const image = element("img");
        image.alt = `The mesh of case ${number}`;
        image.src = picture(number);
        detail.append(image);
    }
    const values = element("table");
    columns.forEach((column) => {
        const line = values.insertRow();
        line.insertCell().textContent = column.name;
        line.insertCell().textContent = shown(column.values[at]);
    });
    const link = element("a", `cases/${folder(number)}/`);
    link.href = `cases/${folder(number)}/`;
    const place = element("p", "Folder: ");
    place.append(link);
    detail.append(values, place);
    paintRows();
    repaintPlots();
}

// --- plots ---------------------------------------------------------------------------------------

const WIDE = 326, HIGH = 220, LEFT = 58, RIGHT = 10, TOP = 10, BOTTOM = 38;
const plots = [];

// Where values stand on an axis; texts one beside the other.
function axis(column) {
    if (!column.numeric) {
        const names = [...new Set(column.values.filter((v) => v !== null).map(String))].sort();
        return {at: (v) => (v === null ? NaN : (names.indexOf(String(v)) + 0.5) / names.length), marks: names.map((n, k) => [n, (k + 0.5) / names.length])};
    }
    let low = Infinity, high = -Infinity;
    for (const v of column.values)
        if (v !== null) {
            low = Math.min(low, v);
            high = Math.max(high, v);
        }
    if (low === high) {
        low -= 0.5;
        high += 0.5;
    }
    const room = (high - low) * 0.04;
    low -= room;
    high += room;
    const power = 10 ** Math.floor(Math.log10((high - low) / 4));
    const step = power * [1, 2, 5, 10].find((s) => s * power >= (high - low) / 5);
    const marks = [];
    for (let k = Math.ceil(low / step); k * step <= high; ++k)
        marks.push([shown(k * step), (k * step - low) / (high - low)]);
    return {at: (v) => (v === null ? NaN : (v - low) / (high - low)), marks};
}

function paintPlot(plot) {
    const scale = window.devicePixelRatio || 1;
    plot.canvas.width = WIDE * scale;
    plot.canvas.height = HIGH * scale;
    const pen = plot.canvas.getContext("2d");
    pen.scale(scale, scale);
    plot.horizontal ||= axis(plot.x);
    plot.vertical ||= axis(plot.y);
    const onPage = (at) => [LEFT + plot.horizontal.at(plot.x.values[at]) * (WIDE - LEFT - RIGHT), HIGH - BOTTOM - plot.vertical.at(plot.y.values[at]) * (HIGH - TOP - BOTTOM)];
    plot.onPage = onPage;
    pen.font = "11px system-ui, sans-serif";
    pen.lineWidth = 1;
    pen.strokeStyle = "#e3e7ed";
    pen.fillStyle = "#4b5768";
    pen.textAlign = "center";
    for (const [text, share] of plot.horizontal.marks) {
        const x = LEFT + share * (WIDE - LEFT - RIGHT);
        pen.strokeRect(x, TOP, 0, HIGH - TOP - BOTTOM);
        pen.fillText(text, x, HIGH - BOTTOM + 14, 70);
    }
    pen.textAlign = "right";
    for (const [text, share] of plot.vertical.marks) {
        const y = HIGH - BOTTOM - share * (HIGH - TOP - BOTTOM);
        pen.strokeRect(LEFT, y, WIDE - LEFT - RIGHT, 0);
        pen.fillText(text, LEFT - 4, y + 4, LEFT - 6);
    }
    pen.fillStyle = "#1c2430";
    pen.textAlign = "center";
    pen.fillText(plot.x.name, LEFT + (WIDE - LEFT - RIGHT) / 2, HIGH - 6);
    pen.fillStyle = "rgba(36, 82, 122, 0.45)";
    const size = order.length > 2000 ? 2 : 4;
    for (const at of order) {
        const [x, y] = onPage(at);
        if (x === x && y === y)
            pen.fillRect(x - size / 2, y - size / 2, size, size);
    }
    if (chosen >= 0) {
        const [x, y] = onPage(chosen);
        pen.strokeStyle = "#b3261e";
        pen.lineWidth = 2;
        pen.strokeRect(x - 5, y - 5, 10, 10);
    }
}

const seen = new IntersectionObserver((entries) => {
    for (const entry of entries) {
        const plot = plots.find((p) => p.canvas === entry.target);
        plot.visible = entry.isIntersecting;
        if (plot.visible)
            paintPlot(plot);
    }
});

function repaintPlots() {
    for (const plot of plots)
        if (plot.visible)
            paintPlot(plot);
}

function makePlots() {
    if (plots.length > 0)
        return;
    for (const y of columns.filter((c) => c.role === "value" && c.numeric))
        for (const x of columns.filter((c) => c.role === "parameter")) {
            const figure = element("figure");
            const canvas = element("canvas");
            canvas.setAttribute("role", "img");
            canvas.setAttribute("aria-label", `${y.name} against ${x.name}`);
            const plot = {x, y, canvas, visible: false};
            canvas.addEventListener("click", (event) => {
                const box = canvas.getBoundingClientRect();
                let best = -1, least = 400;
                for (const at of order) {
                    const [px, py] = plot.onPage(at);
                    const distance = (px - event.clientX + box.left) ** 2 + (py - event.clientY + box.top) ** 2;
                    if (distance < least) {
                        least = distance;
                        best = at;
                    }
                }
                if (best >= 0)
                    choose(best);
            });
            figure.append(element("figcaption", `${y.name} against ${x.name}`), canvas);
            byId("plots").append(figure);
            plots.push(plot);
            seen.observe(canvas);
        }
}

// --- events --------------------------------------------------------------------------------------

function show(what) {
    table.hidden = what !== "table";
    byId("plots").hidden = what !== "plots";
    byId("show-table").setAttribute("aria-pressed", String(what === "table"));
    byId("show-plots").setAttribute("aria-pressed", String(what === "plots"));
    if (what === "plots")
        makePlots();
    else
        paintRows();
}

byId("title").textContent = data.title;
byId("show-table").addEventListener("click", () => show("table"));
byId("show-plots").addEventListener("click", () => show("plots"));
byId("only-failed").addEventListener("change", arrange);
byId("clear").addEventListener("click", () => {
    filters.fill(null);
    byId("only-failed").checked = false;
    for (const input of byId("head").querySelectorAll("input"))
        input.value = "";
    arrange();
});
table.addEventListener("scroll", () => paintRows(true));
window.addEventListener("resize", () => paintRows(true));
paintHead();
arrange();
document.body.dataset.ready = "yes";
