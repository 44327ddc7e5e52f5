"use strict";
// Findings in the deck: underlined where they are, marked in the gutter, and as a list.

const findings = { list: [], marks: [], key: "", run: null };

// A refusal of the run is one more finding where the check has not told it.
function allFindings() {
    const list = known.check.findings.slice(), run = findings.run;
    if (run && !list.some((f) => f.severity === "error"))
        list.push({ line: Math.max(0, (run.line || 1) - 1), from: -1, to: -1, severity: "error", id: "run", message: run.message || "the run ends with an error" });
    const rank = (f) => (f.severity === "error" ? 0 : 1);
    return list.map((f) => ({ ...f, line: Math.min(f.line, cm.lineCount() - 1) })).sort((a, b) => rank(a) - rank(b) || a.line - b.line);
}

// Whether the marks stand where the findings are: nothing is to be made anew then.
function areShown(list) {
    if (findings.key !== JSON.stringify(list)) return false;
    return list.every((finding, k) => {
        const place = findings.marks[k].find();
        return place && place.from.line === finding.line && (finding.from < 0 || (place.from.ch === finding.from && place.to.ch === finding.to));
    });
}

function showFindings() {
    const list = allFindings();
    if (areShown(list)) return;
    findings.key = JSON.stringify(list);
    cm.operation(() => {
        for (const mark of findings.marks) mark.clear();
        cm.clearGutter("finding-gutter");
        findings.list = list;
        findings.marks = list.map((finding, k) => {
            const text = cm.getLine(finding.line), whole = finding.from < 0;
            const from = whole ? text.search(/\S|$/) : finding.from, to = whole ? Math.max(text.trimEnd().length, from) : finding.to;
            return cm.markText({ line: finding.line, ch: from }, { line: finding.line, ch: to },
                { className: "finding-mark " + finding.severity, attributes: { "data-finding": String(k) } });
        });
        const worst = new Map();
        for (const f of list) if (!worst.has(f.line)) worst.set(f.line, f);
        for (const [line, f] of worst)
            cm.setGutterMarker(line, "finding-gutter", make("div", { className: "gutter-mark " + f.severity, title: f.message, role: "img", "aria-label": f.severity + ": " + f.message }));
    });
    const errors = list.filter((f) => f.severity === "error").length;
    el("problems-title").textContent = list.length === 0 ? "No findings"
        : `${errors} ${errors === 1 ? "error" : "errors"}, ${list.length - errors} ${list.length - errors === 1 ? "warning" : "warnings"}`;
    el("problem-list").replaceChildren(...list.slice(0, 300).map((finding) => {
        const button = make("button", { type: "button", className: "finding " + finding.severity }, make("span", { className: "kind", role: "img", "aria-label": finding.severity }),
            make("span", { className: "line", textContent: finding.line + 1 }), make("span", { className: "said", textContent: finding.message }));
        button.addEventListener("click", () => goToFinding(finding));
        return make("li", {}, button);
    }));
}

function goToFinding(finding) {
    goToLine(finding.line, Math.max(0, finding.from));
    cm.focus();
    say(finding.message);
}

function nextFinding(way) {
    const list = [...findings.list].sort((a, b) => a.line - b.line), line = cm.getCursor().line;
    if (list.length === 0) { say("No findings"); return; }
    const next = way > 0 ? list.find((f) => f.line > line) || list[0] : list.filter((f) => f.line < line).pop() || list[list.length - 1];
    goToFinding(next);
}

// The message beside the pointer.
function listenForTips() {
    cm.getWrapperElement().addEventListener("mouseover", (event) => {
        const mark = event.target.closest && event.target.closest("[data-finding]"), finding = mark && findings.list[Number(mark.dataset.finding)];
        finding ? showTip(finding.message, mark.getBoundingClientRect()) : hideTip();
    });
    cm.getWrapperElement().addEventListener("mouseleave", hideTip);
    cm.on("scroll", hideTip);
}

function showTip(text, box) {
    const tip = el("tip");
    tip.textContent = text;
    tip.hidden = false;
    tip.style.left = clamp(box.left, 4, Math.max(4, innerWidth - tip.offsetWidth - 4)) + "px";
    tip.style.top = (box.bottom + 4 + tip.offsetHeight > innerHeight ? box.top - tip.offsetHeight - 4 : box.bottom + 4) + "px";
}

function hideTip() { el("tip").hidden = true; }
