"""Tests of the reference itself, against values that were worked out by hand."""

from __future__ import annotations

import math
import unittest
from typing import Any

from image_model import page_image
from layer_model import NOWHERE, Layers, OpenLink
from number_forms import f32, round_away, write_plain, write_real
from page_objects import Kind, PathPoint
from plotted_job import Annotation, PageFont, PageImage, PlottedPage, differences, job_text
from recording_model import Recorder
from reference_model import plot_trace
from settings_record import SettingsRecord
from text_model import MISSING, Run, TextRecord, TextRuns, run_matrices, units, visual_order
from trace_file import Call, parse_trace, write_trace
from trace_generator import TraceGenerator

A, B, C = [10, 10], [20, 10], [20, 30]


def commands(*calls: tuple[str, dict[str, Any]]) -> list[str]:
    """The commands that some calls record after a page start, as text with Y down."""
    settings = SettingsRecord()
    settings["dmPrintQuality"] = 254
    recorder = Recorder(settings)
    recorder.play(Call(0, "DevStartPage", {}))
    for name, arguments in calls:
        recorder.play(Call(0, name, arguments))
    texts = []
    for name, *operands in recorder.commands[1:]:
        if name in ("move", "line"):
            texts.append(f"{name} {operands[0]:g} {2630 - operands[1]:g}")
        else:
            texts.append(name)
    return texts


def plot(*lines: dict[str, Any]) -> list[PlottedPage]:
    """The pages of a trace."""
    return plot_trace(parse_trace(write_trace(list(lines)))).pages


class NumberForms(unittest.TestCase):
    def test_rounding(self) -> None:
        values = [0.5, -0.5, 1.5, 2.5, 0.49999999999999994, -0.2, 1e300]
        self.assertEqual([round_away(value) for value in values], [1, -1, 2, 3, 0, 0, 1e300])
        self.assertEqual(f32(1e39), math.inf)

    def test_reals(self) -> None:
        cases = {
            (-0.5, 5): "-.5",
            (1000.0, 5): "1000",
            (0.000004, 5): "0",
            (0.24, 5): ".24",
            (0.024, 5): ".024",
            (123456.789, 5): "123456.789",
            (1234567.0, 5): "1234567",
            (16777217.0, -1): "16777216",
            (math.inf, 5): "34028235" + "0" * 31,
            (-math.inf, 5): "-34028235" + "0" * 31,
            (math.nan, 5): "0",
            (595.2755905511812, -1): "595.27557",
            (0.00001, 5): ".00001",
        }
        for (value, precision), text in cases.items():
            self.assertEqual(write_real(f32(value), precision), text, value)

    def test_six_digits(self) -> None:
        values = [128 / 255, 1.0, 0.0, 15 / f32(0.12), 1e6, 0.00001]
        texts = ["0.501961", "1", "0", "125", "1000000", "0.00001"]
        self.assertEqual([write_plain(f32(value)) for value in values], texts)


class Settings(unittest.TestCase):
    def test_capabilities_of_the_default_record(self) -> None:
        expected = {4: 200, 6: 263, 8: 4724, 10: 6212, 88: 600, 90: 600}
        expected |= {110: 4960, 111: 7015, 112: 118, 113: 401}
        expected |= {2: 511, 14: 3, 178: 2, 189: 0, 191: 1, 192: 0, -1: 0}
        record = SettingsRecord()
        self.assertEqual({index: record.capability(index) for index in expected}, expected)

    def test_quality_codes_count_as_300(self) -> None:
        for quality in (0, -3):
            record = SettingsRecord()
            record["dmPrintQuality"] = quality
            self.assertEqual(record.capability(8), 2362)

    def test_printable_height(self) -> None:
        self.assertAlmostEqual(SettingsRecord().printable_height(), 6212.59842519685, places=10)


