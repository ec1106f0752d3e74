"""Shows pages of PDFs in pdf.js, within a headless Chromium that is started for them.

A small server on the loopback interface hands the page of this folder, pdf.js and the PDFs to Chromium, and takes
what the page posts back, so that nothing has to drive the browser.
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
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Iterator

from pictures import Picture

HERE = Path(__file__).resolve().parent
# The longest that Chromium may take to start, and then for each page; far more than either takes.
TIME_LIMIT_SECONDS = 120

CHROMIUM_OPTIONS = [
    "--headless",
    "--no-sandbox",  # which root cannot have; nothing but the pages of the tests is shown
    "--disable-gpu",
    "--disable-dev-shm-usage",
    "--disable-quic",
    "--disable-background-networking",
    "--disable-component-update",
    "--disable-sync",
    "--disable-breakpad",
    "--no-first-run",
    "--no-proxy-server",
    "--enable-logging=stderr",  # where the console's lines go, too
]


class ViewerError(Exception):
    """pdf.js that cannot be had, a browser that does not come up, or a page that cannot be shown."""


@dataclass(frozen=True)
class View:
    """What is to be shown: a page of a file of the served folder, at so many pixels an inch, without some layers."""

    file: str
    resolution: float
    page: int = 1
    hidden: tuple[str, ...] = ()


@dataclass
class Seen:
    """What a view showed. Places are in points from the page's lower left corner."""

    picture: Picture
    layers: list[str] = field(default_factory=list)
    texts: list[dict] = field(default_factory=list)
    notes: list[dict] = field(default_factory=list)


def install(npm: str, cache: Path) -> Path:
    """The folder of pdf.js, fetched with npm into the cache unless the release asked for is there already."""
    lock = (HERE / "package-lock.json").read_text(encoding="utf-8")
    installed = cache / "installed-lock.json"  # written last, so that half an installation does not count
    if not installed.exists() or installed.read_text(encoding="utf-8") != lock:
        installed.unlink(missing_ok=True)
        cache.mkdir(parents=True, exist_ok=True)
        for name in ("package.json", "package-lock.json"):
            shutil.copyfile(HERE / name, cache / name)
        options = ["--ignore-scripts", "--omit=optional", "--no-audit", "--no-fund"]
        run = subprocess.run([npm, "ci", *options], cwd=cache, capture_output=True, text=True, check=False)
        if run.returncode != 0:
            raise ViewerError(f"npm could not fetch pdf.js:\n{run.stdout}{run.stderr}")
        installed.write_text(lock, encoding="utf-8")
    return (cache / "node_modules" / "pdfjs-dist").resolve()


class _Handler(http.server.SimpleHTTPRequestHandler):
    """Serves a folder and puts what is posted, with its path, into a queue."""

    extensions_map = {".html": "text/html", ".js": "text/javascript", ".mjs": "text/javascript"}
    extensions_map |= {".wasm": "application/wasm", "": "application/octet-stream"}

    def __init__(self, *args, posted: queue.Queue, **named) -> None:
        self._posted = posted
        super().__init__(*args, **named)

    def do_POST(self) -> None:  # the name is the base's
        """Takes what the page has seen."""
        body = self.rfile.read(int(self.headers["Content-Length"]))
        self.send_response(204)
        self.end_headers()
        self._posted.put((self.path, body))  # last, as the browser may be ended then

    def log_message(self, *_: object) -> None:
        """Keeps quiet."""


@contextlib.contextmanager
def _serving(folder: Path, posted: queue.Queue) -> Iterator[str]:
    handler = functools.partial(_Handler, directory=str(folder), posted=posted)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        try:
            yield f"http://127.0.0.1:{server.server_port}"
        finally:
            server.shutdown()
            thread.join()


@contextlib.contextmanager
def _browsing(chromium: str, address: str, log: Path) -> Iterator[subprocess.Popen]:
    """A browser with nothing of its user's, which is gone with all its processes at the end."""
    environment = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "DBUS_"))}
    # The last of the browser's processes may still end while its files are removed.
    with tempfile.TemporaryDirectory(prefix="hdi-browser-", ignore_cleanup_errors=True) as home:
        environment["HOME"] = home
        command = [chromium, *CHROMIUM_OPTIONS, f"--user-data-dir={home}/profile", address]
        with log.open("wb") as output, subprocess.Popen(
            command, env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output, start_new_session=True
        ) as process:
            try:
                yield process
            finally:
                with contextlib.suppress(ProcessLookupError):
                    os.killpg(process.pid, signal.SIGKILL)


def _take(posted: queue.Queue, process: subprocess.Popen) -> tuple[str, bytes]:
    """What is posted next, from a browser that still runs."""
    for _ in range(TIME_LIMIT_SECONDS):
        try:
            return posted.get(timeout=1)
        except queue.Empty:
            if process.poll() is not None:
                raise ViewerError(f"Chromium ended with status {process.returncode}") from None
    raise ViewerError(f"Chromium showed nothing for {TIME_LIMIT_SECONDS} s")


def _seen(body: bytes) -> Seen:
    head, pixels = body.split(b"\n", 1)
    found = json.loads(head)
    width, height = found.pop("size")
    colors = bytearray(3 * width * height)
    for channel in range(3):
        colors[channel::3] = pixels[channel::4]
    return Seen(Picture(width, height, bytes(colors)), **found)


def _log_lines(log: Path) -> list[str]:
    """What Chromium and the page's console said, but for the services of a desktop that are missed."""
    lines = log.read_text(encoding="utf-8", errors="replace").splitlines()
    return [line for line in lines if "dbus" not in line.lower()]


def show(chromium: str, pdfjs: Path, folder: Path, views: list[View]) -> list[Seen]:
    """Shows pages of the PDFs in a folder, which takes further files for it; ViewerError when one cannot be shown
    or pdf.js has a complaint."""
    (folder / "pdfjs").symlink_to(pdfjs, target_is_directory=True)
    for name in ("show.html", "show.js"):
        shutil.copyfile(HERE / name, folder / name)
    (folder / "views.json").write_text(json.dumps([asdict(view) for view in views]), encoding="utf-8")
    log = folder / "chromium.log"
    posted: queue.Queue[tuple[str, bytes]] = queue.Queue()
    found = []
    try:
        with (
            _serving(folder, posted) as address,
            _browsing(chromium, f"{address}/show.html", log) as browser,
        ):
            for view in views:
                path, body = _take(posted, browser)
                if path == "/failure":
                    raise ViewerError(f"{view.file}: {body.decode(errors='replace')}")
                found.append(_seen(body))
    except ViewerError as error:
        raise ViewerError("\n".join([str(error), *_log_lines(log)[-20:]])) from None
    if complaints := [line for line in _log_lines(log) if "CONSOLE" in line]:
        raise ViewerError("\n".join(["pdf.js complains:", *complaints]))
    return found
