"""The verb "search": conditions in one line, the same hits from every kind of store."""
import unittest

from program import (ProgramTest, csv_rows, demo, demo_records, json_rows, leaf, measurements, output, run,
                     stores, up)


def keys(text):
    return [line.split("\t")[0] for line in text.splitlines()]


def test_name(m):
    return leaf(up(m, "Day", "Variant", "Test"), "Name")


class Search(ProgramTest):
    def test_the_same_hits_as_a_search_by_hand(self):
        def in_status(*names):
            return lambda m: leaf(m, "Status") in names

        begin = "Measurement.Begin"
        cases = [
            (["Status = failed"], None, in_status("failed")),
            (["Measurement.Status=failed OR aborted"], None, in_status("failed", "aborted")),
            (["Status = fail* OR 4"], None, in_status("failed", "aborted")),
            (["AmbientTemperature < 0"], None, lambda m: float(leaf(m, "AmbientTemperature")) < 0),
            (["AmbientTemperature >= 25.5", "Status <> passed"], None,
             lambda m: float(leaf(m, "AmbientTemperature")) >= 25.5 and leaf(m, "Status") != "passed"),
            (["Test.Name = GEARBOX*"], None, lambda m: test_name(m).startswith("Gearbox")),
            (["AoTest.Name = GEARBOX*"], None, lambda m: test_name(m).startswith("Gearbox")),
            (["Test.Name = 変速機*"], None, lambda m: test_name(m).startswith("変速機")),
            (["Name = *?*"], None, lambda m: True),
            (["Test.Name = Gearbox*", "Status = failed", "Status = aborted"], "C1 AND (C2 OR C3)",
             lambda m: test_name(m).startswith("Gearbox") and leaf(m, "Status") in ("failed", "aborted")),
            (["Status = failed", "Status = aborted"], "c1 or c2", in_status("failed", "aborted")),
            ([f"{begin} >= 2025-09-01"], None, lambda m: leaf(m, "Begin") >= "20250901"),
            ([f"{begin} <= 2025-04-30 12:00"], None, lambda m: leaf(m, "Begin") <= "20250430120000"),
            ([f"{begin} # LastSevenDays"], None, lambda m: False),
            ([], None, lambda m: True),
        ]
        for where, logic, keep in cases:
            arguments = [x for text in where for x in ("-w", text)]
            arguments += ["--logic", logic] if logic else []
            for store in stores():
                with self.subTest(where=where, store=store.suffix):
                    found = output("search", store, "Measurement", *arguments, "--limit", 0, "--format", "lines")
                    self.assertEqual(measurements(keep), keys(found))

    def test_a_day_is_a_whole_day(self):
        day = leaf(next(iter(demo_records()["Measurement"].values())), "Begin")[:8]
        for written in (f"{day[:4]}-{day[4:6]}-{day[6:]}", day):
            rows = json_rows("search", demo(), "AoMeasurement", "-w", f"Begin={written}")
            self.assertEqual(measurements(lambda m: leaf(m, "Begin").startswith(day)),
                             [row["Key"] for row in rows])

    def test_columns_follow_references(self):
        for store in stores():
            rows = csv_rows("search", store, "Measurement", "-w", "Status = failed", "--columns",
                            "Begin, Operator.FullName,Day.Variant.Test.Name")
            self.assertTrue(rows)
            for row in rows:
                m = demo_records()["Measurement"][int(row["Key"].split(":")[1])]
                self.assertEqual((leaf(m, "Name"), leaf(m, "Begin"), leaf(up(m, "Operator"), "FullName")),
                                 (row["Name"], row["Begin"], row["Operator.FullName"]))

    def test_the_limit_is_told(self):
        count = len(demo_records()["Test"])
        for limit, shown, told in ((count, count, ""), (count - 1, count - 1, "more than"),
                                   (0, count, ""), (count + 1, count, "")):
            code, out, err = run("search", demo(), "Test", "--limit", limit, "--format", "lines")
            self.assertEqual((0, shown), (code, len(out.splitlines())))
            self.assertEqual(bool(told), told in err and bool(err), (limit, err))

    def test_refused_searches(self):
        cases = [
            (["Weather"], 'no entity "Weather"'),
            (["Test", "-w", "Mood = fine"], "no property Test.Mood"),
            (["Test", "-w", "Weather.Name = x"], 'no entity "Weather"'),
            (["Measurement", "-w", "Day = x"], "Measurement.Day can't be searched"),
            (["LocalColumn", "-w", "Values = 3"], "LocalColumn.Values can't be searched"),
            (["Test", "-w", "Name"], "no operator"),
            (["Test", "-w", "= x"], "no property"),
            (["Test", "-w", "Name ! x"], '"!" alone'),
            (["Test", "-w", "Name == x"], 'no operator "=="'),
            (["Test", "-w", "Name = "], "no value"),
            (["Measurement", "-w", "Status = fail"], '"fail" is no value for Measurement.Status, which has'),
            (["Measurement", "-w", "Status = failed OR lost"], '"lost" is no value'),
            (["Measurement", "-w", "Name = *", "-w", "Id > 1O"], 'condition "Id > 1O": "1O" is no number'),
            (["Measurement", "-w", "Begin = someday"], '"someday" is no value'),
            (["Measurement", "-w", "Begin = 2025-13-01"], '"2025-13-01" is no value'),
            (["Measurement", "-w", "Begin # Someday"], '"Someday" is no value'),
            (["Test", "-w", "Name < a OR b"], "Test.Name doesn't take the operator <"),
            (["Measurement", "-w", "AmbientTemperature < 1 OR 2"], "only = takes several values"),
            (["Test", "-w", "Name = a", "--logic", "C1 AND"], 'the logic "C1 AND"'),
            (["Test", "-w", "Name = a", "--logic", "C2"], 'the logic "C2"'),
            (["Test", "--columns", "Mood"], "Mood"),
        ]
        for arguments, reason in cases:
            with self.subTest(arguments):
                self.assert_refused("search", demo(), *arguments, reason=reason)


if __name__ == "__main__":
    unittest.main()
