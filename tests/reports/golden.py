"""What the reports of a shop must say, computed here from the bare rows of its tables and from the rules of the reports,
not by the program's statements. Every report is a list of lines or a table of texts."""

import datetime
import struct
import subprocess
from decimal import ROUND_HALF_EVEN, ROUND_HALF_UP, Decimal

NO_BREAK = "\u00a0"
KITCHENS = (1, 2, 3)
CLOSED = 3


def client(host, schema, script=None, query=None):
    command = ["mariadb", "--no-defaults", f"--host={host}", "--user=zrt", "--password=41730926",
               "--default-character-set=latin1", "--batch", "--skip-column-names"]
    if query is not None:
        command += ["-e", query.encode("cp1251")]
    if schema:
        command.append(schema)
    return subprocess.run(command, input=script, check=True, stdout=subprocess.PIPE).stdout.decode("cp1251")


def amount(value, decimals=2):
    """Grouped, with a comma, halves away from zero."""
    rounded = Decimal(value).quantize(Decimal(1).scaleb(-decimals), ROUND_HALF_UP)
    text = f"{abs(rounded):,.{decimals}f}".replace(",", NO_BREAK).replace(".", ",")
    return "-" + text if rounded < 0 else text


def single(value):
    """The nearest number of single precision."""
    return struct.unpack("f", struct.pack("f", float(value)))[0]


def day_text(day):
    return day.strftime("%d.%m.%Y")


