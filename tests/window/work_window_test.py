"""A day's work in the real window: sales, reports, a catalogue that is loaded; by mouse and keyboard, while a terminal sells
into the same database."""

import datetime
import os
import shutil
import stat
import subprocess
import tempfile
import time
import unittest
import zipfile

from zrt_window import Program, Screen, Shop, wait_for

TODAY = datetime.date.today()
EVENING = TODAY.strftime("%Y-%m-%d 21:30:00")
SHIFT = f"DATETIME > '{TODAY} 08:00:00' AND DATETIME < '{TODAY + datetime.timedelta(days=1)} 07:59:59'"
SHEETS = os.path.join(os.path.dirname(__file__), "..", "platform", "sheets")


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


class Reports(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.shop = Shop("--mode", "register", "--now", EVENING)

    def setUp(self):
        self.tools = self.enterContext(tempfile.TemporaryDirectory(prefix="zrt-tools-"))
        path = os.environ["PATH"]
        os.environ["PATH"] = self.tools + ":" + path
        self.addCleanup(os.environ.__setitem__, "PATH", path)

    def start(self, files=()):
        self.program = self.enterContext(Program(files))
        self.form = self.program.form("Form2")
        self.form.activate()

    def open(self, caption, name):
        self.form.menu("Отчёты", caption)
        form = self.program.form(name)
        form.activate()
        return form

    def spreadsheet(self):
        """A program for workbooks: it keeps what it is to open. Returns the file that it is kept in."""
        kept = os.path.join(self.tools, "kept.xlsx")
        script = os.path.join(self.tools, "xdg-open")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f'#!/bin/sh\ncp "${{1#file://}}" {kept}.part && mv {kept}.part {kept}\n')
        os.chmod(script, os.stat(script).st_mode | stat.S_IXUSR)
        return kept

    def lines(self, form):
        return [line.name for line in form.control("List1")]

    def test_text_report_on_the_screen_and_on_paper(self):
        self.start()
        form = self.open("Системный отчёт (ресторан)", "Form9")
        self.assertFalse(form.is_shown("Frame2"))
        self.assertFalse(form.is_enabled("List1"))
        narrow = form.accessible.queryComponent().getSize()[0]
        form.click("CmdDat")
        wait_for("the report", lambda: self.lines(form)[-1:] == ["=" * 42])
        self.assertTrue(self.lines(form)[0].startswith("СИСТЕМНЫЙ ОТЧЁТ с "))

        form.click("Check2")
        form.click("CmdDat2")
        wait_for("the wide report", lambda: self.lines(form)[-1:] == ["=" * 68])
        wait_for("a wide window", lambda: form.accessible.queryComponent().getSize()[0] > narrow + 200)
        form.click("Check2")
        wait_for("a narrow window", lambda: form.accessible.queryComponent().getSize()[0] == narrow)

        form.press("CmdPrint")
        preview = self.program.box()
        preview.activate()
        self.program.key("Escape")
        form.activate()
        self.program.key("Escape")
        wait_for("the window gone", lambda: not self.program.is_open("Form9"))

    def test_table_as_a_file_in_the_folder_chosen(self):
        self.start([("C/Korvina/Report/there.txt", ""), ("C/Korvina/Archive/there.txt", "")])
        form = self.open("Дисконтные карты по датам", "FormTabDk")
        self.assertEqual(form.caption("LblPath"), "C:\\Korvina\\Report\\")
        form.press("CmdPath")
        path = self.program.form("frmPath")
        path.activate()
        path.click("Dir1")
        self.program.key("Home", "Down", "Down")
        path.press("OKButton")
        wait_for("the folder", lambda: form.caption("LblPath") == "C:\\Korvina\\Archive\\")
        form.press("CmdDisc")
        box = self.program.box()
        self.assertRegex(box.text, r"^Выгрузка в файл C:\\Korvina\\Archive\\Discount_\d{8}_\d{6}\.csv\nуспешно завершена!$")
        self.assertEqual(box.accessible.name, "DESKOR")
        box.press("OK")
        self.assertEqual(len(os.listdir(os.path.join(self.program.drives, "C", "Korvina", "Archive"))), 2)

    def test_table_as_a_workbook(self):
        kept = self.spreadsheet()
        self.start()
        form = self.open("Средний чек по датам", "FormTabChk")
        form.click("Check3")
        wait_for("no folder", lambda: not form.is_enabled("CmdPath"))
        form.press("CmdTab")
        wait_for("the workbook", lambda: os.path.exists(kept))
        with zipfile.ZipFile(kept) as book:
            strings = book.read("xl/sharedStrings.xml").decode()
            sheet = book.read("xl/worksheets/sheet1.xml").decode()
            status = book.read("docProps/core.xml").decode()
        self.assertIn("СРЕДНИЙ ЧЕК ПО ОФИЦИАНТАМ", strings)
        self.assertIn("Длина*Сумма", strings)
        self.assertIn('r="3" spans="1:4" ht="23"', sheet)
        self.assertIn("ГОТОВО!", status)

    def test_without_a_spreadsheet_program_nothing_happens(self):
        script = os.path.join(self.tools, "xdg-open")
        with open(script, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\nexit 3\n")
        os.chmod(script, os.stat(script).st_mode | stat.S_IXUSR)
        self.start()
        form = self.open("Табель по сотрудникам", "FormTab")
        form.click("Check3")
        form.press("CmdTab")
        form.click("Check3")
        wait_for("the folder again", lambda: form.is_enabled("CmdPath"))


class Catalogue(unittest.TestCase):
    def test_a_catalogue_comes_from_a_spreadsheet(self):
        shop = Shop("--mode", "register", "--now", EVENING)
        program = self.enterContext(Program())
        main = program.form("Form2")
        report = os.path.join(program.drives, "C", "Korvina", "Report")
        loaded = []
        for number, name in enumerate(("catalogue.xls", "catalogue.xlsx", "catalogue.ods")):
            os.makedirs(report, exist_ok=True)
            shutil.copy(os.path.join(SHEETS, name), report)
            main.activate()
            main.tab("Справочники")
            main.press("CmdImportTov")
            form = program.form("frmImpTov")
            form.activate()
            if number < 2:  # the list knows the ending .xls with what may follow; another one is typed
                form.click("File1")
                program.key("Home", *["Down"] * number)
                wait_for("the path", lambda: form.text("TextPath") == "C:\\Korvina\\Report\\" + name)
            else:
                form.set_text("TextPath", "C:\\Korvina\\Report\\" + name)
                form.press("Option1_1")
            form.press("CmdRun")
            program.answer("Введите пароль администратора:", entry="357218")
            program.answer("Загрузка справочника завершена!")
            wait_for("what it says", lambda: [line.name for line in form.control("List1")][-1:] == ["загружено 3 товаров"])
            self.assertEqual(form.control("List1")[0].name, "Open Office" if number == 2 else "Microsoft Excel")
            loaded.append(shop.ask("SELECT COD,NAME,PRISE,BARCODE,NDS,N1,REZ,N4,N2,UKT,T1 FROM TOVAR ORDER BY ID"))
            program.key("Escape")
            wait_for("the window gone", lambda: not program.is_open("frmImpTov"))
        self.assertEqual(loaded[0], [
            ["1", "Чай чёрный", "12050", "4820000000017", "1", "0", "5", "0", "0", "0902", "НАПИТКИ"],
            ["2", "Вино «Каберне»", "95000", "4820000000024", "1", "1", "0", "0", "12", "2204", "АЛКОГОЛЬ"],
            ["3", "Сыр, кг", "45075", "0", "2", "0", "0", "27", "0", "", "ТОВАР"]])
        self.assertEqual(loaded[0], loaded[1])
        self.assertEqual(loaded[0], loaded[2])
        wait_for("the new list", lambda: main.rows("DataGrid1_0") == 3)


if __name__ == "__main__":
    unittest.main()
