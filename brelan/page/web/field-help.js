"use strict";
// What the card and the field at the cursor mean, and the values that a field may have.

const meaningOf = (card) => (card && known.check.meanings[card.number]) || null;
const fieldMeaning = (card, field) => { const m = meaningOf(card); return (m && field && m.fields.find((f) => f.name === field.name)) || null; };
const isGiven = (value) => value !== null && value !== undefined && value !== "";

function rangeText(meaning) {
    const parts = [];
    if (isGiven(meaning.default)) parts.push("default " + meaning.default);
    if (isGiven(meaning.least) && isGiven(meaning.most)) parts.push(`${meaning.least} to ${meaning.most}`);
    else if (isGiven(meaning.least)) parts.push("at least " + meaning.least);
    else if (isGiven(meaning.most)) parts.push("at most " + meaning.most);
    return parts.join(", ");
}

function showFieldHelp(card, field) {
    const place = el("field-help"), meaning = meaningOf(card);
    if (!card) { place.replaceChildren(make("span", { className: "note", textContent: "No card here." })); return; }
    const parts = [make("div", { className: "heading" }, make("span", { className: "number", textContent: card.type === "title" ? "Title" : "Card " + card.number }),
        make("span", { textContent: card.heading || (meaning && meaning.heading) || "" }))];
    if (card.fields.length > 1)
        parts.push(make("div", { className: "names" }, ...card.fields.filter((f) => f.name !== "-").slice(0, 40).map((f) => make("span", { className: f === field ? "now" : "", textContent: f.name }))));
    const own = fieldMeaning(card, field);
    if (field) {
        const line = make("div", {}, make("strong", { textContent: field.name + (isGiven(field.value) ? " = " + field.value : "") }));
        if (own && own.meaning) line.append(" ", own.meaning);
        const range = own ? rangeText(own) : "";
        if (range) line.append(" ", make("span", { className: "note", textContent: "(" + range + ")" }));
        parts.push(line);
    }
    if (own && own.values.length > 0)
        parts.push(make("dl", { className: "values" }, ...own.values.flatMap((v) => {
            const is = field && String(field.value) === String(v.value) ? "is" : "";
            return [make("dt", { className: is, textContent: v.value }), make("dd", { className: is, textContent: v.meaning })];
        })));
    else if (meaning && meaning.note) parts.push(make("div", { className: "note", textContent: meaning.note }));
    place.replaceChildren(...parts);
}

// ---- completion ---------------------------------------------------------------------------------

function fieldHints() {
    const at = cm.getCursor(), card = cardAt(at.line), field = fieldAt(card, at), own = fieldMeaning(card, field);
    if (!own) return null;
    const values = own.values.map((v) => ({ text: String(v.value), meaning: v.meaning }));
    const standard = isGiven(own.default) ? String(own.default) : null;
    if (standard !== null && !values.some((v) => v.text === standard)) values.unshift({ text: standard, meaning: own.meaning });
    if (isGiven(own.most) && values.length === 0)
        for (let k = Number(own.least) || 0; k <= Math.min(own.most, 12); ++k) values.push({ text: String(k), meaning: own.meaning });
    const has = field.from >= 0;
    return {
        list: values.map((v) => ({ text: v.text, displayText: v.text,
            render: (item) => item.append(make("span", { className: "hint-value", textContent: v.text }),
                make("span", { textContent: (v.meaning || "") + (v.text === standard ? " (default)" : "") })) })),
        from: has ? { line: card.line, ch: field.from } : at, to: has ? { line: card.line, ch: field.to } : at,
    };
}

function completeField() {
    const hints = fieldHints();
    if (!hints || hints.list.length === 0) { say("No values are listed for this field"); return; }
    cm.showHint({ hint: () => hints, completeSingle: false, closeCharacters: /./ });
}
