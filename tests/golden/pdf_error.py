"""The complaint about a PDF that no plot may give."""

from __future__ import annotations


class PdfError(Exception):
    """What is wrong with a PDF."""


def require(condition: bool, complaint: str) -> None:
    """Raises PdfError with the complaint unless the condition holds."""
    if not condition:
        raise PdfError(complaint)
