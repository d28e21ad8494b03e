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

    def test_a_day_goes_to_the_reserve_server(self):
        self.make_reserve()
        # What a terminal leaves empty can't be copied.
        self.shop.ask("UPDATE PROD SET UKT=NULL WHERE UKT=''")
        self.shop.ask("DELETE FROM PROD WHERE ID NOT IN (SELECT * FROM (SELECT ID FROM PROD ORDER BY ID DESC LIMIT 300) AS P)")
        self.start([("C/reserve.udl", LINK.format(host=os.environ["ZRT_HOST"]))])
        self.main.menu("Настройки")
        form = self.program.form("frmExpImp")
        form.activate()
        self.assertEqual(form.title, "Настройки и Экспорт данных")
        self.assertFalse(form.is_enabled("CmdExp"))
        self.assertFalse(form.is_shown("CmdClrRez"))
        form.set_text("TxtUDL1", "")
        form.press("CmdConn1")
        self.program.answer("Как же так?..., это же основной сервер!!!")
        form.set_text("TxtUDL1", "C:\\reserve.udl")
        form.press("CmdConn1")
        wait_for("the connection", lambda: form.is_shown("LblConn1"))
        self.assertFalse(form.is_enabled("CmdConn1"))
        for button, text in (("CmdTov", "Экспорт справочника товаров успешно завершен!"),
                             ("CmdOfc", "Экспорт списка официантов успешно завершен!"),
                             ("CmdKeys", "Экспорт сенсорной клавиатуры успешно завершен!"),
                             ("CmdExp", "Экспорт таблицы продаж успешно завершен!"),
                             ("CmdExp", "а выгружать-то нечего...")):
            form.press(button)
            self.program.answer(text)
        # Some of the day had been copied before.
        today = datetime.date.today().strftime("%d%m%y").lstrip("0")
        for what in (f"COUNT(*),SUM(SUM2),MAX(DATETIME) FROM PROD WHERE N7={today}",
                     f"COUNT(*),SUM(SUM1) FROM KASSA WHERE N7={today}", "COUNT(*),SUM(PRISE) FROM TOVAR",
                     "COUNT(*),SUM(COD) FROM KLIENT",
                     "COUNT(*),SUM(ID*CODE) FROM HOTKEYS WHERE LV IS NOT NULL"):
            self.assertEqual(self.shop.run("SELECT " + what, "zrt_reserve"), self.shop.ask("SELECT " + what))
        last = self.shop.ask("SELECT DATE_FORMAT(MAX(DATETIME),'%d.%m.%Y %H:%i:%s') FROM PROD WHERE N4>2")[0][0]
        self.assertEqual(form.caption("LblEnd"), last)
        self.program.key("Escape")
        wait_for("the window gone", lambda: not self.program.is_open("frmExpImp"))

    def test_the_program_gets_another_server(self):
        self.start([("C/Korvina/ZRTr", "other,C:\\other.udl\r\n")])
        self.main.menu("Настройки")
        form = self.program.form("frmExpImp")
        self.assertEqual(form.text("TxtUDL"), "C:\\KORVINA.udl")
        form.set_text("TxtUDL", "C:\\new.udl")
        form.press("CmdConn")
        self.assertEqual(self.program.exit_code(), 0)
        with open(os.path.join(self.program.drives, "C", "Korvina", "ZRTr"), encoding="cp1251") as file:
            lines = file.read().splitlines()
        self.assertEqual(lines[0], "other,C:\\other.udl")
        self.assertEqual(lines[1].partition(",")[2], "C:\\new.udl")

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

    def test_a_count_goes_into_a_file_and_comes_back(self):
        self.start()
        self.main.menu("Документы", "Инвентаризация")
        count = self.program.form("frmDocIN")
        cod = self.shop.ask("SELECT MIN(COD) FROM TOVAR")[0][0]
        self.program.write("C/Korvina/Report/count.txt", f'{cod},"имя",2500\r\n')
        count.press("CmdDownlFakt")
        form = self.program.form("frmImpTov")
        form.activate()
        self.assertFalse(form.is_shown("Option1_0"))
        form.click("File1")
        self.program.key("Home")
        wait_for("the path", lambda: form.text("TextPath") == "C:\\Korvina\\Report\\count.txt")
        form.press("CmdRun")
        self.program.answer("Успешно загружено 1 строк")
        self.program.key("Escape")
        wait_for("the line", lambda: count.rows("DataGrid7") == 1)
        self.assertEqual(count.cell("DataGrid7", 0, "Actual"), "2,500")
        count.press("CmdExportFakt")
        export = self.program.form("frmExpTov")
        export.activate()
        path = export.text("TextPath")
        self.assertRegex(path, r"^C:\\Korvina\\Report\\Exp_\d{8}_\d{6}\.txt$")
        export.press("CmdExport")
        self.program.answer(f"Выгрузка остатков в файл {path}\nуспешно завершена!")
        with open(os.path.join(self.program.drives, *path.replace(":", "").split("\\")), encoding="cp1251", newline="") as file:
            name = self.shop.ask(f"SELECT NAME FROM TOVAR WHERE COD={cod}")[0][0]
            self.assertEqual(file.read(), f'{cod}," {name} ",2500\r\n')


if __name__ == "__main__":
    unittest.main()
