"""Decks: their cards and fields by name, changed in the text and run in memory."""

from __future__ import annotations

import os
from functools import lru_cache
from typing import Dict, List, Mapping, NamedTuple, Optional, Sequence, Tuple, Union

from . import _core
from .errors import Error, RunError
from .mesh import Doubles, Mesh, Path
from .run import Message, Run

Number = Union[int, float]


@lru_cache(maxsize=None)
def _data_of_package(kind: str) -> _core.Data:
    return _core.read_data(os.path.abspath(__file__), kind)


class Shape(NamedTuple):
    """Something that a deck draws, in the coordinates of the mesh."""

    title: str
    group: int
    closed: bool
    points: Doubles


class Card:
    """A card of a deck; its fields by name, ``card["NDIV"]``.

    A value that is set goes into the deck's text at once; layout, comments and all other values stay.
    """

    def __init__(self, deck: "Deck", place: int) -> None:
        self._deck = deck
        self._place = place

    @property
    def _noted(self) -> _core.Card:
        return self._deck._cards()[self._place]

    @property
    def number(self) -> str:
        """As the manual numbers it, "3.3.5.4.2-1"."""
        return self._noted.number

    @property
    def heading(self) -> str:
        """What it is, "point of the outline"."""
        return self._noted.heading

    @property
    def line(self) -> int:
        """Its line in the deck, from 1."""
        return self._noted.line

    @property
    def type(self) -> str:
        """values, name, title or list."""
        return self._noted.type

    @property
    def fields(self) -> List[str]:
        """Names of its fields."""
        return [field.name for field in self._noted.fields]

    @property
    def name(self) -> str:
        """The file that a card names, or the title of a group."""
        return self._noted.name

    @name.setter
    def name(self, name: str) -> None:
        self._deck._core = self._deck._core.with_name(self._place, name)

    @property
    def list(self) -> List[float]:
        """The numbers of a list."""
        return self._noted.list

    @list.setter
    def list(self, values: Sequence[Number]) -> None:
        self._deck._core = self._deck._core.with_list(self._place, [float(value) for value in values])

    def _field(self, name: str) -> Tuple[int, _core.Field]:
        for place, field in enumerate(self._noted.fields):
            if field.name == name:
                return place, field
        raise KeyError(f"Card {self.number} has no {name}; it has {', '.join(self.fields) or 'no fields'}")

    def __contains__(self, name: str) -> bool:
        return name in self.fields

    def __getitem__(self, name: str) -> Number:
        """The value of a field, its default where it is not given."""
        field = self._field(name)[1]
        if field.value is None:
            raise Error(f"Card {self.number} is refused before {name} is read", self._deck.file, self.line)
        return field.value

    def __setitem__(self, name: str, value: Number) -> None:
        place, field = self._field(name)
        if not field.is_real and float(value) != int(value):
            raise ValueError(f"{name}: expected a whole number, found {value}")
        self._deck._core = self._deck._core.with_value(self._place, place, float(value))

    def given(self, name: str) -> bool:
        """Whether the deck gives the field; otherwise it has its default."""
        return self._field(name)[1].given

    def __repr__(self) -> str:
        core = self._noted
        if core.type == "values":
            text = ", ".join(f"{field.name} {field.value}" for field in core.fields)
        else:
            text = core.name if core.type != "list" else f"{len(core.list)} values"
        return f"<Card {core.number}, line {core.line}, {core.heading}: {text}>"


class Point:
    """A point of a group's outline; setting `x` or `y` changes the deck."""

    def __init__(self, card: Card) -> None:
        self.card = card

    @property
    def number(self) -> int:
        """Its number on the card (NP)."""
        return int(self.card["NP"])

    @property
    def x(self) -> float:
        """X as the card has it, before the group's origin is added."""
        return float(self.card["X"])

    @x.setter
    def x(self, value: float) -> None:
        self.card["X"] = value

    @property
    def y(self) -> float:
        """Y as the card has it, before the group's origin is added."""
        return float(self.card["Y"])

    @y.setter
    def y(self, value: float) -> None:
        self.card["Y"] = value

    def __repr__(self) -> str:
        return f"<Point {self.number}: ({self.x:g}, {self.y:g})>"


