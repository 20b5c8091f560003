"""Runs of the program that do one job beside the one that shows the desktop."""
import os
import subprocess

from case import DesktopCase
from stage import PROGRAM, windows_path


class HelperRuns(DesktopCase):
    def run_helper(self, *arguments):
        return subprocess.run([self.stage.loader, windows_path(PROGRAM), *arguments],
                              env=dict(self.stage.environment, DISPLAY=os.environ["DISPLAY"]),
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=30).returncode

    def index_files(self):
        return sorted(path.name for path in self.stage.prefix.glob("drive_c/ProgramData/Varnelo/*"))

    def test_a_scan_without_such_volumes_fails_and_saves_nothing_beside_a_running_program(self):
        self.file("a.txt")
        before = self.start(["a.txt"])
        lines = self.program.log()
        files = self.index_files()
        self.assertEqual(self.run_helper("--ntfs-scan"), 1)
        self.assertEqual(self.index_files(), files)
        self.assertTrue(self.program.is_running())
        self.assertEqual(self.program.log(), lines)
        self.assertEqual(self.rest_away().pixels, before.pixels)
        self.assertEqual(self.run_helper("--windowed"), 0, "a second instance of the desktop ends at once instead")
        self.assertEqual(self.run_helper("--windowed", "--ntfs-scan"), 1, "the helper's switch counts first")
        self.close()

    def test_a_scan_needs_no_running_program(self):
        self.assertEqual(self.run_helper("--ntfs-scan"), 1)
        self.assertEqual(self.run_helper("before--ntfs-scanbehind"), 1)
