"""Folders, files and settings that are not as they should be."""
import os
import random
import struct

from case import DesktopCase
from stage import GROUND, Program

WEEK = 1


class Faults(DesktopCase):
    def test_an_empty_folder_shows_the_system_items_alone(self):
        picture = self.start()
        layout = self.layout()
        self.assertIsNotNone(picture.crop(layout.icon_box(0, 0)).extent(GROUND), "the system's first item")
        below = layout.client._replace(y=layout.client.y + 160, h=layout.client.h - 160)
        self.assert_ground(picture, below, "below the only group")
        self.close()

    def test_a_folder_that_does_not_exist_is_an_empty_one(self):
        os.rmdir(self.folder)
        picture = self.start()
        layout = self.layout()
        below = layout.client._replace(y=layout.client.y + 160, h=layout.client.h - 160)
        self.assert_ground(picture, below, "below the only group")
        self.close()

    def test_a_folder_that_vanishes_under_the_program_does_no_harm(self):
        names = self.files(5)
        self.start(names)
        for name in names:
            os.remove(self.folder / name)
        os.rmdir(self.folder)
        self.rest()
        self.hands.move(self.layout().cell(WEEK, 0).middle)
        self.rest_away()
        self.close()

    def test_an_unreadable_wallpaper_leaves_a_black_ground_under_working_items(self):
        broken = self.stage.work / "broken.png"
        broken.write_bytes(b"this is no picture")
        self.stage.set_wallpaper(broken)
        picture = self.start(self.files(4))
        log = self.program.log()
        self.assertTrue(any("CreateDecoderFromFilename FAILED" in line for line in log), log)
        self.assertTrue(any(line.startswith("  loadTextureFromFile: FAILED") for line in log), log)
        layout = self.layout()
        self.assertEqual(picture.pixel(900, layout.cell(WEEK, 0).middle[1]), (0, 0, 0))
        x, y = layout.icon_box(WEEK, 0).middle
        self.assertNotEqual(picture.pixel(x, y), (0, 0, 0), "an icon is drawn")
        self.close()

    def test_a_wallpaper_that_does_not_exist_is_the_same(self):
        self.stage.set_wallpaper(self.stage.work / "nowhere.jpg")
        self.files(1)
        picture = self.start()
        self.assertEqual(picture.pixel(900, 600), (0, 0, 0))
        self.close()

    def given_cache(self, data):
        self.stage.data_folder.mkdir(parents=True, exist_ok=True)
        path = self.stage.data_folder / "desktop.cache"
        path.write_bytes(data)
        return path

    def test_a_damaged_cache_changes_nothing_that_is_shown(self):
        names = self.files(4)
        before = self.start(names)
        self.close()
        good = (self.stage.data_folder / "desktop.cache").read_bytes()
        noise = random.Random(1)
        damaged = {
            "empty": b"",
            "cut in the head": good[:7],
            "cut in an entry": good[:len(good) // 2],
            "noise": bytes(noise.randrange(256) for _ in range(4000)),
            "another version": struct.pack("<I", 2) + good[4:],
            "huge count": struct.pack("<IQ", 1, 2 ** 64 - 1) + good[12:],
            "huge list": struct.pack("<IQI", 1, 1, 0xFFFFFFFF) + good[16:],
        }
        for name, data in damaged.items():
            with self.subTest(damage=name):
                self.given_cache(data)
                self.program = Program(self.stage)
                self.assert_same(self.program.wait_started(), before, "as before")
                self.close()
                self.assertEqual((self.stage.data_folder / "desktop.cache").read_bytes(), good, "written anew")

    def test_settings_of_a_wrong_type_or_size_do_not_stop_a_start(self):
        self.stage.set_text("iconScale", "a text that is much longer than four bytes")
        self.stage.set_text("hoverMode", "enlarge")
        self.stage.set_text("languageIndex", "German")
        self.stage.set_text("splitterRatio", "x" * 300)
        self.files(3)
        self.start()
        self.close()

    def test_every_kind_of_name_and_item_is_shown_once(self):
        long_name = "l" * 196 + ".txt"
        for name in ("Übergröße.txt", "旅行の計画.txt", "Party 🎉.txt", long_name, "plain"):
            self.file(name)
        (self.folder / "Folder").mkdir()
        self.file("Packed.zip")
        self.stage.make_links(self.folder, {"Editor.lnk": r"C:\windows\system32\notepad.exe"})
        self.file("Web.url", content="[InternetShortcut]\r\nURL=https://www.example.org/\r\n")
        self.start()
        self.close()
        data = (self.stage.data_folder / "desktop.cache").read_bytes()
        for path in self.folder.iterdir():
            wanted = path.name.encode("utf-16-le") + b"\0\0"
            self.assertEqual(data.count(wanted), 1, path.name)
