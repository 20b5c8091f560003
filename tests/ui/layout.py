"""Where the grid puts what: the arithmetic of the icon grid, from a known list of groups."""
import math

from picture import Box

MARGIN = 10
HEADER = 24
HEADER_GAP = 10
SCROLL_BAR = 10
BASE_ICON = 48

MENU_ROW = 40  # the row of menu button and tabs, at 96 dots per inch
BAR = 4  # the splitter's bar
RATIO = 0.7  # of the tabbed area, before the bar moves to the edge of a column


def software_width(client, scale=1.0):
    """The width of the software pane: the whole columns that fit beside the bar of a fresh start."""
    cell = BASE_ICON * scale + 46
    room = client.w - client.w * RATIO - BAR / 2
    columns = max(1, int((room - MARGIN) / cell))
    return columns * cell + MARGIN


def splitter_bar(client, scale=1.0):
    """The splitter's bar of a fresh start."""
    left = client.w - software_width(client, scale) - BAR - BAR / 2
    return Box(round(client.x + left), client.y, BAR, client.h)


def tab_pane(client, scale=1.0):
    """The pane of the tabbed area: left of the bar, below the tabs."""
    return Box(client.x, client.y + MENU_ROW, splitter_bar(client, scale).x - client.x, client.h - MENU_ROW)


def tab(client, index, scale=1.0):
    """One of the four tabs."""
    pane = tab_pane(client, scale)
    width = (pane.w - MENU_ROW) / 4
    return Box(round(client.x + MENU_ROW + index * width), client.y, int(width), MENU_ROW)


def menu_button(client):
    return Box(client.x, client.y, MENU_ROW, MENU_ROW)


def menu_row(client, index):
    """A row of the open menu, as far as it surely reaches."""
    return Box(client.x, client.y + MENU_ROW * (index + 1), 60, MENU_ROW)


class Layout:
    """A pane that shows groups in order. `client` is the pane's area. `groups` are lists of names; the group `opened`
    shows all of its rows, every other one its first row."""

    def __init__(self, client, groups, opened=None, scroll=0.0, scale=1.0):
        self.client, self.groups, self.opened, self.scroll = client, groups, opened, scroll
        self.icon = BASE_ICON * scale
        self.cell_width, self.cell_height = self.icon + 46, self.icon + 62
        self.columns = max(1, int((client.w - MARGIN) / self.cell_width))
        self.tops = []
        y = MARGIN
        for index, names in enumerate(groups):
            self.tops.append(y)
            shown = len(names) if index == opened else min(len(names), self.columns)
            y += HEADER + math.ceil(shown / self.columns) * self.cell_height
        self.content_height = y
        self.max_scroll = max(0, y - client.h)

    def header(self, group):
        """The part of a group's header that takes clicks."""
        return Box(self.client.x + MARGIN, round(self.client.y + self.tops[group] - self.scroll), 140, HEADER)

    def position(self, group, slot):
        x = self.client.x + MARGIN + (slot % self.columns) * self.cell_width
        y = (self.client.y + self.tops[group] + HEADER + HEADER_GAP + (slot // self.columns) * self.cell_height
             - self.scroll)
        return x, y

    def cell(self, group, slot):
        x, y = self.position(group, slot)
        return Box(round(x), round(y), int(self.cell_width), int(self.icon + 48))

    def icon_box(self, group, slot):
        x, y = self.position(group, slot)
        return Box(round(x + (self.cell_width - self.icon) / 2), round(y), int(self.icon), int(self.icon))

    def label(self, group, slot):
        """Where the text stands; the next group's header may overlap what lies below it."""
        x, y = self.position(group, slot)
        return Box(round(x), round(y + self.icon + 8), int(self.cell_width), 34)

    def shown_slots(self, group):
        count = len(self.groups[group])
        return range(count if group == self.opened else min(count, self.columns))

    def is_in_view(self, box):
        return self.client.y <= box.y and box.y + box.h <= self.client.y + self.client.h

    # The scroll bar, in pixels of the screen.
    @property
    def thumb(self):
        height = max(self.client.h / self.content_height * self.client.h, 20)
        top = self.scroll / max(self.content_height - self.client.h, 1) * (self.client.h - height)
        return Box(self.client.x + self.client.w - SCROLL_BAR, round(self.client.y + top), SCROLL_BAR, round(height))

    @property
    def scroll_bar(self):
        return Box(self.client.x + self.client.w - SCROLL_BAR, self.client.y, SCROLL_BAR, self.client.h)
