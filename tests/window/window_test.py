"""A day's first minutes in the real window: starting in every operating mode, every tab, menus, the about box, stopping."""

import datetime
import time
import unittest

import pyatspi
from zrt_window import Program, Screen, Shop, wait_for

# The terminals have sold until this evening, so that today's shift is full at whatever hour the tests run.
EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")
TODAY = datetime.date.today()

SALES, REPORT, CATALOGUE, PANELS, JOURNAL = (
    "Таблица Продаж", "Системный Отчёт", "Справочники", "Настройка сенсорной клавиатуры", "Журнал документов")


def setUpModule():
    unittest.enterModuleContext(Screen())


def assert_keeps_its_size(test, form):
    """Going from any tab to any other one changes nothing about the window, which fits the screen."""
    def size():
        box = form.accessible.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        return box.width, box.height

    before = size()
    test.assertLessEqual(before, (1024, 768))
    tabs = form.tabs()
    for start in tabs:
        for end in tabs:
            for tab in (start, end):
                form.tab(tab)
                test.assertEqual(size(), before, f"from {start} to {end}, at {tab}")
    time.sleep(0.2)  # a window that grows stays so
    test.assertEqual(size(), before)


def stop(test, program, form):
    """Closes the main window as the operator does; the program must end in peace."""
    form.close()
    test.assertEqual(program.exit_code(), 0)


class EveryMode(unittest.TestCase):
    """What is there and what is not, from the first window to the end of the program."""

    def test_tabs_menus_and_size(self):
        everything = ["Документы", "Отчёты", "Обработки", "Настройки", "О программе"]
        for mode, title, tabs, menus, fill in (
                ("register", "zrt", [SALES, REPORT, CATALOGUE, PANELS, JOURNAL], everything, "LblSum"),
                ("lite", "zrt Lite", ["Реализация", CATALOGUE, PANELS], [], "LblSumLite"),
                ("restricted", "zrt", [SALES, REPORT, CATALOGUE, PANELS], everything[1:], "LblSum")):
            with self.subTest(mode):
                Shop("--mode", mode, "--now", EVENING)
                with Program() as program:
                    form = program.form("Form2")
                    self.assertFalse(program.is_open("frmSplash1"))
                    self.assertEqual((form.title, form.tabs(), form.menus()), (title, tabs, menus))
                    self.assertNotEqual(form.caption(fill), "")
                    assert_keeps_its_size(self, form)
                    form.tab(CATALOGUE)
                    wait_for("the keyboard in the catalogue", lambda: form.has_focus("DataGrid1_0"))
                    self.assertEqual(form.is_enabled("CmdNew"), mode != "restricted")
                    stop(self, program, form)

    def test_a_base_that_the_program_never_saw(self):
        shop = Shop("--version", "0", "--now", EVENING)
        with Program() as program:
            boxes = [(f"База данных успешно обновлена до версии {version}", "OK") for version in range(1, 5)]
            boxes += [("Создать регистр остатков?", "OK"), ("Версия сервера MySQL 4.0.12 ?", "Нет")]
            for text, answer in boxes:
                box = program.box()
                self.assertEqual(box.text, text)
                box.press(answer)
            form = program.form("Form2")
            self.assertIn(JOURNAL, form.tabs())
            self.assertEqual(shop.ask("SELECT N3 FROM CONST WHERE COD=7"), [["-1"]])
            stop(self, program, form)

    def test_no_database(self):
        Shop("none")
        with Program() as program:
            box = program.box()
            self.assertEqual(box.text, "Нет соединения с Базой Данных!")
            box.press("OK")
            box = program.box()
            self.assertEqual(box.text, "Ошибка выполнения. Действие прервано.")
            box.press("OK")
            self.assertNotEqual(program.exit_code(), 0)


class Hands(unittest.TestCase):
    """Keyboard and mouse on the real window."""

    @classmethod
    def setUpClass(cls):
        cls.shop = Shop("--mode", "register", "--now", EVENING)

    def setUp(self):
        self.program = self.enterContext(Program())
        self.form = self.program.form("Form2")
        self.form.activate()

    def test_about_box_closes_by_a_key_and_by_a_click(self):
        for close in ("key", "click"):
            self.form.menu("О программе")
            about = self.program.form("frmSplash")
            self.assertRegex(about.caption("lblVersion"), r"^Version \d+\.\d+\.\d+$")
            about.activate()
            if close == "key":
                # A modifier alone is no key yet.
                self.program.key("Alt_L", "Shift_L", "Control_L")
                time.sleep(0.2)
                self.assertTrue(self.program.is_open("frmSplash"))
                self.program.key("space")
            else:
                about.click("lblProductName")
            wait_for("the about box closed", lambda: not self.program.is_open("frmSplash"))

    def test_the_row_of_menus_can_be_hidden(self):
        self.form.click("Check1")
        wait_for("no menus", lambda: self.form.menus() == [])
        self.form.click("Check1")
        wait_for("all menus", lambda: len(self.form.menus()) == 5)

    def test_a_day_is_picked_from_the_calendar(self):
        self.form.click("CmdPlus")
        wait_for("the calendar", lambda: self.form.is_shown("Month0"))
        self.program.key("Left", "Return")
        yesterday = TODAY - datetime.timedelta(days=1)
        wait_for("yesterday", lambda: self.form.caption("TextDate") == yesterday.strftime("%d.%m.%Y"))
        self.assertFalse(self.form.is_shown("Month0"))
        wait_for("the keyboard on the button", lambda: self.form.has_focus("CmdDat"))
        before = self.form.caption("LblSum")
        self.program.key("Return")
        wait_for("another sum", lambda: self.form.caption("LblSum") not in (before, ""))
        self.assertEqual(self.form.caption("LblInf"), yesterday.strftime("%d.%m.%Y"))

    def test_tab_key_visits_fields_in_reading_order(self):
        self.form.click("Text7")
        for expected in ("CmdTerm", "Text3", "CmdOfc", "Text2", "CmdFilCheck", "Text1", "CmdFiltr", "Text5"):
            self.program.key("Tab")
            wait_for(f"the keyboard in {expected}", lambda: self.form.has_focus(expected))


if __name__ == "__main__":
    unittest.main()
