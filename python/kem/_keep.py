"""Copies: pickling, and the arguments that make an object again."""

from __future__ import annotations

from typing import Any

from ._kem import Axis, Dataset


def again(cls: type, state: dict[str, Any]) -> Any:
    return cls(**state)


def reduce(self: Axis | Dataset) -> tuple[Any, ...]:
    return again, (type(self), self._state())
