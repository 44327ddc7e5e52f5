"use strict";
// Handles of the group at the cursor, or of the blocks, the dam or the window: each is a button that the pointer
// drags and the arrow keys move. The server says which numbers of the deck change.

const MOST_HANDLES = 300;
const handles = { buttons: new Map(), held: null, moving: false, wanted: null, drags: 0 };

function handlesToShow() {
    const all = known.check.handles, own = all.filter((h) => (h.group || 0) === known.group);
    return own.slice(0, MOST_HANDLES);
}

const handleName = (h) => `${h.title || h.kind}, x ${shortNumber(h.x)}, y ${shortNumber(h.y)}`;

function buildHandles() {
    const list = handlesToShow(), ids = new Set(list.map((h) => h.id));
    for (const [id, button] of handles.buttons)
        if (!ids.has(id)) { button.remove(); handles.buttons.delete(id); }
    let last = null;
    for (const h of list) {
        let button = handles.buttons.get(h.id);
        if (!button) {
            button = make("button", { type: "button", className: `handle ${h.id.endsWith(".origin") ? "origin" : h.kind}` + (h.along ? " along-" + h.along : "") });
            listenToHandle(button, h.id);
            handles.buttons.set(h.id, button);
            last ? last.after(button) : el("handles").prepend(button);
        }
        button.handle = h;
        button.setAttribute("aria-label", handleName(h));
        last = button;
    }
}

function placeHandles() {
    for (const button of handles.buttons.values()) {
        const [x, y] = shapeToScreen([button.handle.x, button.handle.y]);
        const away = x < -20 || y < -20 || x > width + 20 || y > height + 20;
        button.style.visibility = away && button !== document.activeElement ? "hidden" : "visible";
        button.style.transform = `translate(${x.toFixed(1)}px, ${y.toFixed(1)}px)`;
    }
}

function listenToHandle(button, id) {
    button.addEventListener("pointerdown", (event) => {
        if (event.button !== 0) return;
        event.preventDefault();
        button.focus({ preventScroll: true });
        button.setPointerCapture(event.pointerId);
        button.classList.add("held");
        const h = button.handle, start = pointerPlace(event);
        handles.held = { id, targets: snapTargets(h.group), from: [h.x - start[0], h.y - start[1]], origin: "*drag" + ++handles.drags, moved: false, line: h.line };
        goToLine(h.line, 0);
    });
    button.addEventListener("pointermove", (event) => {
        const held = handles.held;
        if (!held || held.id !== id) return;
        const at = pointerPlace(event), free = event.altKey || event.ctrlKey || event.metaKey;
        if (!held.moved && Math.hypot(event.movementX, event.movementY) === 0) return;
        held.moved = true;
        const to = snapped(at[0] + held.from[0], at[1] + held.from[1], held.targets, free);
        if (to.to === "") { to.x = inFewFigures(to.x); to.y = inFewFigures(to.y); }
        marks.snap = { at: [to.x, to.y], to: `${shortNumber(to.x)}, ${shortNumber(to.y)}${to.to ? "  " + to.to : ""}` };
        moveHandle(id, to.x, to.y, held.origin);
        draw();
    });
    const up = () => {
        button.classList.remove("held");
        handles.held = null;
        marks.snap = null;
        draw();
    };
    button.addEventListener("pointerup", up);
    button.addEventListener("pointercancel", up);
    button.addEventListener("lostpointercapture", up);
    button.addEventListener("keydown", (event) => {
        const step = gridStep() * (event.shiftKey ? 10 : 1), h = button.handle;
        const moves = { ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step] };
        if (event.key === "Enter") { goToLine(h.line, 0); cm.focus(); event.preventDefault(); return; }
        if ((event.ctrlKey || event.metaKey) && event.key === "z") { cm.undo(); event.preventDefault(); return; }
        if (!moves[event.key] || event.ctrlKey || event.metaKey) return;
        event.preventDefault();
        event.stopPropagation();
        const at = handles.wanted && handles.wanted.id === id ? handles.wanted : h;
        moveHandle(id, rounded(at.x + moves[event.key][0]), rounded(at.y + moves[event.key][1]), "+nudge" + id);
    });
    button.addEventListener("focus", () => { say(handleName(button.handle)); draw(); });
}

// One question at a time; what is wanted meanwhile waits, and only the last of it is asked for.
async function moveHandle(id, x, y, origin) {
    handles.wanted = { id, x, y, origin };
    if (handles.moving) return;
    handles.moving = true;
    while (handles.wanted) {
        const wanted = handles.wanted, text = deckText();
        try {
            const answer = await ask("move", { text, handle: wanted.id, x: wanted.x, y: wanted.y });
            if (deckText() !== text) continue;  // written meanwhile: its columns may be others
            const button = handles.buttons.get(wanted.id);
            if (button) Object.assign(button.handle, { x: answer.x, y: answer.y });
            if (handles.wanted === wanted) handles.wanted = null;
            applyEdits(answer.edits, wanted.origin);
            if (button) button.setAttribute("aria-label", handleName(button.handle));
            say(`x ${shortNumber(answer.x)}, y ${shortNumber(answer.y)}`);
        } catch (error) {
            if (handles.wanted === wanted) handles.wanted = null;
            if (error instanceof Refused) showUnder(error.message);
        }
    }
    handles.moving = false;
    draw();
}
