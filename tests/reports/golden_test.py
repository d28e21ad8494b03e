#!/usr/bin/env python3
"""golden_test.py ZRT_DEMO ZRT_PLAY HOST: every report of the demonstration shop, and of the same shop with the odd rows that
real shops have, says what golden.py computes from the bare rows."""

import datetime
import os
import random
import subprocess
import sys
import tempfile
import unittest

import golden

DEMO, PLAY, HOST = sys.argv[1:4]
SCHEMA = f"zrt_reports_{os.getpid()}"
NOW = "2026-11-12 21:30:00"
STAMP = "20261112_213000"
FOLDER = "C:\\Korvina\\Report\\"


def day(text):
    return datetime.datetime.strptime(text, "%d.%m.%Y").date()


def sql(query):
    golden.client(HOST, SCHEMA, query=query)


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n").replace("\r", "\\r") + '"'


# What the demonstration lacks: lines on the very ends of a shift, amounts over a million and below zero, a waiter who sold
# surcharges alone, one without a name, one without orders; orders without a table, without payment and without guests;
# the same order number at two terminals; two products of one name in two places, since within one place their order is the
# server's; a discount below zero, a surcharge on alcohol; orders that are paid and not closed, and one that says nothing of
# cash.
ODD_ROWS = """
INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4,N5) VALUES
 (900,'Банкет на сто двадцать персон с музыкой до утра',1000,1234567895,0,1234567895,1,1,'2026-11-09 08:00:00',0,900001,0,3,0),
 (901,'Возврат банкета',-2000,1000000005,0,-2000000010,1,2,'2026-11-10 07:59:59',0,900002,0,3,13),
 (901,'Возврат банкета',1000,5,0,5,1,2,'2026-11-10 08:00:00',0,900003,0,1,13),
 (902,'Сигара',1333,1555,7,2066,1,77,'2026-11-09 23:59:59',3,900004,2,3,31),
 (902,'Сигара',1,1500,0,2,1,77,'2026-11-10 00:00:00',0,900004,2,2,3),
 (0,'Наценка 10%',1000,50000,0,50000,2,78,'2026-11-09 12:00:00',0,900005,0,3,0),
 (903,'Вода',1000,20000,-300,20300,1,1,'2026-11-09 13:00:00',0,900006,0,3,0),
 (903,'Вода',1000,20000,0,20000,2,2,'2026-11-09 13:05:00',0,900006,0,3,0),
 (904,'Вода',2000,20000,0,40000,2,2,'2026-11-09 13:05:00',0,900006,0,3,1),
 (0,'Наценка 10%',1000,2000,0,2000,1,1,'2026-11-09 13:00:00',0,900006,1,3,0),
 (905,'Лёд',250,20000,0,5000,1,255,'2026-11-09 13:15:00',0,900007,0,3,0);
INSERT INTO KLIENT (COD,NAME) VALUES (77,NULL),(78,'Наценщик'),(79,'Без заказов'),(255,'Последний код с длинным именем');
INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,TER,NUM,PERS,DAT,TIM,N1,N2,N3,N4) VALUES
 ('Заказ',1234567.89,0,1234567.89,1,900001,1,'2026-11-09 08:00:00','2026-11-09 09:00:00',12,123456789,NULL,3),
 ('Заказ',-2000000.01,0,0,1,900002,2,'2026-11-10 07:00:00','2026-11-10 07:59:59',NULL,-200000001,101,3),
 ('Заказ',0.01,0,0,1,900003,2,'2026-11-10 08:00:00',NULL,0,0,7,1),
 ('Заказ',2.07,0.01,0,1,900004,77,'2026-11-09 23:59:59','2026-11-10 08:00:00',3,206,7,4),
 ('Заказ',0,0,0,2,900005,78,'2026-11-09 12:00:00','2026-11-09 12:30:00',3,NULL,7,3),
 ('Заказ',20.3,0,20.3,1,900006,1,'2026-11-09 13:00:00','2026-11-09 13:10:00',1,2030,4,2),
 ('Заказ',60,0,0,2,900006,1,'2026-11-09 13:05:00','2026-11-09 13:10:00',1,6000,4,2),
 ('Заказ',5,0,NULL,1,900007,1,'2026-11-09 13:15:00','2026-11-09 13:20:00',NULL,500,NULL,3);
UPDATE CONST SET N9='Кухня1' WHERE COD=5;
UPDATE CONST SET N10=NULL WHERE COD=5;
UPDATE CONST SET N10='Главная кухняяЦех номер один2   цех      ' WHERE COD=6;
"""

