"use strict";
// Colours of a deck: comments with the card they name, numbers, and texts such as titles and names of files.

CodeMirror.defineMode("deck", () => ({
    startState: () => ({ comment: false, text: false }),
    token(stream, state) {
        if (stream.sol()) {
            state.comment = stream.peek() === "*";
            state.text = !state.comment && !/^[\s\d.+\-EeDd,]*$/.test(stream.string);
            if (state.comment && stream.match(/^\*\s*(Card\s+[\w.\-]+|Group\s+No\s*=\s*\d+)/i)) return "comment card-name";
        }
        if (state.comment) { stream.skipToEnd(); return "comment"; }
        if (stream.eatSpace()) return null;
        if (state.text) { stream.skipToEnd(); return "text"; }
        stream.eatWhile(/[^\s,]/) || stream.next();
        return "number";
    },
}));
