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
        form, day = self.form, TODAY.strftime("%d.%m.%Y")
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
        self.caption("LblInf", day)
        form.click("CmdDG_2")
        wait_for("the order detail", lambda: form.is_shown("DataGrid2"))
        self.caption("LblInf", day)
        form.click("CmdAll")
        self.caption("LblInf", "за весь период")
        self.assertFalse(form.is_enabled("CmdDat"))

        form.set_text("Text7", "касса")
        form.click("CmdTerm")
        box = self.program.box()
        self.assertEqual(box.text, "Введите целое числовое значение!")
        box.press("OK")
        wait_for("the field cleared", lambda: form.text("Text7") == "" and form.has_focus("Text7"))

    def test_a_table_is_saved(self):
        form = self.form
        form.click("CmdFileCSV")
        wait_for("the folders", lambda: form.is_shown("Dir1") and form.has_focus("Dir1"))
        self.program.key("Return")
        box = self.program.box()
        self.assertRegex(box.text, r"^Выгрузка в файл C:\\Korvina\\Report\\ProdData_\d{8}_\d{6}\.csv\n"
                                   r"успешно завершена!$")
        box.press("OK")
        wait_for("the folders gone", lambda: not form.is_shown("Dir1"))
        folder = os.path.join(self.program.drives, "C", "Korvina", "Report")
        name, = os.listdir(folder)
        with open(os.path.join(folder, name), encoding="cp1251", newline="") as file:
            lines = file.read().split("\r\n")
        self.assertEqual(len(lines), self.count(SHIFT) + 6)
        self.assertEqual(lines[-2], ";;;;ИТОГО:;" + self.total(SHIFT))

        # Where nothing can be written the box names the file, and another folder can be chosen.
        os.rename(folder, folder + ".away")
        form.click("CmdFileCSV")
        wait_for("the folders", lambda: form.has_focus("Dir1"))
        self.program.key("Return")
        box = self.program.box()
        self.assertRegex(box.text, r"^Ошибка выполнения. Действие прервано.\nC:\\Korvina\\Report\\ProdData_.*csv$")
        box.press("OK")
        self.assertTrue(form.is_shown("Dir1"))
        self.program.key("Escape")
        wait_for("the folders gone", lambda: not form.is_shown("Dir1"))

    def test_a_line_of_an_open_receipt_is_annulled(self):
        lines = self.shop.ask("SELECT COD,NAME FROM CHECK2")
        self.form.menu("Обработки", "Менеджер Аннуляций")
        window = self.program.form("frmDelChek")
        window.activate()
        window.click("CmdKas_2")
        wait_for("the receipt", lambda: window.rows("DataGrid1") == len(lines))
        window.click_cell("DataGrid1", 0, 1)
        self.program.key("Escape")
        wait_for("the line gone", lambda: window.rows("DataGrid1") == sum(1 for code, _ in lines if code != lines[0][0]))
        self.assertTrue(self.program.is_open("frmDelChek"))
        self.assertEqual(self.shop.ask("SELECT COD,NAME,TER,KAS,REZ FROM SPION WHERE TER=2 AND KAS=0 AND REZ=0 AND "
                                       f"DATETIME LIKE '{TODAY:%d.%m.%Y}%' AND COD={lines[0][0]}")[-1],
                         [*lines[0], "2", "0", "0"])
        window.close()
        wait_for("the window gone", lambda: not self.program.is_open("frmDelChek"))

    def test_a_receipt_leaves_the_screen_after_twenty_seconds(self):
        self.form.menu("Обработки", "Менеджер Аннуляций")
        window = self.program.form("frmDelChek")
        window.activate()
        window.click("CmdKas_1")
        wait_for("the receipt", lambda: window.rows("DataGrid1") > 0)
        begun = time.monotonic()
        time.sleep(12)
        window.click("CmdKas_3")
        wait_for("the other receipt", lambda: any(part.name == "Касса 3" for part in window.all()))
        # The press meanwhile doesn't prolong them.
        wait_for("no receipt", lambda: any(part.name == "выберите кассу ..." for part in window.all()))
        self.assertLess(time.monotonic() - begun, 25)
        self.assertGreater(time.monotonic() - begun, 18)

    def test_old_sales_are_cleared(self):
        self.form.menu("Обработки", "Очистить таблицу продаж")
        window = self.program.form("frmClear")
        window.activate()
        day = (TODAY - datetime.timedelta(days=7)).strftime("%d.%m.%Y")
        self.assertEqual(window.text("Text4"), day)
        window.click("CmdPlusD")
        wait_for("the calendar", lambda: window.is_shown("MonthD"))
        self.program.key("Escape")
        wait_for("no calendar", lambda: not window.is_shown("MonthD"))
        self.assertTrue(self.program.is_open("frmClear"))
        window.click("CmdPlusD")
        wait_for("the calendar", lambda: window.is_shown("MonthD"))
        self.program.key("Return")
        wait_for("the day", lambda: not window.is_shown("MonthD") and window.has_focus("CmdDel"))
        self.program.key("Return")
        box = self.program.box()
        self.assertEqual((box.title, box.text), ("KORVINA", f"Удалить записи по 23:59:59 {day} ?"))
        box.press("OK")
        wait_for("the confirmation", lambda: self.program.box().text == f"Удалены записи по 23:59:59 {day}")
        self.program.box().press("OK")
        wait_for("the window gone", lambda: not self.program.is_open("frmClear"))
        until = (TODAY - datetime.timedelta(days=7)).strftime("%Y-%m-%d 23:59:59")
        self.assertEqual(self.count(f"DATETIME <= '{until}'"), 0)
        self.assertGreater(self.count("1"), 0)

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
        time.sleep(0.3)  # the bus presses a button for a tenth of a second, and all this may have been true before
        self.shop.ask("INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4) SELECT "
                      f"COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4 FROM PROD WHERE {SHIFT} LIMIT 1")
        time.sleep(0.3)
        self.assertEqual(form.rows("DataGrid3"), sold)
        form.press("CmdDat")
        wait_for("one line more", lambda: form.rows("DataGrid3") == sold + 1)

    def test_esc_in_a_field_puts_the_window_away_and_the_program_lives(self):
        self.form.click("Text2")
        self.program.key("Escape")
        wait_for("no window", lambda: not self.program.is_open("Form2"))
        time.sleep(0.5)
        self.assertFalse(self.program.has_ended())