# Lines that the terminals left unfinished, in spans of their own: without quantity, price or discount, among others and
# alone; cards without a percentage; payments without an amount; places whose stored names are an empty text.
UNFINISHED_ROWS = """
INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4,N5) VALUES
 (910,'Без количества',NULL,1000,0,0,1,1,'2025-03-01 12:00:00',0,910001,0,3,1),
 (911,'Целая',1000,70000,0,70000,1,1,'2025-03-01 12:00:00',0,910002,0,3,2),
 (912,'Без цены',2000,NULL,0,0,1,1,'2025-03-01 12:00:00',0,910002,0,3,2),
 (913,'Без всего',NULL,NULL,NULL,NULL,1,1,'2025-03-01 12:00:00',0,910002,3,NULL,2),
 (914,'Без скидки',1000,30000,NULL,30000,1,2,'2025-03-01 13:00:00',NULL,910003,2,2,3),
 (915,'По карте',1000,NULL,5000,0,1,2,'2025-03-01 13:10:00',950,910004,0,3,31),
 (915,'По карте',1000,40000,4000,36000,1,2,'2025-03-01 13:20:00',951,910005,0,3,31),
 (NULL,'Без кода',1000,10000,0,10000,1,2,'2025-03-01 14:00:00',0,NULL,0,3,31),
 (910,'Без количества',NULL,1000,100,0,1,1,'2025-03-05 12:00:00',0,910006,0,3,0);
INSERT INTO DISCOUNT (BARCODE,TOTAL,LASTCASH,PROZ,REZ) VALUES ('950',0,'',15,950),('951',0,'',NULL,951);
INSERT INTO KASSA (OPER,SUM1,SKID,SUM2,TER,NUM,PERS,DAT,TIM,N1,N2,N3,N4) VALUES
 ('Заказ',70,0,70,1,910002,1,'2025-03-01 12:00:00','2025-03-01 12:30:00',1,NULL,1,3),
 ('Заказ',30,NULL,NULL,1,910003,2,'2025-03-01 13:00:00','2025-03-01 13:30:00',1,3000,1,3),
 ('Заказ',10,NULL,0,1,910004,2,'2025-03-01 13:10:00','2025-03-01 13:30:00',1,NULL,1,3);
UPDATE CONST SET N9='' WHERE COD=5;
"""


