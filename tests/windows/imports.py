"""Reads what the Windows programs import and export, and the version of the driver.

imports.py OBJDUMP DIRECTORY    the folder with PDF.hdi, HDIDriver.dll and hdiplot.exe
"""

from __future__ import annotations

import re
import struct
import subprocess
import sys
from pathlib import Path

# What every Windows has, and the host's own library.
SYSTEM = {"kernel32.dll", "user32.dll", "gdi32.dll", "advapi32.dll", "shell32.dll", "ole32.dll", "msvcrt.dll"}
LIBRARY = {"hdidriver.dll"}
IMPORTS = {
    "PDF.hdi": SYSTEM | {"comdlg32.dll"} | LIBRARY,
    "HDIDriver.dll": SYSTEM,
    "hdiplot.exe": SYSTEM | {"windowscodecs.dll"} | LIBRARY,
}
# The head of VS_FIXEDFILEINFO: its signature, its own version, and that of the file, 4.0.0.0.
VERSION = struct.pack("<IIII", 0xFEEF04BD, 0x00010000, 4 << 16, 0)


def check_imports(name: str, headers: str) -> list[str]:
    """What a file imports and should not."""
    imported = {found.lower() for found in re.findall(r"DLL Name: (\S+)", headers)}
    messages = [f"{name} imports {library}" for library in sorted(imported - IMPORTS[name])]
    if "kernel32.dll" not in imported:
        messages.append(f"{name}: no imports found")
    if name == "PDF.hdi" and not LIBRARY <= imported:
        messages.append(f"{name} does not import HDIDriver.dll")
    if not re.search(r"^Entry d 0+ 0+ Delay Import", headers, re.MULTILINE):
        messages.append(f"{name} has imports that are loaded later")
    return messages


def check_exports(headers: str) -> list[str]:
    """What is wrong with the one export of the driver."""
    count = re.search(r"Export Address Table\s+([0-9a-f]{8})\n", headers)
    _, _, table = headers.partition("[Ordinal/Name Pointer] Table\n")
    names = re.findall(r"\] (\S+)$", table.partition("\n\n")[0], re.MULTILINE)
    if count is None or int(count[1], 16) != 1 or names != ["IT_Driver"]:
        return [f"PDF.hdi exports {names}"]
    return []


def main() -> int:
    """Checks the three files; the exit status is 1 when there is a complaint."""
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
    print("\n".join([*messages, f"{len(IMPORTS)} files, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
