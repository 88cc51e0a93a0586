from __future__ import annotations

import itertools
from collections.abc import Mapping
from functools import cached_property
from typing import TYPE_CHECKING, Any, List, Optional, Tuple

from . import _core
from ._alignment import Alignment, as_alignment, is_biopython, names_and_rows, numpy_is_there, of_data
from ._choices import GAPS, KINDS, Share, choice, kind_number, share, whole

if TYPE_CHECKING:
    import numpy
    from numpy.typing import NDArray


def select(
    alignment: Any,
    *,
    preset: str = "classic",
    kind: Optional[str] = None,
    gaps: Optional[str] = None,
    b0: Optional[int] = None,
    b1: Share = None,
    b2: Share = None,
    b3: Optional[int] = None,
    b4: Optional[int] = None,
    similarity: bool = True,
) -> Selection:
    """Select the blocks of columns that are reliable enough for a tree.

    Parameters
    ----------
    alignment : Alignment, or what one can be made of
        A dict, a list of pairs or a ``Bio.Align.MultipleSeqAlignment`` is taken as it is.
    preset : {"classic", "relaxed", "none"}
        What `gaps` and `b2` to `b4` are where they are not given: the defaults below; gaps in up to half of
        the sequences and shorter blocks; or every column is kept, whatever is given.
    kind : {"protein", "dna", "codons"}, optional
        The type of the sequences; by default that of the alignment. Codons are never guessed.
    gaps : {"none", "half", "all"}, optional
        b5: a selected column holds no gap, a gap in at most half of the sequences, or any number; none by default.
    b0 : int, optional
        Shortest initial block, in columns, before gaps are cut out: 2 to 32000; as `b4` by default.
    b1 : int or str, optional
        Sequences that a conserved column needs, or per cent of all as ``"60%"``; half of them + 1 by default, which is
        the least, up to `b2`.
    b2 : int or str, optional
        Sequences that a flank column needs, from `b1` to all; 85 % by default.
    b3 : int, optional
        Most nonconserved columns in a row: 0 to 32000; 8 by default.
    b4 : int, optional
        Shortest block, in columns: 2 to 32000; 10 by default.
    similarity : bool
        b6: similar residues of proteins add to a score.

    Raises
    ------
    TypeError, ValueError
        When an argument is of a wrong type or out of its range.
    Error
        When the letters do not tell the type, or fewer than two columns hold letters.

    Threads may select at the same time, also from one alignment: the lock of the interpreter is free meanwhile.

    >>> sel = trimora.select(trimora.read("globins.fas"), gaps="half", b4=5)
    >>> sel
    <trimora.Selection: 145 of 154 columns in 1 block>
    >>> sel.blocks
    [(2, 147)]
    """
    ali = as_alignment(alignment)
    if not isinstance(preset, str):
        raise TypeError(f"preset has to be text, not {type(preset).__name__}")
    if not isinstance(similarity, bool):
        raise TypeError(f"similarity has to be True or False, not {type(similarity).__name__}")
    found = _core.select(
        ali._data,
        preset,
        kind_number(kind),
        None if gaps is None else choice("gaps", gaps, GAPS),
        None if b0 is None else whole("b0", b0),
        share("b1", b1),
        share("b2", b2),
        None if b3 is None else whole("b3", b3),
        None if b4 is None else whole("b4", b4),
        similarity,
    )
    return Selection(found)


