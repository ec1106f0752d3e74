"""Plays plot traces and compares what comes out with the reference or with the golden files beside them.

check_trace.py TRACE... --hdiplot PATH              against the reference
check_trace.py TRACE... --hdiplot PATH --golden     against NAME.expected beside NAME.jsonl
check_trace.py TRACE... --golden                    the reference against the golden files; nothing is played

A directory stands for the traces in it.
"""

from __future__ import annotations

import argparse
import sys
from contextlib import nullcontext
from pathlib import Path

from player import Player, PlayError
from plotted_job import differences, job_text
from reference_model import plot_trace
from trace_file import read_trace


def check(trace: Path, player: Player | None, golden: bool) -> list[str]:
    """The differences of one trace; without a player the reference stands in for what is played."""
    expected = trace.with_suffix(".expected").read_text(encoding="utf-8") if golden else ""
    try:
        actual = job_text(player.play(trace) if player else plot_trace(read_trace(trace), expected))
    except PlayError as error:
        return [str(error)]
    return differences(expected or job_text(plot_trace(read_trace(trace), actual)), actual)


def trace_files(paths: list[Path]) -> list[Path]:
    """The trace files that the command line names."""
    files = []
    for path in paths:
        files += sorted(path.glob("*.jsonl")) if path.is_dir() else [path]
    return files


def report(trace: str, messages: list[str]) -> None:
    """Prints what is wrong with one trace."""
    for message in messages:
        print(f"{trace}: {message}")


def main() -> int:
    """Checks the traces of the command line; the exit status is 1 when one of them differs."""
    parser = argparse.ArgumentParser(description="Compare played traces with what they must give.")
    parser.add_argument("traces", nargs="+", type=Path)
    parser.add_argument("--hdiplot", type=Path)
    parser.add_argument("--golden", action="store_true")
    arguments = parser.parse_args()
    if not arguments.hdiplot and not arguments.golden:
        parser.error("give --hdiplot, --golden or both")
    files = trace_files(arguments.traces)
    if not files:
        parser.error("no traces there")
    failed = 0
    with Player(arguments.hdiplot) if arguments.hdiplot else nullcontext() as player:
        for trace in files:
            messages = check(trace, player, arguments.golden)
            report(trace.name, messages)
            failed += bool(messages)
    print(f"{len(files)} traces, {failed} of them differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