class Recording(unittest.TestCase):
    def test_lines_join_at_either_end(self) -> None:
        joined = ["move 10 10", "line 20 10", "line 20 30", "stroke"]
        for second in ([B, C], [C, B]):
            lines = (("DevPolyline", {"points": points}) for points in ([A, B], second))
            self.assertEqual(commands(*lines, ("DevBeginPath", {})), joined)

    def test_a_lone_point_becomes_a_line_of_no_length(self) -> None:
        lines = (("DevPolyline", {"points": points}) for points in ([A], [B, C]))
        self.assertEqual(
            commands(*lines, ("DevEndPage", {})),
            ["move 10 10", "line 10 10", "move 20 10", "line 20 30", "stroke", "end page"],
        )

    def test_a_flushed_lone_point_leaves_a_line_to_nowhere(self) -> None:
        first, second = (("DevPolyline", {"points": points}) for points in ([A], [B, C]))
        recorded = commands(first, ("DevBeginPath", {}), second)
        self.assertEqual(recorded[:3], ["move 10 10", "line 10 10", "stroke"])
        self.assertEqual(recorded[3:], ["line inf -inf", "move 20 10", "line 20 30"])

    def test_fills(self) -> None:
        no_fills = ("DevSetFillMode", {"mode": 0})
        fill = ("DevFillPath", {})
        recorded = commands(("DevPolygon", {"points": [A, B, C]}), fill, no_fills, fill)
        self.assertEqual(recorded, ["move 10 10", "line 20 10", "line 20 30", "fill"])


class Text(unittest.TestCase):
    def test_right_to_left_words_turn_around(self) -> None:
        self.assertEqual(
            visual_order("a\u05d0\u05d1 \u05d2 b", [1, 2, 3, 4, 5, 6, 7]),
            ("a \u05d2 \u05d1\u05d0b", [1, 6, 5, 4, 3, 2, 7]),
        )
        self.assertEqual(visual_order("\u058f\u0590 \u08ff\u0900", [])[0], "\u058f\u08ff \u0590\u0900")
        for text, turned in {
            "ab 1": "ab 1",
            " \u05d0\u05d1 ": "  \u05d1\u05d0",
            "\u05d0\u05d11\u05d2": "\u05d1\u05d01\u05d2",
        }.items():
            self.assertEqual(visual_order(text, [])[0], turned)

    def test_surrogates_are_characters_of_their_own(self) -> None:
        self.assertEqual(units("a\U0001f600"), "a\ud83d\ude00")

    def test_matrices(self) -> None:
        face, fallback = PageFont("Face", "ab"), PageFont("DejaVuSans", "c")
        turned = {"lfEscapement": 900, "lfItalic": 1}
        record = TextRecord(turned, 100.5, -100.5, "abc", [10, 20, 5], 10, 0, 1.2, 0.5)
        runs = [Run(face, "ab"), Run(fallback, "c")]
        first, second = run_matrices(record, runs, exact=False)
        self.assertEqual((first[1], first[2], first[4:]), (1, -1, (101, -101)))
        self.assertAlmostEqual(first[3], 0.16958, places=5)
        self.assertEqual((round(second[3], 5), second[4:]), (0, (101, -71)))
        record.advances = None
        self.assertEqual(run_matrices(record, runs, exact=True)[1], (1, 0, 0, 1, 100.5, -100.5))

    def test_runs_are_taken_where_they_fit(self) -> None:
        font, other = PageFont("F", "abcz"), PageFont("G", "x")
        runs = TextRuns([[Run(font, "ab"), Run(other, "x"), Run(font, "c\ufffd"), Run(font, "z")]])
        record = TextRecord({}, 0, 0, "abx", [0, 0, 0], 1, 0, 1, 1)
        self.assertEqual(runs.take(0, record), [Run(font, "ab"), Run(other, "x")])
        record.text = "c\t"
        self.assertEqual(runs.take(0, record), [Run(font, "c\ufffd")])
        # No character but z is left for the page to show.
        record.text = "y"
        self.assertEqual(runs.take(0, record), [Run(MISSING, "y")])
        self.assertEqual(runs.expected_font(font).kept, "abc")


