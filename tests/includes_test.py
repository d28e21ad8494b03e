#!/usr/bin/env python3
"""includes_test.py SRC: no source includes a header of a room above its own or beside it."""

import os
import re
import sys

BELOW = {"core": set()}
BELOW["platform"] = {"core"}
BELOW["ui"] = {"core", "platform"}
BELOW["stock"] = {"core", "platform", "ui"}
ROOMS = ("sales", "reference", "panels", "documents", "reports", "exchange")
for room in ROOMS:
    BELOW[room] = {"core", "platform", "ui", "stock"}
BELOW["app"] = {"core", "platform", "ui", "stock", *ROOMS}
BELOW["check"] = {"core", "stock"}  # of the stock only the table of the documents' kinds
BELOW["ui/qt"] = {"core", "platform", "ui"}
BELOW["app/program"] = {*BELOW["app"], "app", "ui/qt"}


def room_of(path):
    return max((room for room in BELOW if path.startswith(room + "/")), key=len, default=None)


def main(src):
    wrong = []
    for folder, _, files in os.walk(src):
        for name in files:
            if not name.endswith((".h", ".cpp")):
                continue
            path = os.path.relpath(os.path.join(folder, name), src)
            own = room_of(path)
            text = open(os.path.join(folder, name), encoding="utf-8").read()
            for included in re.findall(r'^#include [<"]([^>"]+)[>"]', text, re.M):
                other = room_of(included)
                if other not in (None, own) and other not in BELOW[own]:
                    wrong.append(f"{path} includes {included}")
                if included.startswith("Q") and own not in ("ui/qt", "app/program"):
                    wrong.append(f"{path} knows Qt: {included}")
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
