"""A day's work in the real window: sales while a terminal sells into the same database, a table for a spreadsheet program,
a catalogue that is loaded, a panel that is laid out by real hands."""

import datetime
import os
import shutil
import subprocess
import tempfile
import time
import unittest
import unittest.mock
import zipfile

from zrt_window import Program, Screen, Shop, wait_for

TODAY = datetime.date.today()
SHIFT = f"DATETIME > '{TODAY} 08:00:00' AND DATETIME < '{TODAY + datetime.timedelta(days=1)} 07:59:59'"
SHEETS = os.path.join(os.path.dirname(__file__), "..", "platform", "sheets")


def setUpModule():
    unittest.enterModuleContext(Screen())


class Work(unittest.TestCase):
    def start(self):
        self.shop = Shop("--mode", "register", "--now", TODAY.strftime("%Y-%m-%d 21:30:00"))
        self.program = self.enterContext(Program())
        self.form = self.program.form("Form2").activate()

    def test_terminals_sell_on_while_the_operator_looks(self):
        """What is shown stays whole; what was sold meanwhile comes with the next query; the terminals never wait."""
        self.start()
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
        sold, total = self.shop.ask(f"SELECT COUNT(*),SUM(KOL*PRISE/1000-SKID)/1000 FROM PROD WHERE {SHIFT}")[0]
        form.press("CmdDat")
        wait_for("all that was sold", lambda: form.rows("DataGrid3") == int(sold))
        shown = f"{float(total):,.2f}".replace(",", "\u00a0").replace(".", ",")
        wait_for(shown, lambda: form.caption("LblSum") == shown)

        # Esc in a field puts the window away and the program lives.
        form.click("Text2")
        self.program.key("Escape")
        self.program.wait_gone("Form2")
        time.sleep(0.5)
        self.assertFalse(self.program.has_ended())

    def test_table_as_a_workbook(self):
        tools = self.enterContext(tempfile.TemporaryDirectory(prefix="zrt-tools-"))
        kept, script = os.path.join(tools, "kept.xlsx"), os.path.join(tools, "xdg-open")
        with open(script, "w", encoding="utf-8") as file:  # keeps what it is to open
            file.write(f'#!/bin/sh\ncp "${{1#file://}}" {kept}.part && mv {kept}.part {kept}\n')
        os.chmod(script, 0o700)
        with unittest.mock.patch.dict(os.environ, PATH=tools + ":" + os.environ["PATH"]):
            self.start()
        self.form.menu("Отчёты", "Средний чек по датам")
        form = self.program.form("FormTabChk").activate()
        form.click("Check3")
        wait_for("no folder", lambda: not form.is_enabled("CmdPath"))
        form.press("CmdTab")
        wait_for("the workbook", lambda: os.path.exists(kept))
        with zipfile.ZipFile(kept) as book:
            for part, expected in (("xl/sharedStrings.xml", "СРЕДНИЙ ЧЕК ПО ОФИЦИАНТАМ"),
                                   ("xl/sharedStrings.xml", "Длина*Сумма"),
                                   ("xl/worksheets/sheet1.xml", 'r="3" spans="1:4" ht="23"'),
                                   ("docProps/core.xml", "ГОТОВО!")):
                self.assertIn(expected, book.read(part).decode())

    def test_a_catalogue_comes_from_a_spreadsheet(self):
        self.start()
        main, program = self.form, self.program
        report = os.path.join(program.drives, "C", "Korvina", "Report")
        for number, name in enumerate(("catalogue.xls", "catalogue.xlsx", "catalogue.ods")):
            shutil.copy(os.path.join(SHEETS, name), report)
            main.activate()
            main.tab("Справочники")
            main.press("CmdImportTov")
            form = program.form("frmImpTov").activate()
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
            self.assertEqual(
                self.shop.ask("SELECT COD,NAME,PRISE,BARCODE,NDS,N1,REZ,N4,N2,UKT,T1 FROM TOVAR ORDER BY ID"),
                [["1", "Чай чёрный", "12050", "4820000000017", "1", "0", "5", "0", "0", "0902", "НАПИТКИ"],
                 ["2", "Вино «Каберне»", "95000", "4820000000024", "1", "1", "0", "0", "12", "2204", "АЛКОГОЛЬ"],
                 ["3", "Сыр, кг", "45075", "0", "2", "0", "0", "27", "0", "", "ТОВАР"]], name)
            program.key("Escape")
            program.wait_gone("frmImpTov")
        wait_for("the new list", lambda: main.rows("DataGrid1_0") == 3)

    def test_keys_of_a_panel_are_typed_at_and_dragged(self):
        self.start()
        form, key = self.form, self.program.key
        self.shop.ask("UPDATE HOTKEYS SET CODE=IF(ID=101,1,0)")
        form.tab("Настройка сенсорной клавиатуры")
        wait_for("the panels", lambda: form.is_shown("CmdM_30"))

        def wait_filled(*keys):
            wait_for(keys, lambda: self.shop.ask("SELECT ID,CODE FROM HOTKEYS WHERE CODE<>0 ORDER BY ID") == [*keys])

        # To the next key, its code; one row down.
        form.click("CmdM_1")
        key("Right")
        form.wait_for_focus("CmdM_2")
        key("9", "9", "9", "9", "9", "Return")
        wait_filled(["101", "1"], ["102", "99999"])
        form.wait_for_focus("CmdM_2")
        key("Down")
        form.wait_for_focus("CmdM_8")
        key("1")
        form.wait_for_focus("Text6")
        key("Return")
        wait_filled(["101", "1"], ["102", "99999"], ["108", "1"])

        # Real dragging: onto an empty key with its question, onto an occupied one without.
        form.drag("CmdM_2", "CmdM_30")
        self.program.answer("Переместить кнопку на указанное место?", "Отмена")
        form.drag("CmdM_2", "CmdM_1")
        form.drag("CmdM_2", "CmdM_30")
        self.program.answer("Переместить кнопку на указанное место?")
        wait_for("the key moved", lambda: form.caption("CmdM_30") == "99999")
        wait_filled(["101", "1"], ["108", "1"], ["130", "99999"])

        # The same in the window for copying, behind its password.
        form.click("CmdCopyAll")
        self.program.answer("Введите пароль администратора:", entry="357218")
        copying = self.program.form("FormCopy").activate()
        copying.drag("CmdPan_101", "CmdPan_324")
        self.program.box().press("OK")
        wait_filled(["101", "1"], ["108", "1"], ["130", "99999"], ["2461", "1"], ["2468", "1"], ["2490", "99999"])
        key("Escape")
        self.program.wait_gone("FormCopy")


if __name__ == "__main__":
    unittest.main()
