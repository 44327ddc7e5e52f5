"use strict";
// Saving on request only, the deck that another program changed, and the text that outlives a broken page.

const saving = { under: false, disk: null, kept: 0 };

async function save(over) {
    if (saving.under) return;
    saving.under = true;
    const text = deckText();
    try {
        const answer = await ask("save", { text, stamp: deck.stamp, over });
        deck.stamp = answer.stamp;
        saving.disk = null;
        markSaved(text);
        hideBanner("disk");
        keepText();
        say("Saved");
        showRunState("Saved", "good");
    } catch (error) {
        if (error instanceof Refused && error.status === 409 && typeof error.answer.text === "string") showChanges(error.answer);
        else if (error instanceof Refused) showBanner("save", "Not saved: " + error.message, [["Close", () => {}]], true);
    } finally {
        saving.under = false;
    }
}

// ---- the deck on disk is another ----------------------------------------------------------------

function diskChanged(disk) {
    if (disk.stamp === deck.stamp || typeof disk.text !== "string") return;
    if (disk.text === deckText()) {
        deck.stamp = disk.stamp;
        saving.disk = null;
        markSaved(disk.text);
        hideBanner("disk");
        return;
    }
    // What is saved may be followed; what is written here is never thrown away unasked.
    if (deck.watch && isSaved()) { takeDisk(disk); say("The deck was changed on disk and is shown anew."); return; }
    saving.disk = disk;
    showBanner("disk", "The deck was changed on disk by another program.", [["Show the changes", () => showChanges(disk)], ["Take it", () => takeDisk(disk)], ["Keep mine", () => keepMine(disk)]], false);
}

function takeDisk(disk) {
    replaceText(disk.text, "*disk" + disk.stamp);
    deck.stamp = disk.stamp;
    saving.disk = null;
    markSaved(disk.text);
    keepText();
    hideBanner("disk");
}

// The text here is the newer one from now on: saving replaces the one on disk.
function keepMine(disk) {
    deck.stamp = disk.stamp;
    saving.disk = null;
    editing.saved = -1;
    showSaved();
    keepText();
    hideBanner("disk");
}

function showChanges(disk) {
    saving.disk = disk;
    const pairs = linePairs(disk.text.split("\n"), deckText().split("\n")), rows = [];
    let same = [];
    const put = (old, own, name) => rows.push(make("div", { className: "pair " + name }, make("span", { className: "old", textContent: old }), make("span", { className: "new", textContent: own })));
    const flush = (last) => {
        if (same.length > 7) {
            if (rows.length > 0) same.slice(0, 3).forEach((s) => put(s, s, ""));
            put(`${same.length - (rows.length > 0 ? 3 : 0) - (last ? 0 : 3)} lines are the same`, "", "gap");
            if (!last) same.slice(-3).forEach((s) => put(s, s, ""));
        } else same.forEach((s) => put(s, s, ""));
        same = [];
    };
    for (const [old, own] of pairs) {
        if (old === own) { same.push(old); continue; }
        flush(false);
        put(old === null ? "" : old, own === null ? "" : own, "differs");
    }
    flush(true);
    el("changes-body").replaceChildren(...rows);
    if (!el("changes").open) el("changes").showModal();
    el("changes-keep").focus();
}

// Lines beside each other by a longest common sequence; what is too long for that stands as a whole.
function linePairs(a, b) {
    let from = 0, aEnd = a.length, bEnd = b.length;
    while (from < aEnd && from < bEnd && a[from] === b[from]) ++from;
    while (aEnd > from && bEnd > from && a[aEnd - 1] === b[bEnd - 1]) { --aEnd; --bEnd; }
    const pairs = a.slice(0, from).map((s) => [s, s]), n = aEnd - from, m = bEnd - from;
    const old = [], own = [];
    const flush = () => { for (let k = 0; k < Math.max(old.length, own.length); ++k) pairs.push([k < old.length ? old[k] : null, k < own.length ? own[k] : null]); old.length = own.length = 0; };
    if (n * m > 4e6) { old.push(...a.slice(from, aEnd)); own.push(...b.slice(from, bEnd)); flush(); }
    else {
        const length = new Uint32Array((n + 1) * (m + 1)), at = (i, j) => i * (m + 1) + j;
        for (let i = n - 1; i >= 0; --i)
            for (let j = m - 1; j >= 0; --j)
                length[at(i, j)] = a[from + i] === b[from + j] ? length[at(i + 1, j + 1)] + 1 : Math.max(length[at(i + 1, j)], length[at(i, j + 1)]);
        for (let i = 0, j = 0; i < n || j < m;) {
            if (i < n && j < m && a[from + i] === b[from + j]) { flush(); pairs.push([a[from + i], b[from + j]]); ++i; ++j; }
            else if (i < n && (j === m || length[at(i + 1, j)] >= length[at(i, j + 1)])) old.push(a[from + i++]);
            else own.push(b[from + j++]);
        }
        flush();
    }
    return pairs.concat(a.slice(aEnd).map((s) => [s, s]));
}

// ---- the text that outlives the page ------------------------------------------------------------

const storeKey = () => "brelan-edit" + location.pathname;

function keepText() {
    clearTimeout(saving.kept);
    saving.kept = 0;
    try {
        if (isSaved()) sessionStorage.removeItem(storeKey());
        else sessionStorage.setItem(storeKey(), JSON.stringify({ text: deckText(), stamp: deck.stamp }));
    } catch { /* no room: the text is in the editor */ }
}

function keepSoon() { if (!saving.kept) saving.kept = setTimeout(keepText, 200); }

function keptText() {
    try { return JSON.parse(sessionStorage.getItem(storeKey()) || "null"); } catch { return null; }
}

function startSaving() {
    el("save").addEventListener("click", () => save(false));
    el("changes-take").addEventListener("click", () => { el("changes").close(); takeDisk(saving.disk); cm.focus(); });
    el("changes-keep").addEventListener("click", () => { el("changes").close(); keepMine(saving.disk); cm.focus(); });
    el("changes-over").addEventListener("click", () => { el("changes").close(); save(true); cm.focus(); });
    addEventListener("pagehide", keepText);
    addEventListener("beforeunload", (event) => { if (!isSaved()) event.preventDefault(); });
}
