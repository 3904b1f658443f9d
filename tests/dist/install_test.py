#!/usr/bin/python3
"""The installed Coinhall, as `cmake --install` lays it out under a fresh prefix: the
program runs from there, and the desktop's files are valid and agree with it.

  install_test.py BUILD_DIR
"""
import os
import re
import subprocess
import sys
import tempfile
import unittest

BUILD = sys.argv.pop(1)
APP_ID = "com.quillfern.Coinhall"


def read(path):
    with open(path) as f:
        return f.read()


def run(*args, **kw):
    return subprocess.run(args, capture_output=True, text=True, **kw)


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tmp = tempfile.TemporaryDirectory()
        cls.prefix = cls.tmp.name
        done = run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        assert done.returncode == 0, done.stderr
        cls.bin = os.path.join(cls.prefix, "bin", "coinhall")
        cls.share = os.path.join(cls.prefix, "share")
        cls.env = dict(os.environ, HOME=cls.prefix, XDG_DATA_HOME=os.path.join(cls.prefix, "data"))
        usage = run(cls.bin, "--help").stdout
        cls.commands = re.findall(r"^  (\w+)", usage.split("Commands:")[1].split("Options:")[0], re.M)

    @classmethod
    def tearDownClass(cls):
        cls.tmp.cleanup()

    def path(self, *parts):
        return os.path.join(self.share, *parts)

    def test_program_runs_from_the_prefix(self):
        done = run(self.bin, "--selftest", env=self.env)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("ALL", done.stdout.splitlines()[-1])

    def test_desktop_entry_is_valid_and_its_actions_are_understood(self):
        entry = self.path("applications", APP_ID + ".desktop")
        done = run("desktop-file-validate", entry)
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        text = read(entry)
        self.assertIn("\nIcon=%s\n" % APP_ID, text)
        self.assertIn("\nStartupWMClass=Coinhall\n", text)
        execs = re.findall(r"^Exec=coinhall(.*)$", text, re.M)
        self.assertEqual(len(execs), 4)
        for args in execs:
            # With --version the window is not opened; a value it does not know would
            # be refused with a usage error.
            done = run(self.bin, *args.split(), "--version", env=self.env)
            self.assertEqual(done.returncode, 0, args + ": " + done.stderr)

    def test_metainfo_is_valid(self):
        done = run("appstreamcli", "validate", "--no-net", self.path("metainfo", APP_ID + ".metainfo.xml"))
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_manual_page_names_every_command(self):
        page = run("man", "--warnings", "-l", self.path("man", "man1", "coinhall.1.gz"),
                   env=dict(self.env, MANWIDTH="100"))
        self.assertEqual((page.returncode, page.stderr), (0, ""))
        text = re.sub(".\b", "", page.stdout)  # bold and underline drawn by overstriking
        for command in self.commands:
            self.assertRegex(text, r"\n\s+%s\b" % command)

    def test_reminder_units_are_valid_and_run_the_installed_program(self):
        units = [os.path.join(self.prefix, "lib", "systemd", "user", "coinhall-reminders." + kind)
                 for kind in ("service", "timer")]
        with tempfile.TemporaryDirectory() as runtime:
            done = run("systemd-analyze", "verify", "--man=no", "--user", *units,
                       env=dict(self.env, XDG_RUNTIME_DIR=runtime))
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("\nExecStart=%s remind\n" % self.bin, read(units[0]))

    def test_first_start_enables_the_reminder_service_once(self):
        """With a user systemd the timer is enabled; without one an autostart entry is
        written; either only at the first start."""
        def start(home, runtime=None):
            env = dict(self.env, HOME=home, XDG_CONFIG_HOME=os.path.join(home, "config"),
                       XDG_DATA_HOME=os.path.join(home, "data"), PATH=home + ":" + os.environ["PATH"],
                       QT_QPA_PLATFORM="offscreen", COINHALL_FIRST_FRAME="quit",
                       DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus")
            env.pop("XDG_RUNTIME_DIR", None)
            if runtime:
                env["XDG_RUNTIME_DIR"] = runtime
            done = run(self.bin, env=env, timeout=60)
            self.assertEqual(done.returncode, 0, done.stderr)

        with tempfile.TemporaryDirectory() as home:
            systemctl = os.path.join(home, "systemctl")
            with open(systemctl, "w") as f:
                f.write("#!/bin/sh\necho \"$@\" >> %s.calls\n" % systemctl)
            os.chmod(systemctl, 0o755)
            os.makedirs(os.path.join(home, "run", "systemd"))
            open(os.path.join(home, "run", "systemd", "private"), "w").close()
            start(home, os.path.join(home, "run"))
            start(home, os.path.join(home, "run"))
            self.assertEqual(read(systemctl + ".calls"), "--user enable --now coinhall-reminders.timer\n")
            self.assertFalse(os.path.exists(os.path.join(home, "config", "autostart")))

        with tempfile.TemporaryDirectory() as home:
            start(home)
            entry = os.path.join(home, "config", "autostart", APP_ID + ".Reminders.desktop")
            done = run("desktop-file-validate", entry)
            self.assertEqual((done.returncode, done.stdout), (0, ""))
            self.assertIn('\nExec="%s" remind --wait\n' % self.bin, read(entry))
            os.remove(entry)
            start(home)
            self.assertFalse(os.path.exists(entry), "written at the first start only")

    def complete(self, line):
        script = ("source /usr/share/bash-completion/bash_completion; source %s; "
                  "COMP_LINE=%r; COMP_POINT=${#COMP_LINE}; read -ra COMP_WORDS <<< \"$COMP_LINE\"; "
                  "[[ $COMP_LINE == *' ' ]] && COMP_WORDS+=(''); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                  "_coinhall coinhall \"${COMP_WORDS[-1]}\" \"${COMP_WORDS[-2]}\"; printf '%%s\\n' \"${COMPREPLY[@]}\""
                  % (self.path("bash-completion", "completions", "coinhall"), line))
        done = run("bash", "-c", script)
        self.assertEqual(done.returncode, 0, done.stderr)
        return sorted(filter(None, done.stdout.split("\n")))

    def test_shell_completes_commands_and_values(self):
        self.assertEqual(self.complete("coinhall "), sorted(self.commands))
        self.assertEqual(self.complete("coinhall --open m"), ["money-in", "money-out"])
        self.assertEqual(self.complete("coinhall --data-dir /tmp report --p"), ["--pdf", "--period"])
        self.assertEqual(self.complete("coinhall report --period last-"),
                         ["last-12-months", "last-month", "last-year"])


class Package(unittest.TestCase):
    """The .deb that scripts/package builds, made here from the tests' own build."""

    def test_contents_and_computed_depends(self):
        with tempfile.TemporaryDirectory() as out:
            done = run("cpack", "-G", "DEB", "-B", out, "--config", os.path.join(BUILD, "CPackConfig.cmake"))
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            debs = [f for f in os.listdir(out) if f.endswith(".deb")]
            self.assertEqual(len(debs), 1)
            self.assertRegex(debs[0], r"^coinhall_\d+\.\d+\.\d+_amd64\.deb$")
            deb = os.path.join(out, debs[0])
            files = {line.split()[-1].lstrip(".") for line in run("dpkg-deb", "-c", deb).stdout.splitlines()
                     if not line.endswith("/")}
            wanted = {"/usr/bin/coinhall", "/usr/share/applications/%s.desktop" % APP_ID,
                      "/usr/share/metainfo/%s.metainfo.xml" % APP_ID, "/usr/share/man/man1/coinhall.1.gz",
                      "/usr/share/bash-completion/completions/coinhall",
                      "/usr/share/icons/hicolor/scalable/apps/%s.svg" % APP_ID,
                      "/usr/lib/systemd/user/coinhall-reminders.service", "/usr/lib/systemd/user/coinhall-reminders.timer"}
            self.assertLessEqual(wanted, files)
            self.assertEqual(len([f for f in files if f.startswith("/usr/share/icons/hicolor/")]), 9)
            self.assertEqual(files - wanted - {f for f in files if f.startswith("/usr/share/icons/")}, set(),
                             "nothing else: no tests, no headers")
            depends = {d.split()[0] for d in run("dpkg-deb", "-f", deb, "Depends").stdout.split(", ")}
            # From the linked libraries and from the QML the window imports.
            self.assertLessEqual({"libqt6quick6", "libqt6dbus6", "libpam0g", "libicu72", "qml6-module-qtquick",
                                  "qml6-module-qtquick-controls", "qml6-module-qtquick-layouts"}, depends)


if __name__ == "__main__":
    unittest.main(verbosity=2)
