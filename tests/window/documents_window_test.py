"""Stock documents in the real window: several kinds side by side, lines from the picker and the scanner by keyboard, posting,
the journal, the register."""

import datetime
import unittest

from zrt_window import Program, Screen, Shop, wait_for

YESTERDAY = datetime.datetime.now() - datetime.timedelta(days=1)
JOURNAL = "Журнал документов"


def setUpModule():
    unittest.enterModuleContext(Screen())


class Documents(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", YESTERDAY.strftime("%Y-%m-%d 21:30:00"))
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2")

    def open(self, *menu):
        self.main.menu("Документы", *menu)

    def add_by_picker(self, form, find, quantity, price=None):
        """By keyboard alone, from the document's own button to the delivered line."""
        before = form.rows("DataGrid7")
        picker = self.program.form("frmPLUpodb")
        wait_for("the keyboard in the search", lambda: picker.has_focus("TextFind"))
        picker.set_text("TextFind", find)
        self.program.key("Return")
        wait_for("the keyboard in the quantity", lambda: picker.has_focus("TextKol"))
        self.program.type(quantity)
        self.program.key("Return")
        if price is not None:
            wait_for("the keyboard in the price", lambda: picker.has_focus("TextPrice"))
            self.program.type(price)
        self.program.key("Return")
        wait_for("the line", lambda: form.rows("DataGrid7") == before + 1)

    def post(self, form):
        form.press("RUNButton")
        self.program.answer("Провести документ?")

    def test_goods_come_in_and_go_out(self):
        names = [row[0] for row in self.shop.ask("SELECT NAME FROM TOVAR WHERE N6 IS NULL GROUP BY COD ORDER BY COD LIMIT 3")]
        cod = int(self.shop.ask("SELECT MIN(COD) FROM TOVAR WHERE N6 IS NULL AND LENGTH(BARCODE)>5")[0][0])
        barcode = self.shop.ask(f"SELECT BARCODE FROM TOVAR WHERE COD={cod}")[0][0]

        self.open("Приходная накладная")
        incoming = self.program.form("frmDocPrN")
        self.assertEqual(incoming.title, "ПРИХОДНАЯ НАКЛАДНАЯ - НОВЫЙ ДОКУМЕНТ")
        incoming.press("CmdTov")
        for name in names:
            self.add_by_picker(incoming, name, "100", "50,5")
        self.program.key("Escape")
        wait_for("the picker's end", lambda: not self.program.is_open("frmPLUpodb"))
        # A scanner types the digits and Enter.
        incoming.press("CmdBar")
        self.program.box().activate()
        self.program.type(barcode)
        self.program.key("Return")
        dialog = self.program.form("frmPLUdial")
        wait_for("the keyboard in the quantity", lambda: dialog.has_focus("TextKol"))
        self.program.type("7")
        self.program.key("Return")
        wait_for("the keyboard in the price", lambda: dialog.has_focus("TextPrice"))
        self.program.key("Ctrl+a")
        self.program.type("10")
        self.program.key("Return")
        wait_for("the line", lambda: incoming.rows("DataGrid7") == 4)
        self.assertEqual(incoming.caption("LblSum"), "15\u00a0220,00")
        incoming.set_text("TextKlient", "ООО Рассвет")
        incoming.set_text("TextPrim", "по договору 15")
        self.post(incoming)
        wait_for("the posted rows", lambda: self.shop.ask("SELECT COUNT(*) FROM REGISTR WHERE RUN=1 AND DOCTYP=1 AND "
                                                          "DOC=(SELECT MAX(ID) FROM JOURNAL)") == [["4"]])
        self.assertFalse(incoming.is_enabled("RUNButton"))

        # Other kinds beside it; a second one of the kind is refused.
        self.open("Приходная накладная")
        self.program.answer("существует открытая Приходная Накладная!")
        self.open("Дневной Отчёт (реализация)")
        report = self.program.form("frmDocDO")
        report.press("CmdDat")
        wait_for("yesterday's sales", lambda: report.rows("DataGrid7") > 10)
        self.open("Инвентаризация")
        count = self.program.form("frmDocIN")
        count.press("CmdDat")
        wait_for("the balances", lambda: count.rows("DataGrid7") >= 3)
        count.click_cell("DataGrid7", 0, 1, times=2)
        box = self.program.box()
        self.assertIn("учётный остаток = ", box.text)
        box.enter("1")
        box.press("OK")
        wait_for("the count", lambda: count.cell("DataGrid7", 0, "Actual") == "1,000")
        for form in (count, report):
            form.press("CancelButton")
            self.program.answer("Сохранить документ?", "Отмена")
        wait_for("nothing left of the count", lambda: self.shop.ask("SELECT COUNT(*) FROM DOCINVENT WHERE DOC=-1") == [["0"]])
        incoming.press("CancelButton")
        wait_for("the invoice's end", lambda: not self.program.is_open("frmDocPrN"))

        # From the journal by Enter, and the register.
        self.main.tab(JOURNAL)
        wait_for("the journal", lambda: self.main.is_shown("DataGrid6"))
        last = self.main.rows("DataGrid6") - 1
        wait_for("the newest document", lambda: self.main.row("DataGrid6") == last)
        self.assertEqual(self.main.cell("DataGrid6", last, "Klient"), "ООО Рассвет")
        self.main.activate()
        wait_for("the keyboard in the journal", lambda: self.main.has_focus("DataGrid6"))
        self.program.key("Return")
        again = self.program.form("frmDocPrN")
        self.assertTrue(again.title.startswith("ПРИХОДНАЯ НАКЛАДНАЯ №"))
        self.assertEqual(again.rows("DataGrid7"), 4)
        again.menu("Документ", "Движения документа")
        movements = self.program.form("frmRegistr")
        self.assertEqual(movements.rows("DataGrid8"), 4)
        movements.activate()
        self.program.key("Escape")
        wait_for("the movements' end", lambda: not self.program.is_open("frmRegistr"))
        again.press("CancelButton")
        self.main.menu("Отчёты", "Открыть регистр остатков")
        register = self.program.form("FormJrnl")
        self.assertEqual(register.rows("DataGrid88"), int(self.shop.ask("SELECT COUNT(*) FROM REGISTR")[0][0]))
        register.close()
        self.main.close()
        self.assertEqual(self.program.exit_code(), 0)


if __name__ == "__main__":
    unittest.main()
