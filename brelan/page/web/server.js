"use strict";
// Questions to the server, its events, and what happens when it does not answer.

class Refused extends Error {
    constructor(status, answer) {
        super(answer.error || `the server answers ${status}`);
        this.status = status;
        this.answer = answer;
    }
}

const connection = { lost: false, events: null, retry: 0 };

async function answered(request) {
    let answer;
    try {
        answer = await request;
    } catch (error) {
        if (error.name !== "AbortError") lose();
        throw error;
    }
    if (!answer.ok) throw new Refused(answer.status, await answer.json().catch(() => ({})));
    return answer;
}

const order = (name, question, signal) => answered(fetch(name, {
    method: "POST", headers: { "Content-Type": "application/json" }, body: JSON.stringify(question), signal }));
const ask = async (name, question) => (await order(name, question)).json();
const askDeck = async () => (await answered(fetch("deck", { signal: AbortSignal.timeout(5000) }))).json();

// A head in words and arrays behind it.
async function askArrays(name, question, signal) {
    const buffer = await (await order(name, question, signal)).arrayBuffer();
    const length = new DataView(buffer).getUint32(0, true), base = 4 + length;
    const head = JSON.parse(new TextDecoder().decode(new Uint8Array(buffer, 4, length)));
    const types = { i32: Int32Array, f32: Float32Array, u32: Uint32Array }, lists = {};
    for (const a of head.arrays || []) lists[a.name] = new types[a.type](buffer, base + a.offset, a.count);
    return { head, lists };
}

// ---- events, and a broken connection ------------------------------------------------------------

function listenToServer() {
    if (connection.events) connection.events.close();
    const events = connection.events = new EventSource("events");
    events.addEventListener("hello", () => { if (connection.lost) comeBack(); });
    events.addEventListener("disk", (event) => diskChanged(JSON.parse(event.data)));
    events.addEventListener("progress", (event) => showProgress(JSON.parse(event.data)));
    events.addEventListener("error", lose);
}

// The text is here and in the browser's store; only the server is asked again and again until it is back.
function lose() {
    if (connection.lost) return;
    connection.lost = true;
    showBanner("lost", "The connection to brelan is lost. Your text is kept here; trying again.", [], true);
    showRunState("not connected", "bad");
    connection.retry = setTimeout(comeBack, 500);
}

async function comeBack() {
    clearTimeout(connection.retry);
    let now;
    try {
        now = await askDeck();
    } catch (error) {
        if (error instanceof Refused && error.status === 404)
            showBanner("lost", "brelan edit was started anew at another address. Copy your text to the page there.", [], true);
        connection.retry = setTimeout(comeBack, 1000);
        return;
    }
    if (!connection.lost) return;
    connection.lost = false;
    hideBanner("lost");
    say("The connection is back.");
    if (connection.events.readyState === EventSource.CLOSED) listenToServer();
    if (now.stamp !== deck.stamp) diskChanged(now);
    textChanged();
}

// ---- words above the page -----------------------------------------------------------------------

const banner = { key: "" };

function showBanner(key, text, choices, bad) {
    banner.key = key;
    el("banner").hidden = false;
    el("banner").classList.toggle("bad", Boolean(bad));
    el("banner-text").textContent = text;
    el("banner-choices").replaceChildren(...choices.map(([label, act]) => {
        const button = make("button", { type: "button", textContent: label });
        button.addEventListener("click", () => { hideBanner(key); act(); });
        return button;
    }));
    sizeChanged();
}

function hideBanner(key) {
    if (banner.key !== key) return;
    banner.key = "";
    el("banner").hidden = true;
    sizeChanged();
}
