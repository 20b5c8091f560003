"""Hover and selection."""
import time

from case import DesktopCase
from stage import GROUND, wait_for

WEEK = 1


class Pointer(DesktopCase):
    def watch(self, seconds):
        pictures, end = [], time.monotonic() + seconds
        while time.monotonic() < end:
            pictures.append(self.program.picture())
        return pictures

    def icon_width(self, picture, layout, slot):
        """Of the drawn part, in the rows that an icon has in any size."""
        box = layout.icon_box(WEEK, slot)
        return picture.crop(box._replace(x=box.x - 10, w=box.w + 20)).extent(GROUND).w

    # Hover.
    def test_a_hovered_item_shakes_and_comes_to_rest_a_little_larger(self):
        self.stage.set_number("hoverMode", 0)
        names = self.files(4)
        before = self.start(names)
        layout = self.layout()
        label = layout.label(WEEK, 1)

        def seen_to_shake():
            self.hands.away()
            self.rest()
            self.hands.move(layout.icon_box(WEEK, 1).middle)
            return any(p.crop(label).pixels != before.crop(label).pixels for p in self.watch(0.6))
        # A shake is over in half a second, and on a busy machine a look may come too late.
        wait_for(seen_to_shake, "a label that shakes with its icon")
        after = self.rest()
        self.assertEqual(after.crop(label).pixels, before.crop(label).pixels, "and comes back to its place")
        growth = self.icon_width(after, layout, 1) / self.icon_width(before, layout, 1)
        self.assertAlmostEqual(growth, 1.07, delta=0.05)
        self.assert_same(self.settle(), before, "without the pointer")
        self.close()

    def test_in_the_other_hover_mode_an_item_grows_and_does_not_shake(self):
        self.stage.set_number("hoverMode", 1)
        names = self.files(4)
        before = self.start(names)
        layout = self.layout()
        label = layout.label(WEEK, 1)
        self.hands.move(layout.icon_box(WEEK, 1).middle)
        top_of_label = (label.x, label.y + 4, label.w, label.h - 4)  # the enlarged icon reaches down to the first line
        lower = label._replace(y=top_of_label[1], h=top_of_label[3])
        for picture in self.watch(0.6):
            self.assertEqual(picture.crop(lower).pixels, before.crop(lower).pixels, "the label stands still")
        growth = self.icon_width(self.rest(), layout, 1) / self.icon_width(before, layout, 1)
        self.assertAlmostEqual(growth, 1.15, delta=0.04)
        self.close()

    def test_the_hover_mode_comes_from_the_registry_and_the_first_start_writes_it(self):
        self.files(1)
        self.assertIsNone(self.stage.setting("hoverMode"))
        self.start()
        self.close()
        self.assertEqual(self.stage.setting("hoverMode"), ("REG_DWORD", "0x0"))
        self.assertEqual(self.stage.setting("sortTimeoutDays"), ("REG_DWORD", "0x1e"))

    # Selection.
    def test_a_click_selects_one_item_and_a_click_beside_it_none(self):
        names = self.files(5)
        before = self.start(names)
        layout = self.layout()
        self.hands.click(layout.icon_box(WEEK, 1).middle)
        self.assert_selected(self.rest_away(), layout, WEEK, [1])
        self.hands.click(layout.label(WEEK, 3).middle)
        self.assert_selected(self.rest_away(), layout, WEEK, [3])
        self.hands.click((layout.client.x + layout.client.w - 60, layout.cell(WEEK, 0).middle[1]))
        picture = self.settle()
        self.assert_selected(picture, layout, WEEK, [])
        self.assert_same(picture, before, "without a selection")
        self.close()

    def test_a_selected_icon_turns_blue(self):
        names = self.files(2)
        before = self.start(names)
        layout = self.layout()
        self.hands.click(layout.icon_box(WEEK, 0).middle)
        after = self.rest_away()
        x, y = layout.icon_box(WEEK, 0).middle
        red, _, blue = after.pixel(x, y)
        self.assertLess(red, before.pixel(x, y)[0] - 40)
        self.assertGreater(blue, red + 60)
        self.close()

    def test_control_click_adds_and_takes_away(self):
        names = self.files(5)
        self.start(names)
        layout = self.layout()
        self.hands.click(layout.icon_box(WEEK, 0).middle)
        self.hands.control_click(layout.icon_box(WEEK, 2).middle)
        self.hands.control_click(layout.icon_box(WEEK, 4).middle)
        self.assert_selected(self.rest_away(), layout, WEEK, [0, 2, 4])
        self.hands.control_click(layout.icon_box(WEEK, 2).middle)
        self.assert_selected(self.rest_away(), layout, WEEK, [0, 4])
        self.close()

    def test_a_lasso_selects_what_it_touches(self):
        names = self.files(6)
        self.start(names)
        layout = self.layout()
        start = (layout.cell(WEEK, 7).middle[0], layout.cell(WEEK, 0).middle[1])
        held = self.press_and_pull(start, layout.cell(WEEK, 3).middle)
        self.assert_selected(held, layout, WEEK, [3, 4, 5])
        self.hands.release()
        self.assert_selected(self.rest_away(), layout, WEEK, [3, 4, 5])
        self.close()

    def test_the_lasso_is_drawn_while_it_is_held(self):
        names = self.files(2)
        before = self.start(names)
        layout = self.layout()
        y = layout.cell(WEEK, 0).middle[1]
        picture = self.press_and_pull((700, y), (900, y + 60))
        red, _, blue = picture.pixel(800, y + 30)
        self.assertGreater(blue, red + 20, "a translucent blue area")
        self.hands.release()
        self.assert_same(self.settle(), before, "after the lasso")
        self.close()

    def test_a_lasso_with_control_turns_the_selection_round(self):
        names = self.files(6)
        self.start(names)
        layout = self.layout()
        self.hands.click(layout.icon_box(WEEK, 3).middle)
        self.hands.control_click(layout.icon_box(WEEK, 0).middle)
        start = (layout.cell(WEEK, 7).middle[0], layout.cell(WEEK, 0).middle[1])
        self.hands.hold_control()
        self.drag(start, layout.cell(WEEK, 2).middle)
        self.hands.let_go_of_control()
        self.assert_selected(self.rest_away(), layout, WEEK, [0, 2, 4, 5])
        self.close()