class Segment:
    """A segment of a group's path; an arc has a card of its own besides."""

    def __init__(self, card: Card, arc: Optional[Card]) -> None:
        self.card = card
        self.arc = arc

    @property
    def type(self) -> int:
        """LTYPE: 1 a straight line, 2 an arc."""
        return int(self.card["LTYPE"])

    @property
    def divisions(self) -> int:
        """NDIV."""
        return int(self.card["NDIV"])

    @divisions.setter
    def divisions(self, value: int) -> None:
        self.card["NDIV"] = value

    @property
    def end_rule(self) -> int:
        """IEND, how the segment cuts the mesh."""
        return int(self.card["IEND"])

    @end_rule.setter
    def end_rule(self, value: int) -> None:
        self.card["IEND"] = value

    def __repr__(self) -> str:
        return f"<Segment {int(self.card['SEGNO'])}: LTYPE {self.type}, NDIV {self.divisions}, IEND {self.end_rule}>"


class Group:
    """A group of a deck: an outline or a line that is drawn over the mesh. Fields by name, ``group["MAT"]``."""

    def __init__(self, deck: "Deck", number: int, places: List[int]) -> None:
        self._deck = deck
        self.number = number
        self._places = places

    @property
    def cards(self) -> List[Card]:
        """All its cards, in their order."""
        return [Card(self._deck, place) for place in self._places]

    @property
    def title(self) -> str:
        """Its title; empty where the deck gives none."""
        return next((card.name for card in self.cards if card.type == "title"), "")

    @title.setter
    def title(self, title: str) -> None:
        for card in self.cards:
            if card.type == "title":
                card.name = title
                return
        raise Error(f"group {self.number} has no title: IGTITL is 0", self._deck.file)

    def _card(self, name: str) -> Card:
        for card in self.cards:
            if name in card:
                return card
        raise KeyError(f"group {self.number} has no {name}")

    def __getitem__(self, name: str) -> Number:
        """The value of the first field of the name on the group's cards."""
        return self._card(name)[name]

    def __setitem__(self, name: str, value: Number) -> None:
        self._card(name)[name] = value

    def __contains__(self, name: str) -> bool:
        return any(name in card for card in self.cards)

    @property
    def points(self) -> List[Point]:
        """The points of its outline."""
        return [Point(card) for card in self.cards if card.number == "3.3.5.4.2-1"]

    @property
    def segments(self) -> List[Segment]:
        """The segments of its path."""
        segments: List[Segment] = []
        cards = self.cards
        for card, follower in zip(cards, [*cards[1:], None]):
            if card.number == "3.3.5.4.3.1":
                arc = follower if follower is not None and follower.number == "3.3.5.4.3.1-1" else None
                segments.append(Segment(card, arc))
        return segments

    def __repr__(self) -> str:
        title = f" {self.title!r}" if self.title else ""
        return f"<Group {self.number}{title}: MTYPE {self['MTYPE']}, {len(self.points)} points>"


