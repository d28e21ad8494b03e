"""The sales tab in the real window: filters by mouse and keyboard, saving a table, annulling, clearing, while a terminal
sells into the same database."""

import datetime
import os
import subprocess
import time
import unittest

from zrt_window import Program, Screen, Shop, wait_for

EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")
TODAY = datetime.date.today()
SHIFT = f"DATETIME > '{TODAY} 08:00:00' AND DATETIME < '{TODAY + datetime.timedelta(days=1)} 07:59:59'"


def setUpModule():
    unittest.enterModuleContext(Screen())


def shown(amount, places=2):
    return f"{float(amount):,.{places}f}".replace(",", "\u00a0").replace(".", ",")


class Sales(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "normal", "--now", EVENING)
        self.program = self.enterContext(Program())
        self.form = self.program.form("Form2")
        self.form.activate()

    def caption(self, name, text):
        wait_for(f"{name} {text}", lambda: self.form.caption(name) == text)

    def count(self, condition):
        return int(self.shop.ask(f"SELECT COUNT(*) FROM PROD WHERE {condition}")[0][0])

    def total(self, condition):
        return shown(self.shop.ask(f"SELECT SUM(KOL*PRISE/1000-SKID)/1000 FROM PROD WHERE {condition}")[0][0])

    def test_filters_by_keyboard_and_mouse(self):
        form = self.form
        form.click("DataGrid3")
        self.program.key("Home", "Down", "Return")
        wait_for("the keyboard on the product's button", lambda: form.has_focus("CmdFiltr"))
        code = form.text("Text1")
        self.assertEqual([form.text(name) for name in ("Text1", "Text2", "Text7")],
                         [form.cell("DataGrid3", 1, header) for header in ("Cod", "Num", "Ter")])
        self.program.key("Return")
        wait_for("the product", lambda: form.rows("DataGrid3") == self.count(f"COD={code} AND {SHIFT}"))
        self.caption("LblSum", self.total(f"COD={code} AND {SHIFT}"))
        self.assertEqual(form.text("Text7"), "")

        # A double click on an order opens it.
        form.click_cell("DataGrid4", form.rows("DataGrid4") - 1, 0, times=2)
        wait_for("an order", lambda: form.caption("LblInf").startswith("заказ № "))
        order, terminal = form.text("Text2"), form.text("Text7")
        self.assertEqual(form.rows("DataGrid3"), self.count(f"NUM={order} AND TER={terminal}"))
        self.caption("LblSum", self.total(f"NUM={order} AND TER={terminal}"))
        wait_for("the keyboard in the lines", lambda: form.has_focus("DataGrid3"))

        form.click("CmdDG_1")
        wait_for("the deletions", lambda: form.is_shown("DataGrid11") and not form.is_shown("DataGrid3"))
        self.assertFalse(form.is_enabled("CmdFilCheck"))

        form.set_text("Text7", "касса")
        form.click("CmdTerm")
        box = self.program.box()
        self.assertEqual(box.text, "Введите целое числовое значение!")
        box.press("OK")
        wait_for("the field cleared", lambda: form.text("Text7") == "" and form.has_focus("Text7"))

    def test_a_table_is_saved(self):
        form = self.form
        folder = os.path.join(self.program.drives, "C", "Korvina", "Report")
        # Where nothing can be written the box names the file, and another folder can be chosen.
        for first, missing in ((r"^Ошибка выполнения. Действие прервано.\n", True), ("^Выгрузка в файл ", False)):
            if missing:
                os.rename(folder, folder + ".away")
            else:
                os.rename(folder + ".away", folder)
                self.program.key("Escape")
                wait_for("the folders gone", lambda: not form.is_shown("Dir1"))
            form.click("CmdFileCSV")
            wait_for("the folders", lambda: form.is_shown("Dir1") and form.has_focus("Dir1"))
            self.program.key("Return")
            box = self.program.box()
            self.assertRegex(box.text, first + r"C:\\Korvina\\Report\\ProdData_\d{8}_\d{6}\.csv")
            box.press("OK")
            self.assertEqual(len(os.listdir(folder + (".away" if missing else ""))), 0 if missing else 1)
        wait_for("the folders gone", lambda: not form.is_shown("Dir1"))

    def test_a_line_of_an_open_receipt_is_annulled(self):
        first, *others = [code for code, in self.shop.ask("SELECT COD FROM CHECK2")]
        self.form.menu("Обработки", "Менеджер Аннуляций")
        window = self.program.form("frmDelChek")
        window.activate()
        window.click("CmdKas_2")
        wait_for("the receipt", lambda: window.rows("DataGrid1") == 1 + len(others))
        window.click_cell("DataGrid1", 0, 1)
        self.program.key("Escape")
        wait_for("the line gone", lambda: window.rows("DataGrid1") == len([code for code in others if code != first]))
        self.assertTrue(self.program.is_open("frmDelChek"))

    def test_terminals_sell_on_while_the_operator_looks(self):
        """What is shown stays whole; what was sold meanwhile comes with the next query; the terminals never wait."""
        form = self.form
        terminal = subprocess.Popen([os.environ["ZRT_TERMINAL"], "--host", os.environ["ZRT_HOST"], "--schema", "zrt",
                                     "--terminal", "7", "--orders", "40", "--pause", "5"])
        try:
            while terminal.poll() is None:
                rows = form.rows("DataGrid3")
                for button in ("CmdDat", "CmdNOpl", "CmdDG_2", "CmdDG_0"):
                    form.press(button)
                    wait_for("an answer", lambda: form.caption("LblInf") == TODAY.strftime("%d.%m.%Y"))
                self.assertGreaterEqual(form.rows("DataGrid3"), rows)
        finally:
            terminal.wait()
        self.assertEqual(terminal.returncode, 0)
        sold = self.count(SHIFT)
        form.press("CmdDat")
        wait_for("all that was sold", lambda: form.rows("DataGrid3") == sold)
        self.caption("LblSum", self.total(SHIFT))

    def test_esc_in_a_field_puts_the_window_away_and_the_program_lives(self):
        self.form.click("Text2")
        self.program.key("Escape")
        wait_for("no window", lambda: not self.program.is_open("Form2"))
        time.sleep(0.5)
        self.assertFalse(self.program.has_ended())


if __name__ == "__main__":
    unittest.main()
