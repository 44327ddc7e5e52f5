"use strict";
// What pages draw of a mesh on their canvas by hand: lines, joints, symbols of supports, numbers, a scale.

const theme = { paper: "#fff", ink: "#222830" };  // behind what is written, and what it is written with

const stats = { milliseconds: 0, detailed: false, drawn: 0, symbols: 0 };  // of the last drawing

const shows = (group) => DATA.groups[group].shown;

const shortNumber = (v) => String(Number(v.toPrecision(7)));

const screenTransform = () => ctx.setTransform(ratio, 0, 0, ratio, 0, 0);

function trace(e) {
    const list = corners(e);
    list.forEach((c, k) => { const [x, y] = toScreen(X(c), Y(c)); k === 0 ? ctx.moveTo(x, y) : ctx.lineTo(x, y); });
    if (list.length > 2) ctx.closePath();
}

// Joints, beams and trusses: those in view, or all of them.
function paintLineElements(near) {
    screenTransform();
    DATA.groups.forEach((group, g) => {
        if (!group.shown || group.class === "solid") return;
        const list = near ? near.filter((e) => arrays.elementGroup[e] === g) : group.elements;
        if (list.length === 0) return;
        const stroke = (color, width_, dash) => { ctx.strokeStyle = color; ctx.lineWidth = width_; ctx.setLineDash(dash); ctx.stroke(); ctx.setLineDash([]); };
        if (group.class === "joint") {
            ctx.beginPath();
            for (const e of list) trace(e);
            ctx.fillStyle = group.color;
            ctx.fill();
        }
        ctx.beginPath();
        for (const e of list) {
            const [a, b] = lineOf(e);
            ctx.moveTo(...toScreen(...a));
            ctx.lineTo(...toScreen(...b));
        }
        if (group.class === "joint") { stroke(group.color, 6, []); stroke(theme.paper, 1.6, []); }
        else if (group.class === "beam") stroke(group.color, 3, []);
        else {
            stroke(group.color, 2.2, [9, 4]);
            ctx.fillStyle = group.color;
            for (const e of list) for (const c of corners(e)) dot(...toScreen(X(c), Y(c)), 2.5);
        }
    });
}

function dot(x, y, radius) { ctx.beginPath(); ctx.arc(x, y, radius, 0, 2 * Math.PI); ctx.fill(); }

// Symbols of all nodes in view, smaller where they crowd. Only what would lie on the same pixel is left out.
function paintCodes(x1, y1, x2, y2) {
    const taken = new Set(), b = DATA.bounds, [mx] = toScreen((b.x[0] + b.x[1]) / 2, 0);
    screenTransform();
    for (const n of DATA.coded) {
        if (X(n) < x1 || X(n) > x2 || Y(n) < y1 || Y(n) > y2) continue;
        const [x, y] = toScreen(X(n), Y(n)), s = clamp(0.9 * arrays.supportRoom[n] * view.scale, 2, 7);
        DATA.codes.forEach((code, k) => {
            const value = arrays["code" + k][n];
            if (value === 0 || !code.symbol) return;
            const key = code.symbol + ":" + Math.round(x) + ":" + Math.round(y);
            if (taken.has(key)) return;
            taken.add(key);
            ctx.fillStyle = ctx.strokeStyle = code.symbol === "ring" || code.symbol === "square" ? DATA.colors.code2 : DATA.colors.code;
            ctx.lineWidth = 1.4;
            if (code.symbol === "x") { const d = x < mx ? -s : s; triangle(x, y, x + d, y - s / 2, x + d, y + s / 2); }
            else if (code.symbol === "y") { const d = Y(n) >= b.y[1] && b.y[1] > b.y[0] ? -s : s; triangle(x, y, x - s / 2, y + d, x + s / 2, y + d); }
            else if (code.symbol === "disc") dot(x, y, s / 2.2);
            else if (code.symbol === "ring") { ctx.beginPath(); ctx.arc(x, y, s / 2, 0, 2 * Math.PI); ctx.stroke(); }
            else ctx.strokeRect(x - 4 * s / 7, y - 4 * s / 7, 8 * s / 7, 8 * s / 7);
        });
    }
    stats.symbols = taken.size;
}

function triangle(ax, ay, bx, by, cx, cy) { ctx.beginPath(); ctx.moveTo(ax, ay); ctx.lineTo(bx, by); ctx.lineTo(cx, cy); ctx.closePath(); ctx.fill(); }

function label(text, x, y, color) {
    ctx.lineWidth = 3;
    ctx.strokeStyle = theme.paper;
    ctx.strokeText(text, x, y);
    ctx.fillStyle = color;
    ctx.fillText(text, x, y);
}

// Numbers of nodes at one place stand in different corners: 0 and 3 on the right, 0 and 2 above, from 4 on
// further lines under corner 1.
function labelNode(n) {
    const [x, y] = toScreen(X(n), Y(n)), place = arrays.numberPlace[n], corner = place < 4 ? place : 1;
    const right = corner === 0 || corner === 3, above = corner === 0 || corner === 2;
    ctx.textAlign = right ? "left" : "right";
    label(arrays.nodeNumber[n], right ? x + 3 : x - 3, above ? y - 3 : y + 11 + (place < 4 ? 0 : 11 * (place - 3)), theme.ink);
    ctx.textAlign = "start";
}

function paintScale() {
    const power = 10 ** Math.floor(Math.log10(120 / view.scale));
    const length = [5, 2, 1].map((m) => m * power).find((l) => l * view.scale <= 120) || power;
    const right = width - 16, y = height - 14;
    screenTransform();
    ctx.strokeStyle = theme.ink;
    ctx.lineWidth = 1.5;
    ctx.beginPath();
    ctx.moveTo(right - length * view.scale, y - 4);
    ctx.lineTo(right - length * view.scale, y);
    ctx.lineTo(right, y);
    ctx.lineTo(right, y - 4);
    ctx.stroke();
    ctx.font = "11px Helvetica, Arial, sans-serif";
    ctx.textAlign = "right";
    label(shortNumber(length), right, y - 8, theme.ink);
    ctx.textAlign = "start";
}
