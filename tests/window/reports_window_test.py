"""The reports in the real window: the list that grows, the paper, the tables as files and workbooks."""

import datetime
import os
import stat
import tempfile
import unittest
import zipfile

from zrt_window import Program, Screen, Shop, wait_for

TODAY = datetime.date.today()
EVENING = TODAY.strftime("%Y-%m-%d 21:30:00")
REPORTS = "Отчёты"


def setUpModule():
    unittest.enterModuleContext(Screen())


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
        self.form.menu(REPORTS, caption)
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

    def test_calendars_by_keyboard(self):
        self.start()
        form = self.open("Табель по сотрудникам", "FormTab")
        form.click("CmdPlus1")
        wait_for("the calendar", lambda: form.is_shown("Month1"))
        self.program.key("Escape")
        wait_for("no calendar", lambda: not form.is_shown("Month1"))
        self.assertTrue(self.program.is_open("FormTab"))
        form.click("CmdPlus1")
        wait_for("the calendar", lambda: form.is_shown("Month1"))
        self.program.key("Left", "Return")
        earlier = (TODAY - datetime.timedelta(days=2)).strftime("%d.%m.%Y")
        wait_for("an earlier day", lambda: form.caption("LDate1") == earlier)
        self.assertEqual(form.caption("LDate2"), (TODAY - datetime.timedelta(days=1)).strftime("%d.%m.%Y"))
        wait_for("the keyboard on the second button", lambda: form.has_focus("CmdPlus2"))

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
        folder = os.path.join(self.program.drives, "C", "Korvina", "Archive")
        name = next(n for n in os.listdir(folder) if n.startswith("Discount_"))
        with open(os.path.join(folder, name), encoding="cp1251", newline="") as file:
            text = file.read()
        self.assertTrue(text.startswith(";;ОТЧЁТ ПО ДИСКОНТНЫМ КАРТАМ\r\n"))
        self.assertIn("№;Код;Штрих;СУММА;", text)

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


if __name__ == "__main__":
    unittest.main()
