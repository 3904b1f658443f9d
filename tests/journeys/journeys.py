"""What a person does in Coinhall, start to finish, in the real window: each journey
on a new book or on a book of 10,000 lines. After each: the window still runs, the
money file holds exactly what was entered, and the screen shows it. Each journey
that saves runs a second time, killed with SIGKILL the moment its first sheet has
saved and closed, and the file must hold that save.

usage: journeys.py COINHALL_EXECUTABLE OUTPUT_FOLDER new|big [JOURNEY...]"""

import json
import os
import random
import re
import shutil
import sys
import tempfile
import time
import traceback
from datetime import datetime, timedelta, timezone
from decimal import Decimal

import pyatspi

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from harness import App, Display, Failure, fresh_home, wait_for  # noqa: E402


class Killed(Exception):
    """The window was killed right after a save; carries what the file must hold."""

    def __init__(self, check):
        self.check = check


def money(value):
    return f"${Decimal(value):,.2f}"


def new_records(before, after, key):
    if before is None:  # a new book: the two accounts it starts with are not the journey's
        before = {key: [r for r in after[key] if key == "accounts" and r["opening"] == 0
                        and r["name"] in ("Main checking", "Savings")]}
    old = {r["id"] for r in before[key]}
    return [r for r in after[key] if r["id"] not in old]


def expect_new(key, *wanted):
    """A check of the money file: exactly `wanted` (field subsets) were added under `key`."""
    def check(before, after):
        got = new_records(before, after, key)
        left = list(got)
        for w in wanted:
            hit = next((r for r in left if all(r.get(k) == v for k, v in w.items())), None)
            if hit is None:
                raise Failure(f"money file: expected new {key} {list(wanted)}, found {got}")
            left.remove(hit)
        if left:
            raise Failure(f"money file: unexpected new {key} {left}")
    return check


class Journey:
    """One run of one journey on one copy of a book."""

    def __init__(self, run, name, kill_after_save):
        self.run, self.name, self.kill_after_save = run, name, kill_after_save
        home = fresh_home(run.root, f"{run.kind}-{name}", run.book_path)
        self.app = App(run.exe, run.display, home, run.out, f"{run.kind}-{name}" + ("-kill" if kill_after_save else ""))
        self.before = self.app.book()
        self.saves = 0

    def start(self, **kw):
        return self.app.start(**kw)

    def step(self, text):
        self.app.note(text)

    def sheet(self, opener, title, role="push button", within=None):
        """Presses `opener` and gives the sheet that opens."""
        self.step(f"open {title!r}")
        self.app.press(opener, role, within)
        return self.app.find(title, "dialog")

    def save(self, dialog, check, key="Save"):
        """Presses the sheet's key, waits for the sheet to close, and checks the file."""
        title = dialog.name
        self.step(f"{key} on {title!r}")
        self.app.press(key, within=dialog)
        wait_for(f"the sheet {title!r} to close", lambda: not self.app.matches(title, "dialog"), 10,
                 self.app.check_alive)
        if self.kill_after_save and self.saves == 0:
            self.app.kill()
            raise Killed(check)
        self.saves += 1
        self.app.check_alive()
        check(self.before, self.app.book())
        self.before = self.app.book()

    def screen(self, key):
        side = self.app.find("Console", "label").parent
        self.app.press(key, within=side)
        return self.app.find(lambda n: n == key or n.startswith(key), "heading")


# -- the journeys --------------------------------------------------------------

def first_lines(j):
    app = j.start()
    s = j.sheet("Money out", "Money out")
    app.fill(app.find("Amount", "text", within=s), "12.34")
    app.fill(app.find("To (who you paid)", "text", within=s), "Corner Shop")
    j.save(s, expect_new("transactions", {"kind": "expense", "amount": Decimal("-12.34"), "payee": "Corner Shop"}))
    app.shows("Corner Shop")
    s = j.sheet("Money in", "Money in")
    app.fill(app.find("Amount", "text", within=s), "250.00")
    app.fill(app.find("From (who paid you)", "text", within=s), "Lumen Records")
    j.save(s, expect_new("transactions", {"kind": "deposit", "amount": Decimal("250.00"), "payee": "Lumen Records"}))
    app.shows("Lumen Records", "Corner Shop")
    shows_balances(j)


def shows_balances(j):
    """The screen's account balances are the file's."""
    book = j.app.book()
    for a in book["accounts"] if book else ():
        total = a["opening"] + sum(t["amount"] for t in book["transactions"] if t["accountID"] == a["id"])
        if not a["archived"] and total >= 0:
            j.step(f"see the balance of {a['name']}")
            j.app.shows(f"{a['name']}, {money(total)}")


