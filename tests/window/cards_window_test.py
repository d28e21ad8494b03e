"""Discount cards and their kinds in the real window, by keyboard: the reader's Enter, the holder's part, Esc."""

import unittest

from zrt_window import Program, Screen, Shop, wait_for

CATALOGUE = "Справочники"


def setUpModule():
    unittest.enterModuleContext(Screen())


class ByKeyboard(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "normal")
        self.program = self.enterContext(Program())
        self.form = self.program.form("Form2")
        self.form.tab(CATALOGUE)
        wait_for("the keyboard in the catalogue", lambda: self.form.has_focus("DataGrid1_0"))

    def focus_by_tab(self, window, name):
        for _ in range(40):
            if window.has_focus(name):
                return
            self.program.key("Tab")
        self.fail(f"Tab never reaches {name}")

    def height(self, form):
        return form.accessible.queryComponent().getExtents(0).height

    def test_a_card_with_a_holder(self):
        program, form = self.program, self.form
        number = int(self.shop.ask("SELECT MAX(REZ) FROM DISCOUNT")[0][0]) + 1

        def stored():
            return self.shop.ask(f"SELECT BARCODE,PROZ FROM DISCOUNT WHERE REZ={number}")

        self.focus_by_tab(form, "CmdDKNew")
        program.key("Return")
        card = program.form("frmDK")
        self.assertEqual(card.title, "Дисконтная карта: - НОВАЯ")
        wait_for("the keyboard in the barcode", lambda: card.has_focus("TextName"))
        self.assertEqual(card.caption("LabelCod"), str(number))
        closed = self.height(card)
        # The reader types the barcode and Enter; what stands in the discount is selected and typed over.
        program.type("4820000012345")
        program.key("Return")
        wait_for("the keyboard in the discount", lambda: card.has_focus("TextSkd"))
        program.type("15")
        self.focus_by_tab(card, "CheckHolder")
        program.key("space")
        wait_for("the holder's part", lambda: card.is_shown("TxtHName"))
        wait_for("the higher window", lambda: self.height(card) > closed + 100)
        program.key("Tab")
        wait_for("the keyboard in the name", lambda: card.has_focus("TxtHName"))
        program.type("O'Hara")
        program.key("Tab", "Tab")
        program.type("555-01-02")
        program.key("Return")
        wait_for("the saved card", lambda: stored() == [["4820000012345", "15"]])
        self.assertEqual(self.shop.ask(f"SELECT CARD,NAME,TEL FROM DKHOLDER WHERE ID={number}"),
                         [["4820000012345", "OHara", "555-01-02"]])
        wait_for("the main window", lambda: not program.is_open("frmDK"))
        self.assertEqual(form.cell("DataGrid5", form.row("DataGrid5"), "CardBarcode"), "4820000012345")

        # Changed from the list: a kind is chosen by the arrows, a refused discount is said and stays in the field.
        self.focus_by_tab(form, "DataGrid5")
        program.key("Return")
        card = program.form("frmDK")
        wait_for("the keyboard in the discount", lambda: card.has_focus("TextSkd"))
        self.assertFalse(card.is_shown("TxtHName"))
        wait_for("the low window", lambda: self.height(card) == closed)
        program.type("1000")
        program.key("Return")
        box = program.box()
        self.assertEqual(box.text, "Проверьте скидку!")
        program.key("Return")
        wait_for("the keyboard in the discount", lambda: card.has_focus("TextSkd"))
        program.key("Down", "Return")
        first_kind = self.shop.ask("SELECT MIN(CARD) FROM TOTALSKID")[0][0]
        wait_for("the kind", lambda: stored() == [["4820000012345", first_kind]])
        # Esc leaves the card as it is, also from the list.
        wait_for("the main window", lambda: not program.is_open("frmDK"))
        program.key("Return")
        card = program.form("frmDK")
        wait_for("the keyboard in the discount", lambda: card.has_focus("TextSkd"))
        program.type("7")
        program.key("Escape")
        wait_for("the main window", lambda: not program.is_open("frmDK"))
        self.assertEqual(stored(), [["4820000012345", first_kind]])

    def test_a_rule(self):
        program, form = self.program, self.form
        rules = self.shop.ask("SELECT COUNT(*),MAX(ID)+1 FROM TOTALSKID")[0]
        form.click("CmdVDk")
        kinds = program.form("frmVDk")
        wait_for("the rules", lambda: kinds.rows("DataGrid05") == int(rules[0]))
        self.assertFalse(kinds.is_enabled("CmdOk"))
        self.focus_by_tab(kinds, "CmdNew")
        program.key("Return")
        wait_for("the keyboard in the percentage", lambda: kinds.has_focus("Text2"))
        program.type("12")
        self.assertEqual(kinds.text("Text2"), "12")
        kinds.set_text("Text1", "50")
        program.key("Return")
        box = program.box()
        self.assertEqual((box.title, box.text), ("ZASTAVA", "Код Вида Дисконтной карты должен быть > 100!"))
        program.key("Return")
        wait_for("the keyboard in the kind", lambda: kinds.has_focus("Text1"))
        self.assertEqual(kinds.text("Text1"), "151")
        program.key("Return")
        wait_for("the new rule", lambda: self.shop.ask(f"SELECT CARD,TOV,PROZ,TOTAL FROM TOTALSKID WHERE ID={rules[1]}") ==
                 [["151", "0", "12", "0"]])
        wait_for("the keyboard in the rules", lambda: kinds.has_focus("DataGrid05"))
        program.key("Home")
        wait_for("the first rule", lambda: kinds.row("DataGrid05") == 0)
        program.key("Escape")
        wait_for("the main window", lambda: not program.is_open("frmVDk"))
        form.close()
        self.assertEqual(program.exit_code(), 0)


if __name__ == "__main__":
    unittest.main()
