"""Arguments as users give them, checked and made into what _core takes."""
from __future__ import annotations

import operator
import re
from typing import Optional, Sequence, Tuple, Union

# In the order of the enumerations of the library.
KINDS = ("protein", "dna", "codons")
GAPS = ("none", "half", "all")
MATCHES = ("same", "name", "order")
FORMS = ("fasta", "phylip", "nexus", "trimora")

Share = Union[int, str, None]


def choice(argument: str, value: object, choices: Sequence[str]) -> int:
    if not isinstance(value, str):
        raise TypeError(f"{argument} has to be text, not {type(value).__name__}")
    if value not in choices:
        raise ValueError(f"{argument} is {value!r}, and has to be one of {', '.join(map(repr, choices))}")
    return choices.index(value)


def kind_number(kind: Optional[str]) -> Optional[int]:
    return None if kind is None else choice("kind", kind, KINDS)


def whole(argument: str, value: object) -> int:
    try:
        if isinstance(value, bool):
            raise TypeError
        number = operator.index(value)  # type: ignore[arg-type]
    except TypeError:
        raise TypeError(f"{argument} has to be a whole number, not {type(value).__name__}") from None
    if abs(number) >= 2**31:
        raise ValueError(f"{argument} is {number}, which is too large")
    return number


def share(argument: str, value: Share) -> Optional[Tuple[int, bool]]:
    """A number of sequences or, as text, per cent of them."""
    if value is None:
        return None
    if not isinstance(value, str):
        return whole(argument, value), False
    if not re.fullmatch(r"[0-9]{1,9}%", value):
        raise ValueError(f"{argument} is {value!r}, and has to be a whole number, or whole per cent as '60%'")
    return int(value[:-1]), True
