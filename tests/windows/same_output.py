"""Plots with this machine's hdiplot and with the Windows one under Wine, and compares what comes out.

same_output.py HDIPLOT WINDOWS-HDIPLOT WINE DIRECTORY

HDIPLOT and WINDOWS-HDIPLOT are the two commands, WINE is what runs the latter, and DIRECTORY has traces and drawings.
"""

from __future__ import annotations

import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path


def objects(path):
    out = subprocess.run(["qpdf","--json=2","--json-stream-data=inline","--decode-level=generalized",str(path)],capture_output=True,text=True,check=True).stdout
    return json.loads(out)["qpdf"][1]
