"use strict";
// The deck in the editor: its card and field under the cursor, changes that come from the drawing, saved or not.

let cm;
const editing = { saved: 0, savedText: "", fieldMark: null, quiet: false };

const deckText = () => cm.getValue();
const isSaved = () => cm.isClean(editing.saved);

function buildEditor() {
    cm = CodeMirror(el("editor"), {
        mode: "deck", theme: "default", lineNumbers: true, gutters: ["finding-gutter", "CodeMirror-linenumbers"],
        styleActiveLine: true, screenReaderLabel: "Deck", undoDepth: 2000, indentWithTabs: false,
        // Tab leaves the editor, as everywhere in a page.
        extraKeys: { Tab: false, "Shift-Tab": false, "Ctrl-Space": completeField, "Ctrl-S": () => save(false), "Cmd-S": () => save(false),
            "Alt-G": "jumpToLine", F8: () => nextFinding(1), "Shift-F8": () => nextFinding(-1),
            "Ctrl-Right": () => stepField(1), "Ctrl-Left": () => stepField(-1) },
    });
    cm.on("change", (_, change) => { if (!editing.quiet) textChanged(change); });
    cm.on("cursorActivity", cursorMoved);
    el("undo").addEventListener("click", () => { cm.undo(); });
    el("redo").addEventListener("click", () => { cm.redo(); });
}

// ---- cards and fields ---------------------------------------------------------------------------

// The card of a line; of a comment line the card that follows it.
function cardAt(line) {
    const cards = known.check.cards;
    let low = 0, high = cards.length;
    while (low < high) {
        const middle_ = (low + high) >> 1;
        cards[middle_].last < line ? low = middle_ + 1 : high = middle_;
    }
    return cards[low] || null;
}

// The field that the cursor stands in or at the end of; behind the last one the next that has no text yet.
function fieldAt(card, at) {
    if (!card || at.line < card.line) return null;
    const given = card.fields.filter((field) => field.from >= 0);
    const here = card.line === card.last || at.line === card.line ? given.find((f) => at.ch >= f.from && at.ch <= f.to) : null;
    if (here) return here;
    const last = given[given.length - 1];
    if (!last || at.ch > last.to) return card.fields.find((field) => field.from < 0) || null;
    return given.find((f) => f.from > at.ch) || null;
}

function groupAt(line) {
    const group = known.check.groups.find((g) => line >= g.line && line <= g.last);
    return group ? group.group : 0;
}

function cursorMoved() {
    const at = cm.getCursor(), card = cardAt(at.line), field = fieldAt(card, at);
    if (editing.fieldMark) editing.fieldMark.clear();
    editing.fieldMark = field && field.from >= 0
        ? cm.markText({ line: card.line, ch: field.from }, { line: card.line, ch: field.to }, { className: "field-now" }) : null;
    showFieldHelp(card, field);
    const group = groupAt(at.line);
    if (group !== known.group) {
        known.group = group;
        buildHandles();
        draw();
    }
}

// To the next or the last field that has text, over cards.
function stepField(way) {
    const at = cm.getCursor(), list = known.check.cards.flatMap((card) => card.fields.filter((f) => f.from >= 0).map((f) => ({ line: card.line, ch: f.from })));
    const after = (p) => p.line > at.line || (p.line === at.line && p.ch > at.ch);
    const before = (p) => p.line < at.line || (p.line === at.line && p.ch < at.ch);
    const to = way > 0 ? list.find(after) : list.filter(before).pop();
    if (to) cm.setCursor(to);
}

function goToLine(line, ch = 0) {
    cm.setCursor({ line, ch });
    const middle_ = cm.getScrollInfo().clientHeight / 2;
    cm.scrollIntoView({ line, ch }, Math.max(40, middle_ - 20));
}

// ---- changes from elsewhere ---------------------------------------------------------------------

// Edits of the server, as one step of undo; changes of one origin that begins with * belong together.
function applyEdits(edits, origin) {
    cm.operation(() => {
        for (const edit of edits)
            cm.replaceRange(edit.text, { line: edit.line, ch: edit.from }, { line: edit.line, ch: edit.to }, origin);
    });
}

// Another text, by the lines that differ, so that the cursor and undo stay.
function replaceText(text, origin) {
    const old = deckText();
    let from = 0, oldEnd = old.length, newEnd = text.length;
    while (from < oldEnd && from < newEnd && old[from] === text[from]) ++from;
    while (oldEnd > from && newEnd > from && old[oldEnd - 1] === text[newEnd - 1]) { --oldEnd; --newEnd; }
    if (old !== text) cm.replaceRange(text.slice(from, newEnd), cm.posFromIndex(from), cm.posFromIndex(oldEnd), origin);
}

function markSaved(text) {
    editing.savedText = text;
    // What is written while the answer is under way is not saved by it.
    editing.saved = deckText() === text ? cm.changeGeneration(true) : -1;
    showSaved();
}

function showSaved() {
    const saved = isSaved();
    el("unsaved").hidden = saved;
    el("save").classList.toggle("needed", !saved);
    document.title = (saved ? "" : "\u2022 ") + deck.name + " \u2013 brelan edit";
    const history = cm.historySize();
    el("undo").disabled = history.undo === 0;
    el("redo").disabled = history.redo === 0;
}
