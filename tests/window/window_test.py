"""The real window from its start to its end: in every operating mode, every tab, and where there is no database."""

import datetime
import time
import unittest

from zrt_window import Program, Screen, Shop, extents, wait_for

# The terminals have sold until this evening, so that today's shift is full at whatever hour the tests run.
EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")

SALES, REPORT, CATALOGUE, PANELS, JOURNAL = (
    "Таблица Продаж", "Системный Отчёт", "Справочники", "Настройка сенсорной клавиатуры", "Журнал документов")


def setUpModule():
    unittest.enterModuleContext(Screen())


def assert_keeps_its_size(test, program, form):
    """Going from any tab to any other one changes nothing about the window, which fits the screen."""
    def size():
        box = extents(form.accessible)
        return box.width, box.height

    before = size()
    test.assertLessEqual(before, (1024, 768))
    tabs = form.tabs()
    for start in tabs:
        for end in tabs:
            for tab in (start, end):
                form.tab(tab)
                if tab == REPORT:  # nobody leaves a window before it is there; the window manager would lose track
                    program.form("Form9").activate()
                test.assertEqual(size(), before, f"from {start} to {end}, at {tab}")
    time.sleep(0.2)  # a window that grows stays so
    test.assertEqual(size(), before)


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
                    assert_keeps_its_size(self, program, form)
                    form.tab(CATALOGUE)
                    form.activate()
                    wait_for("the keyboard in the catalogue", lambda: form.has_focus("DataGrid1_0"))
                    self.assertEqual(form.is_enabled("CmdNew"), mode != "restricted")
                    form.close()
                    self.assertEqual(program.exit_code(), 0)

    def test_no_database(self):
        Shop("none")
        with Program() as program:
            program.answer("Нет соединения с Базой Данных!")
            program.answer("Ошибка выполнения. Действие прервано.")
            self.assertNotEqual(program.exit_code(), 0)


if __name__ == "__main__":
    unittest.main()
