"""The verbs "tree" and "show": the browse path and single elements, against the file itself."""
import array
import csv
import io
import json
import unittest

from program import column_values, demo, instances, leaf, output, parse, run, stores

# The path of the demonstration's model: entity, and its reference to the level above.
LEVELS = [("Test", None), ("Variant", "Test"), ("Day", "Variant"), ("Measurement", "Day"),
          ("MeasurementQuantity", "Measurement")]


def records(text):
    return list(csv.DictReader(io.StringIO(text)))


class Tree(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.all = instances(parse(demo()))

    def expected(self, level, parent, depth):
        """(key, level, parent's key) of what is below a record, from the file."""
        if level >= len(LEVELS) or depth == 0:
            return
        entity, up = LEVELS[level]
        for number, element in sorted(self.all[entity].items()):
            if up is None or int(leaf(element, up)) == int(parent.split(":")[1]):
                key = f"{entity}:{number}"
                yield key, entity, parent
                yield from self.expected(level + 1, key, depth - 1)

    def test_the_path_from_the_top(self):
        for store in stores():
            for depth in (1, 3, 0):
                with self.subTest(store=store.suffix, depth=depth):
                    rows = records(output("tree", store, "--depth", depth, "--format", "csv"))
                    wanted = list(self.expected(0, "", depth or len(LEVELS)))
                    self.assertEqual(wanted, [(r["Key"], r["Type"], r["Parent"]) for r in rows])
                    self.assertEqual({str(i + 1) for i in range(depth or len(LEVELS))},
                                     {r["Level"] for r in rows})

    def test_below_an_element(self):
        for store in stores():
            rows = json.loads(output("tree", store, "Variant:2", "--depth", 2, "--format", "json"))
            wanted = [key for key, _, _ in self.expected(2, "Variant:2", 2)]
            self.assertEqual(wanted, [row["Key"] for row in rows])
            self.assertEqual({1, 2}, {row["Level"] for row in rows})
            # Outside the path there is nothing below, which is no failure.
            self.assertEqual("[]", "".join(output("tree", store, "User:1", "--format", "json").split()))

    def test_people_see_the_depth(self):
        lines = output("tree", demo(), "--depth", 2).splitlines()
        names = {line.split("  ")[0] for line in lines[2:] if not line.startswith(" ")}
        self.assertEqual({leaf(e, "Name") for e in self.all["Test"].values()}, names)
        self.assertEqual(len(self.all["Variant"]), sum(line.startswith("  ") for line in lines))

    def test_unknown_keys(self):
        for verb in ("tree", "show"):
            for key in ("Test:999", "Weather:1", "Test", "", "Test:x"):
                if verb == "tree" and not key:
                    continue  # no key: from the top
                for store in stores():
                    code, out, err = run(verb, store, key)
                    self.assertEqual((1, ""), (code, out), key)
                    self.assertIn(f"there is no element with the key {key}", err)


class Show(unittest.TestCase):
    def test_properties_and_references(self):
        measurement = next(e for e in instances(parse(demo()))["Measurement"].values()
                           if "BAT" in leaf(e, "Name"))
        key = "Measurement:" + leaf(measurement, "Id")
        for store in stores():
            with self.subTest(store=store.suffix):
                rows = {row["Member"]: row for row in json.loads(
                    output("show", store, key, "--format", "json"))}
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
        column = next(iter(instances(parse(demo()))["LocalColumn"].values()))
        expected = column_values(column, demo().parent)
        for store in stores():
            rows = {row["Member"]: row for row in json.loads(output(
                "show", store, "LocalColumn:" + leaf(column, "Id"), "--format", "json"))}
            self.assertEqual(len(expected), rows["Values"]["Count"])
            kind = {"float": "f", "double": "d"}[rows["Values"]["Type"]]
            shown = array.array(kind, map(float, rows["Values"]["Value"].split("; ")))
            self.assertTrue(expected == shown.tolist(), store)

    def test_people_see_the_first_values_of_a_long_list(self):
        text = output("show", demo(), "Measurement:1")
        row = next(line for line in text.splitlines() if line.startswith("MeasurementQuantities"))
        self.assertTrue(row.endswith("; ..."), row)
        self.assertEqual(3, row.count("(MeasurementQuantity:"))
        self.assertRegex(text, r"Begin .* \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")


if __name__ == "__main__":
    unittest.main()
