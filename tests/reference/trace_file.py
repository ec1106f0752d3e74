"""Plot traces: the calls of one job, one JSON object a line."""

from __future__ import annotations

import json
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any


@dataclass
class Call:
    """One call line: its number in the file, the entry's name and its arguments."""

    line: int
    name: str
    arguments: dict[str, Any]


@dataclass
class Trace:
    """A whole trace; `job` is the object of the job line, empty without one."""

    job: dict[str, Any] = field(default_factory=dict)
    calls: list[Call] = field(default_factory=list)


def parse_trace(text: str) -> Trace:
    """Reads a trace's text; the line numbers count from 1 and include blank lines."""
    trace = Trace()
    for number, line in enumerate(text.split("\n"), start=1):
        if not line.strip():
            continue
        record = json.loads(line)
        if "job" in record:
            trace.job = record["job"]
        else:
            name = record.pop("call")
            trace.calls.append(Call(number, name, record))
    return trace


def read_trace(path: Path) -> Trace:
    """Reads a trace file."""
    return parse_trace(path.read_text(encoding="utf-8"))


def write_trace(lines: list[dict[str, Any]]) -> str:
    """The text of a trace whose lines are the given objects."""
    return "".join(json.dumps(line, separators=(", ", ": ")) + "\n" for line in lines)
