"""Wheel, scroll bar, and what they show."""
from case import DesktopCase
from picture import Box, vertical_shift
from stage import GROUND, wait_for

BIG = 1


class Scrolling(DesktopCase):
    def given_a_long_open_group(self):
        """A group of 100 items, opened. Returns the layout and its picture, nothing hovered, no scroll bar."""
        names = self.files(100)
        self.start(names)
        picture = self.click_header(self.layout(), BIG)
        layout = self.layout(opened=BIG)
        self.assertGreater(layout.max_scroll, 200, "there is something to scroll")
        return layout, picture

    def band(self, layout):
        """Three items, two rows high, in the middle of the view."""
        x, y = layout.position(BIG, 3 * layout.columns)
        return Box(round(x), round(y), 3 * 94, 220)

    def assert_scrolled(self, top, now, layout, pixels, delta=2):
        """The content stands that many pixels higher than in the picture of the top. Whole rows look alike but for
        their labels, so the search stays within a row of what is expected."""
        box = self.band(layout)
        while box.y - pixels < layout.client.y + 40:
            box = box.moved(0, layout.cell_height)
        wanted = range(round(pixels) - 40, round(pixels) + 41)
        shift, distance = vertical_shift(top, now, Box(box.x, round(box.y), box.w, 100), wanted)
        if distance > 8 or abs(shift - pixels) > delta:
            self.fail_with(now, f"scrolled by {shift} (off by {distance:.1f}), wanted {pixels:.0f}")

    def test_a_turn_of_the_wheel_scrolls_by_75_pixels_and_back(self):
        layout, top = self.given_a_long_open_group()
        self.hands.move(layout.client.middle)
        self.hands.wheel(1)
        self.assert_scrolled(top, self.rest_away(), layout, 75)
        self.hands.move(layout.client.middle)
        self.hands.wheel(-4)
        self.assert_same(self.settle(), top, "the top is the end")
        self.close()

    def test_the_wheel_stops_at_the_end_of_the_content(self):
        layout, top = self.given_a_long_open_group()
        self.hands.move(layout.client.middle)
        self.hands.wheel(40)
        picture = self.rest_away()
        end = self.layout(opened=BIG, scroll=layout.max_scroll)
        self.assert_items_at(picture, end, BIG)
        self.assertNotEqual(picture.pixels, top.pixels)
        self.close()

    def test_the_wheel_shows_the_scroll_bar_and_it_fades(self):
        layout, top = self.given_a_long_open_group()
        self.assertFalse(self.scroll_bar_seen(top, layout))
        self.hands.move(layout.client.middle)

        def seen_after_a_turn():
            self.hands.wheel(1)
            return self.scroll_bar_seen(self.program.picture(), layout)
        # On a busy machine a look may come when it has faded already, or before it is there.
        wait_for(seen_after_a_turn, "the scroll bar")
        picture = self.rest()
        self.assertFalse(self.scroll_bar_seen(picture, layout), "it is gone when the window is at rest")
        self.close()

    def test_without_overflow_there_is_no_scroll_bar(self):
        names = self.files(5)
        before = self.start(names)
        self.hands.move(self.layout().client.middle)
        self.hands.wheel(2)
        self.assert_same(self.settle(), before, "nothing to scroll")
        self.hands.move(self.layout().scroll_bar.middle)
        self.assertFalse(self.scroll_bar_seen(self.rest(), self.layout()))
        self.close()

    def test_a_click_beside_the_thumb_pages(self):
        layout, top = self.given_a_long_open_group()
        bar = layout.scroll_bar
        below = (bar.x + 5, bar.y + bar.h - 20)
        self.hands.click(below)
        page = min(0.9 * layout.client.h, layout.max_scroll)
        picture = self.rest_away()
        self.assert_items_at(picture, self.layout(opened=BIG, scroll=page), BIG)
        self.hands.click((bar.x + 5, bar.y + 3))
        self.assert_same(self.settle(), top, "back at the top")
        self.close()

    def test_the_thumb_can_be_dragged_to_the_end_and_half_way_back(self):
        layout, _ = self.given_a_long_open_group()
        thumb = layout.thumb
        track = layout.client.h - thumb.h
        start = thumb.middle
        self.hands.press(start)
        self.hands.drag_path(start, (start[0], start[1] + track + 60))
        # The bar asks for frames as long as it is seen, so the window does not come to rest meanwhile.
        end = layout.thumb.moved(0, track)
        wait_for(lambda: self.program.picture().crop(end).pixel(5, end.h // 2)[0] > GROUND[0] + 40, "the thumb below")
        self.hands.drag_path((start[0], start[1] + track + 60), (start[0], start[1] + track // 2))
        self.hands.release()
        half = self.layout(opened=BIG, scroll=(track // 2) / track * layout.max_scroll)
        self.assert_items_at(self.rest_away(), half, BIG)
        self.close()

    def test_the_thumb_is_light_on_a_dark_track(self):
        layout, _ = self.given_a_long_open_group()
        self.hands.move((layout.thumb.x + 5, layout.thumb.y + layout.thumb.h // 2))
        wait_for(lambda: self.program.picture().crop(layout.thumb).pixel(5, 40)[0] > GROUND[0] + 40, "a light thumb")
        self.hands.move((layout.thumb.x + 6, layout.thumb.y + layout.thumb.h // 2))
        below = (layout.scroll_bar.x + 5, layout.client.y + layout.client.h - 20)
        wait_for(lambda: self.program.picture().pixel(*below)[0] < GROUND[0] - 50, "a dark track")
        self.close()
