// ---- picking and records ------------------------------------------------------------------------

let selection = null, lastPick = { x: NaN, y: NaN, turn: 0 };
function pick(x, y) {
    const list = hits(x, y), same = Math.hypot(x - lastPick.x, y - lastPick.y) * view.scale < 3;
    lastPick = { x, y, turn: same ? lastPick.turn + 1 : 0 };
    select(list.length === 0 ? null : list[lastPick.turn % list.length], list.length);
}

function select(what, among) {
    selection = what;
    el("record").replaceChildren();
    el("message").textContent = "";
    if (what) what.type === "node" ? showNode(what.index) : showElement(what.index);
    if (among > 1) el("record").append(`One of ${among} at this place; click again for the next.`);
    draw();
}

function table(title, rows) {
    const head = document.createElement("h3"), body = document.createElement("table");
    head.textContent = title;
    for (const [name, value] of rows) {
        const line = body.insertRow(), th = document.createElement("th"), td = document.createElement("td");
        th.textContent = name;
        Array.isArray(value) ? td.append(...value) : td.textContent = value;
        line.append(th, td);
    }
    el("record").append(head, body);
}

function link(type, index) {
    const a = document.createElement("a");
    a.textContent = type === "node" ? arrays.nodeNumber[index] : arrays.elementNumber[index];
    a.addEventListener("click", () => { select({ type, index }); });
    return a;
}

const spaced = (list) => list.flatMap((item, k) => (k === 0 ? [item] : [" ", item]));

function showNode(n) {
    const users = inside(grid.elements, X(n), Y(n), X(n), Y(n), Infinity).filter((e) => corners(e).includes(n));
    table("Node " + arrays.nodeNumber[n], [
        ["x, y", shortNumber(arrays.x[n]) + ", " + shortNumber(arrays.y[n])],
        ...DATA.codes.map((code, k) => [code.name, arrays["code" + k][n]]),
        ...DATA.nodeValues.map((name) => [name, shortNumber(arrays["node" + name][n])]),
        ["elements", spaced(users.map((e) => link("element", e)))],
    ]);
}

function showElement(e) {
    const group = groupOf(e), list = corners(e);
    let area = 0;
    list.forEach((a, k) => { const b = list[(k + 1) % list.length]; area += ((X(a) - X(list[0])) * (Y(b) - Y(list[0])) - (X(b) - X(list[0])) * (Y(a) - Y(list[0]))) / 2; });
    const rows = [["type", list.length === 2 ? group.class : group.class === "joint" ? "joint" : list.length === 3 ? "triangle" : "quadrilateral"],
        ["material", group.material], ["nodes", spaced(list.map((n) => link("node", n)))]];
    if (arrays.midsides && !isLine(e)) rows.push(["midside nodes", [...arrays.midsides.slice(4 * e, 4 * e + 4)].join(" ")]);
    if (!isLine(e)) {
        DATA.attributes.forEach((name) => rows.push([name, shortNumber(arrays["attribute" + name][e])]));
        rows.push(["area", shortNumber(area)]);
    } else rows.push(["length", shortNumber(Math.hypot(X(list[0]) - X(list[1]), Y(list[0]) - Y(list[1])))]);
    for (const fault of DATA.faults) if (fault.element === arrays.elementNumber[e]) rows.push(["unsound", fault.text]);
    table("Element " + arrays.elementNumber[e], rows);
}

// ---- search -------------------------------------------------------------------------------------

function find(type, number) {
    const index = (type === "node" ? arrays.nodeNumber : arrays.elementNumber).indexOf(number);
    return index < 0 ? null : { type, index };
}

function search(text) {
    const match = /^\s*([a-z]*)\s*(\d+)\s*$/i.exec(text);
    if (!match || (match[1] && !"nodes".startsWith(match[1].toLowerCase()) && !"elements".startsWith(match[1].toLowerCase()))) {
        el("message").textContent = "expected a number, n 12 for a node or e 34 for an element";
        return;
    }
    const number = Number(match[2]), word = match[1].toLowerCase();
    const wantsNode = word && "nodes".startsWith(word), wantsElement = word && !wantsNode;
    const found = (wantsNode ? null : find("element", number)) || (wantsElement ? null : find("node", number));
    if (!found) {
        el("message").textContent = `there is no ${wantsNode ? "node" : wantsElement ? "element" : "node or element"} ${number}`;
        return;
    }
    goTo(found);
}

