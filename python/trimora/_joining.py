from __future__ import annotations

import os
from collections.abc import Mapping
from typing import TYPE_CHECKING, Any, Dict, Iterable, List, Optional, Tuple, Union

from . import _core
from ._alignment import Alignment, as_alignment, names_and_rows, numpy_is_there, of_data
from ._choices import MATCHES, Share, choice, share, whole
from ._selection import Selection

if TYPE_CHECKING:
    import numpy
    from numpy.typing import NDArray

Stretch = Tuple[int, int]


class Supermatrix:
    """Alignments put together; ``supermatrix()`` makes it. Columns count from 0.

    Attributes
    ----------
    alignment : Alignment
        The columns of one alignment after those of the other.
    partitions : list or dict of (int, int)
        Of each alignment its first column in `alignment` and one past its last, in the type that the alignments were given
        in: a list in their order, or a dict under their names. An alignment that is left out has no columns.
    occupancy : numpy array (sequences, alignments) of int32
        The letters of each sequence of `alignment` in each of the alignments; -1 where it is not in it. Gaps and unknown
        residues are no letters. A list of lists where numpy is not installed.
    left_out : list
        The alignments that the filters leave out, by their place in the list, from 0, or by their names.
    """

    alignment: Alignment
    partitions: Union[List[Stretch], Dict[Any, Stretch]]
    occupancy: NDArray[numpy.int32]
    left_out: List[Any]

    def __init__(
        self,
        alignment: Alignment,
        partitions: Union[List[Stretch], Dict[Any, Stretch]],
        occupancy: NDArray[numpy.int32],
        left_out: List[Any],
    ) -> None:
        self.alignment = alignment
        self.partitions = partitions
        self.occupancy = occupancy
        self.left_out = left_out

    def __repr__(self) -> str:
        parts = len(self.partitions) - len(self.left_out)
        return (
            f"<trimora.Supermatrix: {len(self.alignment)} sequences, {self.alignment.width} columns "
            f"of {parts} alignment{'' if parts == 1 else 's'}>"
        )


def supermatrix(
    alignments: Any,
    *,
    match: str = "name",
    name_begin: str = "",
    name_end: str = "",
    name_parts: Union[str, int] = "",
    species: Union[None, Iterable[str], Mapping[str, str]] = None,
    min_species: Share = None,
    min_columns: int = 0,
    min_genes: Share = None,
) -> Supermatrix:
    """Put alignments together.

    Parameters
    ----------
    alignments : list, or dict with a name for each
        Of Alignment, of Selection, whose trimmed alignment is taken, or of what an Alignment can be made of.
    match : {"name", "same", "order"}
        Match sequences by the part of their names that tells the species, with ``?`` where an alignment lacks one; by their
        order, where the names have to be the same; or by their order, whatever the names.
    name_begin, name_end : str
        The name of a species begins after the first of the characters `name_begin` and ends before the first of
        `name_end`: with ``name_end="|"``, ``"Homo_sapiens|gene1"`` is ``"Homo_sapiens"``. By default it ends at a blank.
    name_parts : str or int
        Or it is these fields between ``_``, ``|`` and blanks, as ``2`` or ``"1-2"``; or ``"OS"``, what follows ``OS=``,
        ``"brackets"``, what is in the last ``[ ]``, or ``"letters"``, those before the first digit.
    species : list of str, or dict, optional
        Keep only these species, in this order; a dict has their new names.
    min_species : int or str, optional
        Leave out alignments with fewer species: a number, or per cent of those of all alignments, as ``"75%"``.
    min_columns : int
        Leave out alignments with fewer columns.
    min_genes : int or str, optional
        Leave out species that are in fewer of the alignments that are left.

    Raises
    ------
    TypeError, ValueError
        When an argument is of a wrong type or out of its range.
    Error
        When the alignments do not go together, as when no species is in two of them.

    >>> nd4 = trimora.Alignment({"Pan|nd4": "ACGTACGT", "Homo|nd4": "ACGAACGA"})
    >>> nd5 = {"Homo|nd5": "GGCC", "Gorilla|nd5": "GG-C"}
    >>> m = trimora.supermatrix({"nd4": nd4, "nd5": nd5}, name_end="|")
    >>> print(m.alignment, end="")
    >Pan
    ACGTACGT????
    >Homo
    ACGAACGAGGCC
    >Gorilla
    ????????GG-C
    >>> m.partitions
    {'nd4': (0, 8), 'nd5': (8, 12)}
    >>> m.occupancy.tolist()
    [[8, -1], [8, 4], [-1, 3]]
    """
    named = isinstance(alignments, Mapping)
    if isinstance(alignments, (Alignment, Selection, str, bytes)) or not hasattr(alignments, "__iter__"):
        raise TypeError(f"a list of alignments can be put together, not {type(alignments).__name__}")
    keys = list(alignments) if named else None
    parts = [_data_of(each) for each in (alignments.values() if named else alignments)]
    renamed = species if isinstance(species, Mapping) else dict.fromkeys([] if species is None else _names(species), "")
    if species is not None and not renamed:
        raise ValueError("species is empty")
    for text in (name_begin, name_end, *renamed, *renamed.values()):
        if not isinstance(text, str):
            raise TypeError(f"a name or its end has to be text, not {type(text).__name__}")
    columns = whole("min_columns", min_columns)
    data, stretches, out, occupancy = _core.supermatrix(
        parts,
        choice("match", match, MATCHES),
        [name_begin, name_end, str(name_parts)],
        list(renamed),
        list(renamed.values()),
        share("min_species", min_species),
        columns,
        share("min_genes", min_genes),
        numpy_is_there(),
    )
    where = list(range(len(parts))) if keys is None else keys
    left_out = [which for which, is_out in zip(where, out) if is_out]
    return Supermatrix(of_data(data), stretches if keys is None else dict(zip(keys, stretches)), occupancy, left_out)


