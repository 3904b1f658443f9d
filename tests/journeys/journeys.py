"""What a person does in Coinhall, start to finish, in the real window: each journey
on a new book or on a book of 10,000 lines. After each: the window still runs, the
money file holds exactly what was entered, and the screen shows it. Each journey
that saves runs a second time, killed with SIGKILL the moment its first sheet has
saved and closed, and the file must hold that save.

usage: journeys.py COINHALL_EXECUTABLE OUTPUT_FOLDER new|big [JOURNEY...]"""

import json
import os
import random
import shutil
import sys
import tempfile
import time
import traceback
from datetime import datetime, timedelta, timezone
from decimal import Decimal

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from harness import App, Display, Failure  # noqa: E402


class Killed(Exception):
    """The window was killed right after a save; carries what the file must hold."""

    def __init__(self, check):
        self.check = check


def new_records(before, after, key):
    if before is None:  # a new book: the two accounts it starts with are not the journey's
        before = {key: [r for r in after[key] if key == "accounts" and r["opening"] == 0
                        and r["name"] in ("Main checking", "Savings")]}
    old = {r["id"] for r in before[key]}
    return [r for r in after[key] if r["id"] not in old]


def same(got, want):
    return got == Decimal(want) if isinstance(got, Decimal) else got == want


def expect_new(key, *wanted):
    """A check of the money file: exactly `wanted` (field subsets, amounts as text) were added under `key`."""
    def check(before, after):
        got = new_records(before, after, key)
        left = list(got)
        for w in wanted:
            hit = next((r for r in left if all(same(r.get(k), v) for k, v in w.items())), None)
            if hit is None:
                raise Failure(f"money file: expected new {key} {list(wanted)}, found {got}")
            left.remove(hit)
        if left:
            raise Failure(f"money file: unexpected new {key} {left}")
    return check


class Journey(App):
    """One run of one journey on one copy of a book."""

    def __init__(self, run, name, kill_after_save):
        super().__init__(run.exe, run.out, f"{run.kind}-{name}" + ("-kill" if kill_after_save else ""), run.root,
                         run.book_path)
        self.kill_after_save = kill_after_save
        self.before = self.book()
        self.saves = 0

    def sheet(self, opener, title, role="push button", within=None):
        self.step(f"open {title!r}")
        self.press(opener, role, within)
        return self.find(title, "dialog")

    def fill_in(self, dialog, fields):
        """Types each text into the sheet's field whose name starts with its label."""
        for label, text in fields.items():
            self.step(f"type {text!r} into {label!r}")
            self.fill(self.find(lambda n: n.startswith(label), "text", within=dialog), text)

    def enter(self, opener, title, fields, check, key="Save", within=None):
        s = self.sheet(opener, title, within=within)
        self.fill_in(s, fields)
        self.save(s, check, key)

    def save(self, dialog, check, key="Save"):
        """Presses the sheet's key, waits for the sheet to close, and checks the file."""
        title = dialog.name
        self.step(f"{key} on {title!r}")
        self.press(key, within=dialog)
        self.until(f"the sheet {title!r} to close", lambda: not self.matches(title, "dialog"), 10)
        self.saved(check)

    def saved(self, check):
        """After a save: the kill, or the file's check."""
        if self.kill_after_save and self.saves == 0:
            self.kill()
            raise Killed(check)
        self.saves += 1
        self.check_alive()
        check(self.before, self.book())
        self.before = self.book()

    def screen(self, key):
        side = self.find("Console", "label").parent
        self.press(key, within=side)
        return self.find(lambda n: n == key or n.startswith(key), "heading")


def shows_balances(j):
    """The screen's account balances are the file's."""
    book = j.book()
    for a in book["accounts"] if book else ():
        total = a["opening"] + sum(t["amount"] for t in book["transactions"] if t["accountID"] == a["id"])
        if not a["archived"] and total >= 0:
            j.step(f"see the balance of {a['name']}")
            j.shows(f"{a['name']}, ${total:,.2f}")


