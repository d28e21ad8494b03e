"""A day without a mouse: every step is a key, in the real window; the reference data by keyboard alone."""

import datetime
import os
import subprocess
import unittest

import pyatspi
from zrt_window import Program, Screen, Shop, Window, extents, wait_for

EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")


def setUpModule():
    unittest.enterModuleContext(Screen())


class ADayWithoutAMouse(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", EVENING)
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2").activate()

    def wait_for_menu(self):
        wait_for("a menu", lambda: any(part.getRole() == pyatspi.ROLE_POPUP_MENU and self.program.visible(part)
                                       for part in self.main.all()))

    def open(self, menu, name):
        """`menu`: the key of the menu's letter in the Latin layout, and how often Down is pressed."""
        self.main.key(f"alt+{menu[0]}")
        self.wait_for_menu()
        self.program.key(*["Down"] * menu[1], "Return")
        form = self.program.form(name).activate()
        return form

    def read_guide(self, heading):
        self.program.key("F1")
        guide = self.program.form("guide").activate()
        wait_for(heading, lambda: guide.title == "Руководство: " + heading)
        # The page, and not only its buttons.
        self.assertGreater(max(extents(part).height for part in guide.accessible), 200)
        self.program.key("Escape")
        self.program.wait_gone("guide")

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
        self.program.wait_gone("frmPLUpodb")
        key("Escape")  # what isn't saved isn't left by a slip
        invoice.walk_to("RUNButton")
        key("space")
        self.program.box().key("Return")
        wait_for("the posting", lambda: not invoice.is_enabled("RUNButton"))
        self.assertEqual(self.shop.ask("SELECT DTYPE,RUN,SUMM FROM JOURNAL ORDER BY ID DESC LIMIT 1"),
                         [["Приходная накладная", "OK", "120000"]])
        key("Escape")
        self.program.wait_gone("frmDocPrN")

        # The journal opens it again, with its movements.
        self.main.key("ctrl+5")
        self.main.wait_for_focus("DataGrid6")
        key("Return")
        again = self.program.form("frmDocPrN")
        again.menu("Документ", "Движения документа")
        self.assertEqual(self.program.form("frmRegistr").rows("DataGrid8"), 1)
        for name in ("frmRegistr", "frmDocPrN"):
            self.program.form(name).key("Escape")
            self.program.wait_gone(name)

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
        self.program.wait_gone("frmDelChek")

        # The evening's report is made and printed.
        self.main.key("ctrl+2")
        report = self.program.form("Form9")
        report.key("F5")
        wait_for("the report", lambda: report.control("List1").childCount > 10)
        key("ctrl+p")
        preview = self.program.box().activate()
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
        report.key("Escape")
        self.program.wait_gone("Form9")

        # The day's table goes into a file.
        self.main.key("ctrl+1", "ctrl+s")
        wait_for("the folders", lambda: self.main.is_shown("Dir1"))
        key("ctrl+s")
        box = self.program.box()
        self.assertIn("Открыть папку", box.buttons())
        box.key("Return")
        folder = os.path.join(self.program.drives, "C", "Korvina", "Report")
        wait_for("the table's file", lambda: [name for name in os.listdir(folder) if name.endswith(".csv")])
        self.main.key("alt+F4")
        self.assertEqual(self.program.exit_code(), 0)

    def test_tabs_windows_and_fields_by_their_keys(self):
        key, main = self.program.key, self.main
        tab = lambda: next(i for i, part in enumerate(main.control("TabStrip1"))
                           if part.getState().contains(pyatspi.STATE_FOCUSED))
        self.read_guide("Таблица продаж")
        main.key("ctrl+f")
        main.wait_for_focus("Text1")

        # Along the strip, past the tab that opens a window of its own.
        for _ in range(80):
            if main.control("TabStrip1").getState().contains(pyatspi.STATE_FOCUSED):
                break
            key("shift+Tab")
        key("Right")
        report = self.program.form("Form9")
        wait_for("the strip still has the keyboard", lambda: tab() == 1)
        main.key("Right")
        wait_for("the catalogue", lambda: main.is_shown("DataGrid1_0"))
        self.program.wait_gone("Form9")
        for name, at in (("ctrl+Tab", 3), ("ctrl+Next", 4), ("ctrl+Tab", 0), ("ctrl+Prior", 4)):
            key(name)
            wait_for(f"tab {at}", lambda: tab() == at)
        key("ctrl+2")
        report = self.program.form("Form9")
        report.key("F6")
        main.key("F6")
        report.key("ctrl+3")
        main.activate()
        self.program.wait_gone("Form9")

        # Rows of the catalogue.
        main.wait_for_focus("DataGrid1_0")
        for name in ("F2", "Return", "Insert"):
            key(name)
            card = self.program.form("frmPLU").activate()
            if name == "F2":  # the guide can be read beside the card, though the card lets nothing else be used
                self.read_guide("Карточка товара")
                card.key("ctrl+1", "F6")
                self.assertTrue(card.accessible.getState().contains(pyatspi.STATE_ACTIVE))
                self.assertTrue(main.is_shown("DataGrid1_0"))
            key("Tab", "Tab", "Escape")
            self.program.wait_gone("frmPLU")
            main.activate()
            main.wait_for_focus("DataGrid1_0")
        key("Delete")
        self.program.box().key("Escape")
        main.key("F10")
        self.wait_for_menu()


class ReferenceData(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register")
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2")
        self.main.tab("Справочники")
        self.main.wait_for_focus("DataGrid1_0")

    def open(self, button, name, first):
        """Walks to a button of the main window, or a table, and presses Enter; the form's field `first` has the keyboard."""
        self.main.walk_to(button)
        self.program.key("Return")
        form = self.program.form(name)
        form.wait_for_focus(first)
        return form

    def test_a_product(self):
        key, form = self.program.key, self.main
        cod = int(self.shop.ask("SELECT MAX(COD) FROM TOVAR")[0][0]) + 1

        # The name first, the price by Tab, the rest further on.
        card = self.open("CmdNew", "frmPLU", "TextName")
        self.program.type("Fuji")  # the screen knows no Cyrillic keys
        key("Tab")
        card.wait_for_focus("TextPrise")
        self.program.type("45,50")
        card.walk_to("Combo1")
        key("Down", "Down")
        card.walk_to("CmdKVP")
        key("space")
        card.wait_for_focus("ListKVP")
        key("Down", "Return")
        wait_for("the list's end", lambda: not card.is_shown("ListKVP"))
        card.walk_to("OKButton")
        key("Return")
        self.program.wait_gone("frmPLU")
        self.assertEqual(self.shop.ask(f"SELECT NAME,PRISE,N2,N5 FROM TOVAR WHERE COD={cod}"),
                         [["Fuji", "4550", "2", "3000"]])
        self.assertEqual(form.cell("DataGrid1_0", form.row("DataGrid1_0"), "Name"), "Fuji")

    def test_a_card_with_a_holder(self):
        key, form = self.program.key, self.main
        number = int(self.shop.ask("SELECT MAX(REZ) FROM DISCOUNT")[0][0]) + 1

        def stored():
            return self.shop.ask(f"SELECT BARCODE,PROZ FROM DISCOUNT WHERE REZ={number}")

        def height(window):
            return extents(window.accessible).height

        # The reader types the barcode and Enter; what stands in the discount is selected and typed over.
        card = self.open("CmdDKNew", "frmDK", "TextName")
        closed = height(card)
        self.program.type("4820000012345")
        key("Return")
        card.wait_for_focus("TextSkd")
        self.program.type("15")
        card.walk_to("CheckHolder")
        key("space")
        wait_for("the higher window", lambda: card.is_shown("TxtHName") and height(card) > closed + 100)
        key("Tab")
        card.wait_for_focus("TxtHName")
        self.program.type("O'Hara")
        key("Tab", "Tab")
        self.program.type("555-01-02")
        key("Return")
        wait_for("the saved card", lambda: stored() == [["4820000012345", "15"]])
        self.assertEqual(self.shop.ask(f"SELECT CARD,NAME,TEL FROM DKHOLDER WHERE ID={number}"),
                         [["4820000012345", "OHara", "555-01-02"]])
        self.program.wait_gone("frmDK")
        self.assertEqual(form.cell("DataGrid5", form.row("DataGrid5"), "CardBarcode"), "4820000012345")

        # Changed from the list: a kind is chosen by the arrows.
        card = self.open("DataGrid5", "frmDK", "TextSkd")
        wait_for("the low window", lambda: not card.is_shown("TxtHName") and height(card) == closed)
        key("Down", "Return")
        first_kind = self.shop.ask("SELECT MIN(CARD) FROM TOTALSKID")[0][0]
        wait_for("the kind", lambda: stored() == [["4820000012345", first_kind]])
        self.program.wait_gone("frmDK")


if __name__ == "__main__":
    unittest.main()
