"""Stock documents in the real window: two kinds side by side, a scanner's digits, a double click on a count, a document
from the journal by Enter."""

import datetime
import unittest

from zrt_window import Program, Screen, Shop, wait_for

YESTERDAY = datetime.datetime.now() - datetime.timedelta(days=1)


def setUpModule():
    unittest.enterModuleContext(Screen())


class Documents(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", YESTERDAY.strftime("%Y-%m-%d 21:30:00"))
        self.program = self.enterContext(Program())
        self.main = self.program.form("Form2")

    def test_goods_come_in_and_are_counted(self):
        barcode = self.shop.ask("SELECT BARCODE FROM TOVAR WHERE N6 IS NULL AND LENGTH(BARCODE)>5 ORDER BY COD LIMIT 1")[0][0]
        self.main.menu("Документы", "Приходная накладная")
        incoming = self.program.form("frmDocPrN")
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
        wait_for("the line", lambda: incoming.rows("DataGrid7") == 1)
        incoming.set_text("TextKlient", "ООО Рассвет")
        incoming.press("RUNButton")
        self.program.answer("Провести документ?")
        wait_for("the posting", lambda: not incoming.is_enabled("RUNButton"))

        self.main.menu("Документы", "Инвентаризация")
        count = self.program.form("frmDocIN")
        count.press("CmdDat")
        wait_for("the balances", lambda: count.rows("DataGrid7") >= 1)
        count.click_cell("DataGrid7", 0, 1, times=2)
        box = self.program.box()
        self.assertIn("учётный остаток = ", box.text)
        box.enter("1")
        box.press("OK")
        wait_for("the count", lambda: count.cell("DataGrid7", 0, "Actual") == "1,000")
        count.press("CancelButton")
        self.program.answer("Сохранить документ?", "Отмена")
        incoming.press("CancelButton")
        wait_for("the invoice's end", lambda: not self.program.is_open("frmDocPrN"))

        self.main.tab("Журнал документов")
        wait_for("the journal", lambda: self.main.is_shown("DataGrid6"))
        self.main.activate()
        wait_for("the keyboard in the journal", lambda: self.main.has_focus("DataGrid6"))
        self.program.key("Return")
        again = self.program.form("frmDocPrN")
        self.assertEqual(again.text("TextKlient"), "ООО Рассвет")
        again.menu("Документ", "Движения документа")
        self.assertEqual(self.program.form("frmRegistr").rows("DataGrid8"), 1)


if __name__ == "__main__":
    unittest.main()