def transfer(j):
    j.start()
    s = j.sheet("Transfer", "Move money between accounts")
    for side, account in (("From", "Main checking"), ("To", "Savings")):
        j.step(f"choose {account!r} in {side!r}")
        j.press(side, "combo box", within=s)
        j.click(j.find(account, "list item"))
    j.fill_in(s, {"Amount": "75.00"})
    j.save(s, expect_new("transactions", {"kind": "transfer", "amount": "-75.00"},
                         {"kind": "transfer", "amount": "75.00"}), key="Transfer")
    shows_balances(j)


def new_account(j):
    j.start()
    j.screen("Accounts")
    j.enter("Add account", "New account", {"Name": "Tour float", "Starting balance": "500.00"},
            expect_new("accounts", {"name": "Tour float", "opening": "500.00"}))
    j.shows("Tour float, 0 transactions this month, balance $500.00")


def bill(j):
    j.start()
    j.screen("Bills")
    j.enter("Add bill", "New bill", {"Name": "Studio rent", "Amount": "450.00"},
            expect_new("bills", {"name": "Studio rent", "amount": "450.00"}))

    def row():
        return j.find(lambda n: n.startswith("Studio rent, $450.00"), "list item")

    def stored():
        return next(b for b in j.book()["bills"] if b["name"] == "Studio rent")
    j.enter("Pay", "Pay Studio rent", {}, expect_new("transactions", {"kind": "bill", "amount": "-450.00",
                                                                      "payee": "Studio rent"}),
            key="Mark paid", within=row())
    paid = stored()
    if len(paid["history"]) != 1:
        raise Failure(f"money file: the bill's history should hold 1 payment, holds {paid['history']}")
    j.step("skip the next one from the line's menu")
    shown_before = row().name
    j.click(row(), button=3)
    j.click(j.find("Skip this one", "menu item"))
    j.until("the skipped bill's due date to move on", lambda: stored()["due"] != paid["due"])
    if stored()["history"] != paid["history"]:
        raise Failure("money file: skipping a bill changed its payments")
    j.until("the bill line to show the new due date", lambda: row().name != shown_before)


def royalty(j):
    j.start()
    j.screen("Royalties")
    j.enter("Add royalty", "Royalty you're expecting", {"Who pays": "BMI", "Expected amount": "88.10"},
            expect_new("royalties", {"payer": "BMI", "expectedAmount": "88.10", "status": "Expected"}))
    j.enter("Got it", "Royalty from BMI", {"Amount that came in": "91.25"},
            expect_new("transactions", {"kind": "royalty", "amount": "91.25"}), key="Log it",
            within=j.find(lambda n: n.startswith("BMI, $88.10"), "list item"))
    got = next(r for r in j.book()["royalties"] if r["payer"] == "BMI")
    if got["status"] != "Received" or got.get("receivedAmount") != Decimal("91.25"):
        raise Failure(f"money file: the royalty should be received with 91.25, is {got}")
    j.shows("$91.25")


def bank_import(j):
    j.start()
    day = (datetime.now() - timedelta(days=3)).strftime("%m/%d/%Y")
    rows = {"Night Owl Diner": "-23.45", "Pressing Plant Co": "-310.00", "Bandcamp payout": "142.07"}
    with open(os.path.join(j.home, "bank.csv"), "w") as f:
        f.write("Date,Description,Amount\n" + "".join(f"{day},{p},{a}\n" for p, a in rows.items()))
    s = j.sheet("Import bank CSV", "Import from your bank")
    j.step("choose the file")
    j.press("Choose CSV file…", within=s)
    picker = j.find("Choose CSV file", "dialog")
    j.click(j.find("bank.csv", "label", within=picker))
    j.press("Open", within=picker)
    # Undo and redo of an import: history_test (the Book) and tst_undo.qml (the Edit menu, Ctrl+Shift+Z).
    j.save(s, expect_new("transactions", *({"payee": p, "amount": a} for p, a in rows.items())), key="Import 3")
    j.screen("Transactions")
    j.fill(j.find("Search payee, category, note", "text"), "Night Owl")
    j.shows("Night Owl Diner")


