"""Drives the real Coinhall window as a person does: controls are found by their
accessible name and role over AT-SPI (as a screen reader finds them), and pressed
and typed into with real X input through xdotool, on a private Xvfb display inside
the D-Bus session the test runs in (dbus-run-session)."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time
from decimal import Decimal

import pyatspi


class Failure(Exception):
    pass


# How much longer every wait may take: the sanitized build and a machine busy with
# other tests answer several times slower than a person's computer.
SLOWER = float(os.environ.get("JOURNEYS_SLOWER", "1"))


def wait_for(what, condition, timeout=10.0, alive=None):
    """Polls `condition` until it gives something true, and returns that; fails
    with `what` after `timeout` seconds (times SLOWER), or at once when `alive` says
    the window died."""
    timeout *= SLOWER
    end = time.monotonic() + timeout
    while True:
        if alive:
            alive()
        try:
            got = condition()
        except Exception:  # the tree changes under a walk: try again
            got = None
        if got:
            return got
        if time.monotonic() > end:
            raise Failure(f"waited {timeout:g} s for {what}")
        time.sleep(0.05)


class Display:
    """A private X server and the accessibility bus, for one run of the driver."""

    def __init__(self, width=1600, height=1000):
        read, write = os.pipe()
        self.xvfb = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp",
             "-noreset"], pass_fds=(write,), stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as f:
            number = f.readline().strip()
        if not number:
            raise Failure("Xvfb did not start")
        self.name = ":" + number
        os.environ["DISPLAY"] = self.name
        # Qt only talks to the accessibility bus once it is there; it does not start it.
        self.bus = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"],
                                    stderr=subprocess.DEVNULL)
        wait_for("the accessibility bus", lambda: pyatspi.Registry.getDesktop(0) is not None)

    def close(self):
        for p in (self.bus, self.xvfb):
            p.terminate()
            p.wait()

    def screenshot(self, path):
        """The screen as an X window dump (xwud -in PATH shows it)."""
        subprocess.run(["xwd", "-root", "-silent", "-display", self.name, "-out", path], check=True)


def xdo(*args):
    subprocess.run(["xdotool", *map(str, args)], check=True)


def showing(node):
    states = node.getState()
    return states.contains(pyatspi.STATE_SHOWING) and states.contains(pyatspi.STATE_VISIBLE)


class App:
    """One coinhall process on its own data folder, home and temporary folder."""

    def __init__(self, exe, out_dir, label, root, book_path=None):
        self.exe, self.out, self.label = exe, out_dir, label
        self.home = tempfile.mkdtemp(prefix=label + ".", dir=root)
        self.data = os.path.join(self.home, "books")
        os.makedirs(self.data, mode=0o700)
        if book_path:
            shutil.copy(book_path, os.path.join(self.data, "coinhall.json"))
        self.proc = None
        self.doing = "start"
        self.runs = 0

    def env(self):
        env = dict(os.environ)
        h = self.home
        env.update(HOME=h, XDG_CONFIG_HOME=f"{h}/.config", XDG_DATA_HOME=f"{h}/.local/share",
                   XDG_CACHE_HOME=f"{h}/.cache", XDG_RUNTIME_DIR=f"{h}/run", TMPDIR=f"{h}/tmp",
                   QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LC_ALL="C.UTF-8",
                   QT_SCALE_FACTOR="1", QT_ENABLE_HIGHDPI_SCALING="0")
        # A leak report at the end is the other tests' business; memory faults still stop the run.
        env["ASAN_OPTIONS"] = env.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
        for d in ("run", "tmp", ".config"):
            os.makedirs(f"{h}/{d}", mode=0o700, exist_ok=True)
        return env

    def start(self, wrap=()):
        self.runs += 1
        self.stderr_path = os.path.join(self.out, f"{self.label}.{self.runs}.stderr")
        self.proc = subprocess.Popen([*wrap, self.exe, "--data-dir", self.data], env=self.env(), cwd=self.home,
                                     stdout=subprocess.DEVNULL, stderr=open(self.stderr_path, "wb"))
        self.step("start")
        self.window = self.until("the main window", lambda: self.frame("QFS Coinhall"), 30)
        # A new user meets the help on the first start, and closes it.
        helpframe = self.frame("QFS Coinhall Help")
        if helpframe:
            self.step("close the help shown on the first start")
            self.click(self.find("Done", "push button", within=helpframe))
            self.until("the help to close", lambda: not self.frame("QFS Coinhall Help"))
        # The keyboard to the main window, as a window manager gives it (Xvfb has none).
        for window in subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.proc.pid), "--name",
                                      "^QFS Coinhall$"], capture_output=True, text=True).stdout.split():
            xdo("windowfocus", window)
        return self

    def step(self, step):
        """The step now under way: named when the journey fails, printed with JOURNEYS_TRACE set."""
        self.doing = step
        if os.environ.get("JOURNEYS_TRACE"):
            print(f"  {time.monotonic():.1f} {step}", flush=True)

    def until(self, what, condition, timeout=5.0):
        return wait_for(what, condition, timeout, self.check_alive)

    def check_alive(self):
        code = self.proc.poll()
        if code is not None:
            how = f"signal {signal.Signals(-code).name}" if code < 0 else f"exit status {code}"
            raise Failure(f"the window died ({how})")

    def kill(self):
        self.proc.send_signal(signal.SIGKILL)
        self.proc.wait()

    def quit(self):
        xdo("key", "ctrl+q")
        try:
            code = self.proc.wait(15)
        except subprocess.TimeoutExpired:
            raise Failure("the window did not close on Ctrl+Q")
        if code != 0:
            raise Failure(f"the window ended with status {code} on Ctrl+Q")

    def frame(self, title):
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.get_process_id() == self.proc.pid:
                return next((f for f in app if f is not None and f.name == title and showing(f)), None)
        return None

    def nodes(self, within=None):
        """Every showing node under `within` (the main window by default), depth first."""
        stack = [within or self.window]
        while stack:
            node = stack.pop()
            if node is None or not showing(node):
                continue
            yield node
            stack.extend(reversed([c for c in node]))

    def matches(self, name, role, within=None):
        test = name if callable(name) else (lambda n: n == name)
        return [n for n in self.nodes(within) if test(n.name) and (role is None or n.getRoleName() == role)]

    def find(self, name, role=None, within=None, timeout=10.0):
        what = f"{role or 'control'} {name!r}" if not callable(name) else f"a {role or 'control'} matching"
        return self.until(f"{what} on screen", lambda: next(iter(self.matches(name, role, within)), None), timeout)

    def shows(self, *texts, within=None, timeout=10.0):
        """Waits until every text appears within some accessible name on screen."""
        def look():
            names = [n.name for n in self.nodes(within) if n.name]
            return all(any(t in n for n in names) for t in texts)
        return self.until(f"the screen to show {texts!r}", look, timeout)

    def click(self, node, button=1):
        box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        win = self.window.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        x, y = box.x + box.width // 2, box.y + box.height // 2
        if not (win.x <= x < win.x + win.width and win.y <= y < win.y + win.height):
            raise Failure(f"{node.getRoleName()} {node.name!r} is outside the window "
                          f"(at {x},{y}; window {win.width}x{win.height})")
        xdo("mousemove", x, y, "click", button)
        self.check_alive()

    def press(self, name, role="push button", within=None):
        self.click(self.find(name, role, within))

    def fill(self, node, text):
        self.click(node)
        self.key("ctrl+a", "BackSpace")
        if text:
            self.type(text)

    def type(self, text):
        xdo("type", "--delay", 8, text)
        self.check_alive()

    def key(self, *keys):
        xdo("key", "--delay", 30, *keys)
        self.check_alive()

    def book(self):
        """The money file as saved, amounts as exact decimals; None before the first save."""
        path = os.path.join(self.data, "coinhall.json")
        if not os.path.exists(path):
            return None
        with open(path, encoding="utf-8") as f:
            return json.load(f, parse_float=Decimal, parse_int=Decimal)