class Shop:
    """All rows of a shop's tables, and the reports over them."""

    def __init__(self, host, schema):
        self.host, self.schema = host, schema
        self.prod = self.rows("PROD", "ID COD NAME KOL PRISE SKID SUM2 TER PERS DATETIME REZ NUM N1 N4 N5")
        self.kassa = self.rows("KASSA", "ID SUM1 SKID SUM2 TER PERS TIM NUM N1 N2 N3 N4")
        self.waiters = self.rows("KLIENT", "COD NAME")
        self.cashiers = self.rows("PERSON", "COD NAME")
        self.cards = self.rows("DISCOUNT", "REZ PROZ BARCODE")
        settings = {row["COD"]: row for row in self.rows("CONST", "COD N9 N10")}
        self.kitchens = {1: settings[5]["N9"], 2: settings[5]["N10"], 3: settings[6]["N10"]}

    def rows(self, table, columns):
        texts = {"NAME", "DATETIME", "TIM", "BARCODE", "N9", "N10"} if table != "KASSA" else {"TIM"}
        listed = ",".join(f"HEX({c})" if c in texts else c for c in columns.split())
        rows = []
        for line in client(self.host, self.schema, query=f"SELECT {listed} FROM {table}").splitlines():
            row = {}
            for column, value in zip(columns.split(), line.split("\t")):
                if value == "NULL":
                    row[column] = None
                elif column in texts:
                    row[column] = bytes.fromhex(value).decode("cp1251")
                else:
                    row[column] = Decimal(value)
            rows.append(row)
        return rows

    # Periods

    @staticmethod
    def moment(day, hour):
        return datetime.datetime.combine(day, datetime.time(hour))

    def sold(self, first, last, hour):
        begin, end = (str(self.moment(day, hour)) for day in (first, last))
        return [row for row in self.prod if row["DATETIME"] is not None and begin <= row["DATETIME"] < end]

    def paid(self, first, last, hour):
        begin, end = (str(self.moment(day, hour)) for day in (first, last))
        return [row for row in self.kassa if row["TIM"] is not None and begin <= row["TIM"] < end]

    # Sums

    @staticmethod
    def total(terms):
        """The sum of what is known, and None where nothing is."""
        known = [term for term in terms if term is not None]
        return sum(known, Decimal(0)) if known else None

    @staticmethod
    def takings(row):
        """Thousandths of a line before its discount."""
        return None if row["KOL"] is None or row["PRISE"] is None else row["KOL"] * row["PRISE"] / 1000

    @classmethod
    def gross(cls, rows):
        whole = cls.total(cls.takings(row) for row in rows)
        return None if whole is None else whole / 1000

    @classmethod
    def net(cls, rows):
        def left(row):
            return None if cls.takings(row) is None or row["SKID"] is None else cls.takings(row) - row["SKID"]

        whole = cls.total(left(row) for row in rows)
        return None if whole is None else whole / 1000

    @classmethod
    def pair(cls, rows):
        """Both sums in 21 characters, or nothing where nothing was sold."""
        net, gross = cls.net(rows), cls.gross(rows)
        if gross is None:
            return ""
        return (("" if net is None else amount(net)) + amount(gross).rjust(11)).rjust(21)

    def places(self):
        """(category, label of 21 characters) of kitchens and workshops."""
        result = []
        for kitchen in KITCHENS:
            stored = self.kitchens[kitchen]
            cuts = [(0, 14), (14, 26), (26, 38), (38, 50)]
            for workshop, (begin, end) in enumerate(cuts):
                if stored is None:
                    label = f"Кухня{kitchen}" if workshop == 0 else f"Кухня{kitchen}-{workshop}"
                else:
                    label = stored[begin:end]
                result.append((kitchen if workshop == 0 else kitchen * 10 + workshop, label.ljust(21)))
        return result

    @staticmethod
    def of_place(rows, category):
        return [row for row in rows if row["N5"] == category and row["COD"] not in (None, 0)]

    @staticmethod
    def with_excise(rows):
        return [row for row in rows if (row["N1"] or 0) > 0 and row["COD"] not in (None, 0)]

    # The system report

    def system_block(self, first, last, hour):
        rows = self.sold(first, last, hour)
        closed = [row for row in self.paid(first, last, hour) if (row["N4"] or 0) > 2]

        def orders(some):
            return str(len({row["NUM"] for row in some})).rjust(5)

        def money(value):
            return "" if value is None else amount(value).rjust(11)

        def skid(some):
            return money(self.total(row["SKID"] and row["SKID"] / 1000 for row in some))

        def operations(label, some):
            paid = [row["N2"] / 100 for row in some if row["N2"] is not None]
            return label + str(len(paid)).rjust(5) + money(self.total(paid))

        lines = ["-" * 42, "ВСЕГО (без учёта скидок): " + orders(rows) + money(self.gross(rows)),
                 "ВСЕГО (со скидками):      " + orders(rows) + money(self.net(rows)),
                 operations("Закрыто заказов за наличн:", [r for r in closed if (r["SUM2"] or 0) > 0])]
        by_terminal = [r for r in closed if r["SUM2"] == 0]
        if any(r["N2"] is not None for r in by_terminal):
            lines.append(operations("Закрыто без опл./терминал:", by_terminal))
        unclosed = [r for r in rows if r["N4"] is not None and r["N4"] < 3]
        if unclosed:
            lines.append("НЕ ЗАКРЫТЫ:               " + orders(unclosed) + money(self.net(unclosed)))
        else:
            lines.append("     на текущий момент все заказы закрыты!")
        lines += ["", "", "наценки и скидки       нац/скид  ост.сумма", "-" * 42]
        surcharge = [r for r in rows if r["COD"] == 0]
        if surcharge:
            lines += ["наценка % от суммы        " + orders(surcharge) + money(self.net(surcharge)), "-" * 42]
        given = [r for r in rows if (r["SKID"] or 0) > 0]
        by_hand = [r for r in given if r["REZ"] == 0]
        counted = by_hand + [r for r in rows if (r["REZ"] or 0) > 0]
        if counted:
            lines += ["Cкидки всего:  " + orders(counted) + skid(given) + money(self.net(given)), "-" * 42]
        if by_hand:
            lines.append("в т.ч. скидка %" + orders(by_hand) + skid(by_hand) + money(self.net(by_hand)))
        kind_of = {}
        for card in self.cards:
            kind_of.setdefault(card["REZ"], []).append(card["PROZ"])
        kinds = {kind for row in given for kind in kind_of.get(row["REZ"], [])}
        for kind in sorted(kinds, key=lambda kind: (kind is not None, kind)):
            mine = [r for r in given if kind in kind_of.get(r["REZ"], [])]
            everyone = [r for r in rows if kind in kind_of.get(r["REZ"], [])]
            # Cards without a percentage are of no kind whose orders could be counted.
            what = " " * 5 if kind is None else str(kind) + orders(everyone)
            lines.append("д.карта вид " + what + skid(mine) + money(self.net(mine)))
        lines += ["", "", "по категориям          со скидк. без скид.", "-" * 42,
                  "Бар".ljust(21) + self.pair(self.of_place(rows, 0))]
        parts = [("в т.ч. алк. + сиг.".ljust(21), self.with_excise(rows))]
        parts += [(label, self.of_place(rows, category)) for category, label in self.places()]
        lines += [label + self.pair(some) for label, some in parts if self.pair(some)]
        return lines + ["", "=" * 42]

    @staticmethod
    def days(first, last):
        return [first + datetime.timedelta(days=n) for n in range((last - first).days)]

    @staticmethod
    def span(first, last):
        return f"с {day_text(first)} по {day_text(last - datetime.timedelta(days=1))}"

    def system_period(self, first, last, hour):
        closing = last - datetime.timedelta(days=1)
        head = f"с {first:%d.%m} по {closing:%d.%m}            чеки     сумма"
        return ["СИСТЕМНЫЙ ОТЧЁТ " + self.span(first, last), "=" * 42, head] + self.system_block(first, last, hour)

    def system_by_days(self, first, last, hour):
        lines = ["СИСТЕМНЫЙ ОТЧЁТ " + self.span(first, last)]
        for day in self.days(first, last):
            lines += ["=" * 42, day_text(day) + "                  чеки     сумма"]
            lines += self.system_block(day, day + datetime.timedelta(days=1), hour)
        return lines

    # Reports by place

    def goods(self, first, last, hour, wide):
        more = 26 if wide else 0
        rows = self.sold(first, last, hour)
        lines = ["ОТЧЁТ  " + self.span(first, last), "по товарам в разрезе локализаций", "=" * (42 + more),
                 "Категория".ljust(23 + more) + "со скидк. без скид.", "-" * (42 + more)]
        for category, label in [(0, "Бар".ljust(21))] + self.places():
            mine = self.of_place(rows, category)
            if not self.pair(mine):
                continue
            lines += ["", label + " " * more + self.pair(mine), "-" * (42 + more)]
            products = {}
            for row in sorted(mine, key=lambda r: r["ID"]):
                products.setdefault(row["COD"], []).append(row)
            # One product has one name, but for those that were renamed; the shop here has none.
            for sold in sorted(products.values(), key=lambda some: some[0]["NAME"].encode("cp1251")):
                name = sold[0]["NAME"][:21 + more].ljust(25 + more)
                kol, money = self.total(r["KOL"] for r in sold), self.gross(sold)
                lines.append(name + ("" if kol is None else amount(kol / 1000)).rjust(7) +
                             ("" if money is None else amount(money)).rjust(10))
        return lines + ["", "=" * (42 + more)]

    def waiters_block(self, first, last, hour):
        rows = self.sold(first, last, hour)
        lines = ["=" * 42, "Имя\\категория          со скидк. без скид.", "-" * 42]
        for waiter in sorted(self.waiters, key=lambda w: w["COD"]):
            mine = [r for r in rows if r["PERS"] == waiter["COD"]]
            if not self.pair(mine):
                continue
            head = f"{waiter['COD']}  {waiter['NAME'] or ''}"[:21].ljust(21)
            lines += ["", head + self.pair(mine), "-" * 42]
            parts = [("Бар", self.of_place(mine, 0)), ("в т.ч. алк. + сиг.", self.with_excise(mine))]
            parts += [(label, self.of_place(mine, category)) for category, label in self.places()]
            parts += [("ДОПОЛН. НАЦЕНКА", [r for r in mine if r["COD"] == 0])]
            lines += [label.ljust(21) + self.pair(some) for label, some in parts if self.pair(some)]
            lines.append("-" * 42)
        return lines + ["=" * 42]

    def waiters_period(self, first, last, hour):
        head = ["ОТЧЁТ  " + self.span(first, last), "по официантам в разрезе локализаций"]
        return head + self.waiters_block(first, last, hour)

    def waiters_by_days(self, first, last, hour):
        lines = ["ОТЧЁТ  " + self.span(first, last), "по официантам в разрезе локализаций"]
        for day in self.days(first, last):
            lines += self.waiters_block(day, day + datetime.timedelta(days=1), hour)
        return lines

    # Every order of every waiter

    def waiters_full(self, first, last, hour):
        rows = self.sold(first, last, hour)
        begin = self.moment(first, hour)
        end = self.moment(last, hour) - datetime.timedelta(seconds=1)
        lines = ["ПОЛНЫЙ ОТЧЁТ ПО ОФИЦИАНТАМ      за период:", f"с {begin} по {end}", "=" * 42,
                 "Заказ   Стол       Сумма    Оплата  Скидка", "=" * 42]
        started = {}
        for row in rows:
            key = (row["TER"], row["NUM"])
            started[key] = min(started.get(key, row["DATETIME"]), row["DATETIME"])
        everything = [0.0] * 4  # orders, payments, cash, by terminal
        for waiter in sorted(self.waiters, key=lambda w: w["COD"]):
            mine = [r for r in rows if r["PERS"] == waiter["COD"]]
            if not mine:
                continue
            lines += [" ", f"{waiter['COD']} {waiter['NAME'] or ''}"[:26].ljust(27) + " " * 10, "-" * 42]
            orders = {}
            for row in self.kassa:
                key = (row["TER"], row["NUM"])
                if row["PERS"] == waiter["COD"] and row["SUM1"] and key in started:
                    orders.setdefault(key, row)
            totals = [0.0] * 4
            for key in sorted(orders, key=lambda k: (started[k], k[1], k[0])):
                order = orders[key]
                total, payment = order["SUM1"] - (order["SKID"] or 0), (order["N2"] or Decimal(0)) / 100
                by_terminal = payment > 0 and order["SUM2"] == 0
                table = "ЧЕК" if order["N3"] is None else str(order["N3"])
                lines.append(
                    f"{key[0]}-{key[1]}".ljust(8) + table.rjust(3) + (str(order["N1"]) if order["N1"] else "").rjust(3) + " " +
                    amount(total).rjust(9) + " " + (amount(payment) if payment else "").rjust(9) +
                    ("#" if by_terminal else " ") + (amount(order["SKID"]) if order["SKID"] else "").rjust(7))
                for sums in (totals, everything):
                    for column, value in ((0, total), (1, payment), (3 if by_terminal else 2, payment)):
                        sums[column] = single(sums[column] + float(value))
            discount = (self.total(r["SKID"] for r in mine) or 0) / 1000
            lines += ["-" * 42, "ИТОГО:         " + amount(totals[0]).rjust(9) + " " + amount(totals[1]).rjust(9) + " " +
                      (amount(discount) if discount else "").rjust(7)]
        orders, payments, cash, by_terminal = everything
        lines += [" ", "=" * 42, "ИТОГО ЗАКАЗЫ:           " + amount(orders).rjust(10), " ",
                  "ИТОГО ОПЛАТА:           " + amount(payments).rjust(10)]
        if by_terminal > 0:
            lines += ["              наличными:" + amount(cash).rjust(10),
                      "         через терминал:" + amount(by_terminal).rjust(10) + "#"]
        lines.append(" ")
        if orders <= payments:
            lines.append("Все заказы закрыты!")
        else:
            lines.append("НЕЗАКРЫТЫЕ ЗАКАЗЫ:      " + amount(single(orders - payments)).rjust(10))
        return lines

    # Tables by shift day

    def shift_day(self, row, hour):
        return (datetime.datetime.fromisoformat(row["DATETIME"]) - datetime.timedelta(hours=hour)).date()

    def taken(self, rows, before):
        """Takings as a cell shows them, those of nothing too."""
        return amount((self.gross(rows) if before else self.net(rows)) or 0)

    def whole_taken(self, codes, before):
        """Takings of a day, which grow code by code in whole thousandths."""
        whole = Decimal(0)
        for rows in codes:
            whole = (whole + ((self.gross(rows) if before else self.net(rows)) or 0) * 1000).quantize(
                Decimal(1), ROUND_HALF_EVEN)
        return amount(whole / 1000)

    def pivot(self, first, last, hour, column, names, headers, value, day_total=None):
        """Header row and rows; `value` makes the text of some sold rows, `day_total` that of a day from the sold rows of
        each code."""
        rows = self.sold(first, last, hour)
        days = self.days(first, last)
        table = [headers + [day_text(day) for day in days]]
        codes = sorted({row[column] for row in rows})
        for number, code in enumerate(codes, 1):
            mine = [r for r in rows if r[column] == code]
            cells = [str(number), str(code), names.get(code) or "", value(mine)]
            for day in days:
                some = [r for r in mine if self.shift_day(r, hour) == day]
                cells.append(value(some) if some else "")
            table.append(cells)
        if day_total:
            table.append(["", "", "ИТОГО", value(rows)] +
                         [day_total([[r for r in rows if r[column] == code and self.shift_day(r, hour) == day]
                                     for code in codes]) for day in days])
        return table

    def staff(self, cashiers):
        return {row["COD"]: row["NAME"] for row in (self.cashiers if cashiers else self.waiters)}

    def tabel(self, first, last, hour, cashiers, before):
        value = lambda rows: self.taken(rows, before)
        return self.pivot(first, last, hour, "PERS", self.staff(cashiers), ["№", "Код", "Имя", "СУММА"], value,
                          lambda codes: self.whole_taken(codes, before))

    def average(self, first, last, hour, cashiers, before):
        def value(rows):
            orders = len({r["NUM"] for r in rows})
            taken = sum(r["SUM2"] + (r["SKID"] if before else 0) for r in rows)
            half_up = lambda x, places: str(x.quantize(Decimal(1).scaleb(-places), ROUND_HALF_UP))
            return half_up(Decimal(len(rows)) / orders, 1) + " * " + half_up(taken / (orders * 1000), 2)

        return self.pivot(first, last, hour, "PERS", self.staff(cashiers), ["№", "Код", "Имя", "Длина*Сумма"], value)

    def discounts(self, first, last, hour, before):
        value = lambda rows: self.taken(rows, before)
        barcodes = {row["REZ"]: row["BARCODE"] for row in self.cards}
        return self.pivot(first, last, hour, "REZ", barcodes, ["№", "Код", "Штрих", "СУММА"], value,
                          lambda codes: self.whole_taken(codes, before))

    def hours(self, first, last, hour, count, before=False):
        """Takings or orders by shift day and hour of the shift."""
        def value(rows):
            if count:
                return amount(len({(r["TER"], r["NUM"]) for r in rows}))
            return self.taken(rows, before)

        def shift_hour(row):
            return (int(row["DATETIME"][11:13]) - hour) % 24

        rows = self.sold(first, last, hour)
        table = [["Дата", "Всего"] + [f"{(i + hour) % 24:02}:00+" for i in range(24)]]
        days = sorted({self.shift_day(row, hour) for row in rows}, key=day_text)
        sums = [[] for _ in range(25)]
        for day in days:
            mine = [r for r in rows if self.shift_day(r, hour) == day]
            parts = [mine] + [[r for r in mine if shift_hour(r) == i] for i in range(24)]
            table.append([day_text(day)] + [value(parts[0])] + [value(part) if part else "0" for part in parts[1:]])
            for column, part in enumerate(parts):
                sums[column].append(part)
        totals = []
        for parts in sums:
            if count:
                totals.append(amount(sum(len({(r["TER"], r["NUM"]) for r in part}) for part in parts)))
            else:
                totals.append(value([row for part in parts for row in part]))
        return table + [["ИТОГО:"] + totals]

    # Stock. `posted` holds the register's posted rows.

    KINDS = {0: ("Дневной Отчёт", "out"), 1: ("Приходная накладная", "in"), 2: ("Расходная накладная", "out"),
             3: ("Списание товара", "other"), 4: ("ИНВЕНТАРИЗАЦИЯ", None), 6: ("Перемещение ПРИХОД", "in"),
             7: ("Перемещение РАСХОД", "other")}

    def load_stock(self):
        columns = "ID DOC DOCTYP COD KOL SUMM OSTKOL DATEDOC RUN"
        listed = columns.replace("DATEDOC", "DATE_FORMAT(DATEDOC,'%Y-%m-%d_%T')").split()
        self.posted = []
        for line in client(self.host, self.schema, query=f"SELECT {','.join(listed)} FROM REGISTR").splitlines():
            row = dict(zip(columns.split(), line.split("\t")))
            row = {k: v.replace("_", " ") if k == "DATEDOC" else int(v) for k, v in row.items()}
            if row["RUN"] == 1:
                self.posted.append(row)
        self.products = self.rows("TOVAR", "COD COD1 NAME BARCODE PRISE N5")

    def balance(self, cod, moment):
        rows = [r for r in self.posted if r["COD"] == cod and r["DATEDOC"] <= str(moment)]
        return max(rows, key=lambda r: r["DATEDOC"])["OSTKOL"] if rows else 0

    def bought_at(self, cod):
        rows = [r for r in self.posted if r["COD"] == cod and r["DOCTYP"] == 1]
        if not rows:
            return Decimal(0)
        newest = max(rows, key=lambda r: r["DATEDOC"])
        return Decimal(newest["SUMM"]) / newest["KOL"] * 1000

    @staticmethod
    def quantity(thousandths):
        return amount(Decimal(thousandths) / 1000, 3) + " "

    def balances(self, day, hour, order, without_zero, book):
        """Header row and rows of the list of balances at the end of the shift that begins on `day`."""
        moment = self.moment(day + datetime.timedelta(days=1), hour)
        name = lambda p: p["NAME"].encode("cp1251")
        keys = (name, lambda p: p["COD"], lambda p: (p["PRISE"], name(p)), lambda p: (p["N5"], name(p)))
        table = [["№", "Код", "Наименование", "ШтрихКод", "Кол-во", "Цена", "Сумма", "ЦенаЗак" if book else "Цена_зак",
                  "Наценка"]]
        whole = Decimal(0)
        money = lambda value: amount(value) + " "
        for product in sorted(self.products, key=keys[order]):
            left = self.balance(product["COD"], moment)
            if without_zero and left == 0:
                continue
            price, bought = product["PRISE"] / 100, self.bought_at(product["COD"]) / 1000
            # The whole is kept in whole thousandths of money.
            whole = (whole + product["PRISE"] * left / 100).quantize(Decimal(1), ROUND_HALF_EVEN)
            markup = " " + amount(100 * (price / bought - 1), 1) + "%" if bought else "-100%" if book else " -100%"
            table.append([str(len(table)), str(product["COD"]), product["NAME"], product["BARCODE"], self.quantity(left),
                          money(price), money(price * left / 1000), money(bought), markup])
        return table + [["", "", "ИТОГО", "", "", "", money(whole / 1000), "", ""]]

    def column_of(self, doctyp, kol):
        """Column of a movement (0 in, 1 sold, 2 other) and the quantity there."""
        way = self.KINDS[doctyp][1] or ("other" if kol < 1 else "in")
        column = ("in", "out", "other").index(way)
        return column, kol if column == 0 else -kol

    def moved(self, first, last, hour):
        begin, end = str(self.moment(first, hour)), str(self.moment(last, hour))
        return [r for r in self.posted if begin <= r["DATEDOC"] < end]

    def movement(self, first, last, hour, cod):
        table = [["Документ", "№", "ДатаВремя", "ОстатокНАЧ", "Приход", "Реализац", "РасходПроч", "ОстатокКОН"]]
        start = left = self.balance(cod, self.moment(first, hour))
        sums = [0, 0, 0]
        for row in sorted((r for r in self.moved(first, last, hour) if r["COD"] == cod), key=lambda r: r["DATEDOC"]):
            column, kol = self.column_of(row["DOCTYP"], row["KOL"])
            sums[column] += kol
            moves = [self.quantity(kol) if i == column else "" for i in range(3)]
            when = datetime.datetime.fromisoformat(row["DATEDOC"])
            text = when.strftime("%d.%m.%Y %H:%M:%S") if when.time() != datetime.time() else when.strftime("%d.%m.%Y")
            table.append([self.KINDS[row["DOCTYP"]][0], str(row["DOC"]), text, self.quantity(left), *moves,
                          self.quantity(row["OSTKOL"])])
            left = row["OSTKOL"]
        return table + [["ИТОГО", "", "", self.quantity(start), *map(self.quantity, sums), self.quantity(left)]]

    def turnover(self, first, last, hour):
        table = [["Код", "Наименование", "ОстатокНАЧ", "Приход", "Реализац", "РасходПроч", "ОстатокКОН"]]
        rows = self.moved(first, last, hour)
        for product in sorted((p for p in self.products if p["COD1"] == 1), key=lambda p: p["COD"]):
            kinds = {}
            for row in rows:
                if row["COD"] == product["COD"]:
                    kinds[row["DOCTYP"]] = kinds.get(row["DOCTYP"], 0) + row["KOL"]
            if not kinds:
                continue
            sums = [0, 0, 0]
            for doctyp, kol in kinds.items():
                column, shown = self.column_of(doctyp, kol)
                sums[column] += shown
            ends = [self.balance(product["COD"], self.moment(day, hour)) for day in (first, last)]
            table.append([str(product["COD"]), product["NAME"], self.quantity(ends[0]), *map(self.quantity, sums),
                          self.quantity(ends[1])])
        return table
