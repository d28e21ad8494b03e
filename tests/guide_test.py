"""The operator's guide against what it is about: pictures and pages that it shows must be there, words that it prints bold
must be on the screen, every window must have its page, and the table of keys must be the program's.

    guide_test.py SOURCE
"""

import os
import re
import sys
import unittest
import xml.etree.ElementTree

SOURCE = sys.argv.pop()
GUIDE = os.path.join(SOURCE, "docs", "guide.ru")
FORMS = os.path.join(SOURCE, "src", "ui", "forms")
WITHOUT_PAGE = {"frmSplash", "frmSplash1", "Form2"}  # any key closes it; the start; its tabs have pages
NOT_ON_THE_SCREEN = {"жирным", "Остатки в справочнике меняются не сразу.", "Сервер молчит.", "Знак не вводится.",
                     "Где файл?", '"Ошибка выполнения. Действие прервано."', '"обработка запроса..." не исчезает'}


def read(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        return file.read()


PAGES = {name: read(GUIDE, name) for name in sorted(os.listdir(GUIDE))}
DEFINITIONS = {name.removesuffix(".ui"): xml.etree.ElementTree.parse(os.path.join(FORMS, name))
               for name in os.listdir(FORMS)}


class Guide(unittest.TestCase):
    def test_what_it_shows_is_there(self):
        shown = set()
        for page, text in PAGES.items():
            for place in re.findall(r"\]\(([^)]+)\)", text):
                with self.subTest(page=page):
                    self.assertTrue(os.path.exists(os.path.join(GUIDE, place)), place)
                shown.add(os.path.basename(place))
        self.assertLessEqual(set(PAGES) - {"index.md"}, shown, "nothing leads there")

    def test_what_it_names_is_on_the_screen(self):
        words = {" ".join(part.text.split()) for definition in DEFINITIONS.values()
                 for part in definition.iter("string") if part.text}
        for page, text in PAGES.items():
            for named in re.findall(r"\*\*(.+?)\*\*", text, re.DOTALL):
                named = " ".join(named.split())
                with self.subTest(page=page):
                    self.assertTrue(named in words or named in NOT_ON_THE_SCREEN, f"no window says {named!r}")

    def test_every_window_has_its_page(self):
        for form, definition in DEFINITIONS.items():
            pages = [value.text for value in definition.iterfind(".//property[@name='guidePage']/string")]
            with self.subTest(form=form):
                self.assertEqual(len(pages), {"Form2": 5}.get(form, 0 if form in WITHOUT_PAGE else 1))
                self.assertLessEqual({f"{page}.md" for page in pages}, set(PAGES))

    def test_its_keys_are_the_programs(self):
        table = re.findall(r'Shortcut\{"([^"]+)", KeyAction::\w+, "[^"]*",\s*"([^"]+)"\}',
                           read(SOURCE, "src", "ui", "qt", "shortcuts.h"))
        self.assertGreater(len(table), 10)
        for text in (PAGES["keys.md"], read(SOURCE, "docs", "operating.md")):
            rows = re.search(r"\| Клавиши \| Что делают \|\n\|---\|---\|\n((?:\|.*\n)+)", text)[1]
            self.assertEqual([tuple(row.strip("| ").split(" | ")) for row in rows.splitlines()], table)


if __name__ == "__main__":
    unittest.main()
