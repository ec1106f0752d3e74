"""Shows pages of PDFs in pdf.js in a headless Chromium.

A server on the loopback interface provides the page of this folder, pdf.js and the PDFs, and receives what the page
posts back, so no browser automation is needed.
"""

from __future__ import annotations

import contextlib
import functools
import http.server
import json
import os
import queue
import shutil
import signal
import subprocess
import tempfile
import threading
from dataclasses import asdict, dataclass
from pathlib import Path
from typing import Any, Iterator

from pictures import Picture

HERE = Path(__file__).resolve().parent
# Limit for the start of Chromium, and then for each page; both take far less.
TIME_LIMIT_SECONDS = 120

# Root cannot use the sandbox, and only the pages of the tests are shown. The log includes the console's messages.
CHROMIUM_OPTIONS = (
    "--headless --no-sandbox --disable-gpu --disable-dev-shm-usage --disable-background-networking --no-first-run "
    "--disable-component-update --disable-breakpad --no-proxy-server --enable-logging=stderr"
).split()


@dataclass(frozen=True)
class View:
    """What to show: the first page of a file, at a resolution in pixels per inch, without the hidden layers."""

    file: str
    resolution: float
    hidden: tuple[str, ...] = ()


@dataclass
class Seen:
    """What a view showed. An annotation has subtype, target, text and rectangle; positions are in points from the
    page's lower left corner."""

    picture: Picture
    layers: list[str]
    texts: list[dict[str, Any]]
    notes: list[list[Any]]


@contextlib.contextmanager
def _serving(folder: Path, posted: queue.Queue) -> Iterator[str]:
    """Serves a folder; puts the path and body of each POST into the queue."""

    class Handler(http.server.SimpleHTTPRequestHandler):
        def do_POST(self) -> None:  # name given by the base class
            body = self.rfile.read(int(self.headers["Content-Length"]))
            self.send_response(204)
            self.end_headers()
            posted.put((self.path, body))  # last, as this may end the browser

        def log_message(self, *_: object) -> None:
            pass

    handler = functools.partial(Handler, directory=str(folder))
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        try:
            yield f"http://127.0.0.1:{server.server_port}"
        finally:
            server.shutdown()
            thread.join()


@contextlib.contextmanager
def _browsing(chromium: str, address: str, log: Path) -> Iterator[None]:
    """Runs a browser with an empty profile; all its processes are killed at the end."""
    environment = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "DBUS_"))}
    # Processes of the browser may still be ending while the profile is removed.
    with tempfile.TemporaryDirectory(prefix="hdi-browser-", ignore_cleanup_errors=True) as home, log.open("wb") as out:
        environment["HOME"] = home
        command = [chromium, *CHROMIUM_OPTIONS, f"--user-data-dir={home}/profile", address]
        with subprocess.Popen(
            command, env=environment, stdin=subprocess.DEVNULL, stdout=out, stderr=out, start_new_session=True
        ) as process:
            try:
                yield
            finally:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(process.pid, signal.SIGKILL)


def _seen(body: bytes) -> Seen:
    head, pixels = body.split(b"\n", 1)
    found = json.loads(head)
    width, height = found.pop("size")
    colors = bytearray(3 * width * height)
    for channel in range(3):
        colors[channel::3] = pixels[channel::4]
    return Seen(Picture(width, height, bytes(colors)), **found)


def show(chromium: str, pdfjs: Path, folder: Path, views: list[View]) -> list[Seen]:
    """Shows pages of the PDFs in `folder`, to which further files are added. Raises RuntimeError if one cannot be shown
    or pdf.js logs a message."""
    (folder / "pdfjs").symlink_to(pdfjs, target_is_directory=True)
    for name in ("show.html", "show.js"):
        shutil.copyfile(HERE / name, folder / name)
    (folder / "views.json").write_text(json.dumps([asdict(view) for view in views]), encoding="utf-8")
    log = folder / "chromium.log"
    posted: queue.Queue[tuple[str, bytes]] = queue.Queue()
    found, complaints = [], []
    with _serving(folder, posted) as address, _browsing(chromium, f"{address}/show.html", log):
        while len(found) < len(views) and not complaints:
            try:
                path, body = posted.get(timeout=TIME_LIMIT_SECONDS)
            except queue.Empty:
                path, body = "/failure", b"no answer from Chromium"
            if path == "/failure":
                complaints.append(f"{views[len(found)].file}: {body.decode(errors='replace')}")
            else:
                found.append(_seen(body))
    lines = log.read_text(encoding="utf-8", errors="replace").splitlines()
    complaints += lines[-20:] if complaints else [line for line in lines if "CONSOLE" in line]
    if complaints:
        raise RuntimeError("\n".join(complaints))
    return found
