"""How far a tree is from the true one, and how much of an alignment is right. Nothing but the standard library.

A split is the set of tips on that side of an inner branch where the first tip by name is not.
"""
import re


class Branches:
    """The branches of a tree: {split: (length, label)}, and [(tips below, length)] of all, those of the tips with them."""

    def __init__(self, newick):
        self.all, stack, last, label = [], [[]], frozenset(), ""
        for token in re.findall(r"[(),;]|:[^(),;]+|[^(),:;]+", newick.strip()):
            if token == "(":
                stack.append([])
            elif token in ",);":
                if last:
                    stack[-1].append(last)
                last = frozenset()
                if token == ")":
                    last, label = frozenset().union(*stack.pop()), ""
            elif token.startswith(":"):
                self.all.append((last, float(token[1:]), label))
            elif last:
                label = token
            else:
                last, label = frozenset([token]), ""
        self.tips = frozenset().union(*stack[0])

    def among(self, tips):
        """The splits and the length of the tree that is left of these tips, with the label of each split."""
        first, splits, length = min(tips), {}, 0.0
        for below, branch, label in self.all:
            side = below & tips
            if not side or side == tips:
                continue
            length += branch
            side = tips - side if first in side else side
            if 1 < len(side) < len(tips) - 1:
                splits[side] = label or splits.get(side, "")
        return splits, length


def compare(inferred, true, supported):
    """What a tree has wrong: `supported` is the least label of a branch that is believed."""
    tips = inferred.tips
    splits, length = inferred.among(tips)
    truth, true_length = true.among(tips)
    believed = [split for split, label in splits.items() if label and float(label) >= supported]
    lost, false = len(truth.keys() - splits.keys()), len(splits.keys() - truth.keys())
    return {"rf": (lost + false) / (2 * (len(tips) - 3)), "lost": lost, "false": false, "believed": len(believed),
            "false_believed": sum(split not in truth for split in believed), "length": length / true_length}


def pairs(places):
    """Of each column, the pairs of residues that are homologous and those that are not. `places`: rows, None for a gap."""
    counts = []
    for column in zip(*places):
        seen = {}
        for place in column:
            if place is not None:
                seen[place] = seen.get(place, 0) + 1
        all_ = sum(seen.values())
        right = sum(n * (n - 1) // 2 for n in seen.values())
        counts.append((right, all_ * (all_ - 1) // 2 - right))
    return counts
