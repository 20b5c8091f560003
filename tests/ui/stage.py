"""A stage for the real program: one display and one Wine prefix of our own for a whole run, a desktop folder and clean
settings for every case."""
import os
import pathlib
import re
import shutil
import signal
import struct
import subprocess
import time

from picture import Box, Picture

ROOT = pathlib.Path(__file__).resolve().parents[2]
WINDOWS_BUILD = ROOT / "build" / "windows"
PROGRAM = pathlib.Path(os.environ.get("VARNELO_EXE", WINDOWS_BUILD / "varnelo.exe"))
WINDOW_TOOL = pathlib.Path(os.environ.get("VARNELO_WINDOW_TOOL", WINDOWS_BUILD / "tools" / "window.exe"))
MAKE_LINK_TOOL = pathlib.Path(os.environ.get("VARNELO_MAKE_LINK", WINDOWS_BUILD / "tools" / "make_link.exe"))

CLIPBOARD_TOOL = WINDOW_TOOL.with_name("set_clipboard.exe")

GROUND = (128, 128, 128)  # the plain wallpaper: everything drawn on it can be told from it
TIME_LIMIT = float(os.environ.get("VARNELO_UI_SECONDS", "120"))

SETTINGS_KEY = r"HKCU\Software\Varnelo"


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def wait_for(condition, what, seconds=TIME_LIMIT):
    """Polls until the condition holds and returns its value."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited {seconds:.0f} s for {what}")
        time.sleep(0.03)


# Once in a thousand times or so Wine ends with 1 in a few milliseconds, before the program that it is to run has begun.
# No program that is started here ends with 1 and without a word, so such a start can be told and made again.
STARTS = 3


def never_began(status, said):
    return status == 1 and not said


def shell(script, *arguments):
    """Runs a bash script with the prefix functions at hand and returns what it prints."""
    libraries = f'. "{ROOT}/tools/wine_prefix.sh"; . "{ROOT}/tools/ntfs_streams.sh"; '
    result = subprocess.run(["bash", "-c", libraries + script, "stage", *map(str, arguments)],
                            check=True, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL)
    return result.stdout


class Stage:
    """Display, prefix and environment; close() takes everything away again. Mouse and keyboard belong to the stage that
    was made last, and go back to the one before when it closes."""

    def __init__(self, width=1280, height=800, dpi=96, name="main"):
        for program in (PROGRAM, WINDOW_TOOL, MAKE_LINK_TOOL, CLIPBOARD_TOOL):
            assert program.is_file(), f"no program at {program}"
        self.width, self.height, self.dpi = width, height, dpi
        # In the strip between the last column and the scroll bar.
        self.away = (width - 30, height - 8)
        self.work = ROOT / "build" / "ui" / name
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir(parents=True)
        self.display_before = os.environ.get("DISPLAY")
        self.prefix = None
        self._start_display()
        self.prefix = pathlib.Path(shell('wine_new_prefix ui').decode().strip())
        self.environment = dict(entry.split("=", 1) for entry in
                                shell('wine_in "$1" env -0', self.prefix).decode().split("\0") if "=" in entry)
        self.environment["WINEDEBUG"] = "-all"
        self.loader = self.environment["WINELOADER"]
        self.wallpaper = self.work / "ground.png"
        subprocess.run(["/usr/bin/convert", "-size", "64x64", "xc:rgb(%d,%d,%d)" % GROUND, f"PNG24:{self.wallpaper}"],
                       check=True)
        shell('wine_set_screen "$1" "$2" "$3"', self.prefix, f"{width}x{height}", self.wallpaper)
        if dpi != 96:
            shell('wine_set_dpi "$1" "$2"', self.prefix, dpi)
        shell('wine_keep_server "$1"', self.prefix)
        self.user_folder = pathlib.Path(shell('wine_user_folder "$1"', self.prefix).decode().strip())
        self.data_folder = self.user_folder / "AppData" / "Roaming" / "Varnelo"
        self.desktop_link = self.user_folder / "Desktop"

    def _start_display(self):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{self.width}x{self.height}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as numbers:
            number = numbers.readline().strip()
        assert number, "Xvfb did not start"
        os.environ["DISPLAY"] = ":" + number
        os.environ.pop("XAUTHORITY", None)

    def close(self):
        if self.prefix:
            shell('wine_remove "$1"', self.prefix)
        self.server.send_signal(signal.SIGTERM)
        self.server.wait()
        if self.display_before:
            os.environ["DISPLAY"] = self.display_before

    # Windows programs of the prefix.
    def wine(self, *arguments, check=True):
        """Runs a Windows program to its end and returns its output."""
        output = self.work / "wine.out"  # a file: Wine's services may keep a pipe open
        errors = self.work / "wine.err"
        for _ in range(STARTS):
            with open(output, "wb") as sink, open(errors, "wb") as error_sink:
                status = subprocess.run([self.loader, *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                        stdout=sink, stderr=error_sink).returncode
            said = (output.read_text("utf-8", "replace") + errors.read_text("utf-8", "replace")).strip()
            if not never_began(status, said):
                break
            print(f"Wine did not start {arguments[0]}", flush=True)
        if check and status != 0:
            raise AssertionError(f"{arguments[0]} ended with {status}: {said}")
        return output.read_text("utf-8", "replace").replace("\r", "")

    def make_links(self, folder, links):
        pairs = []
        for name, target in links.items():
            pairs += [windows_path(folder / name), target]
        self.wine(windows_path(MAKE_LINK_TOOL), *pairs)

    # Settings.
    def clear_settings(self):
        self.wine("reg.exe", "delete", SETTINGS_KEY, "/f", check=False)
        self.set_wallpaper(self.wallpaper)
        shutil.rmtree(self.data_folder, ignore_errors=True)

    # The index of all files, which belongs to the machine.
    def index_files(self):
        return sorted(path.name for path in self.prefix.glob("drive_c/ProgramData/Varnelo/*"))

    def forget_index(self):
        shutil.rmtree(self.prefix / "drive_c/ProgramData/Varnelo", ignore_errors=True)

    def set_number(self, name, value):
        self.wine("reg.exe", "add", SETTINGS_KEY, "/v", name, "/t", "REG_DWORD", "/d", str(value), "/f")

    def set_float(self, name, value):
        self.wine("reg.exe", "add", SETTINGS_KEY, "/v", name, "/t", "REG_BINARY", "/d",
                  struct.pack("<f", value).hex(), "/f")

    def set_text(self, name, value):
        self.wine("reg.exe", "add", SETTINGS_KEY, "/v", name, "/t", "REG_SZ", "/d", value, "/f")

    def setting(self, name):
        """Type and data of a value as reg.exe prints them, or None."""
        text = self.wine("reg.exe", "query", SETTINGS_KEY, "/v", name, check=False)
        found = re.search(rf"^\s+{re.escape(name)}\s+(REG_\w+)\s+(.*)$", text, re.MULTILINE)
        return (found.group(1), found.group(2).strip()) if found else None

    def set_wallpaper(self, path):
        self.wine("reg.exe", "add", r"HKCU\Control Panel\Desktop", "/v", "Wallpaper", "/t", "REG_SZ", "/d",
                  windows_path(path), "/f")

    def new_desktop(self, name):
        """An empty folder as the desktop of the prefix."""
        folder = self.work / name
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        self.show_folder(folder)
        return folder

    def show_folder(self, folder):
        if self.desktop_link.is_symlink():
            self.desktop_link.unlink()
        elif self.desktop_link.exists():
            shutil.rmtree(self.desktop_link)
        self.desktop_link.symlink_to(folder)


DEBUG_STRING = re.compile(rb':warn:seh:OutputDebugString[AW] "(.*)"')


def unescaped(text):
    """Undoes the escapes of Wine's debug output; what remains is in the ANSI code page."""
    plain = text.decode("latin-1").encode("latin-1").decode("unicode_escape")
    return plain.encode("latin-1").decode("cp1252", "replace")


