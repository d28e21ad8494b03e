#!/usr/bin/env python3
"""recount_test.py ZRT_DEMO ZRT_PLAY HOST: what the sales tab and the Lite tab show of the demonstration shop, and the files
that they save, agree with a count from the shop's bare tables, row by row, for every filter, a shift and the whole period.

The counting follows the shop's rules and not the program's statements: sums in decimal numbers, sets in plain loops."""

import collections
import datetime
import decimal
import os
import subprocess
import sys
import tempfile
import unittest

DEMO, PLAY, HOST = sys.argv[1:4]
SCHEMA = f"zrt_recount_{os.getpid()}"
NOW = datetime.datetime(2026, 11, 12, 21, 30, 0)
DAY = datetime.date(2026, 11, 10)
SHIFT_HOUR = 8
FROM = datetime.datetime.combine(DAY, datetime.time(SHIFT_HOUR))
TO = FROM + datetime.timedelta(days=1, seconds=-1)
LINES = 5000
D = decimal.Decimal


def client(script=None, query=None, schema=SCHEMA):
    command = ["mariadb", "--no-defaults", f"--host={HOST}", "--user=zrt", "--password=41730926",
               "--default-character-set=latin1", "--batch", "--skip-column-names"]
    command += ["-e", query] if query else []
    command += [schema] if schema else []
    answer = subprocess.run(command, input=script, check=True, stdout=subprocess.PIPE).stdout.decode("cp1251")
    return [[None if cell == "NULL" else cell for cell in line.split("\t")] for line in answer.splitlines()]


def table(name, columns, order="1"):
    Row = collections.namedtuple(name, [column for column in columns.split(",")])
    return [Row(*row) for row in client(query=f"SELECT {columns} FROM {name} ORDER BY {order}")]


def stamp(text):
    return None if text is None else datetime.datetime.fromisoformat(text)


def moment(when):
    """As the screens show a moment: midnight has no time."""
    if when is None:
        return ""
    return when.strftime("%d.%m.%Y" if when.time() == datetime.time() else "%d.%m.%Y %H:%M:%S")


def places(value, decimals, grouped=False):
    rounded = D(value).quantize(D(1).scaleb(-decimals), decimal.ROUND_HALF_UP)
    text = f"{rounded:,f}" if grouped else f"{rounded:f}"
    return text.replace(",", "\u00a0").replace(".", ",")


def amount(value):
    return places(value, 2, grouped=True)


def shortest(value):
    text = f"{D(value):f}"
    return (text.rstrip("0").rstrip(".") if "." in text else text).replace(".", ",")


def right(text, count):
    return "" if text is None else text[-count:]


class Shop:
    """The bare tables."""

    def __init__(self):
        self.sold = table("PROD", "COD,NAME,KOL,PRISE,SKID,SUM2,PERS,DATETIME,TER,NUM,REZ,N1,N4,N6,T1", "ID")
        self.cash = table("KASSA", "OPER,SUM1,SKID,SUM2,PERS,DAT,TIM,TER,NUM,N3,N4,N5,N6,T1", "ID")
        self.deleted = table("SPION", "COD,NAME,KOL,PRISE,DATETIME,TER,KAS,REZ")
        self.people = dict(client(query="SELECT COD,NAME FROM KLIENT"))
        self.lines_of = collections.defaultdict(list)
        for line in self.sold:
            self.lines_of[line.NUM, line.TER].append(line)
        self.closed = collections.defaultdict(list)
        for row in self.cash:
            if row.N4 and int(row.N4) > 2:
                self.closed[row.NUM, row.TER].append(row.TIM)

    def most_frequent(self, column):
        values = collections.Counter(getattr(line, column) for line in self.sold
                                     if FROM < stamp(line.DATETIME) < TO and getattr(line, column) not in (None, "0"))
        return values.most_common(1)[0][0]


def within(when):
    return FROM < when < TO


