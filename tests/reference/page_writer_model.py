"""From the list of commands to finished pages: the state that every object takes with it, page by page."""

from __future__ import annotations

from content_stream_model import ContentStream
from image_model import JpegColors, Raster, page_image
from layer_model import NOWHERE, Layers, OpenLink
from number_forms import f32, round_away, write_plain, write_real
from page_objects import Attributes, ImageObject, Kind, PathObject, PathPoint, TextObject
from plotted_job import Annotation, PlottedPage
from recording_model import Command
from settings_record import NO_BACKGROUND, SettingsRecord
from text_model import TextRecord, TextRuns, run_matrices

WHITE = (255, 255, 255)


class PageWriter:
    """The writer of one job. Its state outlives pages, but for paths, clips and what a link covers."""

    def __init__(self, dots_per_inch: int, exact: bool, runs: TextRuns, jpegs: JpegColors) -> None:
        self.line_width = 1.0
        self.line_scale = 1.0
        self.pages: list[PlottedPage] = []
        self.layers = Layers()
        self._point_scale = f32(72.0 / dots_per_inch)
        self._stroke_color = WHITE
        self._fill_color = WHITE
        self._line_cap = 0
        self._line_join = 0
        self._dashes: tuple[float, ...] = ()
        self._alpha = 255
        self._merge = 0
        self._background: tuple[int, int, int] | None = None
        self._path: list[PathPoint] | None = None
        self._clip: list[PathPoint] | None = None
        self._link = OpenLink(self._point_scale, exact)
        self._layer = ""
        self._page: PlottedPage | None = None
        self._content = ContentStream()
        self._runs = runs
        self._jpegs = jpegs
        self._exact = exact

    def replay(self, commands: list[Command], settings: SettingsRecord) -> None:
        """Plays the whole list; `settings` is the record as the end of the job finds it."""
        for name, *operands in commands:
            if name == "start page":
                self._start_page(*operands, keep_fractions=bool(settings["keepFractions"]))
            elif name == "end page":
                self._end_page(f32(settings.dots_per_inch / 72.0 / self.line_scale))
            else:
                getattr(self, "_" + name.replace(" ", "_"))(*operands)
        for number, page in enumerate(self.pages):
            page.images = {
                name: self._jpegs.expected(number, name, image) for name, image in page.images.items()
            }
            page.fonts = {name: self._runs.expected_font(font) for name, font in page.fonts.items()}

    # Pages.

    def _start_page(
        self,
        number: int,
        width: float,
        height: float,
        background: int,
        left: float,
        bottom: float,
        keep_fractions: bool,
    ) -> None:
        self._path = None
        self._clip = None
        self._content = ContentStream()
        self._page = PlottedPage(media_box=(0.0, 0.0, f32(width), f32(height)))
        self.pages.append(self._page)
        if background != NO_BACKGROUND:
            self._background = (background & 255, background >> 8 & 255, background >> 16 & 255)
        origin = [f32(left), f32(bottom)]
        if not keep_fractions:
            origin = [f32(round_away(value)) for value in origin]
        self._link.origin = (origin[0], origin[1])
        self._link.area = NOWHERE

    def _end_page(self, scale: float) -> None:
        page, self._page = self._page, None
        if page is None:
            return
        page.scale = scale
        if self._content.is_empty:
            return
        matrix = (self._point_scale, 0.0, 0.0, self._point_scale, *self._link.origin)
        numbers = " ".join(write_real(value, 5) for value in matrix)
        page.streams = [f"q {numbers} cm ", self._content.finish(), " Q"]
        page.graphic_states = self._content.graphic_states
        page.fonts = self._content.fonts
        page.layers = self._content.layers
        page.images = self._content.images
        if self._background is not None:
            page.streams.insert(0, self._background_text(page))

    def _background_text(self, page: PlottedPage) -> str:
        assert self._background is not None
        color = " ".join(write_plain(f32(value / 255.0)) for value in self._background)
        size = " ".join(write_real(value, -1) for value in self._engine_page_size(page))
        return f"q {color} rg 1 0 0 1 0 0 cm  0 0 {size} re f Q"

    @staticmethod
    def _engine_page_size(page: PlottedPage) -> tuple[float, float]:
        """The page's size as the engine tells it: it takes an empty box for a letter sheet."""
        width, height = abs(page.media_box[2]), abs(page.media_box[3])
        return (width, height) if width and height else (612.0, 792.0)

    # Layers, links and comments.

    def _insert(self, item: PathObject | TextObject | ImageObject) -> None:
        if self._page is not None:
            self._content.add(item, self.layers.group(len(self.pages), self._layer))

    def _set_layer(self, name: str) -> None:
        self._layer = name

    def _link_target(self, target: str) -> None:
        self._annotate(self._link.set_target(target))

    def _comment(self, text: str, left: int, bottom: int, right: int, top: int, flags: int) -> None:
        corners = self._link.to_points((f32(left), f32(bottom))) + self._link.to_points((f32(right), f32(top)))
        self._annotate(Annotation("comment", corners, text, flags))

    def _annotate(self, annotation: Annotation | None) -> None:
        if annotation is not None and self._page is not None:
            self._page.annotations.append(annotation)

    # State.

    def _set_pen(
        self,
        width: float,
        cap: int,
        join: int,
        color: tuple[int, int, int],
        merge: int,
        dashes: list[float],
    ) -> None:
        self.line_width = width
        self._line_cap = cap
        self._line_join = join
        self._stroke_color = color
        self._merge = merge
        self._dashes = tuple(f32(value / self._point_scale) for value in dashes)

    def _set_brush(self, color: tuple[int, int, int], merge: int) -> None:
        self._fill_color = color
        self._merge = merge

    def _set_alpha(self, alpha: int) -> None:
        self._alpha = alpha & 255

    # Paths.

    def _move(self, x: float, y: float) -> None:
        if self._path is None:
            self._path = []
        self._path.append(PathPoint(x, y, Kind.MOVE))

    def _line(self, x: float, y: float) -> None:
        if self._path is not None:
            self._path.append(PathPoint(x, y, Kind.LINE))

    def _curve(self, *points: tuple[float, float]) -> None:
        if self._path is not None:
            self._path.extend(PathPoint(x, y, Kind.CURVE) for x, y in points)

    def _clip_path(self) -> None:
        self._clip = self._path
        self._path = None

    def _stroke(self) -> None:
        self._commit(0, stroke=True)

    def _fill_and_stroke(self, fill_mode: int) -> None:
        self._close_path()
        self._commit(fill_mode, stroke=True)

    def _fill(self, fill_mode: int) -> None:
        if self._alpha != 255 or fill_mode == 2:
            self._commit(fill_mode, stroke=False)
            return
        # An opaque even-odd fill carries a hairline in the pen's colour.
        kept = self.line_width, self._line_join
        self.line_width, self._line_join = 0.0, 0
        self._close_path()
        self._commit(fill_mode, stroke=True)
        self.line_width, self._line_join = kept

    def _close_path(self) -> None:
        if self._path:
            self._path[-1].closes = True

    def _commit(self, fill_mode: int, stroke: bool) -> None:
        points, self._path = self._path, None
        if points is None:
            return
        attributes = Attributes(
            stroke_color=self._stroke_color,
            fill_color=self._fill_color,
            line_width=self.line_width,
            line_cap=self._line_cap,
            line_join=self._line_join,
            dashes=self._dashes,
            alpha=self._alpha,
            blend_mode="Darken" if self._merge else "Normal",
        )
        self._insert(PathObject(points, attributes, self._clip, fill_mode, stroke))
        self._link.grow_by_path(points)

    # Images.

    def _image(self, raster: Raster, x: float, y: float, width: float, height: float) -> None:
        image = page_image(raster, self._alpha)
        if image is not None:
            matrix = (f32(width), 0.0, 0.0, f32(height), f32(x), f32(y))
            self._insert(ImageObject(matrix, image, self._clip))
            self._link.grow_by_image(matrix)

    # Text.

    def _text(self, record: TextRecord) -> None:
        runs = self._runs.take(len(self.pages) - 1 if self._page else None, record)
        # Text has the writer's colours and opacity, and line attributes of its own that nothing sets.
        attributes = Attributes(self._stroke_color, self._fill_color, 1.0, 0, 0, None, self._alpha, "Normal")
        for run, matrix in zip(runs, run_matrices(record, runs, self._exact), strict=True):
            item = TextObject(
                matrix=matrix,
                font=run.font,
                size=f32(record.height),
                spacing=f32((record.tracking - 1.0) * record.height * 0.5),
                scale=f32(f32(record.width_factor) * 100.0),
                mode=0 if record.visible else 3,
                text=run.text,
                attributes=attributes,
                clip=self._clip,
            )
            self._insert(item)
        self._link.grow_by_text(record)
