"""The verbs "tree" and "show": the browse path and single elements, against the file itself."""
import array
import unittest

from program import (ProgramTest, column_values, csv_rows, demo, demo_records, json_rows, leaf, output,
                     stores)

# The path of the demonstration's model: entity, and its reference to the level above.
LEVELS = [("Test", None), ("Variant", "Test"), ("Day", "Variant"), ("Measurement", "Day"),
          ("MeasurementQuantity", "Measurement")]


def expected(level, parent, depth):
    """(key, level, parent's key) of what is below a record, from the file."""
    if level >= len(LEVELS) or depth == 0:
        return
    entity, above = LEVELS[level]
    for number, element in sorted(demo_records()[entity].items()):
        if above is None or int(leaf(element, above)) == int(parent.split(":")[1]):
            key = f"{entity}:{number}"
            yield key, entity, parent
            yield from expected(level + 1, key, depth - 1)


class Tree(ProgramTest):
    def test_the_path_from_the_top(self):
        for store in stores():
            for depth in (1, 3, 0):
                with self.subTest(store=store.suffix, depth=depth):
                    rows = csv_rows("tree", store, "--depth", depth)
                    self.assertEqual(list(expected(0, "", depth or len(LEVELS))),
                                     [(r["Key"], r["Type"], r["Parent"]) for r in rows])
                    self.assertEqual({str(i + 1) for i in range(depth or len(LEVELS))},
                                     {r["Level"] for r in rows})

    def test_below_an_element(self):
        for store in stores():
            rows = json_rows("tree", store, "Variant:2", "--depth", 2)
            self.assertEqual([key for key, _, _ in expected(2, "Variant:2", 2)], [row["Key"] for row in rows])
            self.assertEqual({1, 2}, {row["Level"] for row in rows})
            # Outside the path there is nothing below, which is no failure.
            self.assertEqual([], json_rows("tree", store, "User:1"))

    def test_people_see_the_depth(self):
        lines = output("tree", demo(), "--depth", 2).splitlines()
        names = {line.split("  ")[0] for line in lines[2:] if not line.startswith(" ")}
        self.assertEqual({leaf(e, "Name") for e in demo_records()["Test"].values()}, names)
        self.assertEqual(len(demo_records()["Variant"]), sum(line.startswith("  ") for line in lines))

    def test_unknown_keys(self):
        for verb, key in [(verb, key) for verb in ("tree", "show")
                          for key in ("Test:999", "Weather:1", "Test", "Test:x")] + [("show", "")]:
            for store in stores():
                with self.subTest(verb=verb, key=key, store=store.suffix):
                    self.assert_refused(verb, store, key, reason=f"there is no element with the key {key}")


class Show(unittest.TestCase):
    def show(self, store, key):
        return {row["Member"]: row for row in json_rows("show", store, key)}

    def test_properties_and_references(self):
        measurement = next(e for e in demo_records()["Measurement"].values() if "BAT" in leaf(e, "Name"))
        for store in stores():
            with self.subTest(store=store.suffix):
                rows = self.show(store, "Measurement:" + leaf(measurement, "Id"))
                for name, kind in (("Name", "string"), ("Begin", "date"), ("Status", "enum")):
                    self.assertEqual((leaf(measurement, name), kind, 1),
                                     tuple(rows[name][c] for c in ("Value", "Type", "Count")))
                self.assertEqual("name", rows["Name"]["Base"])
                self.assertIn("NMC 811", rows["CellChemistry"]["Value"])  # only this record has it
                self.assertEqual(("reference", "Day:" + leaf(measurement, "Day"), 1),
                                 tuple(rows["Day"][c] for c in ("Type", "Value", "Count")))
                quantities = rows["MeasurementQuantities"]
                self.assertEqual(quantities["Count"], len(quantities["Value"].split()))

    def test_the_values_of_a_column(self):
        column = next(iter(demo_records()["LocalColumn"].values()))
        values = column_values(column, demo().parent)
        for store in stores():
            row = self.show(store, "LocalColumn:" + leaf(column, "Id"))["Values"]
            self.assertEqual(len(values), row["Count"])
            kind = {"float": "f", "double": "d"}[row["Type"]]
            shown = array.array(kind, map(float, row["Value"].split("; ")))
            self.assertTrue(values == shown.tolist(), store)

    def test_people_see_the_first_values_of_a_long_list(self):
        text = output("show", demo(), "Measurement:1")
        row = next(line for line in text.splitlines() if line.startswith("MeasurementQuantities"))
        self.assertTrue(row.endswith("; ..."), row)
        self.assertEqual(3, row.count("(MeasurementQuantity:"))
        self.assertRegex(text, r"Begin .* \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")


if __name__ == "__main__":
    unittest.main()
