"""Studies: one deck for many values, and what came out of each case as arrays."""

from __future__ import annotations

import os
import pathlib
import sqlite3
from typing import Any, Dict, List, Optional, Union

import numpy as np
from numpy.typing import NDArray

from . import _core
from .errors import Error

Column = NDArray[Any]


def _array(values: List[Any]) -> Column:
    """Numbers as float64 with nan where there is none, or int64 where all are whole; texts as str."""
    if any(isinstance(value, str) for value in values):
        return np.array(["" if value is None else str(value) for value in values], dtype=np.str_)
    if values and all(isinstance(value, int) for value in values):
        return np.array(values, dtype=np.int64)
    return np.array([np.nan if value is None else value for value in values], dtype=np.float64)


class Study:
    """What came out of a study, a row for each case that has ended.

    Attributes
    ----------
    directory : pathlib.Path
        Of the cases, the database and the report.
    cases : ndarray of int64, shape (n,)
        Numbers of the cases, ascending.
    states : ndarray of str, shape (n,)
        "finished", "stopped", "failed", "no deck", "time limit", "crashed".
    messages : ndarray of str, shape (n,)
        Why a case has not finished.
    parameters : dict of str to ndarray, shape (n,)
        The values of the study, by name.
    values : dict of str to ndarray, shape (n,)
        What was gathered, by name; nan where a case has no such value.
    """

    def __init__(self, directory: Union[str, "os.PathLike[str]"]) -> None:
        self.directory = pathlib.Path(directory)
        file = self.directory / "study.sqlite"
        if not file.is_file():
            raise Error(f"{file}: there are no results of a study")
        connection = sqlite3.connect(f"{file.resolve().as_uri()}?mode=ro", uri=True)
        try:
            columns = connection.execute("SELECT name, role FROM columns ORDER BY place").fetchall()
            cursor = connection.execute("SELECT * FROM cases ORDER BY number")
            names = [entry[0] for entry in cursor.description]
            rows = cursor.fetchall()
        except sqlite3.Error as fault:
            raise Error(f"{file}: {fault}") from None
        finally:
            connection.close()
        table = {name: [row[k] for row in rows] for k, name in enumerate(names)}
        self.cases: NDArray[np.int64] = np.array(table["number"], dtype=np.int64)
        self.states: Column = np.array(table["state"], dtype=np.str_)
        self.messages: Column = np.array(table["message"], dtype=np.str_)
        self.seconds: NDArray[np.float64] = np.array(table["seconds"], dtype=np.float64)
        self.parameters: Dict[str, Column] = {}
        self.values: Dict[str, Column] = {}
        for name, role in columns:
            of_role = self.parameters if role == "parameter" else self.values
            of_role[name[2:]] = _array(table[name])  # "p depth", "v nodes"

    @property
    def finished(self) -> NDArray[np.bool_]:
        """True for each case that reached its last step."""
        return np.asarray(self.states == "finished", dtype=np.bool_)

    @property
    def table(self) -> Dict[str, Column]:
        """Parameters and gathered values together, behind the numbers of the cases."""
        return {"case": self.cases, **self.parameters, **self.values}

    def folder(self, case: int) -> pathlib.Path:
        """The folder of a case: its deck, mesh, conversions and messages."""
        return self.directory / "cases" / f"{case // 1000:05}" / f"{case:06}"

    def __len__(self) -> int:
        return len(self.cases)

    def __repr__(self) -> str:
        return f"<Study {self.directory}: {int(self.finished.sum())} of {len(self)} cases finished>"


def study(file: Union[str, "os.PathLike[str]"], *, jobs: Optional[int] = None, again: bool = False, run: bool = True) -> Study:
    """Run what is missing of a study, and give its table as arrays.

    Parameters
    ----------
    file : path
        The study's file, as `brelan study new` writes one.
    jobs : int, optional
        Cases at a time; as many as there are cores unless given.
    again : bool
        Run the cases that have not finished once more.
    run : bool
        False reads what is there, as another process or a cluster has left it.

    Returns
    -------
    Study

    Raises
    ------
    brelan.Error
        For a study file, deck or table that is wrong, with file and line.

    Examples
    --------
    >>> table = brelan.study("wall.toml").table
    >>> table["depth"], table["elements"]
    """
    name = os.fspath(file)
    if run:
        _core.run_study(name, os.path.abspath(__file__), jobs or 0, again)
    return Study(os.path.dirname(_core.results_of_study(name)))