function goTo(what) {
    const list = what.type === "node" ? [what.index] : corners(what.index);
    const [x, y] = what.type === "node" ? [X(what.index), Y(what.index)] : middle(what.index);
    view.x = x;
    view.y = y;
    const size = Math.max(DATA.meanSide, ...list.map((n) => 2 * Math.hypot(X(n) - x, Y(n) - y)));
    view.scale = clamp(view.scale, 60 / size, Math.max(60 / size, 0.5 * Math.min(width, height) / size));
    select(what);
}

// The part behind # opens the page at a place: #node=12, #element=34, or #at=10,20 as if that point were clicked.
function readAddress() {
    for (const part of location.hash.slice(1).split("&")) {
        const [key, value] = part.split("=");
        if (key === "node" || key === "element") search((key === "node" ? "n " : "e ") + value);
        if (key === "at") pick(...value.split(",").map((v, k) => Number(v) - DATA.origin[k]));
    }
}

// ---- events -------------------------------------------------------------------------------------

function listen() {
    const pointers = new Map();
    let moved = false, apart = 0;
    const at = (event) => { const box = canvas.getBoundingClientRect(); return [event.clientX - box.left, event.clientY - box.top]; };
    canvas.addEventListener("pointerdown", (event) => {
        canvas.setPointerCapture(event.pointerId);
        pointers.set(event.pointerId, at(event));
        moved = false;
        apart = 0;
    });
    canvas.addEventListener("pointermove", (event) => {
        const [sx, sy] = at(event), [x, y] = toMesh(sx, sy);
        el("place").textContent = `x ${shortNumber(x + DATA.origin[0])}  y ${shortNumber(y + DATA.origin[1])}`;
        const last = pointers.get(event.pointerId);
        if (!last) return;
        if (pointers.size === 1) {
            if (!moved && Math.hypot(sx - last[0], sy - last[1]) < 4) return;
            moved = true;
            canvas.classList.add("dragging");
            view.x -= (sx - last[0]) / view.scale;
            view.y += (sy - last[1]) / view.scale;
            draw(true);
        }
        pointers.set(event.pointerId, [sx, sy]);
        if (pointers.size === 2) {
            const [a, b] = [...pointers.values()], now = Math.hypot(a[0] - b[0], a[1] - b[1]);
            moved = true;
            if (apart > 0) zoom(now / apart, (a[0] + b[0]) / 2, (a[1] + b[1]) / 2);
            apart = now;
        }
    });
    const up = (event) => {
        if (pointers.delete(event.pointerId) && !moved && event.type === "pointerup") pick(...toMesh(...at(event)));
        canvas.classList.remove("dragging");
        apart = 0;
        if (moved) draw();
    };
    canvas.addEventListener("pointerup", up);
    canvas.addEventListener("pointercancel", up);
    canvas.addEventListener("wheel", (event) => { event.preventDefault(); zoom(Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015)), ...at(event)); }, { passive: false });
    canvas.addEventListener("dblclick", (event) => zoom(2, ...at(event)));
    el("search").addEventListener("submit", (event) => { event.preventDefault(); search(el("query").value); });
    document.addEventListener("keydown", (event) => {
        if (event.target === el("query")) return;
        const step = 80 / view.scale, moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
        if (moves[event.key]) { view.x += moves[event.key][0]; view.y += moves[event.key][1]; draw(true); }
        else if (event.key === "+" || event.key === "=") zoom(1.4, width / 2, height / 2);
        else if (event.key === "-") zoom(1 / 1.4, width / 2, height / 2);
        else if (event.key === "0") fit(DATA.bounds);
        else if (event.key === "Escape") select(null);
        else if (event.key === "/") el("query").focus();
        else return;
        event.preventDefault();
    });
    window.addEventListener("resize", () => { resize(); draw(); });
    window.addEventListener("hashchange", readAddress);
}

async function start() {
    el("title").textContent = DATA.title;
    el("summary").textContent = DATA.summary;
    if (typeof DecompressionStream === "undefined") {
        el("message").textContent = "This browser is too old to show the mesh.";
        return;
    }
    await unpack();
    DATA.groups.forEach((group) => { group.elements = []; });
    for (let e = 0; e < elementCount(); ++e) if (groupOf(e).class !== "solid") groupOf(e).elements.push(e);
    DATA.coded = [];
    for (let n = 0; n < nodeCount(); ++n) if (DATA.codes.some((code, k) => code.symbol && arrays["code" + k][n] !== 0)) DATA.coded.push(n);
    buildGrid();
    buildPaths();
    buildLayers();
    resize();
    listen();
    fit(DATA.window || DATA.bounds);
    readAddress();
    document.body.dataset.ready = "yes";
}

window.brelan = { view, stats, toScreen, toMesh, arrays, shown, selected: () => selection };
start().catch((error) => { el("message").textContent = "The page cannot be shown: " + error.message; });
