#!/usr/bin/env python3
"""Damages drawings at random, plots them, and prints the share that plots.

    damaged_drawings.py [COUNT [SEED]]

Each drawing is damaged in one to three places: groups, values, lines, bytes, their order, tables and sections. 95 %
must plot, without a crash and in bounded time and memory, and no undamaged entity of the model may be lost. Every
fourth drawing is binary with damaged bytes; it need not plot.
"""

import collections
import concurrent.futures
import os
import pathlib
import random
import re
import resource
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests/drawings"))

import binary_dxf  # noqa: E402

LEAST_SHARE = 0.95
MOST_SECONDS = 20
ROOM = 256 << 20
ODD_LINES = [b"", b"no number", b"-1", b"1e400", b"0", b"99999999999", b"\xff\xfe\0", b"12,5"]


class Line:
    def __init__(self, text, entity):
        self.text = text
        self.entity = entity  # the model entity that it belongs to, as (number, type), or None


def lines_of(file):
    """The lines of a drawing, and the number of lines of each entity."""
    texts = file.read_bytes().replace(b"\r\n", b"\n").split(b"\n")[:-1]
    lines, section, entity = [], b"", None
    for at in range(0, len(texts) - 1, 2):
        code, value = texts[at].strip(), texts[at + 1].strip()
        if code == b"0":
            entity = (at, value.decode()) if section == b"ENTITIES" and value not in (b"ENDSEC", b"SECTION") else None
        if code == b"2" and texts[at - 1].strip() == b"SECTION":
            section = value
        lines += [Line(texts[at], entity), Line(texts[at + 1], entity)]
    return lines, collections.Counter(line.entity for line in lines)


def stretch(lines, choose, start, end):
    """The range from a random `start` mark to after its `end`."""
    starts = [at for at in range(len(lines) - 1) if lines[at].text.strip() == b"0" and lines[at + 1].text == start]
    if not starts:
        return 0, 0
    first = choose.choice(starts)
    return first, next((at + 1 for at in range(first, len(lines)) if lines[at].text == end), len(lines))


def damage(lines, choose):
    if len(lines) < 40:
        return
    at = choose.randrange(len(lines) // 2 - 4) * 2
    odd = Line(choose.choice(ODD_LINES), None)
    start, end = choose.choice([(b"TABLE", b"ENDTAB"), (b"SECTION", b"ENDSEC"), (b"BLOCK", b"ENDBLK")])
    first, last = stretch(lines, choose, start, end)
    kind = choose.randrange(10)
    if kind == 0:
        del lines[at : at + 2]
    elif kind in (1, 2):
        lines[at + kind % 2] = odd
    elif kind == 3:
        del lines[at + choose.randrange(2)]
    elif kind == 4:
        lines.insert(at + choose.randrange(2), odd)
    elif kind == 5:
        byte = bytes([choose.randrange(256)]).replace(b"\n", b"\r")
        lines[at + 1] = Line(lines[at + 1].text[:-1] + byte, None)
    elif kind == 6:
        lines[at : at + 4] = [Line(line.text, None) for line in lines[at + 2 : at + 4] + lines[at : at + 2]]
    elif kind == 7:
        other = choose.randrange(len(lines) // 2) * 2
        lines[at:at] = [Line(line.text, None) for line in lines[other : other + 2]]
    elif kind == 8 and not any(line.text == b"ENTITIES" for line in lines[first:last]):
        del lines[first : last - choose.choice([0, 0, 1, (last - first) // 2])]
    else:
        del lines[choose.randrange(len(lines) * 3 // 4, len(lines)) :]


def damaged_binary(file, choose):
    content = bytearray(binary_dxf.converted(file.read_bytes(), choose.random() < 0.5))
    for _ in range(choose.randint(1, 3)):
        at = choose.randrange(len(binary_dxf.MARK), len(content))
        content[at : at + choose.randrange(20)] = choose.randbytes(choose.randrange(20))
    return bytes(content)


def untouched(lines, sizes):
    """Entities whose lines are all there, consecutive, and between two others that are complete."""
    runs = []
    for line in lines:
        if runs and runs[-1][0] == line.entity:
            runs[-1][1] += 1
        else:
            runs.append([line.entity, 1])
    whole = [entity is not None and sizes[entity] == count for entity, count in runs]
    return [runs[i][0] for i in range(1, len(runs) - 1) if whole[i - 1] and whole[i] and whole[i + 1]]


def run(*arguments):
    """Runs the command. Returns status, output and peak memory in bytes."""
    with tempfile.TemporaryFile() as output:
        limit = lambda: resource.setrlimit(resource.RLIMIT_CPU, (MOST_SECONDS, MOST_SECONDS))
        process = subprocess.Popen([os.environ["HDI_HDIPLOT_PATH"], *arguments], stdout=output, stderr=output,
                                   env=os.environ | {"HDI_USER_DIR": os.devnull}, preexec_fn=limit)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        return process.returncode, output.read().decode(errors="replace"), usage.ru_maxrss << 10


def attempt(file, seed):
    """Returns whether the damaged drawing plots (None if binary) and a list of faults."""
    choose = random.Random(seed)
    lines, sizes = lines_of(file)
    for _ in range(choose.randint(1, 3)):
        damage(lines, choose)
    kept = collections.Counter(kind for _, kind in untouched(lines, sizes) if kind not in ("VERTEX", "SEQEND"))
    content = b"".join(line.text + b"\n" for line in lines)
    if seed % 4 == 0:
        content, kept = damaged_binary(file, choose), None
    with tempfile.TemporaryDirectory() as place:
        damaged = pathlib.Path(place, file.name)
        damaged.write_bytes(content)
        status, output, memory = run(damaged, "-o", os.path.join(place, "plot.pdf"))
        _, listed, _ = run(damaged, "--list")
        size = damaged.stat().st_size
    faults = []
    if status not in (0, 1, 2):
        faults.append(f"ended with {status}")
    if memory > 4 * size + ROOM:
        faults.append(f"took {memory} bytes")
    spaces = collections.Counter()
    for number, kind in re.findall(r"([\d,]+) ([\w-]+)(?=,|$)", "\n".join(re.findall(r"space: (.*)", listed)), re.MULTILINE):
        spaces[kind] += int(number.replace(",", ""))
    faults += [f"{kept[kind] - spaces[kind]} {kind} lost" for kind in kept or () if spaces[kind] < kept[kind]]
    return status in (0, 1) if kept is not None else None, [f"{file.name}, seed {seed}: {fault}\n{output}" for fault in faults]


def main(count=300, seed=1):
    files = sorted(file for folder in ("examples", "tests/drawings") for file in (ROOT / folder).glob("*.dxf"))
    files = [file for file in files if file.stat().st_size > 4000]
    jobs = [(files[number % len(files)], seed * 100000 + number) for number in range(count)]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(lambda job: attempt(*job), jobs))
    faults = [fault for _, some in results for fault in some]
    texts = [plots for plots, _ in results if plots is not None]
    share = sum(texts) / len(texts)
    print("\n".join(faults[:10]))
    print(f"{100 * share:.1f} % of the damaged drawings plot; {len(faults)} faults")
    return 0 if share >= LEAST_SHARE and not faults else 1


if __name__ == "__main__":
    sys.exit(main(*map(int, sys.argv[1:])))
