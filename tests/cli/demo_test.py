"""The verb "demo": a campaign that is sound, believable and always the same."""
import math
import unittest

from program import (ProgramTest, column_values, components, demo, demo_records, folder, leaf, output, up)


class Demo(ProgramTest):
    def test_it_is_small_and_always_the_same(self):
        again = folder / "again.atfx"
        output("demo", again)
        self.assert_same_store(demo(), again)
        self.assert_refused("demo", again, reason="--force")
        output("demo", again, "--force")
        self.assertLess(sum(path.stat().st_size for path in [demo(), *components(demo())]), 40_000_000)

    def test_measurements(self):
        measurements = demo_records()["Measurement"].values()
        self.assertEqual(200, len(measurements))
        self.assertEqual({"passed", "failed", "aborted", "running"}, {leaf(m, "Status") for m in measurements})
        for m in measurements:
            with self.subTest(leaf(m, "Name")):
                for relation in ("Day", "Operator", "UnitsUnderTest", "TestEquipments",
                                 "TestSequences", "Submatrices"):
                    self.assertEqual(1, len(leaf(m, relation).split()), relation)
                self.assertTrue(leaf(m, "Begin").startswith(leaf(up(m, "Day"), "Date")))
                if leaf(m, "Status") != "running":
                    self.assertLess(leaf(m, "Begin"), leaf(m, "End"))
                self.assertEqual(leaf(m, "Status") in ("failed", "aborted"), leaf(m, "Remark") is not None)

    def test_columns_hold_what_their_quantities_say(self):
        lengths, with_flags = set(), 0
        for number, column in demo_records()["LocalColumn"].items():
            quantity, submatrix = up(column, "MeasurementQuantity"), up(column, "Submatrix")
            with self.subTest(column=number, name=leaf(column, "Name")):
                values = column_values(column, demo().parent)
                lengths.add(len(values))
                self.assertEqual(int(leaf(submatrix, "NumberOfRows")), len(values))
                self.assertEqual(leaf(quantity, "Measurement"), leaf(submatrix, "Measurement"))
                self.assertEqual((min(values), max(values)),
                                 (float(leaf(quantity, "Minimum")), float(leaf(quantity, "Maximum"))))
                mean = math.fsum(values) / len(values)
                spread = max(abs(min(values)), abs(max(values)), 1.0)
                self.assertAlmostEqual(0, (mean - float(leaf(quantity, "Average"))) / spread, 9)
                if leaf(column, "Name") == "Time":
                    self.assertEqual("1", leaf(column, "Independent"))
                    self.assertTrue(all(a < b for a, b in zip(values, values[1:])))
                if leaf(column, "GlobalFlag") is None:
                    flags = column_values(column, demo().parent, "Flags")
                    self.assertEqual(len(values), len(flags))
                    self.assertEqual({0, 15}, set(flags))
                    with_flags += 1
        self.assertLess(min(lengths), 1000)
        self.assertEqual(20000, max(lengths))
        self.assertGreater(with_flags, 0)

    def test_every_quantity_has_a_unit_of_its_kind(self):
        for quantity in demo_records()["MeasurementQuantity"].values():
            default = up(quantity, "Quantity", "DefaultUnit")
            self.assertEqual(leaf(default, "PhysicalDimension"),
                             leaf(up(quantity, "Unit"), "PhysicalDimension"), leaf(quantity, "Name"))

    def test_run_ups_follow_their_speed(self):
        """The vibration of a run-up grows with the speed, and its order is told by the speed."""
        measurement = next(m for m in demo_records()["Measurement"].values()
                           if "Run-up drive 3rd" in leaf(m, "Name") and leaf(m, "Status") == "passed")
        columns = {}
        for number in leaf(up(measurement, "Submatrices"), "LocalColumns").split():
            column = demo_records()["LocalColumn"][int(number)]
            columns[leaf(column, "Name")] = column_values(column, demo().parent)
        speed, vibration = columns["n_input"], columns["a_housing_X"]
        count = len(speed)
        self.assertGreater(speed[-1], 4 * speed[0])

        def level(first, last):
            part = vibration[int(first * count):int(last * count)]
            return math.sqrt(sum(v * v for v in part) / len(part))

        self.assertGreater(level(0.9, 1.0), 5 * level(0.0, 0.05))
        # The part of the tenth order against that of an order where there is nothing.
        turns, angle = [], 0.0
        for value in speed:
            turns.append(angle)
            angle += value / 60 / 2000

        def order(number):
            return math.hypot(
                sum(v * math.cos(math.tau * number * t) for v, t in zip(vibration, turns)),
                sum(v * math.sin(math.tau * number * t) for v, t in zip(vibration, turns)))

        self.assertGreater(order(10), 10 * order(7.3))


if __name__ == "__main__":
    unittest.main()