def every_screen(j):
    j.start()
    book = j.book()
    lines = book["transactions"] if book else []
    for key in ("Transactions", "Bills", "Royalties", "Calendar", "Accounts", "Dashboard", "Reports"):
        j.step(f"show {key}")
        j.screen(key)
    for period in ("Last month", "This year", "Last 12 months", "Last year", "This month"):
        j.step(f"Reports period {period!r}")
        j.press(period, within=j.find("Period", "page tab list"))
        j.until(f"{period!r} chosen", lambda: j.find(period, within=j.find("Period", "page tab list"))
                  .getState().contains(pyatspi.STATE_CHECKED))
        j.find(lambda n: n.startswith("Income $"), "panel")
    j.screen("Transactions")

    def shown(what, keep, *also, action=lambda: None):
        j.step(f"Transactions, {what}")
        action()
        n = sum(1 for t in lines if keep(t))
        j.shows(f"{n:,} line" + ("" if n == 1 else "s"), *also)
    flow = j.find("Flow", "panel")
    shown("every line", lambda t: True)
    shown("money out only", lambda t: t["amount"] < 0, "In $0.00", action=lambda: j.press("Money out", within=flow))
    shown("money in only", lambda t: t["amount"] > 0, "Out $0.00", action=lambda: j.press("Money in", within=flow))
    j.press("All", within=flow)
    search = j.find("Search payee, category, note", "text")
    for payee in [lines[len(lines) // 2]["payee"]] if lines else []:
        shown(f"search {payee!r}", lambda t: payee.lower() in (t["payee"] + t["category"] + t["note"]).lower(),
              action=lambda: j.fill(search, payee))
        j.fill(search, "")
    month = datetime.now().strftime("%Y-%m")
    shown("this month only", lambda t: datetime.fromisoformat(t["date"]).astimezone().strftime("%Y-%m") == month,
          action=lambda: j.press("This month only", "check box"))
    j.press("This month only", "check box")
    savings = [a["id"] for a in book["accounts"] if a["name"] == "Savings"] if book else []
    shown("the Savings account", lambda t: t["accountID"] in savings,
          action=lambda: (j.press("Account", "combo box"), j.click(j.find("Savings", "list item"))))
    if j.book() != book:
        raise Failure("money file: looking around changed the file")


def menu(j, *path):
    j.press(path[0], "menu bar")
    for item in path[1:]:
        j.click(j.find(item, "menu item"))


def corner(node):
    box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return box.x, box.y


def zoom(j, level):
    """Picks a zoom level in View > Zoom Level and waits for the picture to follow."""
    j.step(f"zoom to {level} from the View menu")
    was = corner(j.find("Money out", "push button"))
    menu(j, "View", "Zoom Level", level)
    j.until(f"the window to zoom to {level}", lambda: corner(j.find("Money out", "push button")) != was)


def close_menus(j):
    """Escape, once per open menu level, until no menu item shows."""
    for _ in range(4):
        if not j.matches(lambda n: True, "menu item"):
            return
        j.key("Escape")
        try:
            j.until("the menu to close", lambda: not j.matches(lambda n: True, "menu item"), 1)
        except Failure:
            pass  # a submenu closed and its parent still shows: Escape again
    raise Failure("Escape does not close the menu")


def checked_in_menu(j, menu_name, item_name):
    menu(j, menu_name, *(["Zoom Level"] if menu_name == "View" else []))
    item = j.find(item_name, "menu item")
    on = item.getState().contains(pyatspi.STATE_CHECKED)
    close_menus(j)
    if not on:
        raise Failure(f"{item_name!r} should be the checked item of the {menu_name} menu")


def looks_kept(j):
    j.start()
    j.step("pick the second theme in the Theme menu")
    j.press("Theme", "menu bar")
    items = j.until("the Theme menu", lambda: j.matches(lambda n: bool(n), "menu item"))
    chosen = items[1].name
    j.click(items[1])
    zoom(j, "150%")
    zoomed = corner(j.find("Money out", "push button"))
    j.step("quit and start again")
    j.quit()
    j.start()
    j.step("the theme and the zoom are as they were")
    checked_in_menu(j, "Theme", chosen)
    checked_in_menu(j, "View", "150%")
    if corner(j.find("Money out", "push button")) != zoomed:
        raise Failure("after a restart 'Money out' should be where it was at 150%")


def money_in_at_200(j):
    """Money in by mouse in the zoomed window (150% scales and scrolls the same way);
    Money out, the same sheet, is keyboard_only's."""
    j.start()
    zoom(j, "200%")
    j.enter("Money in", "Money in", {"Amount": "250.00", "From (who paid you)": "Lumen Records"},
            expect_new("transactions", {"kind": "deposit", "amount": "250.00", "payee": "Lumen Records"}))
    j.shows("Lumen Records")


def focused(j):
    """The control with the keyboard focus: the innermost focused node (scopes around it say so too)."""
    found = [n for n in j.nodes() if n.getState().contains(pyatspi.STATE_FOCUSED)]
    return found[-1] if found else None


def expect_focus(j, name, after):
    node = focused(j)
    if node is None or node.name != name:
        raise Failure(f"{after}, focus should be on {name!r}, is on {node and node.name!r}")


def keyboard_only(j):
    j.start()
    j.step("Shift+Tab back to 'Money out'")

    def on_money_out():
        node = focused(j)
        return node is not None and node.name == "Money out" and node.getRoleName() == "push button"
    j.until("Shift+Tab to reach 'Money out'", lambda: on_money_out() or j.key("shift+Tab"), 10)
    j.key("Return")
    j.find("Money out", "dialog")
    j.step("type the amount where the sheet put the cursor")
    j.type("9.99")
    j.key("Tab")
    expect_focus(j, "To (who you paid)", "after Tab from Amount")
    j.type("Tape Shop")
    j.step("Return in the payee field guesses the category and moves on")
    j.key("Return")
    expect_focus(j, "Category", "after Return in the payee field")
    j.step("Return on the closed category list saves")
    j.key("Return")
    j.until("the sheet to close on Return", lambda: not j.matches("Money out", "dialog"))
    j.saved(expect_new("transactions", {"amount": "-9.99", "payee": "Tape Shop"}))
    j.shows("Tape Shop")
    expect_focus(j, "Money out", "after the sheet closed")


def lock(j):
    j.start()
    j.screen("Accounts")
    j.step("ask for the password at start")
    j.press("Ask for your account password when Coinhall opens", "check box")
    j.quit()
    # PAM reads its services from /etc/pam.d only: a private mount of a folder over it,
    # in a mount namespace of its own, lets the window check against a known password.
    pam = os.path.join(j.home, "pam.d")
    os.makedirs(pam)
    script = os.path.join(j.home, "secret.sh")
    with open(script, "w") as f:
        f.write("#!/bin/sh\npw=$(tr -d '\\000')\n[ \"$pw\" = 'open sesame' ]\n")
    os.chmod(script, 0o700)
    with open(os.path.join(pam, "coinhall"), "w") as f:
        f.write(f"auth required pam_exec.so expose_authtok {script}\naccount required pam_permit.so\n")
    wrap = ["unshare", "--mount"] + ([] if os.getuid() == 0 else ["--map-root-user"])
    wrap += ["sh", "-c", f"mount --bind '{pam}' /etc/pam.d && exec \"$0\" \"$@\""]
    j.start(wrap=wrap)
    j.step("the lock shows")  # with nothing of the books: tests/app/lockscreen_test.cpp
    j.find("COINHALL IS LOCKED", "heading")
    j.step("a wrong password keeps it locked")
    j.fill(j.find(lambda n: True, "password text"), "open says me")
    j.press("Unlock")
    time.sleep(1)
    j.find("COINHALL IS LOCKED", "heading")
    j.step("the right password opens the books")
    j.fill(j.find(lambda n: True, "password text"), "open sesame")
    j.press("Unlock")
    j.find("Money out", "push button")
    shows_balances(j)


JOURNEYS = [money_in_at_200, transfer, new_account, bill, royalty, bank_import, every_screen, looks_kept,
            keyboard_only, lock]
SAVE_NOTHING = {"every_screen", "looks_kept", "lock"}  # the others run again, killed after their first save


def big_book(path, lines=10000):
    """A deterministic book: two accounts, the default categories, `lines` deposits
    and expenses over the two years before today."""
    rnd = random.Random(26)
    income = ["Royalties", "Software sales", "Music sales", "Gigs & bookings", "Web design clients", "Paycheck",
              "Refunds", "Other income"]
    spending = ["Rent / mortgage", "Bills & Utilities", "Phone & internet", "Insurance", "Car & gas", "Groceries",
                "Dining out", "Subscriptions", "Software & hosting", "Studio gear", "Marketing & ads", "Health",
                "Taxes", "Debt payments", "Shopping", "Fees & charges", "Other spending", "Transfer"]
    payees = [f"Payee {i:02d}" for i in range(40)]
    accounts = ["0A000000-0000-4000-8000-000000000001", "0A000000-0000-4000-8000-000000000002"]
    today = datetime.now(timezone.utc).replace(hour=12, minute=0, second=0, microsecond=0)
    tx = []
    for i in range(lines):
        deposit = rnd.random() < 0.3
        cents = rnd.randint(100, 400000 if deposit else 60000)
        tx.append({"accountID": accounts[i % 7 == 0], "amount": cents / (100 if deposit else -100),
                   "category": rnd.choice(income if deposit else spending[:-1]), "cleared": True,
                   "date": (today - timedelta(days=1 + i * 730 // lines)).strftime("%Y-%m-%dT%H:%M:%SZ"),
                   "id": f"0B000000-0000-4000-8000-{i:012X}", "kind": "deposit" if deposit else "expense",
                   "note": "", "payee": rnd.choice(payees)})
    book = {"accounts": [{"archived": False, "id": i, "kind": kind, "name": name, "opening": opening}
                         for i, kind, name, opening in ((accounts[0], "Checking", "Main checking", 250000),
                                                        (accounts[1], "Savings", "Savings", 1000))],
            "bills": [], "categories": [{"income": True, "name": n} for n in income] +
            [{"income": False, "name": n} for n in spending], "currency": "USD", "royalties": [],
            "transactions": tx, "version": 1}
    with open(path, "w") as f:
        json.dump(book, f, indent=2, sort_keys=True)


class Run:
    def __init__(self, exe, out, kind):
        self.exe, self.out, self.kind = exe, out, kind
        os.makedirs(out, exist_ok=True)
        self.root = tempfile.mkdtemp(prefix="journeys-")
        self.book_path = os.path.join(self.root, "big.json") if kind == "big" else None
        if self.book_path:
            big_book(self.book_path)
        self.display = Display()

    def one(self, journey, kill_after_save):
        j = Journey(self, journey.__name__, kill_after_save)
        title = f"{self.kind} book: {journey.__name__}" + (" (killed after its first save)" if kill_after_save else "")
        t = time.monotonic()
        try:
            try:
                journey(j)
                if kill_after_save:
                    raise Failure("the journey ended without a save to kill the window after")
                j.step("finish")
                j.check_alive()
            except Killed as k:
                j.step("read the file after SIGKILL")
                k.check(j.before, j.book())
            print(f"PASS {title} ({time.monotonic() - t:.1f} s)", flush=True)
            shutil.rmtree(j.home, ignore_errors=True)
            return True
        except Exception as e:
            message = str(e) if isinstance(e, Failure) else traceback.format_exc()
            shot = os.path.join(self.out, f"{j.label}.xwd")
            try:
                self.display.screenshot(shot)
            except Exception as s:
                shot = f"(no screenshot: {s})"
            print(f"FAIL {title}\n  at step: {j.doing}\n  {message}\n  screen: {shot}\n"
                  f"  window's stderr: {getattr(j, 'stderr_path', '-')}\n  its home and books: {j.home}",
                  flush=True)
            return False
        finally:
            if j.proc and j.proc.poll() is None:
                j.kill()


def main():
    exe, out, kind = sys.argv[1], sys.argv[2], sys.argv[3]
    wanted = sys.argv[4:]
    run = Run(os.path.abspath(exe), os.path.abspath(out), kind)
    failed = 0
    try:
        for journey in JOURNEYS:
            if wanted and journey.__name__ not in wanted:
                continue
            failed += not run.one(journey, False)
            if journey.__name__ not in SAVE_NOTHING:
                failed += not run.one(journey, True)
    finally:
        run.display.close()
    print(f"{failed} failed" if failed else "all journeys passed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
