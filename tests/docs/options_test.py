"""Checks that the reference and the man page have the options that `hdiplot --help` lists, and that the README's
examples use no others.

    options_test.py HDIPLOT REFERENCE README [MAN_PAGE]
"""
import re
import subprocess
import sys
from pathlib import Path

OPTION = re.compile(r"(?<![\w-])--?[a-z][a-z-]*")


def options_in(lines):
    return {option for line in lines for option in OPTION.findall(line)}


def main(command, *files):
    text = subprocess.run([command, "--help"], check=True, capture_output=True, text=True).stdout
    in_command = options_in(re.findall(r"^  (-\S+)", text, re.MULTILINE))
    reference, readme, *man_page = (Path(file).read_text(encoding="utf-8") for file in files)
    described = {"reference": options_in(re.findall(r"^## (.*)$", reference, re.MULTILINE))}
    for page in man_page:
        plain = re.sub(r"\\f(\[\w*\]|\(..|.)", "", page).replace(r"\-", "-")  # without escapes for fonts and hyphens
        described["man page"] = options_in(re.findall(r'^\.SS[ \n]"?(.*)$', plain, re.MULTILINE))
    in_examples = options_in(re.findall(r"^hdiplot .*", readme, re.MULTILINE))
    mentioned = {"reference": options_in([reference]), "README": in_examples}

    faults = [f"the {place} lacks {option}" for place in described for option in in_command - described[place]]
    for place, options in (*described.items(), *mentioned.items()):
        faults += [f"the {place} has {option}, which does not exist" for option in options - in_command]
    if not in_command or not in_examples:
        faults.append("the help or the README has no options")
    return "\n".join(sorted(faults)) or None


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
