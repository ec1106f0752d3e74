"""Checks the imports and exports of the Windows programs, and the driver's version.

imports.py OBJDUMP DIRECTORY    the folder with PDF.hdi, HDIDriver.dll and hdiplot.exe
"""

from __future__ import annotations

import re
import struct
import subprocess
import sys
from pathlib import Path

# The libraries of every Windows system, and the host's own.
SYSTEM = {"kernel32.dll", "user32.dll", "gdi32.dll", "advapi32.dll", "shell32.dll", "ole32.dll", "msvcrt.dll"}
LIBRARY = {"hdidriver.dll"}
IMPORTS = {
    "PDF.hdi": SYSTEM | {"comdlg32.dll"} | LIBRARY,
    "HDIDriver.dll": SYSTEM,
    "hdiplot.exe": SYSTEM | {"windowscodecs.dll"} | LIBRARY,
}
# The start of VS_FIXEDFILEINFO: signature, structure version, and file version 4.0.0.0.
VERSION = struct.pack("<IIII", 0xFEEF04BD, 0x00010000, 4 << 16, 0)


def check_imports(name: str, headers: str) -> list[str]:
    """Returns messages about unexpected imports of a file."""
    imported = {found.lower() for found in re.findall(r"DLL Name: (\S+)", headers)}
    messages = [f"{name} imports {library}" for library in sorted(imported - IMPORTS[name])]
    if "kernel32.dll" not in imported:
        messages.append(f"{name}: no imports found")
    if name == "PDF.hdi" and not LIBRARY <= imported:
        messages.append(f"{name} does not import HDIDriver.dll")
    if not re.search(r"^Entry d 0+ 0+ Delay Import", headers, re.MULTILINE):
        messages.append(f"{name} has delay-loaded imports")
    return messages


def check_exports(headers: str) -> list[str]:
    """Returns messages about the exports of the driver, which must be IT_Driver alone."""
    count = re.search(r"Export Address Table\s+([0-9a-f]{8})\n", headers)
    _, _, table = headers.partition("[Ordinal/Name Pointer] Table\n")
    names = re.findall(r"\] (\S+)$", table.partition("\n\n")[0], re.MULTILINE)
    if count is None or int(count[1], 16) != 1 or names != ["IT_Driver"]:
        return [f"PDF.hdi exports {names}"]
    return []


def main() -> int:
    """Checks the three files; returns exit status 1 if there are messages."""
    objdump, directory = sys.argv[1], Path(sys.argv[2])
    messages = []
    for name in IMPORTS:
        command = [objdump, "-p", str(directory / name)]
        headers = subprocess.run(command, capture_output=True, text=True, check=True).stdout
        messages += check_imports(name, headers)
        if name == "PDF.hdi":
            messages += check_exports(headers)
    if VERSION not in (directory / "PDF.hdi").read_bytes():
        messages.append("PDF.hdi has no version resource, or another version")
    print("\n".join([*messages, f"{len(IMPORTS)} files, {len(messages)} errors"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
