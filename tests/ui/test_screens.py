"""The whole window on small and large screens and at both densities: nothing is cut off, and text is sharp."""
import layout as places
from case import DesktopCase
from picture import Box
from stage import GROUND, Hands, Program, Stage, wait_for

SEARCH = 3
LONG_NAMES = ["Annual report of the harbour company with all its tables.txt", "Short.txt", "Grundst\u00fccksverkehr.txt",
              "\u65e5\u672c\u8a9e\u306e\u66f8\u985e.txt"]


class Screens(DesktopCase):
    """Each case has a stage of its own."""

    def setUp(self):
        """The stage is made by given()."""
        self.program = None
        self.addCleanup(self._close_stage)

    def _close_stage(self):
        if self.program and self.program.is_running():
            self.program.kill()
        if self.stage is not DesktopCase.stage:
            self.stage.close()

    def given(self, width, height, dpi):
        self.stage = Stage(width, height, dpi, f"{width}x{height}-{dpi}")
        self.hands = Hands(self.stage.away)
        self.scale = dpi / 96
        self.folder = self.stage.new_desktop("desktop")
        for name in LONG_NAMES:
            self.file(name)
        self.program = Program(self.stage)
        self.program.wait_started()

    # Where things are.
    @property
    def client(self):
        return self.program.client

    @property
    def row(self):
        return round(places.MENU_ROW * self.scale)

    def tab(self, index):
        left = self.client.x + self.row
        width = (places.splitter_bar(self.client, self.scale).x - left) / 4
        return Box(round(left + index * width), self.client.y, int(width), self.row)

    def menu_button(self):
        return Box(self.client.x, self.client.y, self.row, self.row)

    def field(self, top):
        pane = places.tab_pane(self.client, self.scale)
        return Box(self.client.x + 12, self.client.y + self.row + top + 2, pane.w - 24, 26)

    # What is seen.
    def keep(self, picture, name):
        picture.save(self.stage.work / f"{name}.png")

    def ink(self, picture, box):
        """The bright part of a box, in pixels of the box."""
        bright = [[r > 190 and g > 190 and b > 190 for r, g, b in
                   zip(*[iter(picture.crop(Box(box.x, y, box.w, 1)).pixels)] * 3)] for y in range(box.y, box.y + box.h)]
        rows = [y for y, row in enumerate(bright) if any(row)]
        columns = [x for x in range(box.w) if any(row[x] for row in bright)]
        if not rows:
            return None
        return Box(columns[0], rows[0], columns[-1] - columns[0] + 1, rows[-1] - rows[0] + 1)

    def assert_text_inside(self, picture, box, what, margin=2):
        """There is text, it keeps clear of the edges, and it is sharp: somewhere ground turns into ink within a pixel.
        Returns its height."""
        ink = self.ink(picture, box)
        if not ink:
            self.fail_with(picture, f"{what}: no text in {box}")
        if (ink.x < margin or ink.y < margin or ink.x + ink.w > box.w - margin or ink.y + ink.h > box.h - margin):
            self.fail_with(picture, f"{what}: text at {ink} of {box} touches an edge")
        text = picture.crop(Box(box.x + ink.x, box.y + ink.y, ink.w, ink.h))
        reds = text.pixels[::3]
        steps = sum(abs(a - b) > 90 for a, b in zip(reds, reds[1:])) if text.width > 1 else 0
        steps += sum(abs(a - b) > 90 for a, b in zip(reds, reds[text.width:]))
        if steps < text.height + text.width:
            self.fail_with(picture, f"{what}: the text is blurred, {steps} steps in {text.width} by {text.height}")
        return ink.h

    def assert_whole_window(self):
        """The desktop, the menu, the search, the folded bar, other sizes: as a person goes through them."""
        self.hands.away()
        start = self.settle()
        self.keep(start, "desktop")
        heights = [self.assert_text_inside(start, self.tab(index), f"tab {index}") for index in range(4)]
        self.assertAlmostEqual(max(heights), 15 * self.scale, delta=4 * self.scale)
        self.assert_text_inside(start, self.menu_button(), "menu button")
        self.assert_labels(start)
        self.assert_menu(start)
        self.assert_search()
        self.assert_bar(start)
        self.assert_sizes(start)
        self.close()

    def assert_labels(self, picture):
        layout = places.Layout(self.pane(), [["system"] * 2, LONG_NAMES], scale=self.scale)
        for slot in range(len(LONG_NAMES)):
            label = layout.label(1, slot)
            if not picture.crop(label).extent(GROUND):
                self.fail_with(picture, f"no label at {label}")

    def pane(self):
        pane = places.tab_pane(self.client, self.scale)
        below = self.row - places.MENU_ROW
        return Box(pane.x, pane.y + below, pane.w, pane.h - below)

    def assert_menu(self, start):
        self.hands.click(self.menu_button().middle)
        opened = self.rest_away()
        self.keep(opened, "menu")
        panel_row = Box(self.client.x, self.client.y + self.row, round(self.row * 5), self.row)
        left = [self.client.x + x for x in range(panel_row.w)
                if opened.pixel(self.client.x + x, panel_row.y + 3)[0] < 70]
        panel_right = left[-1]
        for row in range(4):
            box = Box(self.client.x, panel_row.y + row * self.row, panel_right - self.client.x, self.row)
            self.assert_text_inside(opened, box, f"menu row {row}")
        self.hands.click((self.client.x + self.client.w // 2, self.client.y + self.client.h - 60))
        self.assert_same(self.settle(), start, "the menu closed")

    def assert_search(self):
        self.hands.click(self.tab(SEARCH).middle)
        self.rest_away()
        self.hands.click((self.client.x + 60, self.client.y + self.row + 56))
        self.rest_away()
        self.hands.click(self.field(10).middle)
        self.hands.do("type", "--delay", 20, "Report 2026")
        self.hands.click(self.field(70).middle)
        self.hands.do("type", "--delay", 20, "harbour")
        self.hands.click((self.client.x + 60, self.client.y + self.row + 300))
        picture = self.rest_away()
        self.keep(picture, "search")
        self.assert_text_inside(picture, self.field(10), "name field")
        self.assert_text_inside(picture, self.field(70), "content field")
        self.hands.click(self.tab(0).middle)
        self.settle()

    def assert_bar(self, start):
        bar = places.splitter_bar(self.client, self.scale)
        self.press_and_pull(bar.middle, (self.client.x + self.client.w - 8, bar.middle[1]))
        self.hands.release()
        folded = self.rest_away()
        self.keep(folded, "folded")
        self.assertNotEqual(folded.pixel(*bar.middle), start.pixel(*bar.middle))
        self.press_and_pull((self.client.x + self.client.w - 6, bar.middle[1] - 100), (bar.x, bar.middle[1]))
        self.hands.release()
        self.assert_same(self.settle(), start, "the pane is back")

    def assert_sizes(self, start):
        self.program.window("sizes", self.stage.width - 200, self.stage.height - 150, 20)
        self.program.take_client()
        self.hands.away()
        self.keep(self.settle(), "smaller")
        smaller = self.program.picture()
        self.assert_text_inside(smaller, self.tab(0), "tab of the smaller window")
        self.program.window("maximise")
        wait_for(lambda: self.program.take_client().w == self.stage.width, "the maximised window")
        self.assert_same(self.settle(), start, "the first size again")

    def test_on_1280_by_800_at_96_dots_per_inch(self):
        self.given(1280, 800, 96)
        self.assert_whole_window()

    def test_on_1920_by_1080_at_96_dots_per_inch(self):
        self.given(1920, 1080, 96)
        self.assert_whole_window()

    def test_on_800_by_600_at_96_dots_per_inch(self):
        self.given(800, 600, 96)
        self.assert_whole_window()

    def test_on_1280_by_800_at_192_dots_per_inch(self):
        self.given(1280, 800, 192)
        self.assert_whole_window()

    def test_on_1920_by_1080_at_192_dots_per_inch(self):
        self.given(1920, 1080, 192)
        self.assert_whole_window()

    def test_on_800_by_600_at_192_dots_per_inch(self):
        self.given(800, 600, 192)
        self.assert_whole_window()
