"""The options that `hdiplot --help` lists are those of the reference and of the man page, and the README's table
names no others.

    options_test.py HDIPLOT REFERENCE README [MAN_PAGE]
"""
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[a-z][a-z-]*")


def options_in(lines):
    return {option for line in lines for option in OPTION.findall(line)}


def headings_of_man_page(text):
    """The lines behind a heading's request, without the escapes for fonts and hyphens."""
    plain = re.sub(r"\\f(\[\w*\]|\(..|.)", "", text).replace(r"\-", "-")
    return re.findall(r'^\.SS[ \n]"?(.*)$', plain, re.MULTILINE)


def main(command, reference_file, readme_file, man_page_file=None):
    text = subprocess.run([command, "--help"], check=True, capture_output=True, text=True).stdout
    in_command = options_in(re.findall(r"^  (-\S+)", text, re.MULTILINE))
    with open(reference_file, encoding="utf-8") as file:
        reference = file.read()
    with open(readme_file, encoding="utf-8") as file:
        in_table = options_in(re.findall(r"^\| (`-.*?) \|", file.read(), re.MULTILINE))
    described = {"reference": options_in(re.findall(r"^## (.*)$", reference, re.MULTILINE))}
    if man_page_file:
        with open(man_page_file, encoding="utf-8") as file:
            described["man page"] = options_in(headings_of_man_page(file.read()))

    faults = []
    for place, options in described.items():
        faults += [f"the {place} lacks {option}" for option in sorted(in_command - options)]
        faults += [f"the {place} describes {option}, which is none" for option in sorted(options - in_command)]
    # Examples and references from one option to another.
    faults += [f"the reference speaks of {option}" for option in sorted(options_in([reference]) - in_command)]
    faults += [f"the README's table has {option}" for option in sorted(in_table - in_command)]
    if not in_command or not in_table:
        faults.append("the help or the README's table has no options")
    return "\n".join(faults) or None


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
