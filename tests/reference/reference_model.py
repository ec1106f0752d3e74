"""The reference: what a plot trace must give, computed from the calls alone.

As a command it prints the job in the text form of the golden files:

reference_model.py TRACE... [--hdiplot PATH]

The runs of texts are taken from what the host command plots; without it a text is one run in no font. A new
golden file is made this way, read line by line against what the trace is to show, and only then kept.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from image_model import JpegColors
from page_writer_model import PageWriter
from player import Player
from plotted_job import PlottedJob, job_text, result_line
from recording_model import Recorder
from settings_record import SettingsRecord, custom_paper
from text_model import TextRuns
from trace_file import Trace, read_trace


def plot_trace(trace: Trace, plotted: str = "results") -> PlottedJob:
    """Plays a trace through the reference; arcs are not among what it follows. The runs of texts and
    the colours of JPEGs are taken from `plotted`, a plot of the trace in the text form."""
    settings = SettingsRecord()
    for name, value in trace.job.get("devMode", {}).items():
        settings[name] = value
    if "customPaper" in trace.job:
        settings.custom = custom_paper(trace.job["customPaper"])
    exact = bool(settings["keepFractions"])
    writer = PageWriter(settings.dots_per_inch, exact, TextRuns.of_plot(plotted), JpegColors(plotted))
    settings.normalize()
    recorder = Recorder(settings)
    recorder.line_scale = trace.job.get("lineScale", 1.0)
    job = PlottedJob()
    for call in trace.calls:
        job.results.append(result_line(call.line, call.name, recorder.play(call)))
    # A pen's width reaches the writer while it is recorded: the last one counts until the first is replayed.
    writer.line_width = recorder.last_pen_width
    writer.line_scale = recorder.line_scale
    writer.replay(recorder.commands, settings)
    job.pages = writer.pages
    job.layers, job.layer_order = writer.layers.names, writer.layers.order
    return job


def main() -> int:
    """Prints the text form of each trace on the command line."""
    parser = argparse.ArgumentParser(description="Print what traces must give.")
    parser.add_argument("traces", nargs="+", type=Path)
    parser.add_argument("--hdiplot", type=Path)
    arguments = parser.parse_args()
    for path in arguments.traces:
        plotted = "results"
        if arguments.hdiplot:
            with Player(arguments.hdiplot) as player:
                plotted = job_text(player.play(path))
        sys.stdout.write(job_text(plot_trace(read_trace(path), plotted)))
    return 0


if __name__ == "__main__":
    sys.exit(main())