def sales_cells(line, in_file=False):
    money = amount if in_file else lambda value: places(value, 2)
    fine = amount if in_file else lambda value: places(value, 3)
    kol = D(line.KOL) / 1000
    return [line.COD, line.NAME, shortest(kol) if in_file else places(kol, 3), money(D(line.PRISE) / 1000),
            fine(D(line.SKID) / 1000), fine(D(line.SUM2) / 1000), line.PERS, moment(stamp(line.DATETIME)), line.TER,
            line.NUM, "" if line.REZ == "0" else line.REZ, line.N6 or ""] + ([] if in_file else [right(line.T1, 13)])


def deletion_cells(shop, row, in_file=False):
    number = lambda text, decimals: places(text.replace(",", "."), decimals, grouped=in_file)
    return [row.COD, row.NAME, number(row.KOL, 3) if in_file else row.KOL, number(row.PRISE, 2), row.DATETIME, row.TER,
            row.KAS, shop.people.get(row.REZ, "")]


class Order:
    """An order's number with all rows that may stand for it: two terminals' orders of one number, and an order that was
    paid in two ways, fall together, and the server is free in the choice of the one that it shows."""

    def __init__(self):
        self.rows = []
        self.times = []

    def order_cells(self):
        return [[places(r.SUM1, 2), places(r.SKID, 3), places(r.SUM2, 2), r.PERS, r.OPER,
                 moment_always(min(self.times)), r.TER, r.NUM, right(r.T1, 13)] for r in self.rows]

    def detail_cells(self, shop, in_file=False):
        money = amount if in_file else lambda value: places(value, 2)
        fine = amount if in_file else lambda value: places(value, 3)
        cells = []
        for r in self.rows:
            for when in set(shop.closed[r.NUM, r.TER] or [None]):
                cells.append([r.TER, r.NUM, r.N3 or "", r.PERS, r.OPER, money(r.SUM1), fine(r.SKID), money(r.SUM2),
                              r.N5 or "", moment_always(min(self.times)), moment_always(max(self.times)),
                              (r.T1 or "")[:27], moment(stamp(when))])
        return cells


def moment_always(when):
    return when.strftime("%d.%m.%Y %H:%M:%S")


def orders(shop, dated, fits):
    found = collections.defaultdict(Order)
    for row in shop.cash:
        if D(row.SUM1) <= 0 or not fits(row):
            continue
        times = [stamp(line.DATETIME) for line in shop.lines_of[row.NUM, row.TER]
                 if not dated or within(stamp(line.DATETIME))]
        if times:
            found[row.NUM].rows.append(row)
            found[row.NUM].times += times
    return found


State = collections.namedtuple("State", "name clicks sold deleted ordered total quantity info word title")


