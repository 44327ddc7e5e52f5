"use strict";
// The mesh that is shown: the last one that a run made, its colours, and what of it stands in the step shown.

const canvas = el("canvas"), ctx = canvas.getContext("2d");

const NOTHING = { groups: [], codes: [], coded: [], origin: [0, 0], bounds: { x: [0, 1], y: [0, 1] }, meanSide: 1, findings: [], stages: null, quality: null, summary: "" };
let DATA = NOTHING;

const scene = { number: 0, fitted: true, details: false, standing: null, change: null, paints: [], lines: [] };
const shown = { sides: true, codes: true, shapes: true, numbers: false, color: "material" };
const hasMesh = () => DATA !== NOTHING && DATA.groups.length > 0;

function takeMesh(head, lists) {
    const before = DATA, first = !hasMesh();
    for (const name of Object.keys(arrays)) delete arrays[name];
    Object.assign(arrays, lists);
    DATA = head;
    DATA.coded = [];
    DATA.codes = DATA.codes || [];
    grid = null;
    scene.number = head.number;
    scene.details = false;
    const hidden = new Set(before.groups.filter((g) => !g.shown).map((g) => g.name));
    DATA.groups.forEach((group) => { group.shown = !hidden.has(group.name); group.given = group.color; });
    // The view stays where it is in the mesh, whose places are now told from another origin.
    view.x += before.origin[0] - DATA.origin[0];
    view.y += before.origin[1] - DATA.origin[1];
    takeStages();
    layer.isNew = true;
    recolor();
    if (first || scene.fitted) fitAll();
    clearTimeout(scene.waiting);
    if (shown.codes || shown.numbers) scene.waiting = setTimeout(askDetails, elementCount() > 20000 ? 400 : 60);
}

// Numbers' places and codes are not needed for the first picture.
async function askDetails() {
    const number = scene.number;
    if (runs.current) return;  // the mesh that comes asks again
    try {
        const { lists } = await askArrays("details", { number });
        if (number !== scene.number) return;
        Object.assign(arrays, lists);
        DATA.coded = [];
        for (let n = 0; n < nodeCount(); ++n)
            if (DATA.codes.some((code, k) => code.symbol && arrays["code" + k][n] !== 0)) DATA.coded.push(n);
        scene.details = true;
        draw();
    } catch { /* another mesh is shown meanwhile, or the page says that the connection is lost */ }
}

// By place, when it is asked for: a mesh that is drawn anew with each key is not looked through each time.
function needGrid() { if (!grid && hasMesh()) buildGrid(); return Boolean(grid); }

// ---- colours ------------------------------------------------------------------------------------

// The colours of materials are made for white paper; on a dark one solids are dimmed and lines lightened.
function paperColor(group) {
    if (!isDark()) return group.given;
    const given = rgb(group.given);
    return cssColor(group.class === "solid" ? mixed(given, [26, 31, 38], 0.42) : mixed(given, [255, 255, 255], 0.5));
}

// What is poor stands out; what is good is pale.
const RAMP = [[165, 0, 38], [215, 70, 45], [244, 140, 75], [253, 208, 130], [226, 232, 200], [190, 218, 205]];

// Of the smallest angle in degrees: one of 60 and more is as good as can be.
function qualityColor(angle) {
    const at = clamp(angle / 60, 0, 1) * (RAMP.length - 1), k = Math.min(RAMP.length - 2, Math.floor(at));
    return mixed(mixed(RAMP[k], RAMP[k + 1], at - k), [26, 31, 38], isDark() ? 0.25 : 0);
}

function recolor() {
    layer.image = null;
    DATA.colors = { ...(DATA.colors || {}), code: colors.code, code2: colors.good, fault: colors.error, number: colors.ink, shape: colors.shape };
    DATA.groups.forEach((group) => { group.color = paperColor(group); });
    if (hasMesh()) {
        scene.paints = DATA.groups.map((g) => rgbOf(g.color));
        buildMeshLayer();
        // Lines and joints are few and drawn by hand.
        DATA.groups.forEach((group) => { group.elements = []; });
        for (let e = 0; e < elementCount(); ++e) if (groupOf(e).class !== "solid" && isStanding(e)) groupOf(e).elements.push(e);
    }
    showLists();
    draw();
}

function rgbOf(color) {
    return color.startsWith("#") ? rgb(color) : color.match(/\d+/g).slice(0, 3).map(Number);
}

// ---- stages -------------------------------------------------------------------------------------

// From the step at which it comes on and before the one at which it goes; 0 for what it does not.
function stands(e, step) {
    if (step === null || !arrays.elementComes) return true;
    const comes = arrays.elementComes[e], goes = arrays.elementGoes[e];
    return arrays.elementNever[e] === 0 && comes <= step && (goes <= 0 || step < goes);
}

const isStanding = (e) => stands(e, known.step);
// What its group turns into another material later is the old one before.
const groupIn = (e, step) => (step !== null && arrays.elementOldGroup && arrays.elementComes[e] <= 0 ? arrays.elementOldGroup[e] : arrays.elementGroup[e]);
const comesNow = (e) => known.step !== null && known.step > 0 && arrays.elementComes && arrays.elementComes[e] === known.step && stands(e, known.step);
const goesNow = (e) => known.step !== null && known.step > 0 && arrays.elementGoes && arrays.elementGoes[e] === known.step;

function elementColor(e) {
    if (shown.color === "quality" && arrays.elementQuality && groupOf(e).class === "solid") return qualityColor(arrays.elementQuality[e]);
    return scene.paints[groupIn(e, known.step)];
}