class Selection:
    """The blocks of one alignment; ``select()`` makes it. Columns are those of the alignment as given, from 0."""

    _width: int

    def __init__(self, found: _core.Selection) -> None:
        self._found = found
        self._width = found.alignment.width

    @cached_property
    def columns(self) -> NDArray[numpy.int32]:
        """The columns that are kept, ascending: a read-only array, or a list where numpy is not installed."""
        columns: NDArray[numpy.int32] = self._found.columns(numpy_is_there())
        return columns

    @cached_property
    def scores(self) -> NDArray[numpy.float32]:
        """The score of each column, in sequences, of shape (width,); 0 where gaps or unknown residues forbid one.

        A read-only array, or a list where numpy is not installed."""
        scores: NDArray[numpy.float32] = self._found.scores(numpy_is_there())
        return scores

    @property
    def blocks(self) -> List[Tuple[int, int]]:
        """The blocks as (first, one past the last) column.

        A block may span columns that are gaps in every sequence: these are not in `columns`."""
        return self._found.blocks

    @property
    def classes(self) -> str:
        """One character for each column: ``F`` flank, ``C`` conserved, ``.`` nonconserved, ``-`` gap, ``d`` dropped."""
        return self._found.classes

    @cached_property
    def reasons(self) -> List[str]:
        """For each column ``"selected"``, or the first rule that removes it, in words; columns in them count from 0.

        Found when it is first asked for, which takes about as long as the selection.

        >>> sel = trimora.select(trimora.read("globins.fas"))
        >>> sel.reasons[1], sel.reasons[60]
        ('too many gaps (26 of 45, b5 allows 0)', 'selected')
        """
        return self._found.reasons()

    @property
    def kind(self) -> str:
        """The type of the sequences that was in force."""
        return KINDS[self._found.kind]

    @property
    def b1(self) -> int:
        """Sequences that a conserved column needed."""
        return self._found.b1

    @property
    def b2(self) -> int:
        """Sequences that a flank column needed."""
        return self._found.b2

    @cached_property
    def trimmed(self) -> Alignment:
        """The alignment reduced to the selected columns.

        >>> sel = trimora.select(trimora.read("globins.fas"))
        >>> sel.trimmed
        <trimora.Alignment: 45 sequences, 114 columns, protein>
        """
        return self._trimmed(self._found.alignment)

    def apply(self, x: Any) -> Any:
        """The same columns of another alignment of this width, of the type of `x`.

        Parameters
        ----------
        x : Alignment, dict, list of pairs, Bio.Align.MultipleSeqAlignment, or numpy array (sequences, columns)
            Letters keep their type. A Biopython alignment keeps ids, descriptions, annotations and annotations per
            letter or column; features are left out.

        Raises
        ------
        ValueError
            When `x` has another number of columns.

        >>> sel = trimora.select(trimora.read("globins.fas"))
        >>> bars = sel.apply({"bars": "|" * 154})
        >>> len(bars["bars"]) == len(sel.columns)
        True
        """
        if isinstance(x, Alignment):
            self._check(x.width)
            return self._trimmed(x._data)
        if is_biopython(x):
            return self._of_biopython(x)
        if getattr(x, "ndim", None) == 2:
            self._check(x.shape[1])
            return x[:, self.columns]
        names, rows = names_and_rows(x)
        picked = [self._picked(row) for row in rows]
        return dict(zip(names, picked)) if isinstance(x, Mapping) else list(zip(names, picked))

    def __repr__(self) -> str:
        count, blocks = len(self.columns), len(self.blocks)
        return f"<trimora.Selection: {count} of {self._width} columns in {blocks} block{'' if blocks == 1 else 's'}>"

    def _trimmed(self, data: _core.Alignment) -> Alignment:
        return of_data(self._found.trim(data))

    def _check(self, width: int) -> None:
        if width != self._width:
            raise ValueError(f"{width} columns, and the selection was made of an alignment of {self._width}")

    @cached_property
    def _runs(self) -> List[slice]:
        """The columns as stretches, which are quicker to pick."""
        columns = [int(column) for column in self.columns]
        starts = [k for k, column in enumerate(columns) if k == 0 or columns[k - 1] != column - 1]
        ends = starts[1:] + [len(columns)]
        return [slice(columns[start], columns[end - 1] + 1) for start, end in zip(starts, ends) if start < end]

    def _picked(self, row: Any) -> Any:
        """The selected columns of a str, bytes, list, array or Seq, as the same type."""
        self._check(len(row))
        if isinstance(row, str):
            return "".join([row[run] for run in self._runs])
        if isinstance(row, (bytes, bytearray)):
            return type(row)(b"".join([row[run] for run in self._runs]))
        if isinstance(row, (list, tuple)):
            return type(row)(itertools.chain.from_iterable(row[run] for run in self._runs))
        if hasattr(row, "__bytes__") and not hasattr(row, "ndim"):  # Seq
            return type(row)(self._picked(bytes(row)))
        return row[self.columns]

    def _of_biopython(self, x: Any) -> Any:
        from Bio.Align import MultipleSeqAlignment
        from Bio.SeqRecord import SeqRecord

        self._check(x.get_alignment_length())
        records = [
            SeqRecord(
                self._picked(record.seq),
                id=record.id,
                name=record.name,
                description=record.description,
                dbxrefs=list(record.dbxrefs),
                annotations=dict(record.annotations),
                letter_annotations={key: self._picked(value) for key, value in record.letter_annotations.items()},
            )
            for record in x
        ]
        of_columns = {key: self._picked(value) for key, value in x.column_annotations.items()}
        return MultipleSeqAlignment(records, annotations=dict(x.annotations), column_annotations=of_columns)