def codons(proteins: Any, sequences: Any, *, code: int = 1) -> Alignment:
    """The codons of a protein alignment: three columns for each of its own.

    Each residue is checked against its codon. Gaps are ``---``, stop codons inside are ``NNN``. A final stop codon is
    dropped, and so are one or two letters after it.

    Parameters
    ----------
    proteins : Selection, Alignment, or what one can be made of
        Of a Selection, the codons of the columns that are kept.
    sequences : str, path object, dict, list of pairs, or Biopython records
        The coding sequences, aligned or not: a file, ``{name: letters, ...}``, ``[(name, letters), ...]``, or what
        ``Bio.SeqIO.parse()`` or ``Bio.SeqIO.to_dict()`` return. They are matched with the proteins by name, whole or up
        to the first blank.
    code : int
        The genetic code under its number at NCBI.

    Raises
    ------
    Error
        When a protein has no coding sequence, or one that does not encode it.

    >>> proteins = {"a": "MKV-L", "b": "MKVAL"}
    >>> print(trimora.codons(proteins, {"b": "ATGAAAGTTGCTCTTTAA", "a": "ATGAAGGTACTT"}), end="")
    >a
    ATGAAGGTA---CTT
    >b
    ATGAAAGTTGCTCTT
    """
    number = whole("code", code)
    if isinstance(sequences, (str, os.PathLike)):
        coding = _core.read_coding_sequences(os.fsencode(sequences))
    else:
        names, rows = _names_and_letters(sequences)
        coding = _core.coding_sequences(names, rows)
    if isinstance(proteins, Selection):
        return of_data(_core.selected_codons(proteins._found, coding, number))
    return of_data(_core.codons(as_alignment(proteins)._data, coding, number))


def _data_of(x: Any) -> _core.Alignment:
    return x.trimmed._data if isinstance(x, Selection) else as_alignment(x)._data


def _names(species: Iterable[str]) -> List[str]:
    if isinstance(species, (str, bytes)):
        raise TypeError(f"species has to be a list or a dict, not {type(species).__name__}")
    names = list(species)
    for name in names:
        if names.count(name) > 1:
            raise ValueError(f"species has {name!r} twice")
    return names


def _names_and_letters(x: Any) -> Tuple[List[Any], List[Any]]:
    """Also of Biopython records, whose names and letters are their ids and sequences."""
    if not isinstance(x, (Mapping, str, bytes)) and hasattr(x, "__iter__"):
        x = [(each.id, each.seq) if hasattr(each, "seq") else each for each in x]
    names, rows = names_and_rows(x)
    for name in names:
        if not isinstance(name, str):
            raise TypeError(f"a name has to be text, not {type(name).__name__}")
    return names, [row.seq if hasattr(row, "seq") else row for row in rows]
