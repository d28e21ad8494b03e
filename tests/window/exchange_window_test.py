"""The exchange in the real window: a reserve server connected and given a shop's day, a catalogue loaded from spreadsheets
of three kinds, counts of an inventory written into a file and loaded again."""

import datetime
import os
import shutil
import unittest

from zrt_window import Program, Screen, Shop, wait_for

YESTERDAY = datetime.datetime.now() - datetime.timedelta(days=1)
SHEETS = os.path.join(os.path.dirname(__file__), "..", "platform", "sheets")
LINK = "[oledb]\r\n; Everything after this line is an OLE DB initstring\r\nProvider=MSDASQL.1;Extended Properties=\"DRIVER=" \
       "{{MySQL ODBC 3.51 Driver}};SERVER={host};UID=zrt;PWD=41730926;DATABASE=zrt_reserve\"\r\n"


def setUpModule():
    unittest.enterModuleContext(Screen())


class Exchange(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", YESTERDAY.strftime("%Y-%m-%d 21:30:00"))

    def start(self, files=()):
        self.program = self.enterContext(Program(files))
        self.main = self.program.form("Form2")
        self.main.activate()

    def make_reserve(self):
        """An empty second base beside the shop's."""
        self.shop.run("DROP DATABASE IF EXISTS zrt_reserve")
        self.shop.run("CREATE DATABASE zrt_reserve DEFAULT CHARACTER SET latin1 COLLATE latin1_bin")
        for table in ("PROD", "KASSA", "TOVAR", "KLIENT", "HOTKEYS", "CONST"):
            self.shop.run(f"CREATE TABLE zrt_reserve.{table} LIKE zrt.{table}")
        self.shop.run("INSERT INTO CONST (COD) VALUES (6)", "zrt_reserve")
        self.addCleanup(self.shop.run, "DROP DATABASE zrt_reserve")

    def test_a_shop_goes_to_the_reserve_server(self):
        self.make_reserve()
        self.start([("C/reserve.udl", LINK.format(host=os.environ["ZRT_HOST"]))])
        self.main.menu("Настройки")
        form = self.program.form("frmExpImp")
        form.activate()
        self.assertFalse(form.is_enabled("CmdExp"))
        form.set_text("TxtUDL1", "C:\\reserve.udl")
        form.press("CmdConn1")
        wait_for("the connection", lambda: form.is_shown("LblConn1"))
        form.press("CmdTov")
        self.program.answer("Экспорт справочника товаров успешно завершен!")
        goods = "SELECT COUNT(*),SUM(PRISE) FROM TOVAR"
        self.assertEqual(self.shop.run(goods, "zrt_reserve"), self.shop.ask(goods))
        self.program.key("Escape")
        wait_for("the window gone", lambda: not self.program.is_open("frmExpImp"))

    def test_a_catalogue_comes_from_a_spreadsheet(self):
        self.start()
        report = os.path.join(self.program.drives, "C", "Korvina", "Report")
        loaded = []
        for number, name in enumerate(("catalogue.xls", "catalogue.xlsx", "catalogue.ods")):
            os.makedirs(report, exist_ok=True)
            shutil.copy(os.path.join(SHEETS, name), report)
            self.main.activate()
            self.main.tab("Справочники")
            self.main.press("CmdImportTov")
            form = self.program.form("frmImpTov")
            form.activate()
            if number < 2:  # the list knows the ending .xls with what may follow; another one is typed
                form.click("File1")
                self.program.key("Home", *["Down"] * number)
                wait_for("the path", lambda: form.text("TextPath") == "C:\\Korvina\\Report\\" + name)
            else:
                form.set_text("TextPath", "C:\\Korvina\\Report\\" + name)
                form.press("Option1_1")
            form.press("CmdRun")
            self.program.answer("Введите пароль администратора:", entry="357218")
            self.program.answer("Загрузка справочника завершена!")
            wait_for("what it says", lambda: [line.name for line in form.control("List1")][-1:] == ["загружено 3 товаров"])
            self.assertEqual(form.control("List1")[0].name, "Open Office" if number == 2 else "Microsoft Excel")
            loaded.append(self.shop.ask("SELECT COD,NAME,PRISE,BARCODE,NDS,N1,REZ,N4,N2,UKT,T1 FROM TOVAR ORDER BY ID"))
            self.program.key("Escape")
            wait_for("the window gone", lambda: not self.program.is_open("frmImpTov"))
        self.assertEqual(loaded[0], [
            ["1", "Чай чёрный", "12050", "4820000000017", "1", "0", "5", "0", "0", "0902", "НАПИТКИ"],
            ["2", "Вино «Каберне»", "95000", "4820000000024", "1", "1", "0", "0", "12", "2204", "АЛКОГОЛЬ"],
            ["3", "Сыр, кг", "45075", "0", "2", "0", "0", "27", "0", "", "ТОВАР"]])
        self.assertEqual(loaded[0], loaded[1])
        self.assertEqual(loaded[0], loaded[2])
        wait_for("the new list", lambda: self.main.rows("DataGrid1_0") == 3)

if __name__ == "__main__":
    unittest.main()
