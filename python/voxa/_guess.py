"""The guess of a stream's record type."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Optional, Tuple

from . import _voxa


@dataclass(frozen=True)
class Candidate:
    """One record type, measured against a stream."""

    type: str
    score: float  #: share of the examined bits that the type explains, from 0 to 1
    passes: bool  #: every test of the guess
    reasons: Tuple[str, ...]  #: one sentence per test, up to the one that fails


@dataclass(frozen=True)
class Guess:
    """All record types, the likeliest first, and what follows from them."""

    type: Optional[str]  #: the type where it is certain
    verdict: str  #: "certain", "ambiguous", "tie", "unknown" or "empty"
    candidates: Tuple[Candidate, ...]
    likely: Tuple[str, ...]  #: the types that pass every test; of a tie, those that tie


def guess_of(index: _voxa.RecordingIndex, identifier: str) -> Guess:
    certain, unknown, empty, tie_count, rows = index.guess(identifier)
    candidates = tuple(Candidate(name, score, passes, tuple(reasons))
                       for name, score, passes, reasons in rows)
    front = candidates[:tie_count] if tie_count > 1 else candidates
    likely = tuple(candidate.type for candidate in front if candidate.passes)
    if empty:
        verdict = "empty"
    elif unknown:
        verdict = "unknown"
    elif certain:
        verdict = "certain"
    else:
        verdict = "tie" if tie_count > 1 else "ambiguous"
    return Guess(candidates[0].type if certain else None, verdict, candidates, likely)
