"""What notebooks show of a recording and of a parameter: a small SVG plot and a line of facts.

The plots take the colour of the text around them, so that they are legible on dark pages.
"""

from __future__ import annotations

import html
from typing import TYPE_CHECKING, Any, List, Tuple

import numpy as np
import numpy.typing as npt

from ._errors import DamagedStream, VoxaError

if TYPE_CHECKING:
    from ._parameter import Parameter
    from ._recording import Recording
    from ._stream import Stream

_WIDTH = 600  # pixels, as all sizes below
_HEIGHT = 72
_LANE_WIDTH = 240
_LANE_HEIGHT = 18
_MAX_STEPS = 1200  # two per pixel; more are drawn as the range of each pixel
_MAX_PLOTTED_BYTES = 64 << 20  # of a stream, so that showing a recording stays quick
_COLORS = ("#0072b2", "#d55e00", "#009e73", "#cc79a7")  # told apart by colour-blind readers

_Floats = npt.NDArray[np.float64]


def parameter_html(parameter: Parameter) -> str:
    facts = (f"{html.escape(parameter.type)}, {len(parameter):,} keyframes at "
             f"{parameter.rate} frames per second")
    if len(parameter) == 0:
        return f"<div><b>voxa.Parameter</b> {facts}</div>"
    seconds = parameter.seconds
    facts += f", {_range_text(float(seconds[0]), float(seconds[-1]))}"
    columns = _number_columns(parameter.values)
    if columns:
        body, legend = _step_lines(seconds, columns)
    else:
        body, legend = _marks(seconds), "one mark per keyframe"
    return (f"<div><b>voxa.Parameter</b> {facts}<br>{_svg(_WIDTH, _HEIGHT, body, facts)}"
            f"<br><small>{legend}</small></div>")


def recording_html(recording: Recording) -> str:
    rows = [(stream, *_times_of(stream)) for stream in recording.streams.values()]
    finite = [times[np.isfinite(times)] for _, _, times in rows]
    ends = [float(edge) for times in finite if times.size for edge in (times.min(), times.max())]
    first, last = (min(ends), max(ends)) if ends else (0.0, 0.0)
    cells = []
    for (stream, what, times), plotted in zip(rows, finite):
        count = f"{times.size:,}" if times.size else ""
        lane = _svg(_LANE_WIDTH, _LANE_HEIGHT, _density(plotted, first, last),
                    f"{stream.key}: records over time")
        cells.append(f"<tr><td>{html.escape(stream.key)}</td><td>{html.escape(what)}</td>"
                     f"<td>{count}</td><td>{stream.size:,}</td><td>{lane}</td></tr>")
    time = _range_text(first, last) if ends else "time"
    return (f"<div><b>voxa.Recording</b> {html.escape(recording.path, quote=True)}: "
            f"{recording.container}<table><thead><tr><th>key</th><th>type</th><th>records</th>"
            f"<th>bytes</th><th>{time}</th></tr></thead><tbody>{''.join(cells)}</tbody></table></div>")


def _range_text(first: float, last: float) -> str:
    def text(seconds: float) -> str:
        return f"{seconds:.3f} s" if abs(seconds) < 1e9 else f"{seconds:g} s"

    return f"{text(first)} to {text(last)}"


def _times_of(stream: Stream) -> Tuple[str, _Floats]:
    """The type of a stream, or why it cannot be read, and the times of its records where they are
    plotted."""
    none = np.empty(0)
    try:
        guess = stream.guess()
        if guess.type is None:
            return " or ".join(guess.likely) if guess.verdict != "empty" else "no records", none
        if stream.size > _MAX_PLOTTED_BYTES:
            return guess.type, none
        return guess.type, stream.records(guess.type)["time"]
    except DamagedStream as damage:
        return f"{guess.type}, damaged", damage.records["time"]
    except (VoxaError, ValueError) as error:  # ValueError: the recording is closed
        return str(error), none


def _number_columns(values: npt.NDArray[Any]) -> List[Tuple[str, _Floats]]:
    """The lines of a plot: none for texts and keystrokes, whose numbers are not quantities."""
    names = values.dtype.names
    if names is None:
        return [] if values.dtype == object else [("value", values.astype(np.float64))]
    if "character" in names:
        return []
    return [(name, values[name].astype(np.float64)) for name in names]