class Lite(unittest.TestCase):
    def test_the_lite_tab(self):
        shop = Shop("--mode", "lite", "--now", EVENING)
        program = self.enterContext(Program())
        form = program.form("Form2")
        form.activate()
        form.click("DataGrid7")
        program.key("Home", "Return")
        till = form.cell("DataGrid7", 0, "Ter")
        wait_for("the till", lambda: form.text("Text4") == till)
        self.assertTrue(form.has_focus("DataGrid7"))
        form.click("CmdTermLite")
        wait_for("the filter", lambda: form.caption("LblInfLite") == f"{TODAY:%d.%m.%Y} по кассе №{till}")
        condition = f"TER={till} AND {SHIFT.replace('DATETIME', 'DAT')}"
        self.assertEqual(form.caption("LblSumLite"), shown(shop.ask(f"SELECT SUM(SUM1-SKID) FROM KASSA WHERE {condition}")[0][0]))
        self.assertEqual(form.rows("DataGrid7"), int(shop.ask(f"SELECT COUNT(*) FROM KASSA WHERE SUM1>0 AND {condition}")[0][0]))
        form.click("CmdDelProdLite")
        window = program.form("frmClearLite")
        window.activate()
        program.key("Escape")
        wait_for("the window gone", lambda: not program.is_open("frmClearLite"))


if __name__ == "__main__":
    unittest.main()
