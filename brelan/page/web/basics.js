"use strict";
// What every part of the page uses: elements, words for screen readers, colours, and what is known of the deck.

const el = (id) => document.getElementById(id);

// Text goes in as text: nothing that a deck holds becomes part of the page's structure.
function make(tag, properties = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(properties))
        name.includes("-") || name === "role" ? made.setAttribute(name, value) : made[name] = value;
    made.append(...children);
    return made;
}

function say(text) { el("spoken").textContent = text; }

// What the page knows: the answer about the text, the step shown, the group of the cursor.
const deck = { name: "", stamp: "", watch: false };
const known = { check: { cards: [], meanings: {}, findings: [], groups: [], shapes: [], handles: [] }, group: 0, step: null };

const pressed = (id) => el(id).getAttribute("aria-pressed") === "true";
function press(id, on) { el(id).setAttribute("aria-pressed", on ? "true" : "false"); }

function toggle(id, changed) {
    el(id).addEventListener("click", () => { press(id, !pressed(id)); changed(pressed(id)); });
}

// ---- light and dark -----------------------------------------------------------------------------

const colors = {};  // the page's own, as the drawing needs them

const isDark = () => document.documentElement.dataset.theme === "dark";

function readColors() {
    const style = getComputedStyle(document.documentElement);
    for (const name of ["paper", "ink", "soft", "side", "region", "shape", "now", "code", "error", "warning", "good", "accent"])
        colors[name] = style.getPropertyValue("--" + name).trim();
    theme.paper = colors.paper;
    theme.ink = colors.ink;
}

function useTheme(name) {
    document.documentElement.dataset.theme = name;
    el("theme").textContent = name === "dark" ? "Light" : "Dark";
    readColors();
}

function remembered(key) { try { return localStorage.getItem("brelan-edit-" + key); } catch { return null; } }
function remember(key, value) { try { localStorage.setItem("brelan-edit-" + key, value); } catch { /* kept for this page only */ } }

function startTheme() {
    const asked = matchMedia("(prefers-color-scheme: dark)"), own = remembered("theme");
    useTheme(own || (asked.matches ? "dark" : "light"));
    asked.addEventListener("change", () => { if (!remembered("theme")) { useTheme(asked.matches ? "dark" : "light"); recolor(); } });
    el("theme").addEventListener("click", () => {
        useTheme(isDark() ? "light" : "dark");
        remember("theme", document.documentElement.dataset.theme);
        recolor();
    });
}

const rgb = (hex) => [1, 3, 5].map((k) => parseInt(hex.slice(k, k + 2), 16));
const mixed = (a, b, share) => a.map((v, k) => Math.round(v + (b[k] - v) * share));
const cssColor = (c) => `rgb(${c[0]},${c[1]},${c[2]})`;
