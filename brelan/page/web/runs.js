"use strict";
// From a keystroke to the picture: the text is checked and run at once, and a newer text ends the older run.

const runs = { page: Array.from(crypto.getRandomValues(new Uint32Array(2)), (word) => word.toString(36)).join(""), number: 0, checking: false, checkAgain: false, current: null, runAgain: false, key: 0, begun: 0, waiting: 0, shown: 0, doubts: 0 };

function textChanged(change) {
    if (cm.getValue() === undefined) return;
    clearTimeout(runs.doubts);
    showSaved();
    keepSoon();
    if (change && runs.key === 0) runs.key = performance.now();
    // A point that is dragged changes the text with each movement: there a run is let end, to show anything.
    if (runs.current && (handles.held || handles.moving)) runs.runAgain = true;
    else runText();
    checkText();
}

async function checkText() {
    if (runs.checking) { runs.checkAgain = true; return; }
    runs.checking = true;
    do {
        runs.checkAgain = false;
        const text = deckText();
        try {
            const answer = await ask("check", { text });
            if (runs.checkAgain) continue;  // of a text that is no longer there
            known.check = answer;
            known.group = groupAt(cm.getCursor().line);
            showFindings();
            cursorMoved();
            buildHandles();
            if (!hasMesh() && scene.fitted) fitAll();
            draw();
        } catch (error) {
            if (error instanceof Refused) showRunState(error.message, "bad");
        }
    } while (runs.checkAgain);
    runs.checking = false;
}

async function runText() {
    if (runs.current) runs.current.abort();
    const own = runs.current = new AbortController(), number = ++runs.number, key = runs.key;
    runs.key = 0;
    runs.begun = performance.now();
    runs.runAgain = false;
    clearTimeout(runs.waiting);
    runs.waiting = setTimeout(() => showRunState("running", ""), 400);
    try {
        const { head, lists: values } = await askArrays("run", { text: deckText(), cut: el("cut").value, number, page: runs.page }, own.signal);
        if (number < runs.shown || runs.current !== own) return;
        const arrived = performance.now();
        runs.shown = number;
        takeRun(head, values);
        const taken = performance.now() - arrived;
        draw(() => {
            // The frame after the drawing is the one that is seen.
            requestAnimationFrame(() => {
                const end = performance.now();
                performance.clearMeasures("brelan-picture");
                performance.measure("brelan-picture", { start: key || runs.begun, end, detail: { run: head.seconds, answer: arrived - runs.begun, taken, elements: hasMesh() ? elementCount() : 0 } });
                el("timing").textContent = `${Math.round(end - (key || runs.begun))} ms`;
            });
        });
    } catch (error) {
        if (error.name === "AbortError" || (error instanceof Refused && error.status === 409)) return;
        if (error instanceof Refused) { showStale(error.message); showRunState("the run failed", "bad"); }
    } finally {
        if (runs.current === own) {
            runs.current = null;
            clearTimeout(runs.waiting);
            el("progress").hidden = true;
            if (runs.runAgain) runText();
            else askDoubtsSoon();
        }
    }
}

// Findings that need the meshes cost more than those of the text: they come when nobody types.
function askDoubtsSoon() {
    const WAIT = 300, text = deckText();
    clearTimeout(runs.doubts);
    runs.doubts = setTimeout(async () => {
        try {
            const answer = await ask("doubts", { text });
            if (deckText() !== text || runs.checking) return;
            known.check.findings = answer.findings;
            showFindings();
        } catch (error) {
            if (!(error instanceof Refused)) return;  // a lost server is told elsewhere
            showRunState(error.message, "bad");
        }
    }, WAIT);
}

function takeRun(head, values) {
    const end = head.end || { status: 0 };
    document.body.dataset.run = head.number;
    document.body.dataset.status = end.status;
    if (end.status !== 0 || !values.corners) {
        findings.run = end.status !== 0 ? end : null;
        showFindings();
        showStale(end.message || "The deck makes no mesh.");
        showRunState(end.status !== 0 ? "the deck does not run" : "no mesh", "bad");
        return;
    }
    if (findings.run) { findings.run = null; showFindings(); }
    el("stage").classList.remove("stale");
    el("stale").hidden = el("empty").hidden = true;
    takeMesh(head, values);
    el("summary").textContent = `${nodeCount()} nodes, ${elementCount()} elements`;
    el("cut").title = head.cutReason || "How elements are cut along lines and outlines";
    showRunState(`${head.cut === "sound" ? "sound cut" : "cut by the rules"}${head.seconds !== undefined ? ", run in " + shortTime(head.seconds) : ""}`, "good");
}

const shortTime = (seconds) => (seconds < 1 ? Math.max(1, Math.round(seconds * 1000)) + " ms" : seconds.toFixed(1) + " s");

// The last mesh stays, marked: what one sees is older than what one reads.
function showStale(message) {
    const has = hasMesh();
    el("stage").classList.toggle("stale", has);
    el("stale").hidden = !has;
    el("stale").textContent = "Older mesh: the deck does not run as it is";
    el("stale").title = message;
    el("empty").hidden = has;
    el("empty").textContent = message;
    draw();
}

function showRunState(text, kind) {
    const place = el("run-state");
    if (place.textContent !== text) place.textContent = text;
    place.className = kind;
}

function showProgress(p) {
    if (!runs.current || performance.now() - runs.begun < 250) return;
    el("progress").hidden = false;
    const bar = el("progress-bar");
    if (p.groups > 0) { bar.max = p.groups; bar.value = p.group; } else bar.removeAttribute("value");
    const parts = [];
    if (p.decks > 1) parts.push(`deck ${p.deck} of ${p.decks}`);
    if (p.pass) parts.push("pass " + p.pass);
    if (p.groups > 0) parts.push(`group ${p.group} of ${p.groups}${p.title ? ": " + p.title : ""}`);
    else if (p.work) parts.push(p.work);
    el("progress-text").textContent = parts.join(", ");
}
