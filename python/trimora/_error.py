from __future__ import annotations

from typing import Optional, Tuple, Type


class Error(Exception):
    """What is wrong with an alignment or a file; ``str(error)`` says it in words.

    Arguments that are wrong by themselves raise ``TypeError`` or ``ValueError`` instead.

    Attributes
    ----------
    kind : str
        What happened: ``"not_found"``, ``"not_readable"``, ``"not_writable"``, ``"changed"``, ``"empty"``,
        ``"unknown_format"``, ``"refused_format"``, ``"ambiguous_format"``, ``"damaged"``, ``"bad_record"``,
        ``"unfinished_record"``, ``"bad_character"``, ``"unequal_lengths"``, ``"too_long"``, ``"too_few_sequences"``,
        ``"too_few_positions"``, ``"undecided_type"``, ``"contrary_type"``, ``"other_sequences"``, ``"unfit_name"``,
        ``"same_name"``, ``"out_of_memory"``
    sequence : int or None
        The sequence to blame, counted from 0.
    name : str or None
        Its name, or that of the file.

    >>> try:
    ...     trimora.Alignment({"a": "ACGT", "b": "ACG"})
    ... except trimora.Error as error:
    ...     error.kind, error.sequence, error.name
    ('unequal_lengths', 1, 'b')
    """

    def __init__(self, what: str, kind: str, sequence: Optional[int] = None, name: Optional[str] = None) -> None:
        super().__init__(what)
        self.kind = kind
        self.sequence = sequence
        self.name = name

    def __reduce__(self) -> Tuple[Type[Error], Tuple[str, str, Optional[int], Optional[str]]]:
        return type(self), (str(self), self.kind, self.sequence, self.name)  # so that it leaves another process whole
