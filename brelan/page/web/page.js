"use strict";
fetch("deck").then((answer) => answer.json()).then((deck) => { document.getElementById("deck").value = deck.text; });
