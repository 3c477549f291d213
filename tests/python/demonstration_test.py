"""Searches of the demonstration campaign, beside a walk over its elements that checks each by itself."""
import datetime
import unittest

from stores import connect, run, temporary_folder


def levels(level):
    while level:
        yield level.EntityType.Name, level.ParentPath, level.ChildPath
        level = level.ChildEntity


def ancestors(element):
    while element:
        yield element.Type, element.Name
        element = element.Parent


def record(measurement):
    """What the conditions below ask about a measurement, read one by one."""
    value = {name: measurement.Properties(name).Value
             for name in ("Name", "Status", "AmbientTemperature", "Begin")}
    value["Operators"] = [user.Name for user in measurement.References("Operator").Elements]
    value["Quantities"] = [one.Name for one in measurement.References("MeasurementQuantities").Elements]
    value.update(ancestors(measurement.Parent))
    return value


class Demonstration(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = temporary_folder(cls)
        source, database = folder / "demo.atfx", folder / "demo.sqlite"
        run("demo", source)
        run("import", source, database)
        cls.stores = [connect(source), connect(database)]
        cls.addClassCleanup(cls.stores.clear)
        cls.records = {one.InstanceKey: record(one) for one in cls.stores[1].GetElementList("Measurement", "*")}

    def check(self, conditions, meets, logic=None):
        expected = [key for key, values in self.records.items() if meets(values)]
        self.assertTrue(0 < len(expected) < len(self.records), "a search that says nothing")
        for store in self.stores:
            query = store.CreateQuery()
            query.ReturnType = "Measurement"
            for condition in conditions:
                query.Conditions.Add(*condition)
            if logic:
                query.Conditions.Logic = logic
            for limit in len(expected), max(1, len(expected) - 1):
                with self.subTest(kind=store.PluginName, conditions=conditions, logic=logic, limit=limit):
                    store.Results.MaxCount = limit
                    store.Search(query)
                    self.assertEqual([one.InstanceKey for one in store.Results], expected[:limit])
                    self.assertEqual(bool(store.Results.IsIncomplete), limit < len(expected))

    def test_hits_are_those_that_meet_the_conditions(self):
        everything = list(self.records.values())
        self.assertEqual(len(everything), 200)
        begin = sorted(one["Begin"] for one in everything)[len(everything) // 2]
        middle = datetime.datetime(begin.year, begin.month, begin.day)
        operator = next(name for one in everything for name in one["Operators"])
        quantity = min((name for one in everything for name in one["Quantities"]),
                       key=lambda name: sum(name in one["Quantities"] for one in everything))
        hot = ("Measurement", "AmbientTemperature", ">", 22)
        failed = ("Measurement", "Status", "=", "failed")
        of_bench = ("Test", "Name", "=", "engine*")  # in any case

        def is_hot(one):
            return one["AmbientTemperature"] is not None and one["AmbientTemperature"] > 22

        self.check([failed], lambda one: one["Status"] == "failed")
        self.check([("Measurement", "Status", "=", "failed OR aborted")],
                   lambda one: one["Status"] in ("failed", "aborted"))
        self.check([("Measurement", "Status", "<>", "passed")], lambda one: one["Status"] != "passed")
        self.check([hot], is_hot)
        self.check([("Measurement", "Begin", ">=", middle)], lambda one: one["Begin"] >= middle)
        self.check([("Variant", "Name", "=", "ÖLKÜHLER*")], lambda one: one["Variant"].startswith("Ölkühler"))
        self.check([of_bench, hot], lambda one: one["Test"].startswith("Engine") and is_hot(one))
        self.check([("User", "Name", "=", operator)], lambda one: operator in one["Operators"])
        self.check([("MeasurementQuantity", "Name", "=", quantity)], lambda one: quantity in one["Quantities"])
        self.check([of_bench, failed, hot], logic="C1 AND (C2 OR C3)",
                   meets=lambda one: one["Test"].startswith("Engine") and (one["Status"] == "failed" or is_hot(one)))

    def test_its_path_leads_from_tests_to_channels(self):
        for store in self.stores:
            self.assertEqual(list(levels(store.BrowseSettings.RootEntity)), [
                ("Test", "", "Variants"), ("Variant", "Test", "Days"), ("Day", "Variant", "Measurements"),
                ("Measurement", "Day", "MeasurementQuantities"), ("MeasurementQuantity", "Measurement", "")])


if __name__ == "__main__":
    unittest.main()
