"""Runs of decks in memory."""

from __future__ import annotations

from dataclasses import dataclass
from typing import TYPE_CHECKING, Dict, List, Mapping, Optional, Tuple

from . import _core
from .mesh import Ints, Mesh

if TYPE_CHECKING:
    from .deck import Deck


@dataclass(frozen=True)
class Message:
    """What a check or a run has to say.

    Attributes
    ----------
    text : str
    file : str
        The file that it is about, empty where there is none.
    line : int
        Line of the file, from 1; 0 for the file as a whole.
    id : str
        What it is, for programs: "unknown-code", "refused", "remark", "cut", "end".
    ends_run : bool
        The run ends there, or has ended.
    """

    text: str
    file: str = ""
    line: int = 0
    id: str = ""
    ends_run: bool = False

    def __str__(self) -> str:
        place = self.file + (f", line {self.line}" if self.line else "")
        return f"{place}: {self.text}" if place else self.text


class Files(Mapping[str, bytes]):
    """What a run left, by name; the case of letters does not count. Files of its working directory are "work/X"."""

    def __init__(self, files: Dict[str, bytes]) -> None:
        self._files = files
        self._names = {name.lower(): name for name in files}

    def __getitem__(self, name: str) -> bytes:
        return self._files[self._names[name.lower()]]

    def __iter__(self):  # type: ignore[no-untyped-def]
        return iter(self._files)

    def __len__(self) -> int:
        return len(self._files)

    def text(self, name: str) -> str:
        """A file as text; bytes that are no UTF-8 are read as Latin-1."""
        content = self[name]
        try:
            return content.decode()
        except UnicodeDecodeError:
            return content.decode("latin-1")

    def __repr__(self) -> str:
        return f"<Files: {', '.join(self._files) or 'none'}>"


class Activity:
    """When elements come and go in the analysis.

    Attributes
    ----------
    elements : ndarray of int32, shape (n,)
        Numbers of the elements that do, ascending; all others are there at any time.
    comes, goes : ndarray of int32, shape (n,)
        The step from which an element is there and the one from which it is not (NAC and NDAC); 0 for none.
    old_materials : ndarray of int32, shape (n,)
        The material that a solid or joint had before it got one of its group's own; 0 for others.
    """

    def __init__(self, elements: Ints, rows: Ints) -> None:
        self.elements = elements
        self.comes, self.goes, self.old_materials = rows[:, 0], rows[:, 1], rows[:, 2]

    @property
    def steps(self) -> List[int]:
        """The steps at which anything comes or goes, ascending."""
        return sorted({int(step) for step in [*self.comes, *self.goes] if step > 0})

    def absent(self, step: int) -> Ints:
        """Numbers of the elements that are not there in a step; step 0 is the state before the first."""
        later = (self.comes > 0) & (self.comes > step)
        gone = (self.goes > 0) & ((self.goes <= step) | (self.comes >= self.goes))
        return self.elements[later | gone]

    def _rows(self) -> List[Tuple[int, int, int, int]]:
        rows = zip(self.elements, self.comes, self.goes, self.old_materials)
        return [(int(element), int(comes), int(goes), int(old)) for element, comes, goes, old in rows]

    def __len__(self) -> int:
        return len(self.elements)


class Run:
    """A run of a deck.

    Attributes
    ----------
    deck : brelan.Deck
        The deck as it ran.
    mesh : brelan.Mesh or None
        The mesh that came out.
    messages : list of Message
        How it ended where it has not finished, which cut was taken and why, and what the mesh has otherwise than the
        deck draws it.
    files : Files
        Everything that the run left, its meshes and fragments for the solver's deck among it.
    """

    def __init__(self, deck: "Deck", core: _core.Run) -> None:
        self._core = core
        self.deck = deck
        self.mesh: Optional[Mesh] = Mesh._of(core.mesh) if core.mesh is not None else None
        self.messages = self._messages()
        self._files: Optional[Files] = None

    def _messages(self) -> List[Message]:
        core, file = self._core, self.deck.file
        messages = []
        if core.status != 0:
            messages.append(Message(core.message, core.file, core.line, "end", True))
        if core.cut_reason:
            messages.append(Message(core.cut_reason, file, 0, "cut"))
        messages.extend(Message(remark, file, 0, "remark") for remark in core.remarks)
        return messages

    @property
    def finished(self) -> bool:
        """The run reached its last step."""
        return self._core.status == 0

    @property
    def status(self) -> int:
        """The exit status that the batch program would have: 0 finished, 1 a stop of its own, 2 a failure."""
        return self._core.status

    @property
    def cut(self) -> str:
        """The cut that made the mesh, "rules" or "sound"."""
        return self._core.cut

    @property
    def seconds(self) -> float:
        """How long it took."""
        return self._core.seconds

    @property
    def console(self) -> str:
        """What the batch program would have shown on its console."""
        return self._core.console

    @property
    def activity(self) -> "Activity":
        """Which elements come and go, by the activity of the deck's groups."""
        return Activity(*self._core.activity)

    @property
    def files(self) -> Files:
        """Everything that the run left."""
        if self._files is None:
            self._files = Files(self._core.files())
        return self._files

    def __repr__(self) -> str:
        ended = "finished" if self.finished else f"ended: {self._core.message}"
        return f"<Run of {self.deck.file or 'a deck'}: {ended}; {self.mesh!r}>"
