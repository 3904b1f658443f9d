#!/usr/bin/python3
"""The reminder service (`coinhall remind`) as the system runs it while the window is
closed, on a private session bus (run under dbus-run-session) with a notification
service of the test's own that records every Notify. Which planned reminders a run
may take (paid meanwhile, slept through) is the ledger's: dbusnotifier_test.cpp.

  remind_test.py COINHALL
"""
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
import unittest

from gi.repository import Gio, GLib

COINHALL = sys.argv.pop(1)
INTERFACE = """<node><interface name="org.freedesktop.Notifications">
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
<arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
<method name="GetServerInformation"><arg type="s" direction="out"/><arg type="s" direction="out"/>
<arg type="s" direction="out"/><arg type="s" direction="out"/></method>
</interface></node>"""


class NotificationService:
    def __init__(self):
        self.calls = []
        self.loop = GLib.MainLoop()
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        bus.register_object("/org/freedesktop/Notifications", Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0],
                            self.call, None, None)
        Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", 0, None, None)
        threading.Thread(target=self.loop.run, daemon=True).start()

    def call(self, bus, sender, path, interface, method, args, invocation):
        if method == "Notify":
            self.calls.append(args.unpack())
            invocation.return_value(GLib.Variant("(u)", (len(self.calls),)))
        else:
            invocation.return_value(GLib.Variant("(ssss)", ("test", "coinhall", "1", "1.2")))


SERVICE = NotificationService()


class Remind(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.mkdtemp()
        SERVICE.calls.clear()
        self.env = dict(os.environ, COINHALL_REMIND_LINGER_MS="0", HOME=self.dir)

    def plan(self, *reminders):
        """The plan as the window writes it: (identifier, title, body, seconds from now);
        the soonest moment."""
        now = time.time()
        requests = [{"identifier": i, "title": t, "body": b, "fireAt": int((now + s) * 1000)}
                    for i, t, b, s in reminders]
        with open(os.path.join(self.dir, "reminders.json"), "w") as f:
            json.dump({"requests": requests}, f)
        return min(r["fireAt"] for r in requests) / 1000 if requests else now

    def remind(self, *args, env=None):
        return subprocess.run([COINHALL, "--data-dir", self.dir, "remind", *args], env=env or self.env,
                              capture_output=True, text=True, timeout=60)

    def shown(self):
        time.sleep(0.3)  # the last call's way through the bus
        return [(c[3], c[4]) for c in SERVICE.calls]

    def test_window_closed_each_reminder_is_shown_once_at_its_time(self):
        rent = ("6F1C-0", "Rent is due today", "$1,200.00 · open Coinhall to mark it paid", 2)
        phone = ("77AB-3", "Phone is due in 3 days", "$40.00 · open Coinhall to mark it paid", 2)
        at = self.plan(rent, phone, ("99CD-0", "Gym is due today", "$30.00", 3600))
        self.assertEqual(self.remind().returncode, 0)
        self.assertEqual(self.shown(), [], "nothing before its moment")
        time.sleep(max(0, at - time.time()) + 0.2)
        done = self.remind()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        # What a Notify carries (program, icon, hints) is dbusnotifier_test's.
        self.assertEqual(self.shown(), [rent[1:3], phone[1:3]])
        self.remind()
        self.assertEqual(len(self.shown()), 2, "the timer running again shows nothing twice")

    def test_two_deliverers_at_once_show_each_reminder_once(self):
        # The waiting service (the autostart fallback) and the 09:00 run, side by side.
        at = self.plan(("6F1C-0", "Rent is due today", "$1,200.00", 2))
        waiting = subprocess.Popen([COINHALL, "--data-dir", self.dir, "remind", "--wait"], env=self.env)
        try:
            time.sleep(max(0, at - time.time()))
            self.remind()
            time.sleep(1)
            self.assertEqual(self.shown(), [("Rent is due today", "$1,200.00")])
        finally:
            waiting.terminate()
            waiting.wait(10)

    def test_without_a_session_bus_one_clear_line(self):
        env = dict(self.env, DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
        done = self.remind(env=env)
        self.assertEqual((done.returncode, done.stderr),
                         (1, "No D-Bus session bus: bill reminders cannot be shown.\n"))
        window = subprocess.run([COINHALL, "--data-dir", self.dir], env=dict(
            env, QT_QPA_PLATFORM="offscreen", COINHALL_FIRST_FRAME="quit", XDG_CONFIG_HOME=self.dir),
            capture_output=True, text=True, timeout=60)
        self.assertEqual(window.returncode, 0, window.stderr)
        self.assertEqual(window.stderr.count("bill reminders cannot be shown"), 1, window.stderr)


if __name__ == "__main__":
    unittest.main(verbosity=2)
