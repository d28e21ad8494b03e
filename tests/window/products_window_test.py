"""The catalogue in the real window by keyboard alone: a product is made, copied, found, changed and deleted."""

import unittest

from zrt_window import Program, Screen, Shop, wait_for

CATALOGUE = "Справочники"


def setUpModule():
    unittest.enterModuleContext(Screen())


class ByKeyboard(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register")

    def product(self, code):
        return self.shop.ask(f"SELECT NAME,PRISE,BARCODE,N2,N5,N4 FROM TOVAR WHERE COD={code}")

    def test_a_product_from_its_making_to_its_end(self):
        last = int(self.shop.ask("SELECT MAX(COD) FROM TOVAR")[0][0])
        with Program() as program:
            form = program.form("Form2")
            form.tab(CATALOGUE)
            wait_for("the keyboard in the catalogue", lambda: form.has_focus("DataGrid1_0"))

            def focus_by_tab(window, name):
                for _ in range(40):
                    if window.has_focus(name):
                        return
                    program.key("Tab")
                self.fail(f"Tab never reaches {name}")

            # Made: the name first, the price by Tab, the rest further on; Enter in the price saves.
            focus_by_tab(form, "CmdNew")
            program.key("Return")
            card = program.form("frmPLU")
            wait_for("the keyboard in the name", lambda: card.has_focus("TextName"))
            program.key("Ctrl+a")
            # The screen knows no Cyrillic keys.
            program.type("Fuji")
            program.key("Tab")
            wait_for("the keyboard in the price", lambda: card.has_focus("TextPrise"))
            program.type("45,50")
            focus_by_tab(card, "Combo1")
            program.key("Down", "Down")
            focus_by_tab(card, "CmdKVP")
            program.key("space")
            wait_for("the list of parts", lambda: card.has_focus("ListKVP"))
            program.key("Down", "Return")
            wait_for("the list's end", lambda: not card.is_shown("ListKVP"))
            focus_by_tab(card, "OKButton")
            program.key("Return")
            wait_for("the saved product", lambda: self.product(last + 1))
            self.assertEqual(self.product(last + 1), [["Fuji", "4550", "0", "2", "3000", "0"]])
            wait_for("the main window", lambda: not program.is_open("frmPLU"))
            self.assertEqual(form.cell("DataGrid1_0", form.row("DataGrid1_0"), "Name"), "Fuji")

            # Found by typing in the list, changed, with a scanned barcode: fast digits.
            focus_by_tab(form, "DataGrid1_0")
            program.key("Home")
            program.type("fuji")
            self.assertEqual(form.text("TextFind_0"), "fuji")
            program.key("Return")
            card = program.form("frmPLU")
            self.assertEqual(card.title, "Карточка товара: Fuji")
            wait_for("the keyboard in the price", lambda: card.has_focus("TextPrise"))
            program.type("50")
            focus_by_tab(card, "TextBar")
            program.type("4820000099999")
            focus_by_tab(card, "OKButton")
            program.key("Return")
            wait_for("the changed product", lambda: self.product(last + 1) == [
                ["Fuji", "5000", "4820000099999", "2", "3000", "0"]])

            # Copied: the copy has a code of its own and no barcode.
            wait_for("the main window", lambda: not program.is_open("frmPLU"))
            focus_by_tab(form, "CmdCopy")
            program.key("Return")
            card = program.form("frmPLU")
            wait_for("the keyboard in the name", lambda: card.has_focus("TextName"))
            program.type("Fuji baked")
            program.key("Return")
            wait_for("the copy", lambda: self.product(last + 2))
            self.assertEqual(self.product(last + 2), [["Fuji baked", "5000", "0", "2", "3000", "0"]])

            # Another's barcode is refused; the product is gone until the card is mended, and the operator sees why.
            wait_for("the main window", lambda: not program.is_open("frmPLU"))
            focus_by_tab(form, "CmdShow")
            program.key("Return")
            card = program.form("frmPLU")
            wait_for("the keyboard in the price", lambda: card.has_focus("TextPrise"))
            focus_by_tab(card, "TextBar")
            program.type("4820000099999")
            focus_by_tab(card, "OKButton")
            program.key("Return")
            box = program.box()
            self.assertIn("Штрихкод НЕ уникален!", box.text)
            self.assertEqual(self.product(last + 2), [])
            program.key("Return")
            wait_for("the keyboard in the barcode", lambda: card.has_focus("TextBar"))
            program.key("BackSpace")
            focus_by_tab(card, "OKButton")
            program.key("Return")
            wait_for("the mended product", lambda: self.product(last + 2))

            # Deleted.
            wait_for("the main window", lambda: not program.is_open("frmPLU"))
            focus_by_tab(form, "CmdDelPLU")
            program.key("Return")
            box = program.box()
            self.assertEqual(box.text, f"Удалить товар 'Fuji baked', код {last + 2}?")
            program.key("Return")
            wait_for("the deletion", lambda: not self.product(last + 2))
            form.close()
            self.assertEqual(program.exit_code(), 0)


if __name__ == "__main__":
    unittest.main()
