"""What the package raises."""

from __future__ import annotations

from typing import TYPE_CHECKING, Optional

if TYPE_CHECKING:
    from .run import Run


class Error(Exception):
    """Something that cannot be read, written or run.

    Attributes
    ----------
    message : str
        What is wrong and what was expected, without the place.
    file : str
        The file that it is about; empty where there is none.
    line : int
        Line of the file, from 1; 0 for the file as a whole.
    field : int or None
        Place of the value on the card at the line, from 0.
    """

    def __init__(self, message: str, file: str = "", line: int = 0, field: Optional[int] = None) -> None:
        super().__init__(message, file, line, field)
        self.message = message
        self.file = file
        self.line = line
        self.field = field

    def __str__(self) -> str:
        place = self.file + (f", line {self.line}" if self.line else "")
        return f"{place}: {self.message}" if place else self.message


class RunError(Error):
    """A run that has not finished.

    Attributes
    ----------
    run : brelan.Run
        The run as far as it came: its files and its console.
    """

    def __init__(self, message: str, file: str, line: int, field: Optional[int], run: "Run") -> None:
        super().__init__(message, file, line, field)
        self.run = run
