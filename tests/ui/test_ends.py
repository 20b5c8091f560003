"""Starts that fail, the end of the session, and messages that no honest program sends."""
from case import DesktopCase
from stage import TIME_LIMIT, WINDOW_TOOL, Program, windows_path

SEND_TOOL = WINDOW_TOOL.with_name("send_message.exe")

WM_CHAR = 0x0102
WM_DPICHANGED = 0x02E0
WM_QUERYENDSESSION, WM_ENDSESSION = 0x0011, 0x0016
SHELL_CHANGE, REDRAW = 0x800A, 0x800B

# Both stand in the log in the encoding that they once reached it in.
SAVING = "System shutdown detected \u00e2\u20ac\u201c saving caches"
SAVED = "Caches saved w\u00c3\u00a4hrend des Herunterfahrens"


class Ends(DesktopCase):
    def send(self, message, w=0, l=0):
        return int(self.stage.wine(windows_path(SEND_TOOL), "VARNELO", str(message), str(w), str(l)))

    def faults(self):
        """Faults that something caught: those in a window procedure end there without a sign under Wine."""
        return [line for line in self.program.log_file.read_bytes().splitlines() if b"code=c0000005" in line]

    def reports(self):
        return sorted(self.stage.data_folder.glob("crash_*.log"))

    def test_a_start_that_finds_no_place_for_its_window_ends_with_a_report(self):
        self.file("a.txt")
        self.program = Program(self.stage, [])
        self.assertEqual(self.program.process.wait(TIME_LIMIT), 0)
        log = self.program.log()
        self.assertEqual(log[1], "Varnelo starting up (Desktop mode)")
        self.assertEqual(log[-2:], ["Window class registered", "Failed to create window"])
        self.assertEqual(len(self.reports()), 1)
        text = self.reports()[0].read_bytes().decode("utf-16")
        self.assertTrue(text.startswith("=== CRASH LOG ===\r\nReason: Failed to create window\r\n"
                                        "=================\r\n\r\n"), text)
        self.assertTrue(text.endswith(" [FATAL] Failed to create window\r\n"), text)
        self.assertEqual(text.count("\r\n"), 4 + len(log), "each line of the session")

    def test_the_first_start_chooses_the_language_and_stores_every_setting(self):
        self.file("a.txt")
        self.assertIsNone(self.stage.setting("languageIndex"))
        self.start()
        wanted = {"splitterRatio": ("REG_BINARY", "00000000"), "tabIndex": ("REG_DWORD", "0x0"),
                  "sortTimeoutDays": ("REG_DWORD", "0x1e"), "iconScale": ("REG_BINARY", "0000803F"),
                  "hoverMode": ("REG_DWORD", "0x0"), "languageIndex": ("REG_DWORD", "0x1"),
                  "enabledMonitors": ("REG_SZ", "")}
        self.assertEqual({name: self.stage.setting(name) for name in wanted}, wanted)
        self.close()

    def test_the_end_of_the_session_saves_and_leaves_no_view_to_send_input_to(self):
        names = self.files(3)
        self.start(names)
        self.assertEqual(self.send(WM_QUERYENDSESSION), 1)
        self.assertEqual(self.send(WM_ENDSESSION, 0), 0)
        self.assertNotIn(SAVING, self.program.log(), "an end that was called off")
        cache = self.stage.data_folder / "desktop.cache"
        cache.unlink(missing_ok=True)
        self.assertEqual(self.send(WM_ENDSESSION, 1), 0)
        self.assertEqual(self.program.log()[-2:], [SAVING, SAVED])
        self.assertTrue(cache.is_file())

        # The session takes its time, and its user goes on.
        middle = self.layout().cell(1, 0).middle
        self.hands.click(middle)
        self.hands.wheel(2)
        self.hands.do("click", "--repeat", 2, "--delay", 40, 1)
        self.hands.do("click", 3)
        self.file("late.txt")
        for message in (REDRAW, SHELL_CHANGE):
            self.assertEqual(self.send(message), 0)
        self.assertTrue(self.program.is_running())
        self.close()
        self.assertEqual(self.reports(), [])
        self.assertEqual(self.faults(), [])

    def test_messages_with_values_that_nobody_should_send_do_no_harm(self):
        names = self.files(3)
        before = self.start(names)
        for w, l in ((0, 0), (96 << 16 | 96, 0), (0, 1), (0xFFFFFFFF, 0xDEAD0000)):
            self.assertEqual(self.send(WM_DPICHANGED, w, l), 0)
        for w, l in ((0, 0), (1, 1), (0xFFFFFFF0, 0xFFFFFFF0)):
            self.assertEqual(self.send(SHELL_CHANGE, w, l), 0)
        self.assertEqual(self.send(WM_CHAR, 0xD800), 0)
        self.assertEqual(self.rest_away().pixels, before.pixels)
        self.close()
        self.assertEqual(self.reports(), [])
        self.assertEqual(self.faults(), [])
