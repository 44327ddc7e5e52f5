"""BRELAN-2D in Python: decks and plane meshes of geotechnical finite-element models.

>>> import brelan
>>> deck = brelan.Deck("pit.dat")
>>> deck.groups[2].points[0].x += 0.5
>>> mesh = deck.run(sound=True).mesh
>>> mesh.points, mesh.quads, mesh.soundness()
>>> mesh.save("Pit.vtu")

All runs in process; nothing goes through files unless it is asked for. After the import meshio reads and writes mesh
files too.
"""

from . import _core
from . import meshio as _meshio
from .deck import Card, Deck, Group, Point, Segment, Shape
from .errors import Error, RunError
from .mesh import CLASSES, Finding, Mesh, Quality, Soundness
from .run import Activity, Files, Message, Run
from .studies import Study, study

_meshio.register()

__version__ = _core.version

__all__ = [
    "CLASSES",
    "Activity",
    "Card",
    "Deck",
    "Error",
    "Files",
    "Finding",
    "Group",
    "Mesh",
    "Message",
    "Point",
    "Quality",
    "Run",
    "RunError",
    "Segment",
    "Shape",
    "Soundness",
    "Study",
    "study",
]
