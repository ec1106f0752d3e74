"""Reads what the Windows programs import and export, and the resources of the driver.

imports.py --directory PATH --objdump PATH --windres PATH

PATH is the folder with PDF.hdi, HDIDriver.dll and hdiplot.exe.
"""

from __future__ import annotations

import argparse
import re
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

# Languages by their numbers, primary and secondary.
IN_USE, NO_BITMAP = 4007, 4011
ENGLISH_IN_USE = " Being used, please specify other files name."
TEXTS = {
    (9, 1): {IN_USE: ENGLISH_IN_USE, NO_BITMAP: "Fail to create bitmap!"},
    (4, 1): {IN_USE: " 正在使用.請指定其他文件名.", NO_BITMAP: "建立點陣圖失敗!"},
    (4, 2): {IN_USE: " 正在使用.请指定其它文件名.", NO_BITMAP: "创建位图失败!"},
    (17, 1): {IN_USE: ENGLISH_IN_USE, NO_BITMAP: "ビットマップの創建を失敗しました!"},
}


def run(*command: str) -> str:
    """What a tool prints."""
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


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


def check_resources(script: str) -> list[str]:
    """What is wrong with the driver's resources, given as a resource script."""
    found: dict[tuple[int, int], dict[int, str]] = {}
    for primary, secondary, table in re.findall(
        r"LANGUAGE (\d+), (\d+)\s+STRINGTABLE\s+BEGIN\n(.*?)^END", script, re.DOTALL | re.MULTILINE
    ):
        texts = re.findall(r'^\s*(\d+), L?"(.*)"$', table, re.MULTILINE)
        found.setdefault((int(primary), int(secondary)), {}).update(
            {int(number): re.sub(r"\\x(\w{4})", lambda code: chr(int(code[1], 16)), text) for number, text in texts}
        )
    messages = [] if found == TEXTS else [f"PDF.hdi has the string table {found}"]
    _, _, version = script.partition("1 VERSIONINFO")
    if " FILEVERSION 4, 0, 0, 0\n" not in version or '"OriginalFilename", "PDF.hdi"' not in version:
        messages.append("PDF.hdi has no version resource")
    return messages


def main() -> int:
    """Checks the three files; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Check imports, exports and resources of the Windows programs.")
    parser.add_argument("--directory", type=Path, required=True)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--windres", required=True)
    arguments = parser.parse_args()
    messages = []
    for name in IMPORTS:
        headers = run(arguments.objdump, "-p", str(arguments.directory / name))
        messages += check_imports(name, headers)
        if name == "PDF.hdi":
            messages += check_exports(headers)
    driver = str(arguments.directory / "PDF.hdi")
    messages += check_resources(run(arguments.windres, "--input-format=coff", "--output-format=rc", driver))
    print("\n".join([*messages, f"{len(IMPORTS)} files, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