class Deck:
    """A card deck.

    Parameters
    ----------
    deck : str or path
        The file of a deck, or its text: what holds a line end is text.
    kind : {"coupled", "temperature", "head", "displacement"}, optional
        Found as ``brelan run`` finds it where it is not given: by a comment of the deck, else by the mesh that it
        reads.
    project : path, optional
        Where the meshes that it names lie: the directory of its file, else the current one.

    Raises
    ------
    brelan.Error
        Where the file cannot be read. A deck with a card that the program refuses can be had: see `fault`.

    Examples
    --------
    >>> deck = brelan.Deck("pit.dat")
    >>> deck.groups[2].points[0].x += 0.5
    >>> mesh = deck.run().mesh
    """

    def __init__(self, deck: Path, kind: Optional[str] = None, project: Optional[Path] = None) -> None:
        text = deck if isinstance(deck, str) and "\n" in deck else None
        if text is not None:
            self._core = _core.deck_of_text(text, "deck.dat", os.fspath(project or "."), kind or "")
        else:
            self._core = _core.deck_of_file(os.fspath(deck), kind or "")
            if project is not None:
                content = self._core.text
                self._core = _core.deck_of_text(content, os.fspath(deck), os.fspath(project), kind or "")
        self._noted: Optional[_core.Deck] = None
        self._card_list: List[_core.Card] = []

    def _cards(self) -> List[_core.Card]:
        if self._noted is not self._core:
            self._card_list = self._core.cards
            self._noted = self._core
        return self._card_list

    # --- what it holds

    @property
    def file(self) -> str:
        """Its file as it was named; "deck.dat" for a text."""
        return self._core.file

    @property
    def kind(self) -> str:
        """coupled, temperature, head or displacement."""
        return self._core.kind

    @property
    def edition(self) -> int:
        """The edition of the solver that it is for."""
        return self._core.edition

    @property
    def mode(self) -> int:
        """IMOD: 0 and -1 combine, 1 edits, 2 makes a base mesh, 3 an earth dam."""
        return self._core.mode

    @property
    def fault(self) -> Optional[Message]:
        """Why the program refuses the deck; None where it does not. The cards end there."""
        if self._core.fault is None:
            return None
        message, line, _ = self._core.fault
        return Message(message, self.file, line, "refused", True)

    @property
    def cards(self) -> List[Card]:
        """All cards, in their order."""
        return [Card(self, place) for place in range(len(self._cards()))]

    def card(self, number: str) -> Card:
        """The first card of a number, as the manual has it ("4.2")."""
        for card in self.cards:
            if card.number == number:
                return card
        raise KeyError(f"{self.file} has no Card {number}")

    @property
    def groups(self) -> List[Group]:
        """Its groups; the first has the number 1 and stands at place 0."""
        places: Dict[int, List[int]] = {}
        for place, card in enumerate(self._cards()):
            if card.group > 0:
                places.setdefault(card.group, []).append(place)
        return [Group(self, number, held) for number, held in sorted(places.items())]

    @property
    def shapes(self) -> List[Shape]:
        """What the deck draws, in the coordinates of the mesh."""
        return [Shape(*shape) for shape in self._core.shapes()]

    # --- its text

    def text(self) -> str:
        """The deck as it stands, comments and layout kept. Bytes that are no UTF-8 are read as Latin-1."""
        content = self._core.text
        try:
            return content.decode()
        except UnicodeDecodeError:
            return content.decode("latin-1")

    def set_text(self, text: str) -> None:
        """Takes another text for the deck."""
        self._core = self._core.with_text(text)

    def save(self, file: Optional[Path] = None) -> None:
        """Writes the deck, whole or not at all; without a name where it was read from.

        Raises
        ------
        brelan.Error
        """
        self._core.save(os.fspath(file) if file is not None else self.file)

    def copy(self) -> "Deck":
        """A deck of its own with the same text."""
        deck = Deck.__new__(Deck)
        deck._core, deck._noted, deck._card_list = self._core, None, []
        return deck

    # --- check and run

    def check(self) -> List[Message]:
        """What ``brelan check`` says of the deck, without running it."""
        return [
            Message(text, self.file, line, id, ends_run) for id, line, text, ends_run in self._core.doubts()
        ]

    def run(
        self,
        sound: Optional[bool] = None,
        *,
        files: Optional[Mapping[str, Union[Mesh, str, bytes]]] = None,
        listings: bool = False,
        check: bool = True,
    ) -> Run:
        """Runs the deck in memory; nothing is read from disk but the meshes that it names, and nothing written.

        Parameters
        ----------
        sound : bool, optional
            True takes the sound cut, False the cut by the rules; None the rules, and where the mesh is unsound the
            sound cut, as ``brelan run`` does.
        files : mapping of str to Mesh, str or bytes, optional
            Files by the names that the deck has for them; they take the place of those on disk.
        listings : bool, optional
            Keeps the listings and working copies that no later pass reads.
        check : bool, optional
            Raises where the run has not finished; otherwise `Run.messages` tells it.

        Raises
        ------
        brelan.RunError
            With file, line and field, and the run as far as it came.

        Notes
        -----
        The interpreter's lock is released meanwhile: decks run side by side in threads.
        """
        texts = {name: _bytes_of(content, name) for name, content in (files or {}).items()}
        cut = "auto" if sound is None else "sound" if sound else "rules"
        run = Run(self.copy(), self._core.run(_data_of_package(self.kind), texts, cut, listings))
        if check and not run.finished:
            core = run._core
            raise RunError(core.message, core.file, core.line, core.field, run)
        return run

    def __repr__(self) -> str:
        return f"<Deck {self.file}: {self.kind}, {len(self._cards())} cards, {len(self.groups)} groups>"

    def __reduce__(self) -> Tuple[object, ...]:
        return _deck_of_parts, (self._core.text, self.file, self._core.project, self.kind)


def _deck_of_parts(text: bytes, file: str, project: str, kind: str) -> Deck:
    deck = Deck.__new__(Deck)
    deck._core = _core.deck_of_text(text, file, project, kind)
    deck._noted, deck._card_list = None, []
    return deck


def _bytes_of(content: Union[Mesh, str, bytes], name: str) -> bytes:
    if isinstance(content, Mesh):
        return content.text(os.path.basename(name)).encode()
    return content.encode() if isinstance(content, str) else content
