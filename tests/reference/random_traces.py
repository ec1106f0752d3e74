"""Plays random traces and compares each with the reference.

random_traces.py --hdiplot PATH [--first SEED] [--count N] [--keep DIRECTORY]

A trace that differs is cut down to the lines that make it differ, and kept in the directory if one is given.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from player import Player, PlayError
from plotted_job import differences, job_text
from reference_model import plot_trace
from trace_file import parse_trace, write_trace
from trace_generator import Line, TraceGenerator

MOST_FAILURES = 5


def compare(player: Player, lines: list[Line]) -> list[str]:
    """The differences between the played trace and the reference."""
    text = write_trace(lines)
    try:
        actual = job_text(player.play_text(text))
    except PlayError as error:
        return [str(error)]
    return differences(job_text(plot_trace(parse_trace(text), actual)), actual)


def shrink(player: Player, lines: list[Line]) -> list[Line]:
    """Leaves out runs of lines, ever shorter ones, as long as the trace still differs."""
    size = len(lines) // 2
    while size >= 1:
        start = 0
        while start < len(lines):
            shorter = lines[:start] + lines[start + size :]
            if shorter and compare(player, shorter):
                lines = shorter
            else:
                start += size
        size //= 2
    return lines


def main() -> int:
    """Runs the seeds of the command line; the exit status is 1 when one of them differs."""
    parser = argparse.ArgumentParser(description="Compare random traces with the reference.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("--first", type=int, default=1)
    parser.add_argument("--count", type=int, default=150)
    parser.add_argument("--keep", type=Path)
    arguments = parser.parse_args()
    failed = 0
    with Player(arguments.hdiplot) as player:
        for seed in range(arguments.first, arguments.first + arguments.count):
            if failed == MOST_FAILURES:
                print(f"gave up before seed {seed}")
                break
            lines = TraceGenerator(seed).lines()
            messages = compare(player, lines)
            if not messages:
                continue
            failed += 1
            lines = shrink(player, lines)
            messages = compare(player, lines) or ["differs no more, but did first:", *messages]
            print(f"seed {seed}:\n{write_trace(lines)}" + "\n".join(messages))
            if arguments.keep:
                arguments.keep.mkdir(parents=True, exist_ok=True)
                (arguments.keep / f"seed-{seed}.jsonl").write_text(write_trace(lines), encoding="utf-8")
    print(f"{arguments.count} random traces, {failed} of them differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