class Program:
    """The running program."""

    def __init__(self, stage, arguments=("--windowed",), variables=None):
        self.stage = stage
        self.log_file = stage.work / f"log-{time.monotonic_ns()}.txt"
        environment = dict(stage.environment, WINEDEBUG="-all,warn+seh", DISPLAY=os.environ["DISPLAY"],
                           **(variables or {}))
        self.client = None
        for _ in range(STARTS):
            with open(self.log_file, "wb") as sink:
                self.process = subprocess.Popen([stage.loader, windows_path(PROGRAM), *arguments], env=environment,
                                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=sink)
            wait_for(lambda: self.has_spoken() or not self.is_running(), "a first line of the log, or the end")
            if not never_began(self.process.returncode, self.has_spoken()):
                break
            print("Wine did not start the program", flush=True)

    # Log.
    def has_spoken(self):
        return self.log_file.stat().st_size > 0

    def log(self):
        """The messages so far, without time and level."""
        messages = []
        for line in self.log_file.read_bytes().splitlines():
            found = DEBUG_STRING.search(line)
            if not found:
                continue
            text = unescaped(found.group(1)).rstrip("\n")
            messages.append(re.sub(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[\w+\] ", "", text))
        return messages

    def wait_log(self, message):
        def there():
            assert self.is_running() or message in self.log(), \
                f"the program ended with {self.process.returncode} before '{message}'; its log: {self.log()}"
            return message in self.log()
        wait_for(there, f"the log line '{message}'")

    # State.
    def is_running(self):
        return self.process.poll() is None

    def ticks(self):
        """Processor time of all threads, in ticks of the kernel."""
        fields = pathlib.Path(f"/proc/{self.process.pid}/stat").read_text().rsplit(") ", 1)[1].split()
        return int(fields[11]) + int(fields[12])

    def wants_to_run(self):
        """Whether one of its threads runs, or waits for a processor that others use."""
        for task in pathlib.Path(f"/proc/{self.process.pid}/task").iterdir():
            try:
                state = (task / "stat").read_text().rsplit(") ", 1)[1][0]
            except (FileNotFoundError, ProcessLookupError):
                continue  # it has just ended
            if state in "RD":
                return True
        return False

    def wake_ups(self):
        """How often the main thread went to sleep or lost the processor. It stays the same while the thread sleeps."""
        status = pathlib.Path(f"/proc/{self.process.pid}/task/{self.process.pid}/status").read_text()
        return sum(int(number) for number in re.findall(r"ctxt_switches:\s+(\d+)", status))

    def picture(self):
        return Picture.of_screen(self.stage.width, self.stage.height)

    def wait_started(self):
        self.wait_log("Message loop starting")
        self.take_client()
        return self.wait_rest()

    def wait_rest(self):
        """Waits until two looks show the same picture and the program neither used the processor between them nor waits
        for it: on a busy machine it may not have had its turn yet."""
        last = [None, None]

        def at_rest():
            assert self.is_running(), f"the program ended with {self.process.returncode}; its log: {self.log()[-5:]}"
            waits = self.wants_to_run()
            now = [self.picture(), self.ticks()]
            same = not waits and last[0] is not None and last[0].pixels == now[0].pixels and last[1] == now[1]
            last[:] = now
            if not same:
                time.sleep(0.15)
            return same
        wait_for(at_rest, "a window at rest")
        return last[0]

    # The window.
    def window(self, *words):
        """What window.exe can do to the window."""
        return self.stage.wine(windows_path(WINDOW_TOOL), "VARNELO", *map(str, words))

    def take_client(self):
        """Where the client area is by now."""
        self.client = Box(*map(int, self.window("client").split()))
        return self.client

    # Ends.
    def close(self):
        """Closes the window as EXIT does and returns the exit code."""
        self.stage.wine(windows_path(WINDOW_TOOL), "VARNELO", "close")
        return self.process.wait(TIME_LIMIT)

    def kill(self):
        if self.is_running():
            self.process.kill()
            self.process.wait()
            # The window goes with the process, but not at once.
            self.stage.wine(windows_path(WINDOW_TOOL), "VARNELO", "gone")


class Hands:
    """Mouse and keyboard, by xdotool."""

    def __init__(self, away):
        self.away_point = away

    @staticmethod
    def do(*words):
        subprocess.run(["xdotool", *map(str, words)], check=True, stdout=subprocess.DEVNULL)

    def move(self, point):
        self.do("mousemove", *point)

    def away(self):
        """Into the strip between the last column and the scroll bar, where nothing is hovered. Not out of the view: it
        learns that the pointer left an item from the next place inside."""
        self.move(self.away_point)

    def stir(self):
        """Some movement in that strip. Every move that the program sees costs a frame."""
        moves = []
        for step in range(20):
            moves += ["mousemove", self.away_point[0], self.away_point[1] - step % 2 * 6, "sleep", 0.02]
        self.do(*moves)
        self.away()

    def click(self, point):
        self.do("mousemove", *point, "click", 1)

    def control_click(self, point):
        self.do("keydown", "Control_L", "mousemove", *point, "click", 1, "keyup", "Control_L")

    def wheel(self, notches):
        """Positive turns towards the user: the content goes up."""
        self.do("click", "--repeat", abs(notches), "--delay", 1, 5 if notches > 0 else 4)

    def press(self, point):
        self.do("mousemove", *point, "mousedown", 1)

    def release(self):
        self.do("mouseup", 1)

    def drag_path(self, start, end, steps=6):
        """Moves in steps with the button held, as a hand does."""
        for step in range(1, steps + 1):
            self.move((round(start[0] + (end[0] - start[0]) * step / steps),
                       round(start[1] + (end[1] - start[1]) * step / steps)))
            time.sleep(0.02)

    def hold_control(self):
        self.do("keydown", "Control_L")

    def let_go_of_control(self):
        self.do("keyup", "Control_L")

    def key(self, name):
        self.do("key", name)
