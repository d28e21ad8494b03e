"""The tables of the real window: widths that stay, what a row can be done to."""

import datetime
import tempfile
import time
import unittest

from zrt_window import Program, Screen, Shop, extents, wait_for, xdotool


def setUpModule():
    unittest.enterModuleContext(Screen())


class Grids(unittest.TestCase):
    def setUp(self):
        self.shop = Shop("--mode", "register", "--now", datetime.datetime.now().strftime("%Y-%m-%d 21:30:00"))
        self.settings = self.enterContext(tempfile.TemporaryDirectory(prefix="zrt-settings-"))

    def start(self):
        """On the catalogue."""
        program = self.enterContext(Program(settings=self.settings))
        form = program.form("Form2").activate()
        form.tab("Справочники")
        form.wait_for_focus("DataGrid1_0")
        return program, form

    def price(self, form):
        """The first price's cell; above its right edge the mouse takes the column's, in the header."""
        table = form.control("DataGrid1_0").queryTable()
        cell = extents(table.getAccessibleAt(0, form.headers("DataGrid1_0").index("Price")))
        return cell.x + cell.width - 1, cell.y - 10, cell.width

    def test_widths_and_sizes_outlive_the_program(self):
        program, form = self.start()
        width = lambda: self.price(form)[2]
        program.key("Home")
        wait_for("the first row", lambda: form.row("DataGrid1_0") == 0)
        drawn = width() + 40
        x, y, _ = self.price(form)
        xdotool("mousemove", x, y, "sleep", 0.2, "mousedown", 1, "sleep", 0.1, "mousemove", x + 20, y, "sleep", 0.1,
                "mousemove", x + 40, y, "sleep", 0.1, "mouseup", 1)
        wait_for("a wider column", lambda: width() == drawn)
        program.key("F5")
        time.sleep(0.5)
        self.assertEqual(width(), drawn)  # the same columns anew
        xdotool("getactivewindow", "windowsize", 990, 660)
        size = lambda: [extents(form.accessible).width, extents(form.accessible).height]
        wait_for("another size", lambda: size() == [990, 660])
        form.close()
        self.assertEqual(program.exit_code(), 0)

        program, form = self.start()
        self.assertEqual(size(), [990, 660])
        program.key("Home")
        wait_for("the drawn width", lambda: width() == drawn)
        # A double click on the edge fits the column to what it holds.
        x, y, _ = self.price(form)
        xdotool("mousemove", x, y, "click", "--repeat", 2, "--delay", 40, 1)
        wait_for("a fitting column", lambda: 20 < width() < drawn - 20)

    def test_a_row_offers_what_the_buttons_offer(self):
        program, form = self.start()
        # The menu itself isn't on the bus.
        program.key("Menu", "Down", "Return")
        card = program.form("frmPLU").activate()
        self.assertEqual(card.text("TextName"), form.cell("DataGrid1_0", form.row("DataGrid1_0"), "Name"))


if __name__ == "__main__":
    unittest.main()
