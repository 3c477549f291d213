"""The module over the library and its engine: sessions, models and their failures."""
import datetime
import gc
import shutil
import unittest

import storefabric
from stores import DATA, StoreTest, connect, temporary_folder

BENCH = DATA / "store" / "bench.atfx"


class Sessions(StoreTest):
    def test_classes_by_name(self):
        for name in "VEX.DataStoreEnvironment", "vex.datastoreenvironment":
            self.assertEqual(repr(storefabric.CreateObject(name)), "<DataStoreEnvironment>")
        for name in "VEX.Nothing", "", "VEX.DataStoreEnvironment\0":
            with self.subTest(name=name), self.assertRaises(ValueError):
                storefabric.CreateObject(name)
        with self.assertRaises(TypeError):
            storefabric.CreateObject(5)

    def test_connecting_to_what_is_not_there(self):
        env = storefabric.CreateObject("VEX.DataStoreEnvironment")
        for use, name in [
            (lambda: env.ConnectDataStore("nowhere"), "nowhere"),
            (lambda: env.ConnectDataStore("Größe \U0001f600"), "Größe \U0001f600"),
            (lambda: env.ConnectDataStore(""), ""),
            (lambda: env.ConnectDataStoreByParameter("NOPE", ""), "NOPE"),
            (lambda: env.ConnectDataStoreByParameter("SQL", "<filename></filename>"), "SQL"),
            (lambda: connect("/nonexistent/a.atfx"), "/nonexistent/a.atfx"),
        ]:
            self.assert_raises(292, use, f"Opening the Sifter {name} causes an error.")

    def test_what_a_session_says_of_itself(self):
        store = connect(BENCH)
        self.assertEqual((store.Name, store.PluginName, store.parameters, store.IsModified(), store.IsQuerySupported()),
                         ("bench", "ATFX", f"<filename>{BENCH}</filename>", 0, 1))
        marked = temporary_folder(self) / "a & <b> 'Ж'.atfx"
        shutil.copy(BENCH, marked)
        self.assertEqual(len(connect(marked).Model.Entities), 2)

    def test_refused_calls(self):
        store = connect(BENCH)
        self.assert_raises(360, lambda: store.CreateElement("Test", ""),
                           "The name of an Element<DataStore> must not be an empty string.")
        self.assert_raises(357, lambda: store.CreateElement([], "name"),
                           "The parameter Type of the Create function must be an Entity<DataStore> or a string with "
                           "the name of an Entity.")
        with self.assertRaises(TypeError):
            store.Search(5)  # no object at all
        with self.assertRaises(AttributeError):
            store.Name = "other"


class Times(StoreTest):
    def setUp(self):
        self.times = storefabric.CreateObject("VEX.TimeFactory")

    def test_fields(self):
        time = self.times.CreateTime(2001, 2, 3, 4, 5, 6, 7, 8, 9)
        names = ["Year", "Month", "Day", "Hour", "Minute", "Second", "Millisecond", "Microsecond", "Nanosecond"]
        self.assertEqual([getattr(time, name) for name in names], [2001, 2, 3, 4, 5, 6, 7, 8, 9])
        time.Month = 13  # counts as January
        time.Minute = 65
        self.assertEqual((time.Month, time.Hour, time.Minute), (1, 5, 5))
        time.VariantDate = 45000.5
        self.assertEqual((time.Year, time.Hour, time.Nanosecond, time.VariantDate), (2023, 12, 0, 45000.5))

    def test_messages(self):
        self.assert_raises(60008, lambda: self.times.CreateTime(2001, 1, storefabric.Missing, -1),
                           'The only argument to the method "CreateTime" which may be negative is the argument "Year".')
        time = self.times.CreateTime(-5)
        self.assertEqual((time.Year, time.Month, time.Day), (-5, 1, 1))
        for name in "Month", "Day", "Hour", "Minute", "Second", "Millisecond", "Microsecond", "Nanosecond":
            self.assert_raises(208, lambda: setattr(time, name, -2),
                               f"The value -2 is out of the valid range of arguments for the property {name}.")
        for use in lambda: time.VariantDate, lambda: setattr(time, "VariantDate", 3e6):
            self.assert_raises(374, use)
        with self.assertRaises(OverflowError):
            self.times.CreateTime(40000)
        with self.assertRaises(TypeError):
            self.times.CreateTime()

    def test_a_property_takes_a_time(self):
        store = connect(DATA / "store" / "properties" / "rig.atfx")
        built = store.GetElementByKey("Rig:1").Properties("Built")
        built.Value = self.times.CreateTime(1850, 2, 3, 4, 5, 6, 7, 8, 9)
        self.assertEqual(built.Value, datetime.datetime(1850, 2, 3, 4, 5, 6, 7000))
        for refused in self.times.CreateTime(10000), self.times, store:
            with self.assertRaises(storefabric.DispatchError):
                built.Value = refused
        self.assertEqual(built.Value.year, 1850)


