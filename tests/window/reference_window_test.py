"""The reference data in the real window by keyboard alone: a product, a discount card with its holder."""

import unittest

import pyatspi
from zrt_window import Program, Screen, Shop, wait_for

CATALOGUE = "Справочники"


def setUpModule():
    unittest.enterModuleContext(Screen())


class ByKeyboard(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register")
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2")
        self.main.tab(CATALOGUE)
        self.main.wait_for_focus("DataGrid1_0")

    def open(self, button, name, first):
        """Presses a button of the main window; the keyboard must come to the field `first` of the form that opens."""
        self.main.walk_to(button)
        self.program.key("Return")
        form = self.program.form(name)
        form.wait_for_focus(first)
        return form

    def gone(self, name):
        wait_for(f"{name} gone", lambda: not self.program.is_open(name))

    def test_a_product(self):
        key, form = self.program.key, self.main
        cod = int(self.shop.ask("SELECT MAX(COD) FROM TOVAR")[0][0]) + 1

        def stored():
            return self.shop.ask(f"SELECT NAME,PRISE,BARCODE,N2,N5,N4 FROM TOVAR WHERE COD={cod}")

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
        wait_for("the saved product", lambda: stored() == [["Fuji", "4550", "0", "2", "3000", "0"]])
        self.gone("frmPLU")
        self.assertEqual(form.cell("DataGrid1_0", form.row("DataGrid1_0"), "Name"), "Fuji")

        # Found by typing in the list, changed, with a scanned barcode: fast digits.
        form.walk_to("DataGrid1_0")
        key("Home")
        self.program.type("fuji")
        self.assertEqual(form.text("TextFind_0"), "fuji")
        key("Return")
        card = self.program.form("frmPLU")
        self.assertEqual(card.title, "Карточка товара: Fuji")
        card.wait_for_focus("TextPrise")
        self.program.type("50")
        card.walk_to("TextBar")
        self.program.type("4820000099999")
        card.walk_to("OKButton")
        key("Return")
        wait_for("the changed product", lambda: stored() == [["Fuji", "5000", "4820000099999", "2", "3000", "0"]])

    def test_a_card_with_a_holder(self):
        key, form = self.program.key, self.main
        number = int(self.shop.ask("SELECT MAX(REZ) FROM DISCOUNT")[0][0]) + 1

        def stored():
            return self.shop.ask(f"SELECT BARCODE,PROZ FROM DISCOUNT WHERE REZ={number}")

        def height(window):
            return window.accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).height

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
        self.gone("frmDK")
        self.assertEqual(form.cell("DataGrid5", form.row("DataGrid5"), "CardBarcode"), "4820000012345")

        # Changed from the list: a refused discount is said and stays in the field, a kind is chosen by the arrows.
        card = self.open("DataGrid5", "frmDK", "TextSkd")
        wait_for("the low window", lambda: not card.is_shown("TxtHName") and height(card) == closed)
        self.program.type("1000")
        key("Return")
        self.assertEqual(self.program.box().text, "Проверьте скидку!")
        key("Return")
        card.wait_for_focus("TextSkd")
        key("Down", "Return")
        first_kind = self.shop.ask("SELECT MIN(CARD) FROM TOTALSKID")[0][0]
        wait_for("the kind", lambda: stored() == [["4820000012345", first_kind]])
        self.gone("frmDK")


if __name__ == "__main__":
    unittest.main()
