"use strict";
// The page begins: the deck is asked for, put into the editor, checked and run.

async function start() {
    startTheme();
    startMeshLayer();
    buildEditor();
    startDivider();
    startKeys();
    startShown();
    startPointer();
    startTools();
    startStages();
    startLists();
    startSaving();
    listenForTips();
    useShare(sizing.share);
    resize();
    const answer = await askDeck();
    Object.assign(deck, { name: answer.name, stamp: answer.stamp, watch: answer.watch });
    el("name").textContent = answer.name;
    el("name").title = answer.file;
    el("cut").replaceChildren(...answer.cuts.map((cut) => make("option", { value: cut, textContent: { rules: "by the rules" }[cut] || cut })));
    el("cut").value = answer.cut || answer.cuts[0];
    el("cut").addEventListener("change", runText);
    editing.quiet = true;
    cm.setValue(answer.text);
    cm.clearHistory();
    markSaved(answer.text);
    editing.quiet = false;
    const kept = keptText();
    if (kept && kept.text !== answer.text) {
        replaceText(kept.text, "*kept");
        if (kept.stamp !== answer.stamp) { deck.stamp = kept.stamp; diskChanged(answer); }
        else showBanner("kept", "Text that was not saved when the page was closed is here again.", [["Keep it", () => {}], ["Take the deck on disk", () => takeDisk(answer)]], false);
    }
    listenToServer();
    if (!kept || kept.text === answer.text) textChanged();
    cm.focus();
    document.body.dataset.ready = "yes";
}

start().catch((error) => {
    if (!connection.lost) showBanner("start", "The page cannot be shown: " + error.message, [], true);
});
