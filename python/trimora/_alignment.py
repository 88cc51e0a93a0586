from __future__ import annotations

import os
import sys
from collections.abc import Mapping
from typing import IO, Any, Iterable, Iterator, List, Optional, Tuple, Union

from . import _core
from ._choices import FORMS, KINDS, choice, kind_number


class Alignment:
    """Sequences of equal length, each with a name. An alignment never changes.

    Parameters
    ----------
    sequences : dict, list of pairs, Bio.Align.MultipleSeqAlignment, or list of names
        ``{name: letters, ...}`` or ``[(name, letters), ...]``. Letters are ``str``, ``bytes``, any array of bytes, or
        ``Bio.Seq.Seq``. ``-`` and ``.`` are gaps. The name of a Biopython record is its ``id``.
    letters : numpy array of bytes, optional
        With a list of names: one row for each, of shape (sequences, columns) and type ``S1`` or ``uint8``. A list of
        ``str`` or ``bytes`` is taken as well.
    kind : {"protein", "dna", "codons"}, optional
        The type of the sequences. By default their letters decide it; codons are never guessed.

    The letters are copied once.

    Raises
    ------
    Error
        When sequences differ in length, hold other characters, or are fewer than two.

    >>> ali = trimora.Alignment({"a": "ACGT", "b": "AC-T"})
    >>> ali
    <trimora.Alignment: 2 sequences, 4 columns>
    >>> print(ali, end="")
    >a
    ACGT
    >b
    AC-T
    """

    __slots__ = ("_data",)
    _data: _core.Alignment

    def __init__(self, sequences: Any, letters: Any = None, *, kind: Optional[str] = None) -> None:
        names, rows = names_and_rows(sequences) if letters is None else (list(sequences), list(letters))
        if len(names) != len(rows):
            raise ValueError(f"{len(names)} names for {len(rows)} rows of letters")
        for name in names:
            if not isinstance(name, str):
                raise TypeError(f"a name has to be text, not {type(name).__name__}")
        self._data = _core.from_rows(names, rows, kind_number(kind))

    def __len__(self) -> int:
        """The number of sequences."""
        return len(self._data)

    def __iter__(self) -> Iterator[Tuple[str, str]]:
        """Pairs of name and letters, so that ``dict(ali)`` is a dictionary of the sequences."""
        return zip(self.names, self.sequences)

    @property
    def width(self) -> int:
        """The number of columns."""
        return self._data.width

    @property
    def names(self) -> List[str]:
        """The names, a new list."""
        return self._data.names

    @property
    def sequences(self) -> List[str]:
        """The letters of each sequence, a new list; gaps are ``-``."""
        return self._data.sequences

    @property
    def kind(self) -> Optional[str]:
        """``"protein"``, ``"dna"`` or ``"codons"``: as given, or as the file or the letters say; None when they do not."""
        return KINDS[self._data.kind] if self._data.kind >= 0 else None

    @property
    def format(self) -> str:
        """The format that it was read from, as ``"FASTA"``; empty when it was made in memory."""
        return self._data.format

    def write(self, path: Union[str, bytes, os.PathLike[Any]], form: str = "fasta") -> None:
        """Write the alignment into the file `path`, which is replaced. It is there whole or not at all.

        Parameters
        ----------
        path : str, bytes or path object
        form : {"fasta", "phylip", "nexus", "trimora"}
            ``"trimora"`` is FASTA in groups of ten letters.

        Raises
        ------
        Error
            When the file cannot be written, or the form cannot hold the names: PHYLIP and NEXUS need different ones.
        """
        self._data.write(os.fsencode(path), choice("form", form, FORMS))

    def __str__(self) -> str:
        """The alignment in FASTA."""
        return self._data.text(FORMS.index("fasta"))

    def __repr__(self) -> str:
        kind = f", {self.kind}" if self.kind else ""
        return f"<trimora.Alignment: {len(self)} sequences, {self.width} columns{kind}>"


def read(source: Union[str, os.PathLike[Any], bytes, bytearray, memoryview, IO[Any]]) -> Alignment:
    """Read an alignment.

    Parameters
    ----------
    source : str, path object, file object or bytes
        ``str`` and path objects name a file; ``bytes`` are its content. The format is known by the content: FASTA,
        NBRF/PIR, CLUSTAL, PHYLIP, NEXUS, Stockholm or MSF, also compressed by gzip.

    Raises
    ------
    Error
        When the file is not there, or holds no alignment; ``error.kind`` tells which.

    >>> ali = trimora.read("globins.fas")
    >>> len(ali), ali.width, ali.kind, ali.format
    (45, 154, 'protein', 'FASTA')
    """
    ali = Alignment.__new__(Alignment)
    if isinstance(source, (str, os.PathLike)):
        ali._data = _core.read(os.fsencode(source))
    elif isinstance(source, (bytes, bytearray, memoryview)):
        ali._data = _core.read_text(bytes(source))
    elif hasattr(source, "read"):
        content = source.read()
        ali._data = _core.read_text(content.encode("utf-8", "surrogateescape") if isinstance(content, str) else content)
    else:
        raise TypeError(f"a path, a file object or bytes can be read, not {type(source).__name__}")
    return ali


def of_data(data: _core.Alignment) -> Alignment:
    ali = Alignment.__new__(Alignment)
    ali._data = data
    return ali


def numpy_is_there() -> bool:
    try:
        import numpy  # noqa: F401
    except ImportError:
        return False
    return True


def as_alignment(x: Any) -> Alignment:
    return x if isinstance(x, Alignment) else Alignment(x)


def is_biopython(x: object) -> bool:
    """Whether `x` is an alignment of Biopython, which is not imported for that."""
    module = sys.modules.get("Bio.Align")
    return module is not None and isinstance(x, module.MultipleSeqAlignment)


def names_and_rows(x: Any) -> Tuple[List[Any], List[Any]]:
    if isinstance(x, Mapping):
        return list(x), list(x.values())
    if is_biopython(x):
        return [record.id for record in x], [record.seq for record in x]
    pairs = [] if isinstance(x, (str, bytes)) else list_of_pairs(x)
    if pairs is None or isinstance(x, (str, bytes)):
        raise TypeError(
            f"an alignment is a dict, a list of (name, letters), or names and letters, not {type(x).__name__}; "
            "trimora.read() reads a file"
        )
    return [name for name, _ in pairs], [row for _, row in pairs]


def list_of_pairs(x: Iterable[Any]) -> Optional[List[Tuple[Any, Any]]]:
    try:
        pairs = list(x)
    except TypeError:
        return None
    return pairs if all(isinstance(pair, (tuple, list)) and len(pair) == 2 for pair in pairs) else None
