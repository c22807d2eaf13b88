"""Names of dimensions and variables that other packages take."""

from __future__ import annotations

import re
from collections.abc import Iterable


def identifiers(texts: Iterable[str], default: str, taken: Iterable[str] = ()) -> list[str]:
    """Makes lower-case names of texts, each of them once.

    >>> identifiers(["Field (B0)", "", "field b0"], "dim")
    ['field_b0', 'dim', 'field_b0_2']
    """
    names = list(taken)
    known = len(names)
    for text in texts:
        stem = re.sub(r"\W+", "_", text.lower()).strip("_") or default
        stem = f"_{stem}" if stem[0].isdigit() else stem
        same = (name for count in range(1, len(names) + 2) if (name := stem if count == 1 else f"{stem}_{count}"))
        names.append(next(name for name in same if name not in names))
    return names[known:]
