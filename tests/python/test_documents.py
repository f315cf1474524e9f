"""The examples of docs/python.md as they stand, and what notebooks show."""

import math
import os
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

import numpy as np
import pytest
import voxa
from voxa import _html

from conftest import points, raw_recording, recording_of, stream_id
from test_reading import TYPES

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENT = (ROOT / "docs" / "python.md").read_text()
SECTIONS = dict(re.findall(r"^## Example: (.*?)\n(.*?)(?=^## )", DOCUMENT, re.MULTILINE | re.DOTALL))


def block(title, language):
    """The first block of a section in this language, empty where there is none."""
    found = re.search(rf"^```{language}\n(.*?)^```", SECTIONS[title], re.MULTILINE | re.DOTALL)
    return found.group(1) if found else ""


def test_there_are_three_examples():
    assert len(SECTIONS) == 3


@pytest.mark.parametrize("title", SECTIONS)
def test_examples_run_as_they_stand(sample, tmp_path, title):
    shutil.copy(sample, tmp_path / "take1.voxa")
    (tmp_path / "example.py").write_text(block(title, "python"))
    done = subprocess.run([sys.executable, "-W", "error::RuntimeWarning", "example.py"],
                          cwd=tmp_path, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          env={**os.environ, "MPLBACKEND": "Agg", "MPLCONFIGDIR": str(tmp_path)})
    assert done.returncode == 0, done.stderr
    assert done.stdout == block(title, "text")
    for name in re.findall(r'savefig\("(.*?)"', block(title, "python")):
        image = pytest.importorskip("PIL.Image").open(tmp_path / name).convert("L")
        assert image.size[0] > 300 and len(set(image.getdata())) > 8  # something is drawn
    assert done.stdout or (tmp_path / "heatmap.png").exists()


def svgs(page):
    return [xml.etree.ElementTree.fromstring(text)
            for text in re.findall(r"<svg.*?</svg>", page, re.DOTALL)]


def test_recordings_show_a_lane_per_stream(sample):
    page = voxa.open(sample)._repr_html_()
    lanes = svgs(page)
    assert len(lanes) == len(TYPES)
    for lane, (key, type) in zip(lanes, TYPES.items()):
        assert lane[0].text.startswith(key) and len(lane) == 3  # title, axis, bars
        assert f"<td>{type}</td>" in page


@pytest.mark.parametrize("key", TYPES)
def test_parameters_show_a_plot(sample, key):
    (plot,) = svgs(voxa.open(sample).streams[key].load()._repr_html_())
    lines = [element.get("d") for element in plot[2:]]
    expected = {"points": 2, "rects": 4}.get(TYPES[key], 1)
    assert len(lines) == expected and all(re.fullmatch(r"[MHV0-9. ]+", line) for line in lines)


def test_plots_stay_small_and_names_are_escaped(tmp_path):
    path = raw_recording(tmp_path / "<b>&.dat", points(100_000))
    recording = voxa.open(path)
    page = recording._repr_html_()
    assert "&lt;b&gt;&amp;" in page and "<b>&" not in page
    assert len(recording.streams["F0"].load("points", 60)._repr_html_()) < 60_000


@pytest.mark.parametrize("times", [[-1e308, 0.0, 1e308], [-sys.float_info.max, sys.float_info.max],
                                   [0.0, 5e-324], [7.0, 7.0]])
def test_extreme_times_stay_within_the_plot(times):
    with np.errstate(all="raise", under="ignore"):
        offsets = _html._scaled(np.array(times), times[0], times[-1], 600)
        assert offsets.min() == 0 and offsets.max() <= 600 and (np.diff(offsets) >= 0).all()
        assert _html._density(np.array(times), times[0], times[-1]).count("M") == len(set(offsets))


def test_recordings_show_finite_times_of_any_size(tmp_path):
    times = [-1e308, *range(40), math.nan, math.inf, 1e308]
    rows = np.zeros(len(times), [("time", "<f8"), ("x", "<i4"), ("y", "<i4")])
    rows["time"] = times
    recording = voxa.open(raw_recording(tmp_path / "a.dat", rows.tobytes()))
    stream = recording.streams["F0"]
    stream.guess = lambda: voxa.Guess("points", "certain", (), ("points",))
    page = recording._repr_html_()
    (lane,) = svgs(page)
    assert lane[2].get("d").count("M") == 3 and "<th>-1e+308 s to 1e+308 s</th>" in page


def test_closed_and_unreadable_streams_are_named_in_their_row(sample, tmp_path):
    with voxa.open(sample) as recording:
        pass
    assert recording._repr_html_().count("<td>the recording is closed</td>") == len(TYPES)
    mixed = voxa.open(recording_of(tmp_path / "a.voxa", (stream_id(0xF0), 1, points(90)),
                                   (stream_id(0xF1), 1, points(90))))

    def fail():
        raise voxa.VoxaError("unreadable & so on")

    mixed.streams["F0"].guess = fail
    page = mixed._repr_html_()
    assert "<td>unreadable &amp; so on</td>" in page and len(svgs(page)) == 2
