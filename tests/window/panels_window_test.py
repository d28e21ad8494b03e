"""The touch panel editor under real hands: keys pressed, typed at and dragged, levels copied by dragging, the layout saved,
wiped, loaded and seen again."""

import datetime
import os
import unittest

from zrt_window import Program, Screen, Shop, wait_for, xdotool

EVENING = datetime.datetime.now().strftime("%Y-%m-%d 21:30:00")
PANELS = "Настройка сенсорной клавиатуры"
LAYOUT = "C/Korvina/hotkeys.txt"
FILE = "C:/Korvina/hotkeys.txt"
NO_CAPTION = "Раскладка сенсорной панели"  # the bus calls a key without a caption by the box around it


def setUpModule():
    unittest.enterModuleContext(Screen())


class PanelEditor(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "normal", "--now", EVENING)
        self.program = self.enterContext(Program())
        self.program.write("C/Korvina/here.txt", "")
        self.form = self.program.form("Form2")
        self.form.activate()
        self.form.tab(PANELS)
        wait_for("the panels", lambda: self.form.is_shown("CmdM_30"))

    def filled(self):
        return self.shop.ask("SELECT ID,CODE FROM HOTKEYS WHERE CODE<>0 ORDER BY ID")

    def wipe(self):
        self.form.click("CmdClrAll")
        self.program.answer("Для очистки всех панелей введите пароль администратора:", entry="357218")
        self.program.answer("Подтвердите очистку ВСЕХ панелей!")
        wait_for("no product left", lambda: self.filled() == [])

    def choose_menu(self, half):
        """Presses a half of the two-position key with the mouse."""
        box = self.form.control("CmdMenu").queryComponent().getExtents(0)
        xdotool("mousemove", box.x + box.width * (2 * half - 1) // 4, box.y + box.height // 2, "click", 1)
        wait_for(f"menu {half}", lambda: self.form.caption("Label1") == f"Меню № {half}")

    def open_copying(self):
        self.form.click("CmdCopyAll")
        self.program.answer("Введите пароль администратора:", entry="357218")
        copying = self.program.form("FormCopy")
        copying.activate()
        return copying

    def close_copying(self):
        self.program.key("Escape")
        wait_for("the copying closed", lambda: not self.program.is_open("FormCopy"))
        self.form.activate()

    def test_a_key_a_product_done(self):
        form, program = self.form, self.program
        self.wipe()
        self.choose_menu(2)
        form.click("Option1_5")
        form.click("Option2_2")
        wait_for("level 2", lambda: form.caption("Label2") == "Уровень 2")

        # The mouse alone.
        product = form.cell("DataGrid1_1", 2, "Cod")
        form.click("CmdM_1")
        wait_for("the entry open", lambda: form.is_enabled("Text6"))
        form.click_cell("DataGrid1_1", form.rows("DataGrid1_1") - 2, 0)
        program.key("Home")
        wait_for("the first product", lambda: form.row("DataGrid1_1") == 0)
        form.click_cell("DataGrid1_1", 2, 0, times=2)
        wait_for("its code", lambda: form.text("Text6") == product)
        form.wait_for_focus("Text6")
        form.click("CmdOk1")
        wait_for("the key written", lambda: self.filled() == [["1731", product]])
        form.wait_for_focus("CmdM_1")

        # The keyboard alone: to the next key, its code; one row down, a search.
        program.key("Right")
        form.wait_for_focus("CmdM_2")
        program.key("9", "9", "9", "9", "9", "Return")
        wait_for("the second key written", lambda: self.filled()[1:] == [["1732", "99999"]])
        form.wait_for_focus("CmdM_2")
        program.key("Down")
        form.wait_for_focus("CmdM_8")
        program.type("1")
        form.wait_for_focus("Text6")
        program.key("Return")
        wait_for("the key below written", lambda: ["1738", "1"] in self.filled())

        # Real dragging: onto an empty key with its question, onto an occupied one without.
        form.drag("CmdM_2", "CmdM_30")
        self.program.answer("Переместить кнопку на указанное место?", "Отмена")
        form.drag("CmdM_2", "CmdM_1")
        form.drag("CmdM_2", "CmdM_30")
        self.program.answer("Переместить кнопку на указанное место?")
        wait_for("the key moved", lambda: form.caption("CmdM_30") == "99999")
        self.assertEqual(self.filled(), [["1731", product], ["1738", "1"], ["1760", "99999"]])
        self.assertEqual(form.caption("CmdM_2"), NO_CAPTION)

    def test_the_whole_layout_is_copied_saved_wiped_and_loaded(self):
        form, program, shop = self.form, self.program, self.shop
        # Another work place has filled both menus but for one level.
        shop.ask("UPDATE HOTKEYS SET CODE=(ID*7) MOD 120+1")
        shop.ask("UPDATE HOTKEYS SET CODE=0 WHERE REZ=24 AND LV=3")
        copying = self.open_copying()
        copying.drag("CmdPan_101", "CmdPan_324")
        box = program.box()
        self.assertRegex(box.text, r"^Дублировать все данные \nиз панели .+ уровень 1\nв панель .+ уровень 3 \?$")
        box.press("OK")
        wait_for("the level copied", lambda: [code for _, code in self.filled()[-30:]] ==
                 [code for _, code in self.filled()[:30]])
        whole = self.filled()
        self.assertEqual(len(whole), 2160)
        copying.click("CmdExportMenu")
        self.program.answer(f"Выгружен файл '{FILE}'")
        with open(os.path.join(program.drives, LAYOUT), encoding="cp1251") as file:
            self.assertEqual([line.strip().split(",") for line in file], whole)
        self.close_copying()

        self.wipe()
        wait_for("empty keys", lambda: form.caption("CmdM_1") == NO_CAPTION)
        copying = self.open_copying()
        copying.click("CmdImportMenu")
        self.program.answer(f"Загрузить новую раскладку меню\nиз файла '{FILE}' ?")
        self.program.answer(f"Загружена раскладка меню из файла '{FILE}'")
        self.assertEqual(self.filled(), whole)
        self.close_copying()
        wait_for("the products seen again", lambda: form.caption("CmdM_1") == whole[0][1])
        self.choose_menu(2)
        form.click("Option1_12")
        form.click("Option2_3")
        wait_for("the last level", lambda: form.caption("CmdM_30") == whole[-1][1])


if __name__ == "__main__":
    unittest.main()