class Images(unittest.TestCase):
    def test_the_place_rounds_as_corner_and_size(self) -> None:
        image = {"width": 98, "height": -1, "bitCount": 24, "pixels": "AAAA"}
        recorder = Recorder(SettingsRecord())
        call = {"image": image, "originX": 10.6, "originY": 0, "scaleX": 0.1, "scaleY": 2}
        self.assertEqual(recorder.play(Call(0, "DevBitmap", call)), 1)
        self.assertEqual(recorder.commands, [("image", image, 11, -2, 10, 2)])

    def test_two_colours_stay_bits_while_opaque(self) -> None:
        black, white = [0, 0, 0, 255], [255, 255, 255, 255]
        image = {"width": 3, "height": 1, "bitCount": 1, "palette": [white, black], "pixels": "QAAAAA=="}
        self.assertEqual(page_image(image, 255), PageImage(3, 1, "bits", "101"))
        transparent = PageImage(3, 1, "rgb", "ffffff000000ffffff", "fefefe")
        self.assertEqual(page_image(image, 254), transparent)


class LayersAndLinks(unittest.TestCase):
    def test_groups_are_listed_by_page_and_unit(self) -> None:
        layers = Layers()
        for page, name in ((1, "B"), (1, "\uff21"), (1, "\ud835\udc00"), (1, "A"), (2, "A"), (1, "B")):
            layers.group(page, name)
        self.assertEqual((len(layers.names), layers.order), (5, [4, 1, 3, 2, 5]))

    def test_targets(self) -> None:
        for target, recorded in {
            "C:\\a b": "file:///C:\\a b",
            "x:y": "file:///x:y",
            "wWw.a": "http://wWw.a",
            "www/a": "www/a",
            "ftp://a": "ftp://a",
        }.items():
            recorder = Recorder(SettingsRecord())
            recorder.play(Call(0, "DevBeginLink", {"target": target}))
            self.assertEqual(recorder.commands, [("link target", recorded)])

    def test_the_area_grows_and_rounds_outward(self) -> None:
        link = OpenLink(1.0, exact=False, target="\ud835")
        link.grow_by_path([PathPoint(10.2, 20.2, Kind.MOVE), PathPoint(30.4, 20.2, Kind.LINE)])
        link.grow_by_image((-10.5, 0, 0, 10, 30, 30.4))
        expected = Annotation("link", (10, 20, 31, 41), "\u00ed\u00a0\u00b5")
        self.assertEqual(link.set_target(""), expected)
        self.assertEqual(link.area, NOWHERE)

    def test_a_comment_lies_where_its_corners_do(self) -> None:
        page = plot(
            {"call": "DevStartPage", "devMode": {"marginTop": 0, "marginLeft": 0, "marginBottom": 0}},
            {"call": "DevShxComment", "text": "a", "rect": [200, 100, 6715, 6615], "flags": 4},
        )[0]
        self.assertEqual(page.annotations[0].line(), 'comment 12 36 24 48, flags 4: "a"')


class Pages(unittest.TestCase):
    def test_a_red_line(self) -> None:
        settings = {"marginLeft": 127, "marginTop": 0, "marginBottom": 127}
        pages = plot(
            {"job": {"devMode": {"dmPrintQuality": 300}}},
            {"call": "DevStartPage"},
            {"call": "DevStartPage", "devMode": settings},
            {"call": "DevSetPen", "style": 0x12200, "width": 2, "color": [255, 0, 0]},
            {"call": "DevPolyline", "points": [[100, 3158], [300, 2958]]},
            {"call": "DevEndPage"},
        )
        head = "q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/FXE1 gs "
        content = head + "1 1 1 rg 1 0 0 RG 2 w 100 200 m 300 400 l S\nQ\n"
        self.assertEqual(pages[1].streams, ["q .24 0 0 .24 36 36 cm ", content, " Q"])
        self.assertEqual(pages[0].streams, [])

    def test_the_text_form_names_the_first_operation_that_differs(self) -> None:
        trace = parse_trace(write_trace(TraceGenerator(4).lines()))
        text = job_text(plot_trace(trace))
        self.assertEqual(differences(text, text), [])
        message = differences(text, text.replace(" l ", " m ", 1))[0]
        self.assertRegex(message, r"^page 1: stream \d: operation \d+: expected '.* l', found '.* m'")


if __name__ == "__main__":
    unittest.main()