def states(shop, dated):
    """Every filter: what the operator does, and which rows it means."""
    day = moment_always(FROM)[:10] if dated else "весь период"
    term, person, product, card = (shop.most_frequent(column) for column in ("TER", "PERS", "COD", "REZ"))
    order_number = next(row.KAS for row in shop.deleted if row.DATETIME.startswith(moment_always(FROM)[:10]) and row.KAS != "0")
    everything = lambda row: True
    net = lambda line: D(line.KOL) * D(line.PRISE) / 1000 - D(line.SKID)
    gross = lambda line: D(line.KOL) * D(line.PRISE) / 1000
    found = []
    for index, (excise, of_shift, of_all, in_title) in enumerate((
            ("Всего", "", "", ""), ("Алкоголь", " Алкоголь", ": Алкоголь", " (Алкоголь)"),
            ("Сигареты", " Сигареты", ": Сигареты", " (не Акциз)"), ("НЕакциз", " НЕ акциз", ": НЕ акциз", ""))):
        fits = lambda line, wanted=(None, "1", "2", "0")[index]: wanted is None or line.N1 == wanted
        clicks = [f"set Combo2 {excise}", "click " + ("CmdDat" if dated else "CmdAll")]
        first = min(stamp(line.DATETIME) for line in shop.sold)
        title = f"ПРОДАЖИ ТОВАРА ЗА {day}" if dated else f"ТАБЛИЦА ПРОДАЖ ЗА ПЕРИОД: с {moment(first)} по NOW"
        found.append(State(excise, clicks, fits, everything, everything, net if dated else None, False,
                           day + of_shift if dated else "за весь период" + of_all, "Data" if dated else "ALL",
                           title + in_title))
    back = ["set Combo2 Всего", "click " + ("CmdDat" if dated else "CmdAll")]
    found.append(State("terminal", back + [f"set Text7 {term}", "click CmdTerm"], lambda l: l.TER == term,
                       lambda s: s.TER == term, lambda k: k.TER == term, net, False, day, "Term",
                       f"ПРОДАЖИ ПО ТЕРМИНАЛУ №{term} ЗА {day}"))
    found.append(State("cashier", [f"set Text3 {person}", "click CmdOfc"], lambda l: l.PERS == person,
                       lambda s: s.KAS == person, lambda k: k.PERS == person, net, False, day, "Ofc",
                       f"ПРОДАЖИ ПО КОДУ ОФИЦИАНТА №{person} ЗА {day}"))
    found.append(State("cashier by order", [f"set Text3 {order_number}", "click CmdOfc"], lambda l: l.PERS == order_number,
                       lambda s: s.KAS == order_number, lambda k: k.PERS == order_number, net, False, day, "Ofc",
                       f"ПРОДАЖИ ПО КОДУ ОФИЦИАНТА №{order_number} ЗА {day}"))
    found.append(State("card", [f"set Text5 {card}", "click CmdDKart"], lambda l: l.REZ == card, None,
                       lambda k: k.N5 == card, gross, False, day, "DKart", f"ПРОДАЖИ ПО ДИСКОНТНОЙ КАРТЕ №{card} ЗА {day}"))
    found.append(State("not closed", ["click CmdNOpl"], lambda l: int(l.N4) < 3, None, lambda k: int(k.N4) < 3, net, True,
                       day, "NeOpl", None))
    for boxes, register, name in (((1, 0), "1", " ФП-1:Акцизный"), ((0, 1), "2", " ФП-2:ЕдНалог"), ((1, 1), None, " ВСЕ")):
        ticks = [f"set CheckFP{i + 1} {'on' if on else 'off'}" for i, on in enumerate(boxes)]
        found.append(State("fiscal" + name, ticks + ["click CmdFisk"],
                           lambda l, register=register: l.N6 is not None and register in (None, l.N6), "as it was",
                           lambda k: k.N6 is not None, net, True, day + " фискальные" + name, "Fisk",
                           f"ОПЛАЧЕННЫЕ ПО КАССЕ ЗАКАЗЫ ЗА {day}"))
    # Last: it leaves the orders as the filter before it has shown them.
    found.append(State("product", [f"set Text1 {product}", "click CmdFiltr"], lambda l: l.COD == product,
                       lambda s: s.COD == product, "as they were", net, True, day, "Kod",
                       f"ПРОДАЖИ ТОВАРА (КОД={product}) ЗА {day}"))
    return found


SALES_HEADER = "Код;Наименование;Кол-во;Цена;Скидка;Сумма;Офиц;Дата Время;Терм;Заказ;Д.Карта;Статус"
DELETIONS_HEADER = "Код;Наименование;Кол-во;Цена;Дата Время;Терм;Зак;Персонал"
DETAIL_HEADER = "Тер;Заказ;Стол;Код;Официант;Сумма;Скидка;Оплата;ДКарта;ЗаказНачало;ЗаказКонец;Исполнение;Закрыт"


