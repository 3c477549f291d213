"""The verb "query": hits against a search of our own in the file, and the forms of output."""
import csv
import io
import unicodedata
import unittest

from program import (ROOT, ProgramTest, demo, demo_records, folder, json_rows, leaf, measurements, output,
                     up)


def expression(entity, conditions=""):
    return f'<query><entity name="{entity}"><expression>{conditions}</expression></entity></query>'


def condition(identifier, operator, constant, marks=""):
    return (f'<q:function name="{operator}"><q:identifier>{identifier}</q:identifier>'
            f"<q:constant{marks}>{constant}</q:constant></q:function>")


def width(text):
    wide = sum(unicodedata.east_asian_width(c) in "WF" for c in text)
    return len(text) + wide - sum(unicodedata.combining(c) > 0 for c in text)


def keys(text):
    return [line.split("\t")[0] for line in text.splitlines()]


def query(text, *arguments, through=output):
    return through("query", demo(), "-", *arguments, stdin=text.encode("utf-8"))


class Hits(ProgramTest):
    def test_the_same_hits_as_a_search_by_hand(self):
        test_name = "Day.Variant.Test.Name"
        ci = ' wildcards="?*" caseinsensitive="yes"'
        for name, conditions, keep in [
            ("all", "", lambda m: True),
            ("none", condition("Status", "=", "planned"), lambda m: False),
            ("enumeration", condition("Status", "=", "failed"), lambda m: leaf(m, "Status") == "failed"),
            ("number", condition("AmbientTemperature", "&lt;", "0"),
             lambda m: float(leaf(m, "AmbientTemperature")) < 0),
            ("date", condition("Begin", "&gt;=", "20250901"), lambda m: leaf(m, "Begin") >= "20250901"),
            ("path, any case", condition(test_name, "=", "GEARBOX*", ci),
             lambda m: leaf(up(m, "Day", "Variant", "Test"), "Name").startswith("Gearbox")),
            ("non-ASCII", condition("Operator.FullName", "=", "*NOVÁKOVÁ", ci),
             lambda m: leaf(up(m, "Operator"), "FullName") == "Lenka Nováková"),
            ("Japanese", condition(test_name, "=", "変速機*", ci),
             lambda m: leaf(up(m, "Day", "Variant", "Test"), "Name").startswith("変速機")),
            ("instance attribute", condition("instance_attributes.values", "=", "NMC 811")
             + condition("instance_attributes.name", "==", "CellChemistry"), lambda m: "BAT" in leaf(m, "Name")),
            ("unset meets nothing", condition("Remark", "!=", "xyz"), lambda m: leaf(m, "Remark") is not None),
        ]:
            with self.subTest(name):
                self.assertEqual(measurements(keep), keys(query(expression("Measurement", conditions))))
                self.assertEqual(name == "none", not measurements(keep))

    def test_the_example_finds_what_it_says(self):
        found = keys(output("query", demo(), ROOT / "examples/passed-gearbox.xml"))
        self.assertEqual(measurements(lambda m: leaf(m, "Status") == "passed"
                                      and leaf(up(m, "UnitsUnderTest"), "Kind") == "gearbox"),
                         sorted(found, key=lambda key: int(key.split(":")[1])))
        begins = [leaf(demo_records()["Measurement"][int(key.split(":")[1])], "Begin") for key in found]
        self.assertEqual(sorted(begins), begins)

    def test_expressions_in_every_encoding(self):
        text = expression("User", condition("FullName", "=", "山田 花子"))
        file = folder / "expression.xml"
        for encoding, mark in {"utf-8": b"", "utf-8-sig": b"", "utf-16-le": b"\xff\xfe",
                               "utf-16-be": b"\xfe\xff"}.items():
            with self.subTest(encoding):
                file.write_bytes(mark + text.encode(encoding))
                self.assertEqual("User:3\thyamada\n", output("query", demo(), file))
                self.assertEqual("User:3\thyamada\n", output("query", demo(), "-", stdin=file.read_bytes()))

    def test_refused_expressions(self):
        for text, reason in [
            (b"hello", "line 1"),
            (expression("User")[:-5].encode(), "query expression"),
            (expression("Weather").encode(), "unknown entity Weather"),
            (expression("User", condition("Mood", "=", "fine")).encode(), "unknown identifier Mood"),
            (b"\xff\xfea", "half a character"),
        ]:
            with self.subTest(reason):
                self.assert_refused("query", demo(), "-", stdin=text, reason=reason)
        self.assert_refused("query", demo(), folder / "none.xml", reason="none.xml")
        self.assert_refused("query", demo(), "-", "--columns", "Mood", stdin=expression("User").encode(),
                            reason='no attribute "Mood"')


class Forms(unittest.TestCase):
    def test_lines_are_key_tab_name(self):
        lines = query(expression("Test")).splitlines()
        self.assertEqual("Test:1\tEngine durability bench 3", lines[0])
        self.assertEqual("Test:6\t変速機 耐久試験", lines[-1])

    def test_csv_and_json_hold_the_same(self):
        columns = "SerialNumber,Mass,Environment.Timezone"
        text = expression("UnitUnderTest")
        rows = list(csv.reader(io.StringIO(query(text, "--columns", columns, "--format", "csv"))))
        self.assertEqual(["Key", "Name", *columns.split(",")], rows[0])
        objects = query(text, "--columns", columns, through=json_rows)
        self.assertEqual(rows[1:], [[str(cell) if key != "Mass" else f"{cell:g}"
                                     for key, cell in row.items()] for row in objects])
        # A name with a quotation mark and a comma, and numbers as numbers.
        brake = next(row for row in objects if "pads S" in row["Name"])
        self.assertEqual('Brake 18" front, pads S', brake["Name"])
        self.assertEqual(11.8, brake["Mass"])

    def test_unset_values(self):
        text = expression("Measurement", condition("Status", "=", "running"))
        found = query(text, "--columns", "End,Status", through=json_rows)
        self.assertEqual([("", "running")], [(row["End"], row["Status"]) for row in found])
        text = expression("MeasurementQuantity", condition("Name", "=", "Gear"))
        found = query(text, "--columns", "Sensor.Id", through=json_rows)
        self.assertEqual({None}, {row["Sensor.Id"] for row in found})

    def test_tables_are_aligned_for_every_script(self):
        lines = query(expression("User"), "--columns", "FullName,Department", "--format",
                      "table").splitlines()
        starts = [i for i, c in enumerate(lines[1]) if c == "-" and (i == 0 or lines[1][i - 1] == " ")]
        self.assertEqual(4, len(starts))
        for cell in ("Powertrain test", "Bench operation", "Endurance", "IT"):
            for line in lines[2:]:
                if line.endswith(cell):
                    self.assertEqual(starts[-1], width(line[: -len(cell)]), line)

    def test_dates_are_readable_in_tables_alone(self):
        text = expression("Measurement", condition("Status", "=", "running"))
        raw = query(text, "--columns", "Begin").split("\t")[2].strip()
        self.assertRegex(raw, r"^\d{14}$")
        table = query(text, "--columns", "Begin", "--format", "table")
        self.assertIn(f"{raw[:4]}-{raw[4:6]}-{raw[6:8]} {raw[8:10]}:{raw[10:12]}:{raw[12:]}", table)

    def test_no_hits(self):
        text = expression("Measurement", condition("Status", "=", "planned"))
        self.assertEqual("", query(text))
        self.assertEqual([], query(text, through=json_rows))
        self.assertEqual("Key,Name\n", query(text, "--format", "csv"))


if __name__ == "__main__":
    unittest.main()
