"""Select the blocks of a multiple alignment that are reliable enough for a phylogenetic tree.

>>> import trimora
>>> ali = trimora.read("globins.fas")
>>> sel = trimora.select(ali, gaps="half", b4=5)
>>> sel.trimmed.width
145
>>> sel.trimmed.write("globins.phy", form="phylip")

Sequences and columns count from 0; the second number of a pair is one past the last.
"""
from ._alignment import Alignment, read
from ._core import __version__ as __version__
from ._error import Error
from ._joining import Supermatrix, codons, supermatrix
from ._selection import Selection, select

__all__ = ["Alignment", "Error", "Selection", "Supermatrix", "codons", "read", "select", "supermatrix"]