class Reports(unittest.TestCase):
    def setUp(self):
        golden.client(HOST, None, query=f"CREATE DATABASE {SCHEMA} DEFAULT CHARACTER SET latin1 COLLATE latin1_bin")
        demo = [DEMO, "--now", NOW, "--lines", "4000", "--mode", "register"]
        golden.client(HOST, SCHEMA, script=subprocess.run(demo, check=True, stdout=subprocess.PIPE).stdout)

    def tearDown(self):
        golden.client(HOST, None, query=f"DROP DATABASE {SCHEMA}")

    def play(self, lines):
        script = [f"clock {NOW}", f"file-write {quoted(FOLDER + 'there.txt')}", "start"] + lines + ["stop"]
        with tempfile.NamedTemporaryFile("w", suffix=".play", encoding="utf-8") as file:
            file.write("\n".join(script) + "\n")
            file.flush()
            done = subprocess.run([PLAY, "--server", HOST, "--database", SCHEMA, file.name], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)

    @staticmethod
    def open(form, menu, first, last, hour):
        return [f"form Form2", f"menu {menu}", f"form {form}", f"set Combo1 {hour}", "click CmdPlus1",
                f"pick Month1 {golden.day_text(first)}", "click CmdPlus2", f"pick Month2 {golden.day_text(last)}"]

    @staticmethod
    def block(action, texts):
        return [action] + ["\t" + text for text in texts]

    def check_text_reports(self, first, last, hour):
        shop = golden.Shop(HOST, SCHEMA)
        span = (first, last, hour)
        script = self.open("Form9", "mnuSystem", *span)

        def report(clicks, lines):
            return [f"{click}" for click in clicks] + self.block("lines List1", lines)

        script += report(["set Option1_0 on", "click CmdDat"], shop.system_by_days(*span))
        script += report(["set Option1_1 on", "click CmdDat"], shop.system_period(*span))
        script += report(["set Check1 on", "click CmdDat1"], shop.waiters_period(*span))
        script += report(["set Option1_0 on", "click CmdDat1"], shop.waiters_by_days(*span))
        if shop.sold(*span):
            script += report(["set Check1 off", "click CmdDat1"], shop.waiters_full(*span))
        script += report(["set Check2 off", "click CmdDat2"], shop.goods(*span, wide=False))
        script += report(["set Check2 on", "click CmdDat2"], shop.goods(*span, wide=True))
        self.play(script)

    def test_text_reports_of_the_demonstration(self):
        self.check_text_reports(day("05.11.2026"), day("09.11.2026"), 8)
        self.check_text_reports(day("11.11.2026"), day("13.11.2026"), 0)

    @staticmethod
    def add_odd_rows():
        for statement in ODD_ROWS.strip().split(";\n"):
            sql(statement)

    def test_text_reports_of_odd_rows(self):
        self.add_odd_rows()
        self.check_text_reports(day("09.11.2026"), day("10.11.2026"), 8)
        self.check_text_reports(day("09.11.2026"), day("11.11.2026"), 0)

    def test_text_reports_of_unfinished_rows(self):
        for statement in UNFINISHED_ROWS.strip().split(";\n"):
            sql(statement)
        self.check_text_reports(day("01.03.2025"), day("03.03.2025"), 8)
        self.check_text_reports(day("05.03.2025"), day("06.03.2025"), 8)

    def test_text_reports_over_the_ends_of_month_and_year_and_of_nothing(self):
        sql("INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4,N5) VALUES "
            "(5,'Чай',1000,10000,0,10000,1,1,'2025-12-31 23:59:59',0,1,0,3,0),"
            "(6,'Кофе',1000,20000,0,20000,1,1,'2026-01-01 00:00:00',0,2,0,3,0),"
            "(5,'Чай',1000,10000,0,10000,1,1,'2026-02-28 23:30:00',0,3,0,3,0),"
            "(5,'Чай',1000,10000,0,10000,1,1,'2026-03-01 07:30:00',0,4,0,3,0)")
        self.check_text_reports(day("31.12.2025"), day("02.01.2026"), 0)
        self.check_text_reports(day("28.02.2026"), day("02.03.2026"), 8)
        self.check_text_reports(day("15.07.2026"), day("17.07.2026"), 8)

    # Tables

    def csv(self, click, prefix, titles, table):
        path = FOLDER + prefix + STAMP + ".csv"
        box = f"Выгрузка в файл {path}\nуспешно завершена!"
        rows = ["".join(cell + ";" for cell in row) for row in table]
        return [f"dialog {quoted(box)} exclamation -> OK", click] + self.block(f"file {quoted(path)}", titles + rows)

    def book(self, click, titles, table, total_header):
        """The workbook of a table with a column for each day."""
        cells = [f"1,1* {titles[0]}", f"2,1 {titles[1]}"]
        rows = [row[1:] for row in table]
        rows[0][2] = total_header
        for number, row in enumerate(rows, 3):
            for column, text in enumerate(row, 1):
                if text or number == 3:
                    cells.append(f"{number},{column}{'*' if column == 3 and number > 3 else ''} {text}")
        heights = ["height 3 23"] + ([f"height {len(rows) + 2} 23"] if table[-1][2] == "ИТОГО" else [])
        widths = ["width 1-1 4", "width 2-2 18", "width 3-3 12", "width 4-702 9"]
        status = ["status ВЫПОЛНЯЕТСЯ ОБРАБОТКА!", "status ГОТОВО!"]
        return ["set Check3 on", click] + self.block("workbook", cells + widths + heights + status) + ["set Check3 off"]

    def check_tables(self, first, last, hour):
        shop = golden.Shop(HOST, SCHEMA)
        span = (first, last, hour)
        # The labels as choosing the hour leaves them.
        period = (f"за период с   {hour:02}:00:00 {golden.day_text(first)} "
                  f"по   {hour:02}:00:00 {golden.day_text(last)}")
        for form, menu, build, prefix, what, header in (
                ("FormTab", "mnuTabel", shop.tabel, "Tabel_", "ПРОДАЖИ", "СУММА   "),
                ("FormTabChk", "mnuTabelChk", shop.average, "AvgCheck_", "СРЕДНИЙ ЧЕК", "Длина*Сумма")):
            script = self.open(form, menu, *span)
            for cashiers in (False, True):
                script.append(f"set Option1_{int(cashiers)} on")
                title = what + (" ПО КАССИРАМ" if cashiers else " ПО ОФИЦИАНТАМ")
                for before in (False, True):
                    script.append("set Check1 " + ("on" if before else "off"))
                    table = build(*span, cashiers, before)
                    script += self.csv("click CmdTab", prefix, [";;" + title, ";;" + period], table)
                    script += self.book("click CmdTab", [title, period], table, header)
            self.play(script)

        script = self.open("FormTabDk", "mnuTabelDk", *span)
        title = "ОТЧЁТ ПО ДИСКОНТНЫМ КАРТАМ"
        days = f"за период с {golden.day_text(first)} по {golden.day_text(last)}"
        for before in (False, True):
            script.append("set Check1 " + ("on" if before else "off"))
            table = shop.discounts(*span, before)
            script += self.csv("click CmdDisc", "Discount_", [";;" + title, ";;" + days], table)
            script += self.book("click CmdDisc", [title, days], table, "СУММА   ")
        self.play(script)

        script = self.open("FormTabTim", "mnuTabelTime", *span)
        for before in (False, True):
            script.append("set Check1 " + ("on" if before else "off"))
            script += self.csv("click CmdHr", "Hour_", ["Продажи по времени", ";;" + period], shop.hours(*span, False, before))
        script += self.csv("click CmdChk", "Count_", ["Заказы по времени", ";;" + period], shop.hours(*span, True))
        self.play(script)

    def test_tables(self):
        self.check_tables(day("05.11.2026"), day("09.11.2026"), 8)
        self.check_tables(day("11.11.2026"), day("13.11.2026"), 0)
        self.check_tables(day("09.11.2026"), day("11.11.2026"), 23)

    def test_tables_of_many_fractions(self):
        """Fifteen times 4,110885 is 61,66 in the grand total, but 61,67 in that of the day, which is kept whole."""
        sql("INSERT INTO PROD (COD,NAME,KOL,PRISE,SKID,SUM2,TER,PERS,DATETIME,REZ,NUM,N1,N4,N5) VALUES " + ",".join(
            f"(1,'Чай',333,12345,0,4111,1,{n},'2025-03-01 12:00:00',{n},{n},0,3,0)" for n in range(1, 16)))
        self.check_tables(day("01.03.2025"), day("02.03.2025"), 8)

    def test_tables_of_odd_rows(self):
        self.add_odd_rows()
        self.check_tables(day("09.11.2026"), day("11.11.2026"), 8)
        self.check_tables(day("09.11.2026"), day("11.11.2026"), 0)

    # Stock

    def fill_register(self):
        """Documents of every kind over some days, posted but for one, on the first products of the catalogue."""
        chance = random.Random(7)
        codes = [row["COD"] for row in golden.Shop(HOST, SCHEMA).rows("TOVAR", "COD")][:40]
        left = dict.fromkeys(codes, 0)
        price = {cod: chance.randint(50, 400) * 100 for cod in codes}
        values = []
        moment = datetime.datetime(2026, 11, 4, 23, 0, 0)
        for number in range(1, 60):
            moment += datetime.timedelta(minutes=chance.choice((60, 97, 240, 300)))
            kind = chance.choice((0, 0, 0, 1, 2, 3, 4, 6, 7)) if number > 3 else 1
            posted = number != 30
            # The last ten products never come in by an invoice.
            for cod in chance.sample(codes[:30] if kind == 1 else codes, 12):
                kol = chance.randint(1, 20) * chance.choice((1000, 250, 83))
                if kind in (0, 2, 3, 7) or kind == 4 and chance.random() < 0.5:
                    kol = -kol
                if kind == 4 and chance.random() < 0.3:
                    kol = 0
                left[cod] += kol if posted else 0
                summ = price[cod] * kol // 1000 if price[cod] * kol % 1000 == 0 else 0
                if kind == 1:  # what was paid per unit is exact
                    kol, left[cod] = kol // 1000 * 1000 or 1000, left[cod] - kol + (kol // 1000 * 1000 or 1000)
                    summ = price[cod] * kol // 1000
                values.append(f"({number},{kind},{cod},{kol},{summ},{left[cod] if posted else 0},'{moment}',{int(posted)},0)")
        sql("INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES " + ",".join(values))
        # A document at midnight sharp, a product that keeps no stock, and one that sells below its cost.
        sql(f"INSERT INTO REGISTR (DOC,DOCTYP,COD,KOL,SUMM,OSTKOL,DATEDOC,RUN,REZ) VALUES "
            f"(99,3,{codes[0]},-5,0,{left[codes[0]] - 5},'2026-11-20 00:00:00',1,0)")
        sql(f"UPDATE TOVAR SET COD1=0 WHERE COD={codes[1]}")
        sql(f"UPDATE TOVAR SET COD1=2 WHERE COD={codes[3]}")
        sql(f"UPDATE TOVAR SET PRISE=1 WHERE COD={codes[2]}")
        return codes

    def stock_book(self, titles, table, widths, totals=True):
        cells = [f"1,1* {titles[0]}", f"2,1 {titles[1]}"]
        heights = ["height 3 23"] + ([f"height {len(table) + 2} 23"] if totals else [])
        for number, row in enumerate(table, 3):
            for column, text in enumerate(row, 1):
                if text or number == 3:
                    cells.append(f"{number},{column} {text}")
        return self.block("workbook", cells + widths + heights + ["status ВЫПОЛНЯЕТСЯ ОБРАБОТКА!", "status ГОТОВО!"])

    def test_balances(self):
        self.fill_register()
        shop = golden.Shop(HOST, SCHEMA)
        shop.load_stock()
        for date, hour in (("08.11.2026", 8), ("31.12.2026", 0)):
            on = day(date)
            # Every way to order the products and every choice once.
            script = ["form Form2", "menu mnuReportSaldo", "form FormTabOst", f"set Combo1 {hour}", "click CmdPlus1",
                      f"pick Month1 {date}"]
            for order in range(4):
                script += [f"set Option1_{order} on", "set Check1 " + ("on" if order % 2 else "off")]
                table = shop.balances(on, hour, order, order % 2 == 1, book=False)
                script += self.csv("click CmdOst", "Ostatk_", [";;ОСТАТКИ ТОВАРОВ", f";;на конец смены {date}"], table)
            script += ["set Check3 on", "click CmdOst"] + self.stock_book(
                ["ОСТАТКИ ТОВАРОВ", f"на конец смены {date}"], shop.balances(on, hour, 3, True, book=True),
                ["width 1-1 4", "width 2-2 6", "width 3-3 40", "width 4-4 18", "width 5-9 9"])
            self.play(script)

    def test_movements(self):
        codes = self.fill_register()
        shop = golden.Shop(HOST, SCHEMA)
        shop.load_stock()
        for first, last, hour in ((day("06.11.2026"), day("10.11.2026"), 8), (day("05.11.2026"), day("21.11.2026"), 0)):
            span = (first, last, hour)
            period = f"за период с {golden.day_text(first)} по {golden.day_text(last)}"
            script = self.open("FormTabRun", "mnuReportRun", *span)
            script += ["expect CmdRun.Enabled False"]
            table = shop.turnover(*span)
            script += self.csv("click CmdRunAll", "Tovar_ALL", [";ДВИЖЕНИЕ ТОВАРА", ";" + period], table)
            script += ["set Check3 on", "click CmdRunAll"] + self.stock_book(
                ["ДВИЖЕНИЕ ТОВАРА", period], table, ["width 1-1 6", "width 2-2 40", "width 3-7 12"], totals=False)
            names = {product["COD"]: product["NAME"] for product in shop.products}
            for cod in (codes[0], codes[1], codes[35]):
                title = f"ДВИЖЕНИЕ ТОВАРА {cod} {names[cod]} ПО ДОКУМЕНТАМ"
                table = shop.movement(*span, cod)
                script += ["set Check3 off", "click CmdTov", "form frmPLUpodb", f"set TextFind {quoted(names[cod])}",
                           "key DataGrid01 Enter", "click OKButton", "form FormTabRun", f"expect LblCod.Caption {cod}",
                           f"expect LblTov.Caption {quoted(names[cod])}"]
                script += self.csv("click CmdRun", f"Tovar_{cod}", [";;" + title, ";;" + period], table)
                script += ["set Check3 on", "click CmdRun"] + self.stock_book(
                    [title, period], table, ["width 1-1 20", "width 2-2 6", "width 3-3 18", "width 4-8 11"])
            self.play(script)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