class Models(StoreTest):
    def setUp(self):
        self.store = connect(BENCH)
        self.entities = self.store.Model.Entities
        self.test = self.entities("Test")
        self.features = connect(DATA / "atfx" / "features.atfx")

    def test_entities(self):
        self.assertEqual([entity.Name for entity in self.entities], ["Test", "Measurement"])
        self.assertEqual((len(self.entities), self.entities[1].Name), (2, "Measurement"))
        self.assertIn("Test", self.entities)
        self.assertNotIn("test", self.entities)  # told apart by case
        for wrong in "nope", 2, -1:
            with self.subTest(wrong=wrong), self.assertRaises(storefabric.DispatchError):
                self.entities(wrong)

    def test_inheritance(self):
        base = self.test.SuperType
        self.assertEqual((base.Name, base.IsBaseType, self.test.IsBaseType), ("aotest", 1, 0))
        self.assertIsNone(self.test.SubTypes)
        self.assertEqual([entity.Name for entity in base.SubTypes], ["Test"])
        for other, expected in [("Test", 1), ("aotest", 1), (self.test, 1), (base, 1),
                                ("Measurement", 0), (self.entities(1), 0), ("nope", 0)]:
            with self.subTest(other=other):
                self.assertEqual(self.test.IsKindOf(other), expected)
        for wrong in None, self.entities, []:
            with self.subTest(wrong=wrong), self.assertRaises(storefabric.DispatchError):
                self.test.IsKindOf(wrong)

    def test_properties(self):
        def row(prop):
            return prop.Name, prop.DataType, prop.MinOccur, prop.MaxOccur

        self.assertEqual([prop.Name for prop in self.test.ModelProperties], ["Id", "Name"])
        self.assertEqual(self.test.ModelProperties("id").BaseName, "id")  # by its base name
        self.assertTrue(self.test.ModelProperties.Exists("Name"))
        thing = self.features.Model.Entities("Thing").ModelProperties
        self.assertEqual(row(thing("s")), ("s", 23, 0, 1))
        self.assertEqual(row(thing("ss")), ("ss", 23, 0, -1))
        self.assertEqual([thing(name).DataType for name in ("i16", "i64", "f32", "d", "e", "b", "u8")],
                         [2, 4, 9, 30, 24, 11, 5])
        self.assertNotIn("blob", thing)  # not of a type that can be shown
        self.assert_raises(343, lambda: thing("s").BaseName, "This property is no base property.")

    def test_references(self):
        reference = self.test.ModelReferences("Measurements")
        self.assertEqual((reference.MinOccur, reference.MaxOccur, reference.BaseName), (0, -1, "children"))
        self.assertEqual(reference.EntityType.Name, "Measurement")
        self.assertEqual(reference.Inverse.Name, "Test")
        self.assertEqual(reference.Inverse.Inverse.Name, "Measurements")
        self.assertEqual(self.test.ModelReferences("children").Name, "Measurements")
        thing = self.features.Model.Entities("Thing")
        self.assertEqual([r.Name for r in thing.ModelReferences], ["first.rel", "back-rel", "others"])

    def test_an_exported_store_has_the_same_model(self):
        path = temporary_folder(self) / "copy"
        self.store.Model.Export(str(path))
        copy = connect(path.with_suffix(".atfx")).Model.Entities
        self.assertEqual([entity.Name for entity in copy], ["Test", "Measurement"])
        wrong = path / "copy.atfx"
        self.assert_raises(358, lambda: self.store.Model.Export(str(wrong)),
                           f"Cannot write the file {wrong}. Maybe the file is write protected or the path does not exist.")

    def test_objects_that_outlive_their_session(self):
        del self.store, self.entities
        gc.collect()
        self.assertEqual(self.test.Name, "Test")
        self.assert_raises(323, lambda: self.test.SuperType, "The object is no longer valid.")


if __name__ == "__main__":
    unittest.main()
