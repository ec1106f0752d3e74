"""The error for PDFs with faults."""

from __future__ import annotations


class PdfError(Exception):
    """A fault in a PDF."""


def require(condition: bool, complaint: str) -> None:
    """Raises PdfError with the complaint unless the condition holds."""
    if not condition:
        raise PdfError(complaint)
