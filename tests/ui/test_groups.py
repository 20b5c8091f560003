"""Groups and their headers, order inside a group, and what a restart remembers."""
from case import DesktopCase

WEEK, MONTH = 1, 2  # places of the groups in these cases, after the system's


class Groups(DesktopCase):
    def given_two_long_groups(self):
        recent = self.files(30)
        older = self.files(30, days=20, first=30)
        return recent, older

    def test_a_fresh_start_shows_the_first_row_of_every_group(self):
        picture = self.start(*self.given_two_long_groups())
        layout = self.layout()
        self.assert_items_at(picture, layout, WEEK)
        self.assert_items_at(picture, layout, MONTH)
        self.close()

    def test_a_click_on_a_header_opens_the_group_and_the_next_closes_it(self):
        self.start(*self.given_two_long_groups())
        picture = self.click_header(self.layout(), WEEK)
        opened = self.layout(opened=WEEK)
        self.assert_items_at(picture, opened, WEEK)
        self.assert_items_at(picture, opened, MONTH)

        picture = self.click_header(opened, WEEK)
        self.assert_items_at(picture, self.layout(), WEEK)
        self.assert_items_at(picture, self.layout(), MONTH)
        self.close()

    def test_only_one_group_is_open_at_a_time(self):
        self.start(*self.given_two_long_groups())
        self.click_header(self.layout(), WEEK)
        picture = self.click_header(self.layout(opened=WEEK), MONTH)
        layout = self.layout(opened=MONTH)
        self.assert_items_at(picture, layout, WEEK)
        self.assert_items_at(picture, layout, MONTH)
        self.close()

    def test_a_group_that_fits_in_a_row_has_no_arrow(self):
        recent = self.files(3)
        older = self.files(30, days=20, first=30)
        picture = self.start(recent, older)
        before = self.layout().header(WEEK)
        collapsed = picture.crop(self.layout().header(MONTH))
        picture_open = self.click_header(self.layout(), MONTH)
        self.assertGreater(picture_open.crop(self.layout(opened=MONTH).header(MONTH)).distance(collapsed), 0.5,
                           "the arrow turns")
        picture_after = self.click_header(self.layout(opened=MONTH), WEEK)  # and the long group closes
        self.assertLess(picture_after.crop(before).distance(picture.crop(before)), 0.1, "no arrow before or after")
        self.close()

    def test_a_cell_dragged_inside_its_group_moves_the_others_aside_and_stays_after_a_restart(self):
        names = self.files(6)
        picture = self.start(names)
        layout = self.layout()
        labels = self.labels(picture, layout, WEEK)
        self.assertEqual(len(set(labels)), 6, "every label is different")

        self.drag(layout.icon_box(WEEK, 0).middle, layout.icon_box(WEEK, 3).middle)
        picture = self.deselect()
        order = [labels[1], labels[2], labels[3], labels[0], labels[4], labels[5]]
        self.assertEqual(self.order(picture, layout, labels), self.order_of(order, labels))

        picture = self.restart()
        self.assertEqual(self.order(picture, layout, labels), self.order_of(order, labels), "after a restart")
        self.close()

    def test_a_cell_never_leaves_its_group(self):
        recent = self.files(4)
        older = self.files(4, days=20, first=30)
        picture = self.start(recent, older)
        layout = self.layout()
        labels = self.labels(picture, layout, MONTH)
        self.drag(layout.icon_box(WEEK, 1).middle, layout.icon_box(MONTH, 2).middle)
        picture = self.deselect()
        self.assert_items_at(picture, layout, WEEK)
        self.assertEqual(self.labels(picture, layout, MONTH), labels)
        self.close()

    def test_a_press_on_a_label_drags_nothing(self):
        names = self.files(4)
        picture = self.start(names)
        layout = self.layout()
        labels = self.labels(picture, layout, WEEK)
        self.drag(layout.label(WEEK, 0).middle, layout.label(WEEK, 3).middle)
        picture = self.deselect()
        self.assertEqual(self.order(picture, layout, labels), [0, 1, 2, 3])
        self.close()

    def order(self, picture, layout, labels):
        """The cells' labels as numbers of the given ones; -1 for one that is none of them."""
        seen = self.labels(picture, layout, WEEK)
        return [labels.index(label) if label in labels else -1 for label in seen]

    @staticmethod
    def order_of(wanted, labels):
        return [labels.index(label) for label in wanted]

    def test_icon_scale_changes_the_grid(self):
        for scale in (0.5, 2.0):
            with self.subTest(scale=scale):
                self.stage.set_float("iconScale", scale)
                names = self.files(5)
                picture = self.start(names)
                self.assert_items_at(picture, self.layout(scale=scale), WEEK)
                self.close()