def transfer(j):
    app = j.start()
    s = j.sheet("Transfer", "Move money between accounts")
    for side, account in (("From", "Main checking"), ("To", "Savings")):
        j.step(f"choose {account!r} in {side!r}")
        app.press(side, "combo box", within=s)
        app.click(app.find(account, "list item"))
    app.fill(app.find("Amount", "text", within=s), "75.00")
    j.save(s, expect_new("transactions", {"kind": "transfer", "amount": Decimal("-75.00")},
                         {"kind": "transfer", "amount": Decimal("75.00")}), key="Transfer")
    shows_balances(j)


def new_account(j):
    app = j.start()
    j.screen("Accounts")
    s = j.sheet("Add account", "New account")
    app.fill(app.find(lambda n: n.startswith("Name"), "text", within=s), "Tour float")
    app.fill(app.find("Starting balance", "text", within=s), "500.00")
    j.save(s, expect_new("accounts", {"name": "Tour float", "opening": Decimal("500.00")}))
    app.shows("Tour float, 0 transactions this month, balance $500.00")


def bill(j):
    app = j.start()
    j.screen("Bills")
    s = j.sheet("Add bill", "New bill")
    app.fill(app.find(lambda n: n.startswith("Name"), "text", within=s), "Studio rent")
    app.fill(app.find("Amount", "text", within=s), "450.00")
    j.save(s, expect_new("bills", {"name": "Studio rent", "amount": Decimal("450.00")}))
    row = app.find(lambda n: n.startswith("Studio rent, $450.00"), "list item")
    s = j.sheet("Pay", "Pay Studio rent", within=row)
    j.save(s, expect_new("transactions", {"kind": "bill", "amount": Decimal("-450.00"), "payee": "Studio rent"}),
           key="Mark paid")
    paid = next(b for b in app.book()["bills"] if b["name"] == "Studio rent")
    if len(paid["history"]) != 1:
        raise Failure(f"money file: the bill's history should hold 1 payment, holds {paid['history']}")
    app.shows("Studio rent")
    j.step("skip the next one from the line's menu")
    row = app.find(lambda n: n.startswith("Studio rent, $450.00"), "list item")
    shown_before = row.name
    app.click(row, button=3)
    app.click(app.find("Skip this one", "menu item"))
    wait_for("the skipped bill's due date to move on", lambda: next(
        b for b in app.book()["bills"] if b["name"] == "Studio rent")["due"] != paid["due"], 5, app.check_alive)
    skipped = next(b for b in app.book()["bills"] if b["name"] == "Studio rent")
    if skipped["history"] != paid["history"]:
        raise Failure("money file: skipping a bill changed its payments")
    wait_for("the bill line to show the new due date", lambda: app.find(
        lambda n: n.startswith("Studio rent, $450.00")).name != shown_before, 5, app.check_alive)


def royalty(j):
    app = j.start()
    j.screen("Royalties")
    s = j.sheet("Add royalty", "Royalty you're expecting")
    app.fill(app.find(lambda n: n.startswith("Who pays"), "text", within=s), "BMI")
    app.fill(app.find(lambda n: n.startswith("Expected amount"), "text", within=s), "88.10")
    j.save(s, expect_new("royalties", {"payer": "BMI", "expectedAmount": Decimal("88.10"), "status": "Expected"}))
    row = app.find(lambda n: n.startswith("BMI, $88.10"), "list item")
    s = j.sheet("Got it", "Royalty from BMI", within=row)
    app.fill(app.find("Amount that came in", "text", within=s), "91.25")
    j.save(s, expect_new("transactions", {"kind": "royalty", "amount": Decimal("91.25")}), key="Log it")
    got = next(r for r in app.book()["royalties"] if r["payer"] == "BMI")
    if got["status"] != "Received" or got.get("receivedAmount") != Decimal("91.25"):
        raise Failure(f"money file: the royalty should be received with 91.25, is {got}")
    app.shows("$91.25")


BANK_CSV = """Date,Description,Amount
{d1},Night Owl Diner,-23.45
{d2},Pressing Plant Co,-310.00
{d3},Bandcamp payout,142.07
"""