def _step_lines(seconds: _Floats, columns: List[Tuple[str, _Floats]]) -> Tuple[str, str]:
    with np.errstate(invalid="ignore"):
        usable = [np.abs(values) < 1e300 for _, values in columns]  # not NaN, and can be scaled
    kept = [values[use] for (_, values), use in zip(columns, usable) if use.any()]
    if not kept:
        return "", "no finite values"
    least = min(float(values.min()) for values in kept)
    greatest = max(float(values.max()) for values in kept)
    span = greatest - least or 1.0
    lines, legend = [], []
    for (name, values), use, color in zip(columns, usable, _COLORS):
        x = _scaled(seconds[use], float(seconds[0]), float(seconds[-1]), _WIDTH)
        y = (1 - (values[use] - least) / span) * (_HEIGHT - 4) + 2
        lines.append(f'<path d="{_step_path(x, y)}" fill="none" stroke="{color}"/>')
        legend.append(f'<span style="color:{color}">{html.escape(name)}</span>')
    return "".join(lines), f"{' '.join(legend)} from {least:g} to {greatest:g}"


def _step_path(x: _Floats, y: _Floats) -> str:
    if x.size == 0:
        return ""
    if x.size <= _MAX_STEPS:
        steps = [f"H{a:.1f}V{b:.1f}" for a, b in zip(x[1:].tolist(), y[1:].tolist())]
        return f"M{x[0]:.1f} {y[0]:.1f}{''.join(steps)}H{_WIDTH}"
    pixels = x.astype(np.int64)
    starts = np.flatnonzero(np.diff(pixels, prepend=-1))
    ends = np.append(starts[1:], x.size) - 1
    ranges = zip(pixels[starts].tolist(), np.minimum.reduceat(y, starts).tolist(),
                 np.maximum.reduceat(y, starts).tolist(), y[ends].tolist())
    steps = [f"H{pixel}V{low:.1f}V{high:.1f}V{end:.1f}" for pixel, low, high, end in ranges]
    return f"M{pixels[0]} {y[0]:.1f}{''.join(steps)}H{_WIDTH}"


def _marks(seconds: _Floats) -> str:
    x = _scaled(seconds, float(seconds[0]), float(seconds[-1]), _WIDTH)
    marks = "".join(f"M{pixel} 18V{_HEIGHT - 18}" for pixel in np.unique(np.round(x)).astype(int))
    return f'<path d="{marks}" stroke="currentColor" stroke-opacity="0.6"/>'


def _density(seconds: _Floats, first: float, last: float) -> str:
    if seconds.size == 0:
        return ""
    x = np.minimum(_scaled(seconds, first, last, _LANE_WIDTH // 2), _LANE_WIDTH // 2 - 1)
    counts = np.bincount(x.astype(np.int64), minlength=_LANE_WIDTH // 2)
    heights = np.where(counts > 0, np.maximum(counts / counts.max() * (_LANE_HEIGHT - 2), 2), 0)
    bars = "".join(f"M{2 * pixel + 1} {_LANE_HEIGHT}v{-height:.1f}"
                   for pixel, height in enumerate(heights.tolist()) if height)
    return f'<path d="{bars}" stroke="{_COLORS[0]}" stroke-width="2"/>'


def _scaled(seconds: _Floats, first: float, last: float, width: int) -> _Floats:
    """Pixels from 0 to `width`. Requires: the times are finite and from `first` to `last`."""
    # Halves, because the difference of two times can exceed the largest float.
    span = (last / 2 - first / 2) or 1.0
    return np.clip((seconds / 2 - first / 2) / span * width, 0, width)


def _svg(width: int, height: int, body: str, title: str) -> str:
    return (f'<svg xmlns="http://www.w3.org/2000/svg" role="img" width="{width}" height="{height}" '
            f'viewBox="0 0 {width} {height}"><title>{html.escape(title)}</title>'
            f'<path d="M0 {height - 0.5}H{width}" stroke="currentColor" stroke-opacity="0.3"/>'
            f"{body}</svg>")
