"""What every case shares: a desktop with known files, the program on it, and sentences about what is seen."""
import os
import time
import unittest

from layout import Layout, tab_pane
from stage import GROUND, Hands, Program, Stage

# The virtual items of Wine's desktop. They always are the first group.
SYSTEM_ITEMS = ["My Computer", "Trash"]

# Names that share no word and no beginning, so that no two of them make a family of names.
WORDS = ("apple bridge candle desert engine forest garden harbour island jungle kettle lantern mirror needle orchard "
         "pepper quartz ribbon saddle temple umbrella violin window xylophone yacht zebra anchor basket copper dragon "
         "ember falcon granite hammer indigo jasmine kernel ladder marble nectar oyster pillow quiver rocket silver "
         "tunnel urchin velvet walnut yellow zipper almond bottle cactus dancer elbow feather goblet helmet insect "
         "jacket kitten lemon magnet napkin onion pencil quilt radish spider ticket unicorn valley whistle yogurt "
         "zenith arrow bamboo carrot donkey eagle fossil guitar hazel igloo jewel koala lizard meadow nutmeg olive "
         "panther quail raven sailor tulip ulcer vessel willow yonder zinc acorn beetle cherry dagger").split()

DAY = 86400


class DesktopCase(unittest.TestCase):
    stage = None  # one for all cases, made by run.py

    def setUp(self):
        self.program = None
        self.hands = Hands(self.stage.away)
        self.hands.away()
        self.stage.clear_settings()
        self.folder = self.stage.new_desktop(self.id().rsplit(".", 1)[1][5:65])
        self.addCleanup(self._end)

    def _end(self):
        self.hands.do("keyup", "Control_L", "mouseup", 1)
        if self.program and self.program.is_running():
            self.program.kill()

    def run(self, result=None):
        before = len(result.failures) + len(result.errors)
        outcome = super().run(result)
        if len(result.failures) + len(result.errors) > before:
            print(f"  pictures of what was seen: {self.stage.work}", flush=True)
        return outcome

    # Given.
    def file(self, name, days=0.0, content="x"):
        """Makes a file of that age."""
        path = self.folder / name
        path.write_text(content, "utf-8")
        self.set_age(name, days)
        return path

    def set_age(self, name, days):
        when = time.time() - days * DAY
        os.utime(self.folder / name, (when, when))

    def files(self, count, days=0.0, first=0):
        """Makes that many text files that share no word, each a minute older than the one before: the order in which
        their group shows them. Returns the names."""
        names = [word + ".txt" for word in WORDS[first:first + count]]
        assert len(names) == count, "not enough words"
        for index, name in enumerate(names):
            self.file(name, days + index / 1440)
        return names

    # When.
    def start(self, *groups):
        """Starts the program on the folder and waits until it is at rest. `groups` are the lists of names that it is to
        show after the system's group, in order."""
        self.program = Program(self.stage)
        self.groups = [SYSTEM_ITEMS, *groups]
        picture = self.program.wait_started()
        return picture

    def layout(self, opened=None, scroll=0.0, scale=1.0):
        return Layout(tab_pane(self.program.client, scale), self.groups, opened, scroll, scale)

    def rest(self):
        return self.program.wait_rest()

    def rest_away(self):
        """Takes the pointer off the view, so that nothing is hovered, and waits for rest."""
        self.hands.away()
        return self.rest()

    def click_header(self, layout, group):
        """The view knows the header under the pointer from its last frame, so the pointer comes first."""
        self.hands.move(layout.header(group).middle)
        self.rest()
        self.hands.do("click", 1)
        return self.rest_away()

    def press_and_pull(self, start, end):
        """Presses, pulls past the few pixels that make a drag, and goes on to the end; the button stays held. The view
        asks where the pointer is, not where it was, so each part is let happen."""
        self.hands.press(start)
        self.rest()
        self.hands.move((start[0] + 6, start[1] + 4))
        self.rest()
        self.hands.drag_path((start[0] + 6, start[1] + 4), end)
        return self.rest()

    def drag(self, start, end):
        self.press_and_pull(start, end)
        self.hands.release()
        return self.settle()

    def settle(self):
        """Takes the pointer away and stirs until nothing changes any more. An icon that was larger than the others
        shrinks by frames, and frames end when nothing else moves."""
        picture = self.rest_away()
        for _ in range(12):
            before = picture
            self.hands.stir()
            picture = self.rest()
            if picture.pixels == before.pixels:
                return picture
        self.fail_with(picture, "the window does not settle")

    def deselect(self):
        """A click on the empty right end of the first row."""
        layout = self.layout()
        self.hands.click((layout.client.x + layout.client.w - 60, layout.cell(0, 0).middle[1]))
        return self.settle()

    def close(self):
        status = self.program.close()
        self.assertEqual(status, 0, "exit code")

    def restart(self):
        self.close()
        return self.start_again()

    def start_again(self):
        self.program = Program(self.stage)
        return self.program.wait_started()

    # Then.
    def show(self, picture, name):
        """Keeps a picture for whoever looks into a failure."""
        path = self.stage.work / f"{self.id().rsplit('.', 1)[1]}-{name}.png"
        picture.save(path)
        return path

    def fail_with(self, picture, message):
        self.fail(f"{message}; see {self.show(picture, 'seen')}")

    def assert_items_at(self, picture, layout, group):
        """Every shown cell of a group of text files that lies in the view has the same icon in its place. A cell comes
        to rest up to half a pixel beside it, which blurs the icon."""
        slots = [slot for slot in layout.shown_slots(group) if layout.is_in_view(layout.cell(group, slot))]
        self.assertTrue(slots, "no cell of the group is in view")
        reference = picture.crop(layout.icon_box(group, slots[0]))
        if not reference.extent(GROUND):
            self.fail_with(picture, f"no icon in the first cell of group {group}")
        for slot in slots:
            distance = picture.crop(layout.icon_box(group, slot)).distance(reference)
            if distance > 16:
                self.fail_with(picture, f"no icon at slot {slot} of group {group} (off by {distance:.1f})")
            if not picture.crop(layout.label(group, slot)).extent(GROUND):
                self.fail_with(picture, f"no label at slot {slot} of group {group}")

    def assert_same(self, picture, before, what):
        """The two show the same, but for the last trace of an icon's growth and for cells that came to rest up to half
        a pixel beside their place. An item more or less changes over 2,000 pixels."""
        changed = picture.changed_pixels(before)
        if changed > 800:
            self.fail_with(picture, f"{what}: {changed} pixels differ")

    def assert_ground(self, picture, box, what):
        seen = picture.crop(box).extent(GROUND)
        if seen:
            self.fail_with(picture, f"{what}: something is drawn at {seen} in {box}")

    def is_selected(self, picture, layout, group, slot):
        """A selected label stands on translucent blue."""
        blue = picture.crop(layout.label(group, slot)).count(
            lambda r, g, b: abs(r - 90) < 16 and abs(g - 121) < 16 and abs(b - 179) < 16)
        return blue > 60

    def assert_selected(self, picture, layout, group, slots):
        shown = [slot for slot in layout.shown_slots(group) if layout.is_in_view(layout.cell(group, slot))]
        selected = [slot for slot in shown if self.is_selected(picture, layout, group, slot)]
        if selected != sorted(slots):
            self.fail_with(picture, f"selected slots of group {group} are {selected}, wanted {sorted(slots)}")

    def labels(self, picture, layout, group):
        return [picture.crop(layout.label(group, slot)).pixels for slot in layout.shown_slots(group)]

    def scroll_bar_seen(self, picture, layout):
        """The thumb lightens the ground and the track darkens it."""
        bar = picture.crop(layout.scroll_bar)
        return bar.extent(GROUND) is not None


def make_stage():
    DesktopCase.stage = Stage()
    return DesktopCase.stage
