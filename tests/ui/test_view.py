"""The window as a whole: tabs, menu, search fields, splitter, sizes, and another device under it."""
import layout as places
from case import DesktopCase
from picture import Box
from stage import GROUND, TIME_LIMIT, Program, wait_for

OVERVIEW, SYSTEM, SEARCH = 1, 2, 3
NAME_FIELD_TOP = 50  # below the tabs
EXPANDER_TOP = 86


class View(DesktopCase):
    @property
    def client(self):
        return self.program.client

    def click_tab(self, index):
        self.hands.click(places.tab(self.client, index).middle)
        return self.rest_away()

    def pane_below(self, top):
        """The tab pane from `top` of the client area on."""
        pane = places.tab_pane(self.client)
        return Box(pane.x, self.client.y + top, pane.w - 4, self.client.h - top)

    def click_field(self):
        self.hands.click((self.client.x + 200, self.client.y + NAME_FIELD_TOP + 15))
        self.rest_typing()

    def rest_typing(self):
        """A caret blinks, so the window never is at rest; what was typed has arrived when two looks at the field that
        lie further apart than a blink are the same but for the caret."""
        last = [None]

        def settled():
            now = self.field_ink()
            same = now == last[0]
            last[0] = now
            return same
        wait_for(settled, "the search field to take what was typed")

    def field(self):
        width = places.tab_pane(self.client).w
        return Box(self.client.x + 12, self.client.y + NAME_FIELD_TOP + 2, width - 24, 26)

    def field_ink(self):
        """Where there is text: the columns with bright pixels, of which a caret alone makes at most two."""
        return sum(1 for r, g, b in self.program.picture().crop(self.field()).triples() if r > 200) // 40

    def left_field(self):
        """The field after the focus went elsewhere: no caret."""
        self.hands.click(places.tab(self.client, SEARCH).middle)
        self.hands.click((self.client.x + 300, self.client.y + 500))
        return self.rest_away().crop(self.field())

    def test_tabs_without_content_are_empty_and_the_tab_is_remembered(self):
        names = self.files(4)
        desktop = self.start(names)
        for tab in (OVERVIEW, SYSTEM):
            self.assert_ground(self.click_tab(tab), self.pane_below(45), f"tab {tab}")
        self.assertEqual(self.stage.setting("tabIndex_0")[1], "0x2")
        self.restart()
        self.assert_ground(self.rest_away(), self.pane_below(45), "the tab of the last run")
        self.hands.click(places.tab(self.client, 0).middle)
        self.hands.away()
        self.assert_same(self.settle(), desktop, "the desktop is back")
        self.close()

    def test_the_active_tab_and_the_one_under_the_pointer_stand_out(self):
        self.start(self.files(1))

        def ground(picture, tab):
            box = places.tab(self.client, tab)
            return picture.pixel(box.x + 3, box.y + 3)
        picture = self.rest_away()
        self.assertNotEqual(ground(picture, 0), ground(picture, 1))
        self.assertEqual(ground(picture, 1), ground(picture, 2))
        self.hands.move(places.tab(self.client, 2).middle)
        picture = self.rest()
        self.assertNotEqual(ground(picture, 1), ground(picture, 2))

    def test_the_menu_lies_over_everything_and_a_click_beside_it_closes_it(self):
        names = self.files(4)
        before = self.start(names)
        before = self.rest_away()
        self.hands.click(places.menu_button(self.client).middle)
        opened = self.rest_away()
        row = places.menu_row(self.client, 1)
        self.assertNotEqual(opened.crop(row).pixels, before.crop(row).pixels)
        self.assertLess(opened.pixel(row.x + 3, row.y + 3)[0], 60, "the panel is dark")
        self.hands.move(row.middle)
        self.assertNotEqual(self.rest().pixel(row.x + 3, row.y + 3), opened.pixel(row.x + 3, row.y + 3), "the hot row")
        self.hands.click((self.client.x + 600, self.client.y + 700))
        self.assert_same(self.settle(), before, "closed again")
        self.close()

    def test_exit_ends_the_program(self):
        self.start(self.files(2))
        self.hands.click(places.menu_button(self.client).middle)
        self.rest_away()
        self.hands.click(places.menu_row(self.client, 3).middle)
        self.assertEqual(self.program.process.wait(TIME_LIMIT), 0)
        self.assertEqual(self.program.log()[-1], "Varnelo shut down")

    def test_fast_typing_loses_nothing(self):
        self.start(self.files(1))
        self.click_tab(SEARCH)
        text = "the quick brown fox jumps over the lazy dog"
        self.click_field()
        self.hands.do("type", "--delay", 60, text)
        self.rest_typing()
        slow = self.left_field()
        self.assertGreater(slow.count(lambda r, g, b: r > 200), 300, "there is a text")
        self.click_tab(0)
        self.restart()
        self.click_tab(SEARCH)
        self.click_field()
        self.hands.do("type", "--delay", 1, text)
        self.rest_typing()
        self.assertEqual(self.left_field().pixels, slow.pixels)
        self.close()

    def test_the_second_search_row_unfolds_and_folds_back(self):
        self.start(self.files(1))
        closed = self.click_tab(SEARCH)
        self.hands.click((self.client.x + 100, self.client.y + EXPANDER_TOP + 10))
        opened = self.rest_away()
        row = Box(self.client.x + 12, self.client.y + 112, 400, 26)
        self.assertNotEqual(opened.crop(row).pixels, closed.crop(row).pixels)
        self.hands.click((self.client.x + 100, self.client.y + EXPANDER_TOP + 10))
        self.assertEqual(self.rest_away().pixels, closed.pixels)
        self.close()

    def test_the_loop_sleeps_again_when_a_search_field_loses_the_focus(self):
        self.start(self.files(1))
        self.click_tab(SEARCH)
        self.click_field()
        before = self.program.wake_ups()
        wait_for(lambda: self.program.wake_ups() > before + 4, "the caret's frames")
        self.left_field()
        self.rest()
        quiet = self.program.wake_ups()
        self.rest()
        self.assertLessEqual(self.program.wake_ups() - quiet, 2)
        self.close()

    def test_the_bar_can_be_pulled_and_keeps_its_place(self):
        names = self.files(4)
        self.start(names)
        bar = places.splitter_bar(self.client)
        self.drag(bar.middle, (bar.x - 150, bar.middle[1]))
        moved = self.settle()
        self.assertEqual(self.stage.setting("splitterRatio_0")[0], "REG_BINARY")
        self.restart()
        self.hands.away()
        self.assert_same(self.settle(), moved, "the bar stands where it was left")
        self.close()

    def test_the_software_pane_folds_away_and_comes_back(self):
        names = self.files(4)
        before = self.start(names)
        before = self.settle()
        bar = places.splitter_bar(self.client)
        self.press_and_pull(bar.middle, (self.client.x + self.client.w - 8, bar.middle[1]))
        self.hands.release()
        self.hands.move((self.client.x + 600, self.client.y + self.client.h - 8))
        folded = self.rest()
        self.assertNotEqual(folded.pixel(*bar.middle), before.pixel(*bar.middle))
        arrow = Box(self.client.x + self.client.w - 8, self.client.y + self.client.h // 2 - 8, 8, 16)
        self.assertGreater(folded.crop(arrow).count(lambda r, g, b: r > 190), 10, "the arrow shows")
        self.press_and_pull((self.client.x + self.client.w - 6, bar.middle[1] - 100), (bar.x, bar.middle[1]))
        self.hands.release()
        self.assert_same(self.settle(), before, "the pane is back")
        self.close()

    def test_a_hundred_quick_sizes_and_back_leave_the_picture(self):
        names = self.files(6)
        self.start(names)
        self.program.window("sizes", 1000, 700, 1)
        self.hands.away()
        before = self.settle()
        self.program.window("sizes", 1000, 700, 100)
        self.assert_same(self.settle(), before, "the same size again")
        self.program.window("maximise")
        wait_for(lambda: self.program.take_client().w == 1280, "the maximised window")
        self.assert_items_at(self.settle(), self.layout(), 1)
        self.close()

    def test_another_device_shows_the_same_picture(self):
        names = self.files(6)
        before = self.start(names)
        before = self.settle()
        self.close()
        for call in (0, 1, 4):
            self.program = Program(self.stage, variables={"VARNELO_LOSE_DEVICE_AT": str(call)})
            self.program.wait_started()
            self.hands.away()
            after = self.settle()
            self.assertIn("Direct3D device restored", self.program.log())
            self.assert_same(after, before, f"lost at call {call}")
            self.close()
