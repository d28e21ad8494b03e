#!/usr/bin/env python3
"""demo_test.py ZRT_DEMO ZRT_TERMINAL DATA_DIR HOST: the demonstration shop is the same every time, and its figures agree."""

import os
import subprocess
import sys
import unittest

DEMO, TERMINAL, DATA, HOST = sys.argv[1:5]
SCHEMA = f"zrt_demo_{os.getpid()}"
NOW = "2026-11-12 21:30:00"


def demo(*options):
    return subprocess.run([DEMO, "--now", NOW, "--lines", "3000", *options], check=True, stdout=subprocess.PIPE).stdout


def value(query=None, script=None, schema=SCHEMA):
    command = ["mariadb", "--no-defaults", f"--host={HOST}", "--user=zrt", "--password=41730926",
               "--default-character-set=latin1", "--batch", "--skip-column-names"]
    if query is not None:
        command += ["-e", query]
    if schema:
        command.append(schema)
    done = subprocess.run(command, input=script, check=True, stdout=subprocess.PIPE)
    return done.stdout.decode("cp1251").rstrip("\n")


class Demo(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        value(f"CREATE DATABASE {SCHEMA} DEFAULT CHARACTER SET latin1 COLLATE latin1_bin", schema=None)
        value(script=demo("--mode", "register"))

    @classmethod
    def tearDownClass(cls):
        value(f"DROP DATABASE {SCHEMA}", schema=None)

    def test_same_options_give_the_same_shop(self):
        self.assertEqual(demo(), demo())
        self.assertNotEqual(demo(), demo("--seed", "2"))

    def test_sums_agree(self):
        self.assertEqual(value("SELECT COUNT(*) FROM PROD WHERE SUM2<>KOL*PRISE DIV 1000-SKID"), "0")
        # An order's sum and discount are those of its lines, however many payments it took.
        self.assertEqual(value(
            "SELECT COUNT(*) FROM (SELECT NUM,TER,SUM(SUM1)*1000 S,SUM(SKID)*1000 D FROM KASSA WHERE NUM>0 GROUP BY "
            "NUM,TER) K LEFT JOIN (SELECT NUM,TER,SUM(KOL*PRISE DIV 1000) S,SUM(SKID) D FROM PROD GROUP BY NUM,TER) P "
            "USING (NUM,TER) WHERE P.S IS NULL OR K.S<>P.S OR K.D<>P.D"), "0")
        # What the catalogue says was sold in this shift was sold in this shift.
        self.assertEqual(value(
            "SELECT COUNT(*) FROM TOVAR LEFT JOIN (SELECT COD,SUM(KOL) S FROM PROD WHERE DATETIME>='2026-11-12 08:00:00' "
            "GROUP BY COD) P USING (COD) WHERE KOL<>IFNULL(P.S,0)"), "0")
        self.assertEqual(value("SELECT COUNT(*) FROM PROD LEFT JOIN TOVAR USING (COD) WHERE PROD.COD>0 AND "
                               "TOVAR.COD IS NULL"), "0")

    def test_keys_can_be_added_again(self):
        keys = ("SELECT TABLE_NAME,INDEX_NAME,SEQ_IN_INDEX,COLUMN_NAME FROM information_schema.STATISTICS "
                "WHERE TABLE_SCHEMA=DATABASE() ORDER BY 1,2,3")
        before = value(keys)
        for earlier in ("DO 0", "ALTER TABLE REGISTR DROP KEY zrt_doc_cod,DROP KEY zrt_balance,ADD KEY zrt_doc "
                        "(DOC),ADD KEY zrt_cod_run_datedoc (COD,RUN,DATEDOC)"):
            value(earlier)
            with open(os.path.join(DATA, "tune.sql"), "rb") as script:
                value(script=script.read())
            self.assertEqual(value(keys), before, "keys of an earlier version give way")
        self.assertIn("DATETIME", value("SHOW KEYS FROM PROD"))

    def test_a_terminal_sells_whole_orders(self):
        last = int(value("SELECT MAX(ID) FROM KASSA"))
        stock = int(value("SELECT SUM(KOL) FROM TOVAR"))
        subprocess.run([TERMINAL, "--host", HOST, "--schema", SCHEMA, "--terminal", "7", "--orders", "12", "--pause", "0"],
                       check=True)
        self.assertEqual(value(f"SELECT COUNT(*),MIN(N4) FROM KASSA WHERE ID>{last}"), "12\t3")
        self.assertEqual(value("SELECT COUNT(*) FROM CHECK7"), "0")
        self.assertEqual(value("SELECT COUNT(*) FROM KASSA JOIN (SELECT NUM,SUM(SUM2) S FROM PROD WHERE TER=7 GROUP BY "
                               "NUM) P USING (NUM) WHERE TER=7 AND SUM1*1000=P.S"), "12")
        sold = int(value("SELECT SUM(KOL) FROM PROD WHERE TER=7"))
        self.assertEqual(int(value("SELECT SUM(KOL) FROM TOVAR")), stock + sold)

    def test_a_terminal_does_not_sell_what_the_back_office_annulled(self):
        seller = subprocess.Popen([TERMINAL, "--host", HOST, "--schema", SCHEMA, "--terminal", "8", "--orders", "1",
                                   "--pause", "400"])
        while seller.poll() is None:
            value("DELETE FROM CHECK8")
        self.assertEqual(seller.returncode, 0)
        self.assertEqual(value("SELECT COUNT(*) FROM PROD WHERE TER=8"), "0")
        self.assertEqual(value("SELECT COUNT(*) FROM KASSA WHERE TER=8"), "0")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
