"""Checks the tables of positions and slots in the page for hosts against the header of the border.

    host_test.py PAGE HEADER
"""
import re
import sys
from pathlib import Path


def main(page, header):
    text = Path(page).read_text(encoding="utf-8")
    code = Path(header).read_text(encoding="utf-8")
    tables = text.split("## Operations of a driver")
    rows = [re.findall(r"^\| (\d+) \| (\w+) \|", table, re.MULTILINE) for table in tables]
    positions = re.findall(r"^  k(\w+) = (\d+),$", code[code.index("enum class Position"):].split("};")[0], re.MULTILINE)
    driver = code[code.index("class HT_Driver : public HT_IF"):].split("protected:")[0]
    operations = re.findall(r"virtual [\w ]+[ *]+(\w+)\(", driver)
    expected = [[(number, name) for name, number in positions],
                [(str(slot), name) for slot, name in enumerate(operations, 1)]]
    faults = [f"{what}: the page has {page_row}, the header {header_row}"
              for what, have, want in zip(("position", "slot"), rows, expected)
              for page_row, header_row in zip([*have, *[None] * len(want)], [*want, *[None] * len(have)])
              if page_row != header_row]
    return "\n".join(faults) or (None if positions and operations else "the header has no positions or operations")


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
