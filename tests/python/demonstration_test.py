"""Searches of the demonstration campaign, beside a walk over its elements that checks each by itself."""
import datetime
import pathlib
import subprocess
import tempfile
import unittest

import storefabric

PROGRAM = pathlib.Path(storefabric.__file__).resolve().parents[1] / "bin" / "storefabric"


def connect(plugin, path):
    env = storefabric.CreateObject("VEX.DataStoreEnvironment")
    return env.ConnectDataStoreByParameter(plugin, f"<filename>{path}</filename>")


def ancestors(element):
    while element:
        yield element.Type, element.Name
        element = element.Parent


def record(run):
    """What the conditions below ask about a measurement, read one by one."""
    value = {name: run.Properties(name).Value for name in ("Name", "Status", "AmbientTemperature", "Begin")}
    value["Operators"] = [user.Name for user in run.References("Operator").Elements]
    value["Quantities"] = [one.Name for one in run.References("MeasurementQuantities").Elements]
    value.update(ancestors(run.Parent))
    return value


class Demonstration(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        source, database = (pathlib.Path(cls.folder.name) / name for name in ("demo.atfx", "demo.sqlite"))
        for verb in ("demo", source), ("import", source, database):
            subprocess.run([PROGRAM, *verb], check=True, capture_output=True)
        cls.stores = {"ATFX": connect("ATFX", source), "SQL": connect("SQL", database)}
        cls.addClassCleanup(cls.stores.clear)
        store = cls.stores["SQL"]
        cls.records = {run.InstanceKey: record(run) for run in store.GetElementList("Measurement", "*")}

    def check(self, conditions, meets, logic=None):
        expected = [key for key, values in self.records.items() if meets(values)]
        self.assertTrue(0 < len(expected) < len(self.records), "a search that says nothing")
        for kind, store in self.stores.items():
            with self.subTest(kind=kind, conditions=conditions, logic=logic):
                query = store.CreateQuery()
                query.ReturnType = "Measurement"
                for condition in conditions:
                    query.Conditions.Add(*condition)
                if logic:
                    query.Conditions.Logic = logic
                store.Results.MaxCount = len(expected)
                store.Search(query)
                self.assertEqual([run.InstanceKey for run in store.Results], expected)
                self.assertFalse(store.Results.IsIncomplete)
                store.Results.MaxCount = max(1, len(expected) - 1)
                store.Search(query)
                self.assertEqual([run.InstanceKey for run in store.Results], expected[:store.Results.MaxCount])
                self.assertEqual(bool(store.Results.IsIncomplete), len(expected) > 1)

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


if __name__ == "__main__":
    unittest.main()
