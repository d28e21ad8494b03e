"""A day without a mouse: every step is a key, in the real window."""

import datetime
import os
import subprocess
import unittest

import pyatspi
from zrt_window import Program, Screen, Shop, Window, wait_for

EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")
TODAY = datetime.date.today()


def setUpModule():
    unittest.enterModuleContext(Screen())


class ADayWithoutAMouse(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", EVENING)
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2")
        self.main.activate()

    def open(self, menu, name):
        """`menu`: the key of the menu's letter in the Latin layout, and how often Down is pressed."""
        self.main.activate()
        self.program.key(f"alt+{menu[0]}")
        wait_for("the menu", lambda: any(part.getRole() == pyatspi.ROLE_POPUP_MENU and self.program.visible(part)
                                         for part in self.main.all()))
        self.program.key(*["Down"] * menu[1], "Return")
        form = self.program.form(name)
        form.activate()
        return form

    def read_guide(self, heading):
        self.program.key("F1")
        guide = self.program.form("guide")
        guide.activate()
        wait_for(heading, lambda: guide.title == "Руководство: " + heading)
        heights = [part.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).height for part in guide.accessible]
        self.assertGreater(max(heights), 200)  # the page, and not only its buttons
        self.program.key("Escape")
        self.gone("guide")

    def gone(self, name):
        wait_for(f"{name} gone", lambda: not self.program.is_open(name))

    def test_from_the_invoice_to_the_evening_report(self):
        key = self.program.key

        # Goods come in and are posted.
        invoice = self.open(("l", 1), "frmDocPrN")
        key("Insert")
        picker = self.program.form("frmPLUpodb")
        picker.wait_for_focus("TextFind")
        key("Down", "Return")
        picker.wait_for_focus("TextKol")
        key("1", "KP_Decimal", "5", "Return")
        picker.wait_for_focus("TextPrice")
        key("ctrl+a", "8", "0", "Return")
        wait_for("the line", lambda: invoice.rows("DataGrid7") == 1)
        self.assertEqual(invoice.caption("LblSum"), "120,00")
        key("Escape")
        self.gone("frmPLUpodb")
        key("Escape")  # what isn't saved isn't left by a slip
        invoice.walk_to("RUNButton")
        key("space")
        self.program.box().activate()
        key("Return")
        wait_for("the posting", lambda: not invoice.is_enabled("RUNButton"))
        self.assertEqual(self.shop.ask("SELECT DTYPE,RUN,SUMM FROM JOURNAL ORDER BY ID DESC LIMIT 1"),
                         [["Приходная накладная", "OK", "120000"]])
        key("Escape")
        self.gone("frmDocPrN")

        # A sold line is annulled.
        receipt = self.shop.ask("SELECT COD FROM CHECK1")
        annulling = self.open(("comma", 2), "frmDelChek")
        annulling.walk_to("CmdKas_1")
        key("Return")
        wait_for("the receipt", lambda: annulling.rows("DataGrid1") == len(receipt))
        annulling.walk_to("DataGrid1", "shift+Tab")
        key("Home", "Return")
        wait_for("the line gone", lambda: annulling.rows("DataGrid1") < len(receipt))
        annulling.close()
        self.gone("frmDelChek")

        # The evening's report is made and printed.
        self.main.activate()
        key("ctrl+2")
        report = self.program.form("Form9")
        report.activate()
        key("F5")
        wait_for("the report", lambda: report.control("List1").childCount > 10)
        key("ctrl+p")
        preview = self.program.box()
        preview.activate()
        wait_for("the keyboard on the button", lambda: preview.focus().name == "Печать")
        key("ctrl+p")
        printing = Window(self.program, wait_for("the choice of a printer", lambda: next(
            (window for window in self.program.windows() if window.name == "Печать"), None)))
        printing.activate()
        # No printer here: the file's name is asked for, a name at hand stands in its field.
        for _ in range(10):
            if printing.focus().getRole() == pyatspi.ROLE_TEXT:
                break
            key("Tab")
        paper = os.path.join(self.program.home.name, "report.pdf")
        key("ctrl+a")
        self.program.type(paper)
        key("Return")
        wait_for("the file", lambda: os.path.exists(paper) and os.path.getsize(paper) > 1000)
        words = subprocess.run(["pdftotext", paper, "-"], check=True, capture_output=True, text=True).stdout
        self.assertIn("СИСТЕМНЫЙ ОТЧЁТ", words)
        report.activate()
        key("Escape")
        self.gone("Form9")

        # The day's table goes into a file.
        self.main.activate()
        key("ctrl+1", "ctrl+s")
        wait_for("the folders", lambda: self.main.is_shown("Dir1"))
        key("ctrl+s")
        box = self.program.box()
        self.assertIn("Открыть папку", box.buttons())
        box.activate()
        key("Return")
        folder = os.path.join(self.program.drives, "C", "Korvina", "Report")
        wait_for("the table's file", lambda: [name for name in os.listdir(folder) if name.endswith(".csv")])
        self.main.activate()
        key("alt+F4")
        self.assertEqual(self.program.exit_code(), 0)

    def test_tabs_windows_and_fields_by_their_keys(self):
        key, main = self.program.key, self.main
        tab = lambda: next(i for i, part in enumerate(main.control("TabStrip1"))
                           if part.getState().contains(pyatspi.STATE_FOCUSED))
        self.read_guide("Таблица продаж")
        main.activate()
        key("ctrl+f")
        main.wait_for_focus("Text1")

        # Along the strip, past the tab that opens a window of its own.
        for _ in range(80):
            if main.control("TabStrip1").getState().contains(pyatspi.STATE_FOCUSED):
                break
            key("shift+Tab")
        key("Right")
        report = self.program.form("Form9")
        wait_for("the strip still has the keyboard", lambda: tab() == 1)
        main.activate()
        key("Right")
        wait_for("the catalogue", lambda: main.is_shown("DataGrid1_0"))
        self.gone("Form9")
        key("ctrl+Tab")
        wait_for("the panels", lambda: tab() == 3)
        key("ctrl+Next")
        wait_for("the journal", lambda: tab() == 4)
        key("ctrl+Tab")
        wait_for("the sales", lambda: tab() == 0)
        key("ctrl+Prior")
        wait_for("the journal again", lambda: tab() == 4)
        key("ctrl+2")
        report = self.program.form("Form9")
        report.activate()
        key("F6")
        main.activate()
        key("F6")
        report.activate()
        key("ctrl+3")
        main.activate()
        self.gone("Form9")

        # Rows of the catalogue.
        main.wait_for_focus("DataGrid1_0")
        for name in ("F2", "Return", "Insert"):
            key(name)
            card = self.program.form("frmPLU")
            card.activate()
            if name == "F2":  # the guide can be read beside the card, though the card lets nothing else be used
                self.read_guide("Карточка товара")
                card.activate()
                key("ctrl+1", "F6")
                self.assertTrue(card.accessible.getState().contains(pyatspi.STATE_ACTIVE))
                self.assertTrue(main.is_shown("DataGrid1_0"))
            key("Tab", "Tab", "Escape")
            self.gone("frmPLU")
            main.activate()
            main.wait_for_focus("DataGrid1_0")
        key("Delete")
        self.program.box().activate()
        key("Escape")
        main.activate()
        key("F10")
        wait_for("a menu", lambda: any(part.getRole() == pyatspi.ROLE_POPUP_MENU and self.program.visible(part)
                                       for part in main.all()))


if __name__ == "__main__":
    unittest.main()