class Walk:
    """Writes a play, plays it, and hands out what the grids showed and the files held, in their order."""

    def __init__(self, test):
        self.lines = ["start"]
        self.now = NOW
        self.drives = test.enterContext(tempfile.TemporaryDirectory())
        self.report = os.path.join(self.drives, "C", "Korvina", "Report")
        os.makedirs(self.report)

    def do(self, *lines):
        self.lines += lines

    def expect(self, what, value):
        self.do(f'expect {what} "{value}"')

    def show(self, grid, rows):
        """Has the player print the grid, which must have so many rows."""
        self.do(f"expect {grid}.Rows {rows}")

    def save(self, beginning, rows):
        """The operator's two presses; the file's name, or nothing where there is nothing to save."""
        self.now += datetime.timedelta(seconds=1)
        name = f"{beginning}_{self.now:%Y%m%d_%H%M%S}.csv"
        self.do(f"clock {self.now:%Y-%m-%d %H:%M:%S}", "click CmdFileCSV")
        if not rows:
            self.do('dialog "Нет данных!" critical -> OK', "click CmdFileCSV")
            return None
        self.do(f'dialog "Выгрузка в файл C:\\\\Korvina\\\\Report\\\\{name}\\nуспешно завершена!" exclamation -> OK',
                "click CmdFileCSV")
        return name

    def play(self):
        self.do("stop")
        file = os.path.join(self.drives, "walk.play")
        with open(file, "w", encoding="utf-8") as play:
            play.write(f"clock {NOW:%Y-%m-%d %H:%M:%S}\n" + "\n".join(self.lines) + "\n")
        done = subprocess.run([PLAY, "--server", HOST, "--database", SCHEMA, "--drives", self.drives, "--grids", file],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        if done.returncode != 0:
            raise AssertionError(done.stderr)
        self.shown = iter(done.stdout.splitlines())

    def grid(self, name):
        found, count = next(self.shown).split("\t")
        if found != name:
            raise AssertionError(f"{found} instead of {name}")
        return [next(self.shown).split("\t") for _ in range(int(count))]

    def file(self, name):
        with open(os.path.join(self.report, name), "rb") as file:
            content = file.read().decode("cp1251")
        if not content.endswith("\r\n") or content.count("\n") != content.count("\r\n"):
            raise AssertionError(f"{name}: lines must end with CR LF")
        return content.split("\r\n")[:-1]


class Recount(unittest.TestCase):
    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        client(query=f"CREATE DATABASE {SCHEMA} DEFAULT CHARACTER SET latin1 COLLATE latin1_bin", schema=None)
        client(script=subprocess.run([DEMO, "--now", str(NOW), "--lines", str(LINES), "--mode", "normal"], check=True,
                                     stdout=subprocess.PIPE).stdout)
        # Orders of two terminals under one number, so that they fall together.
        client(query="UPDATE KASSA SET NUM=7 WHERE NUM=200007; UPDATE PROD SET NUM=7 WHERE NUM=200007")
        cls.shop = Shop()

    @classmethod
    def tearDownClass(cls):
        client(query=f"DROP DATABASE {SCHEMA}", schema=None)

    def same_rows(self, found, expected, name):
        self.assertEqual(collections.Counter(map(tuple, found)), collections.Counter(map(tuple, expected)), name)

    def in_order(self, moments, name):
        read = [datetime.datetime.strptime(text, "%d.%m.%Y %H:%M:%S") for text in moments]
        self.assertEqual(read, sorted(read), name)

    def same_orders(self, found, expected, cells, number_at, name):
        self.assertEqual(len(found), len(expected), name)
        last = datetime.datetime.min
        for row in found:
            order = expected[row[number_at]]
            self.assertIn(row, cells(order), name)
            later = [when for when in order.times if when >= last]
            self.assertTrue(later, f"{name}: order {row[number_at]} stands too late")
            last = min(later)

    def test_the_sales_tab(self):
        shop, walk = self.shop, Walk(self)
        checks = []
        walk.do("click CmdPlus", f"pick Month0 {DAY:%d.%m.%Y}", "click CmdDat")
        for dated in (True, False):
            if not dated:
                walk.do("click CmdDG_0", "click CmdAll")
            for grid in range(3):
                walk.do(f"click CmdDG_{grid}")
                before = None
                for state in states(shop, dated):
                    off = (grid == 1 and state.name in ("card", "not closed")) or (grid == 2 and state.name == "product")
                    if off:
                        continue
                    name = f"{'shift' if dated else 'all'}, grid {grid}, {state.name}"
                    walk.do(*state.clicks)
                    walk.expect("LblInf.Caption", state.info)
                    sold = [line for line in shop.sold
                            if state.sold(line) and (not dated or within(stamp(line.DATETIME)))]
                    sums = [state.total(line) for line in sold] if state.total else []
                    total = amount(sum(sums) / 1000) if sums else ""
                    walk.expect("LblSum.Caption", total)
                    quantity = sum(D(line.KOL) for line in sold) / 1000
                    walk.expect("LblKol.Caption", places(quantity, 3, grouped=True) if state.quantity and sold else "")
                    if state.ordered != "as they were":
                        before = orders(shop, dated, state.ordered)
                    walk.show("DataGrid4", len(before))
                    checks.append(lambda found=before, name=name: self.same_orders(
                        walk.grid("DataGrid4"), found, Order.order_cells, 7, name))
                    if grid == 0:
                        self.plan_sales(walk, checks, state, sold, total, name)
                    elif grid == 1:
                        if state.deleted != "as it was":
                            rows = [row for row in shop.deleted if state.deleted(row) and
                                    (not dated or row.DATETIME.startswith(moment_always(FROM)[:10]))]
                        self.plan_deletions(walk, checks, rows, name)
                    else:
                        self.plan_detail(walk, checks, before, name)
        walk.play()
        for check in checks:
            check()
        self.assertGreater(len(checks), 120)

    def plan_sales(self, walk, checks, state, sold, total, name):
        walk.show("DataGrid3", len(sold))

        def check_grid():
            rows = walk.grid("DataGrid3")
            self.same_rows(rows, [sales_cells(line) for line in sold], name)
            self.in_order([row[7] for row in rows], name)

        checks.append(check_grid)
        file = walk.save("Prod" + state.word, sold)
        now = moment(walk.now)
        if file is None:
            return

        def check_file():
            lines = walk.file(file)
            title = file.removesuffix(".csv") if state.title is None else state.title.replace("NOW", now)
            self.assertEqual(lines[:3], [";" + title, "", SALES_HEADER], name)
            if total:
                self.assertEqual(lines[-2:], ["", ";;;;ИТОГО:;" + total], name)
            rows = [line.split(";") for line in (lines[3:-2] if total else lines[3:])]
            self.same_rows(rows, [sales_cells(line, in_file=True) for line in sold], name)
            self.in_order([row[7] for row in rows], name)

        checks.append(check_file)

    def plan_deletions(self, walk, checks, rows, name):
        walk.show("DataGrid11", len(rows))
        checks.append(lambda: self.same_rows(walk.grid("DataGrid11"), [deletion_cells(self.shop, r) for r in rows], name))
        file = walk.save("Delete", rows)
        if file is None:
            return

        def check_file():
            lines = walk.file(file)
            self.assertEqual(lines[:3], [";ТАБЛИЦА АННУЛЯЦИЙ", "", DELETIONS_HEADER], name)
            self.same_rows([line.split(";") for line in lines[3:]],
                           [deletion_cells(self.shop, row, in_file=True) for row in rows], name)

        checks.append(check_file)

    def plan_detail(self, walk, checks, expected, name):
        walk.show("DataGrid2", len(expected))
        checks.append(lambda: self.same_orders(walk.grid("DataGrid2"), expected,
                                               lambda order: order.detail_cells(self.shop), 1, name))
        file = walk.save("Zakaz", expected)
        if file is None:
            return

        def check_file():
            lines = walk.file(file)
            self.assertEqual(lines[:3], [";;;;ЖУРНАЛ ЗАКАЗОВ", "", DETAIL_HEADER], name)
            self.same_orders([line.split(";") for line in lines[3:]], expected,
                             lambda order: order.detail_cells(self.shop, in_file=True), 1, name)

        checks.append(check_file)

    def test_one_order(self):
        shop, walk = self.shop, Walk(self)
        line = next(line for line in shop.sold if within(stamp(line.DATETIME)))
        sold = [other for other in shop.sold if (other.NUM, other.TER) == (line.NUM, line.TER)]
        total = amount(sum(D(l.KOL) * D(l.PRISE) / 1000 - D(l.SKID) for l in sold) / 1000)
        walk.do("click CmdDG_2", f"set Text2 {line.NUM}", f"set Text7 {line.TER}", "key Text2 Enter")
        walk.expect("LblInf.Caption", f"заказ № {line.NUM}")
        walk.expect("LblSum.Caption", total)
        walk.show("DataGrid3", len(sold))
        walk.show("DataGrid4", 1)
        file = walk.save("ProdChek", sold)
        walk.play()
        self.same_rows(walk.grid("DataGrid3"), [sales_cells(l) for l in sold], "the order's lines")
        self.assertEqual([row[7] for row in walk.grid("DataGrid4")], [line.NUM])
        first = min(sold, key=lambda l: l.DATETIME)
        self.assertEqual(walk.file(file)[0], f";КОПИЯ ЧЕКА(ЗАКАЗА) № {line.NUM}  {moment(stamp(first.DATETIME))}   {line.TER}")

    def test_the_lite_tab(self):
        client(query="UPDATE CONST SET N3=1 WHERE COD=7")
        shop, walk = self.shop, Walk(self)
        term, person, card = (shop.most_frequent(column) for column in ("TER", "PERS", "REZ"))
        checks = []
        walk.do("click CmdPlusLite", f"pick Month1 {DAY:%d.%m.%Y}")
        for dated in (True, False):
            day = f"{DAY:%d.%m.%Y}" if dated else "весь период"
            whole = ("CmdDatLite", day) if dated else ("CmdAllLite", "за весь период")
            for clicks, fits, info in (
                    ([f"click {whole[0]}"], lambda k: True, whole[1]),
                    ([f"set Text4 {term}", "click CmdTermLite"], lambda k: k.TER == term, f"{day} по кассе №{term}"),
                    ([f"set Text8 {person}", "click CmdOfcLite"], lambda k: k.PERS == person, f"{day} по кассиру №{person}"),
                    ([f"set Text9 {card}", "click CmdDKartLite"], lambda k: k.N5 == card, f"{day} по карте №{card}"),
                    (["click CmdFiskLite"], lambda k: k.N6 is not None, f"{day} фискальные")):
                walk.do(*clicks)
                walk.expect("LblInfLite.Caption", info)
                fitting = [k for k in shop.cash if fits(k) and (not dated or within(stamp(k.DAT)))]
                total = amount(sum(D(k.SUM1) - D(k.SKID) for k in fitting)) if dated and fitting else ""
                walk.expect("LblSumLite.Caption", total)
                rows = [[k.OPER, places(k.SUM1, 2), places(k.SKID, 2), places(k.SUM2, 2), moment_always(stamp(k.DAT)),
                         k.PERS, k.TER, k.NUM, "" if k.N5 == "0" else k.N5 or "", k.N6 or "",
                         "Z" if k.N4 not in (None, "0") else ""] for k in fitting if D(k.SUM1) > 0]
                walk.show("DataGrid7", len(rows))

                def check(rows=rows, info=info):
                    found = walk.grid("DataGrid7")
                    self.same_rows(found, rows, info)
                    self.in_order([row[4] for row in found], info)

                checks.append(check)
        try:
            walk.play()
        finally:
            client(query="UPDATE CONST SET N3=0 WHERE COD=7")
        for check in checks:
            check()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