def bank_import(j):
    app = j.start()
    day = datetime.now() - timedelta(days=3)
    with open(os.path.join(app.home, "bank.csv"), "w") as f:
        f.write(BANK_CSV.format(d1=day.strftime("%m/%d/%Y"), d2=day.strftime("%m/%d/%Y"),
                                d3=day.strftime("%m/%d/%Y")))
    s = j.sheet("Import bank CSV", "Import from your bank")
    j.step("choose the file")
    app.press("Choose CSV file…", within=s)
    picker = app.find("Choose CSV file", "dialog")
    app.click(app.find("bank.csv", "label", within=picker))
    app.press("Open", within=picker)
    j.save(s, expect_new("transactions", {"payee": "Night Owl Diner", "amount": Decimal("-23.45")},
                         {"payee": "Pressing Plant Co", "amount": Decimal("-310.00")},
                         {"payee": "Bandcamp payout", "amount": Decimal("142.07")}), key="Import 3")
    j.screen("Transactions")
    app.fill(app.find("Search payee, category, note", "text"), "Night Owl")
    app.shows("Night Owl Diner")


def every_screen(j):
    app = j.start()
    book = app.book()
    lines = book["transactions"] if book else []
    for key in ("Transactions", "Bills", "Royalties", "Calendar", "Reports", "Accounts", "Dashboard"):
        j.step(f"show {key}")
        j.screen(key)
    j.screen("Reports")
    for period in ("Last month", "This year", "Last 12 months", "Last year", "This month"):
        j.step(f"Reports period {period!r}")
        app.press(period, within=app.find("Period", "page tab list"))
        wait_for(f"{period!r} chosen", lambda: app.find(period, within=app.find("Period", "page tab list"))
                 .getState().contains(pyatspi.STATE_CHECKED), 5, app.check_alive)
        app.find(lambda n: n.startswith("Income $"), "panel")
    j.screen("Transactions")

    def count(n):
        return f"{n} line" + ("" if n == 1 else "s")
    flow = app.find("Flow", "panel")
    j.step("Transactions, every line")
    app.shows(count(len(lines)))
    j.step("Transactions, money out only")
    app.press("Money out", within=flow)
    app.shows(count(sum(1 for t in lines if t["amount"] < 0)), "In $0.00")
    j.step("Transactions, money in only")
    app.press("Money in", within=flow)
    app.shows(count(sum(1 for t in lines if t["amount"] > 0)), "Out $0.00")
    app.press("All", within=flow)
    if lines:
        payee = lines[len(lines) // 2]["payee"]
        j.step(f"Transactions, search {payee!r}")
        app.fill(app.find("Search payee, category, note", "text"), payee)
        app.shows(count(sum(1 for t in lines if payee.lower() in (t["payee"] + t["category"] + t["note"]).lower())))
        app.fill(app.find("Search payee, category, note", "text"), "")
    j.step("Transactions, this month only")
    now = datetime.now()
    app.press("This month only", "check box")
    app.shows(count(sum(1 for t in lines if local(t["date"]).strftime("%Y-%m") == now.strftime("%Y-%m"))))
    app.press("This month only", "check box")
    j.step("Transactions, the Savings account")
    app.press("Account", "combo box")
    app.click(app.find("Savings", "list item"))
    savings = [a["id"] for a in book["accounts"] if a["name"] == "Savings"] if book else []
    app.shows(count(sum(1 for t in lines if t["accountID"] in savings)))
    if app.book() != book:
        raise Failure("money file: looking around changed the file")


def local(stamp):
    return datetime.strptime(stamp, "%Y-%m-%dT%H:%M:%SZ").replace(tzinfo=timezone.utc).astimezone()


def menu(app, *path):
    app.press(path[0], "menu bar")
    for item in path[1:]:
        app.click(app.find(item, "menu item"))


def corner(node):
    box = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return box.x, box.y


def zoom(j, level):
    """Picks a zoom level in View > Zoom Level and waits for the picture to follow."""
    j.step(f"zoom to {level} from the View menu")
    app = j.app
    was = corner(app.find("Money out", "push button"))
    menu(app, "View", "Zoom Level", level)
    wait_for(f"the window to zoom to {level}", lambda: corner(app.find("Money out", "push button")) != was, 5,
             app.check_alive)


def close_menus(app):
    """Escape, once per open menu level, until no menu item shows."""
    for _ in range(4):
        if not app.matches(lambda n: True, "menu item"):
            return
        app.key("Escape")
        try:
            wait_for("the menu to close", lambda: not app.matches(lambda n: True, "menu item"), 1, app.check_alive)
        except Failure:
            pass  # a submenu closed and its parent still shows: Escape again
    raise Failure("Escape does not close the menu")


def checked_in_menu(j, menu_name, item_name):
    app = j.app
    app.press(menu_name, "menu bar")
    if menu_name == "View":
        app.click(app.find("Zoom Level", "menu item"))
    item = app.find(item_name, "menu item")
    on = item.getState().contains(pyatspi.STATE_CHECKED)
    close_menus(app)
    if not on:
        raise Failure(f"{item_name!r} should be the checked item of the {menu_name} menu")


def looks_kept(j):
    app = j.start()
    j.step("pick the second theme in the Theme menu")
    app.press("Theme", "menu bar")
    items = wait_for("the Theme menu", lambda: app.matches(lambda n: bool(n), "menu item"), 5, app.check_alive)
    chosen = items[1].name
    app.click(items[1])
    zoom(j, "150%")
    zoomed = corner(app.find("Money out", "push button"))
    j.step("quit and start again")
    app.quit()
    app.start()
    j.step("the theme and the zoom are as they were")
    checked_in_menu(j, "Theme", chosen)
    checked_in_menu(j, "View", "150%")
    if corner(app.find("Money out", "push button")) != zoomed:
        raise Failure("after a restart 'Money out' should be where it was at 150%")


def zoomed_sheet(level):
    def journey(j):
        app = j.start()
        zoom(j, level)
        s = j.sheet("Money out", "Money out")
        app.fill(app.find("Amount", "text", within=s), "7.50")
        app.fill(app.find("To (who you paid)", "text", within=s), f"Zoom {level}")
        j.save(s, expect_new("transactions", {"amount": Decimal("-7.50"), "payee": f"Zoom {level}"}))
        app.shows(f"Zoom {level}")
    journey.__name__ = f"sheet_at_{level[:-1]}"
    return journey


def focused(app):
    """The control with the keyboard focus: the innermost focused node (scopes around it say so too)."""
    found = [n for n in app.nodes() if n.getState().contains(pyatspi.STATE_FOCUSED)]
    return found[-1] if found else None


def keyboard_only(j):
    app = j.start()
    j.step("Shift+Tab back to 'Money out'")
    for _ in range(30):
        node = focused(app)
        if node is not None and node.name == "Money out" and node.getRoleName() == "push button":
            break
        app.key("shift+Tab")
    else:
        raise Failure("30 presses of Shift+Tab never reached 'Money out'")
    app.key("Return")
    app.find("Money out", "dialog")
    j.step("type the amount where the sheet put the cursor")
    app.type("9.99")
    app.key("Tab")
    node = focused(app)
    if node is None or node.name != "To (who you paid)":
        raise Failure(f"Tab from Amount should reach 'To (who you paid)', reached {node and node.name!r}")
    app.type("Tape Shop")
    j.step("Return in the payee field guesses the category and moves on")
    app.key("Return")
    node = focused(app)
    if node is None or node.name != "Category":
        raise Failure(f"Return in the payee field should move on to 'Category', reached {node and node.name!r}")
    j.step("Return on the closed category list saves")
    app.key("Return")
    wait_for("the sheet to close on Return", lambda: not app.matches("Money out", "dialog"), 5, app.check_alive)
    if j.kill_after_save:
        app.kill()
        raise Killed(expect_new("transactions", {"amount": Decimal("-9.99"), "payee": "Tape Shop"}))
    expect_new("transactions", {"amount": Decimal("-9.99"), "payee": "Tape Shop"})(j.before, app.book())
    app.shows("Tape Shop")
    node = focused(app)
    if node is None or node.name != "Money out":
        raise Failure(f"after the sheet closed, focus should be back on 'Money out', is on {node and node.name!r}")
    j.step("F10 opens the menu bar")
    app.key("F10")
    app.find("Quit", "menu item", timeout=3)
    close_menus(app)
    j.step("Alt+V opens the View menu")
    app.key("alt+v")
    app.find("Zoom In", "menu item", timeout=3)
    close_menus(app)


PAM = """auth required pam_exec.so expose_authtok {script}
account required pam_permit.so
"""


def lock(j):
    app = j.start()
    j.screen("Accounts")
    j.step("ask for the password at start")
    app.press("Ask for your account password when Coinhall opens", "check box")
    app.quit()
    # PAM reads its services from /etc/pam.d only: a private mount of a folder over it,
    # in a mount namespace of its own, lets the window check against a known password.
    pam = os.path.join(app.home, "pam.d")
    os.makedirs(pam)
    script = os.path.join(app.home, "secret.sh")
    with open(script, "w") as f:
        f.write("#!/bin/sh\npw=$(tr -d '\\000')\n[ \"$pw\" = 'open sesame' ]\n")
    os.chmod(script, 0o700)
    with open(os.path.join(pam, "coinhall"), "w") as f:
        f.write(PAM.format(script=script))
    wrap = ["unshare", "--mount"] + ([] if os.getuid() == 0 else ["--map-root-user"])
    wrap += ["sh", "-c", f"mount --bind '{pam}' /etc/pam.d && exec \"$0\" \"$@\""]
    app.start(wrap=wrap)
    j.step("the lock shows, and nothing of the books")
    app.find("COINHALL IS LOCKED", "heading")
    if app.matches("Money out", "push button"):
        raise Failure("'Money out' is on screen while the books are locked")
    j.step("a wrong password keeps it locked")
    app.fill(app.find(lambda n: True, "password text"), "open says me")
    app.press("Unlock")
    time.sleep(1)
    app.find("COINHALL IS LOCKED", "heading")
    j.step("the right password opens the books")
    app.fill(app.find(lambda n: True, "password text"), "open sesame")
    app.press("Unlock")
    app.find("Money out", "push button")
    shows_balances(j)


JOURNEYS = [first_lines, transfer, new_account, bill, royalty, bank_import, every_screen, looks_kept,
            zoomed_sheet("150%"), zoomed_sheet("200%"), keyboard_only, lock]
# Those whose first save is followed by a kill: the ones that save through a sheet.
KILLED = {"first_lines", "transfer", "new_account", "bill", "royalty", "bank_import", "sheet_at_150",
          "sheet_at_200", "keyboard_only"}


# -- the 10,000-line book -----------------------------------------------------

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
        amount = Decimal(cents).scaleb(-2) * (1 if deposit else -1)
        tx.append({"accountID": accounts[i % 7 == 0], "amount": f"@{amount}@",
                   "category": rnd.choice(income if deposit else spending[:-1]), "cleared": True,
                   "date": (today - timedelta(days=1 + i * 730 // lines)).strftime("%Y-%m-%dT%H:%M:%SZ"),
                   "id": f"0B000000-0000-4000-8000-{i:012X}", "kind": "deposit" if deposit else "expense",
                   "note": "", "payee": rnd.choice(payees)})
    book = {"accounts": [{"archived": False, "id": accounts[0], "kind": "Checking", "name": "Main checking",
                          "opening": "@250000.00@"},
                         {"archived": False, "id": accounts[1], "kind": "Savings", "name": "Savings",
                          "opening": "@1000.00@"}],
            "bills": [], "categories": [{"income": True, "name": n} for n in income] +
            [{"income": False, "name": n} for n in spending], "currency": "USD", "royalties": [],
            "transactions": tx, "version": 1}
    text = re.sub(r'"@([-0-9.]+)@"', r"\1", json.dumps(book, indent=2, sort_keys=True))
    with open(path, "w") as f:
        f.write(text)


# -- the run --------------------------------------------------------------------

class Run:
    def __init__(self, exe, out, kind):
        self.exe, self.out, self.kind = exe, out, kind
        os.makedirs(out, exist_ok=True)
        self.root = tempfile.mkdtemp(prefix="journeys-")
        self.book_path = None
        if kind == "big":
            self.book_path = os.path.join(self.root, "big.json")
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
                j.app.check_alive()
            except Killed as k:
                j.step("read the file after SIGKILL")
                k.check(j.before, j.app.book())
            print(f"PASS {title} ({time.monotonic() - t:.1f} s)", flush=True)
            shutil.rmtree(j.app.home, ignore_errors=True)
            return True
        except Exception as e:
            message = str(e) if isinstance(e, Failure) else traceback.format_exc()
            shot = os.path.join(self.out, f"{j.app.label}.png")
            try:
                self.display.screenshot(shot)
            except Exception as s:
                shot = f"(no screenshot: {s})"
            print(f"FAIL {title}\n  at step: {j.app.step}\n  {message}\n  screen: {shot}\n"
                  f"  window's stderr: {getattr(j.app, 'stderr_path', '-')}\n  its home and books: {j.app.home}",
                  flush=True)
            return False
        finally:
            if j.app.proc and j.app.proc.poll() is None:
                j.app.kill()


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
            if journey.__name__ in KILLED:
                failed += not run.one(journey, True)
    finally:
        run.display.close()
    print(f"{failed} failed" if failed else "all journeys passed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
