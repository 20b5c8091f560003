"""What is done with the files themselves."""
from case import DesktopCase
from stage import ROOT, wait_for, windows_path

WEEK = 1
NOTE_TOOL = ROOT / "build" / "windows" / "note_command_line.exe"
KEY = r"HKCR\VarneloUiTest\shell\open\command"


class Actions(DesktopCase):
    def noting_type(self):
        """A type of file whose program adds its command line to the file that is returned."""
        notes = self.stage.work / "notes"
        notes.unlink(missing_ok=True)
        self.stage.wine("reg.exe", "add", r"HKCR\.vnui", "/ve", "/d", "VarneloUiTest", "/f")
        self.stage.wine("reg.exe", "add", KEY, "/ve", "/f", "/d",
                        f'"{windows_path(NOTE_TOOL)}" "{windows_path(notes)}" "%1"')
        return notes

    def lines(self, notes):
        return notes.read_text("utf-8").splitlines() if notes.exists() else []

    def right_click(self, point):
        self.hands.move(point)
        self.rest()
        self.hands.do("click", 3)

    def test_a_double_click_opens_that_item_and_nothing_else(self):
        notes = self.noting_type()
        names = ["plan one.vnui", "A & %PATH% ^!.vnui"]
        for index, name in enumerate(names):
            self.file(name, index / 1440)
        self.start(names)
        slots = list(range(len(names)))
        while slots:
            # What was opened last comes first, so the last item is the next.
            count = len(self.lines(notes))
            self.hands.move(self.layout().icon_box(WEEK, len(names) - 1).middle)
            self.rest()
            self.hands.do("click", "--repeat", 2, "--delay", 40, 1)
            wait_for(lambda before=count: len(self.lines(notes)) > before, "the item's program")
            self.settle()
            slots.pop()
        opened = sorted(line.rsplit("\\", 1)[1].rstrip('"') for line in self.lines(notes))
        self.assertEqual(opened, sorted(names))
        self.close()

    def test_a_right_click_shows_the_menu_of_the_shell_and_escape_takes_it_away(self):
        names = self.files(3)
        self.start(names)
        before = self.settle()
        last = self.layout().icon_box(WEEK, 2)
        beside = last._replace(x=last.x + 2 * last.w)  # empty, and no hovered icon reaches it
        self.right_click(last.middle)
        wait_for(lambda: self.program.picture().crop(beside).pixels != before.crop(beside).pixels, "the menu")
        self.hands.key("Escape")
        self.hands.away()
        self.assert_same(self.settle(), before, "after the menu")
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()), sorted(names))
        self.close()
