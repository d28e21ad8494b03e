"""The touch panel editor under real hands: keys pressed, typed at and dragged, a level copied by dragging."""

import unittest

import pyatspi
from zrt_window import Program, Screen, Shop, wait_for, xdotool

PANELS = "Настройка сенсорной клавиатуры"
NO_CAPTION = "Раскладка сенсорной панели"  # the bus calls a key without a caption by the box around it


def setUpModule():
    unittest.enterModuleContext(Screen())


class PanelEditor(unittest.TestCase):
    def test_a_key_a_product_done(self):
        shop = Shop("--mode", "normal")
        shop.ask("UPDATE HOTKEYS SET CODE=0")
        program = self.enterContext(Program())
        form = program.form("Form2")
        form.activate()
        form.tab(PANELS)
        wait_for("the panels", lambda: form.is_shown("CmdM_30"))

        def filled():
            return shop.ask("SELECT ID,CODE FROM HOTKEYS WHERE CODE<>0 ORDER BY ID")

        # The second half of the two-position key.
        box = form.control("CmdMenu").queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        xdotool("mousemove", box.x + box.width * 3 // 4, box.y + box.height // 2, "click", 1)
        wait_for("menu 2", lambda: form.caption("Label1") == "Меню № 2")
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
        wait_for("the key written", lambda: filled() == [["1731", product]])
        form.wait_for_focus("CmdM_1")

        # The keyboard alone: to the next key, its code; one row down.
        program.key("Right")
        form.wait_for_focus("CmdM_2")
        program.key("9", "9", "9", "9", "9", "Return")
        wait_for("the second key written", lambda: filled()[1:] == [["1732", "99999"]])
        form.wait_for_focus("CmdM_2")
        program.key("Down")
        form.wait_for_focus("CmdM_8")
        program.type("1")
        form.wait_for_focus("Text6")
        program.key("Return")
        wait_for("the key below written", lambda: ["1738", "1"] in filled())

        # Real dragging: onto an empty key with its question, onto an occupied one without.
        form.drag("CmdM_2", "CmdM_30")
        program.answer("Переместить кнопку на указанное место?", "Отмена")
        form.drag("CmdM_2", "CmdM_1")
        form.drag("CmdM_2", "CmdM_30")
        program.answer("Переместить кнопку на указанное место?")
        wait_for("the key moved", lambda: form.caption("CmdM_30") == "99999")
        self.assertEqual(filled(), [["1731", product], ["1738", "1"], ["1760", "99999"]])
        self.assertEqual(form.caption("CmdM_2"), NO_CAPTION)

        # The same in the window for copying, behind its password.
        form.click("CmdCopyAll")
        program.answer("Введите пароль администратора:", entry="357218")
        copying = program.form("FormCopy")
        copying.activate()
        copying.drag("CmdPan_217", "CmdPan_324")
        box = program.box()
        self.assertRegex(box.text, r"^Дублировать все данные \nиз панели .+ уровень 2\nв панель .+ уровень 3 \?$")
        box.press("OK")
        wait_for("the level copied", lambda: filled()[3:] == [["2461", product], ["2468", "1"], ["2490", "99999"]])
        program.key("Escape")
        wait_for("the copying closed", lambda: not program.is_open("FormCopy"))


if __name__ == "__main__":
    unittest.main()
