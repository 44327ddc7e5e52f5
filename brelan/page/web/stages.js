"use strict";
// The steps of the analysis: which are there, and the one that is shown; null is the mesh as a whole.

const stages = { steps: [], wanted: null };

function takeStages() {
    stages.steps = arrays.elementComes && DATA.stages && DATA.stages.steps ? DATA.stages.steps : [];
    known.step = stages.wanted !== null && (stages.wanted === 0 || stages.steps.includes(stages.wanted)) && stages.steps.length > 0 ? stages.wanted : null;
    if (el("steps").hidden !== (stages.steps.length === 0)) {
        el("steps").hidden = stages.steps.length === 0;
        sizeChanged();
    }
    el("step").max = stages.steps.length + 1;
    el("step").value = known.step === null ? stages.steps.length + 1 : stepChoices().indexOf(known.step);
    showStep();
}

const stepChoices = () => [0, ...stages.steps, null];

function showStep() {
    const counts = { comes: 0, goes: 0, there: 0 };
    if (hasMesh() && known.step !== null)
        for (let e = 0; e < elementCount(); ++e) {
            if (isStanding(e)) ++counts.there;
            if (comesNow(e)) ++counts.comes;
            if (goesNow(e)) ++counts.goes;
        }
    const text = known.step === null ? "All elements" : known.step === 0 ? `Step 0, before the first: ${counts.there} elements` : `Step ${known.step}: ${counts.there} elements`;
    el("step-text").replaceChildren(text);
    const parts = [];
    if (counts.comes > 0) parts.push(make("span", { className: "comes", textContent: `${counts.comes} come` }));
    if (counts.goes > 0) parts.push(make("span", { className: "goes", textContent: `${counts.goes} go` }));
    for (const part of parts) el("step-text").append(", ", part);
    el("step").setAttribute("aria-valuetext", el("step-text").textContent);
    el("step-back").disabled = el("step").value === "0";
    el("step-on").disabled = Number(el("step").value) === stages.steps.length + 1;
}

function useStep(index) {
    el("step").value = clamp(index, 0, stages.steps.length + 1);
    known.step = stages.wanted = stepChoices()[Number(el("step").value)];
    showStep();
    recolor();
    // A slider says itself what it is set to.
    if (document.activeElement !== el("step")) say(el("step-text").textContent);
}

const stepBy = (way) => { if (stages.steps.length > 0) useStep(Number(el("step").value) + way); };

function startStages() {
    el("step").addEventListener("input", () => useStep(Number(el("step").value)));
    el("step-back").addEventListener("click", () => stepBy(-1));
    el("step-on").addEventListener("click", () => stepBy(1));
}
