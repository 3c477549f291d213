"""Queries and searches by name, over a file and over a database of the same records."""
import datetime
import unittest

import storefabric
from stores import DATA, StoreTest, connect, run, temporary_folder

BENCH = DATA / "query" / "bench.atfx"


def names(store):
    return sorted(element.Name for element in store.Results)


class Searches:
    """What every kind of store does alike."""

    def search(self, *conditions, logic="", returns=None):
        query = self.store.CreateQuery()
        for condition in conditions:
            query.Conditions.Add(*condition)
        if logic:
            query.Conditions.Logic = logic
        if returns:
            query.ReturnType = returns
        self.store.Search(query)
        found = [element.Name for element in self.store.Results]
        self.assertEqual(self.store.Results.ReadColumns("name"), found)
        self.store.Results.RemoveAll()
        ids, together = self.store.SearchColumns(query, ["id", "name"])
        self.assertEqual((together, ids), (found, [one.Properties("id").Value for one in self.store.Results]))
        return names(self.store)

    def test_columns(self):
        query = self.store.CreateQuery()
        query.Conditions.Add("MeaResult", "Size", "<=", 2)
        for unknown in "Nope", "Step.Nope", "Channels", "":
            self.assert_raises(2105, lambda: self.store.SearchColumns(query, ["Name", unknown]),
                               f'The property "{unknown}" is invalid. Please edit or remove this property.')
            self.assertEqual(len(self.store.Results), 0)
        for wrong in 5, None, ["Name", 5]:
            with self.assertRaises(TypeError):
                self.store.SearchColumns(query, wrong)
        self.assert_raises(222, lambda: self.store.SearchColumns(None, "Name"))
        self.assertEqual(self.store.SearchColumns(query, []), [])
        self.assertEqual(names(self.store), ["Run 1", "Run 2"])
        times, sizes = self.store.SearchColumns(query, ["Time", "Size"])
        self.assertEqual(times, [one.Properties("Time").Value for one in self.store.Results])
        self.assertEqual(sizes, [1, 2])

    def test_hits(self):
        day = datetime.datetime(2009, 5, 17)
        for conditions, options, expected in [
            ([("MeaResult", "Name", "=", "a*")], {}, ["Run 1", "Run 2", "Run 4"]),
            ([("MeaResult", "Size", ">=", 7)], {}, ["Run 7", "Run 8"]),
            ([("MeaResult", "Size", "=", "2 OR 4")], {}, ["Run 2", "Run 4"]),
            ([("MeaResult", "Size", "=", [2, 4])], {}, ["Run 2", "Run 4"]),
            ([("MeaResult", "Time", "Date equal", day)], {}, ["Run 2", "Run 3", "Run 4"]),
            ([("MeaResult", "Time", ">=", day + datetime.timedelta(hours=12))], {}, ["Run 3", "Run 4", "Run 5"]),
            ([("MeaResult", "Time", "#", "Today")], {}, []),
            ([("Campaign", "Title", "=", "summer"), ("MeaResult", "State", "<>", "done")], {}, ["Run 5", "Run 7"]),
            ([("MeaResult", "Size", "=", 1), ("MeaResult", "Size", "=", 2), ("Step", "Name", "=", "cold")],
             {"logic": "c3 and (c1 or c2)"}, ["Run 1", "Run 2"]),
            ([("MeaResult", "Size", ">", 4)], {"returns": "Step"}, ["Hot"]),
            ([("Channel", "Name", "=", "t*")], {"returns": "MeaResult"}, ["Run 2"]),
        ]:
            with self.subTest(conditions=conditions):
                self.assertEqual(self.search(*conditions, **options), expected)

    def test_the_limit(self):
        results = self.store.Results
        self.assertEqual(results.MaxCount, 200)
        for limit, count, incomplete in (9, 8, False), (8, 8, False), (7, 7, True), (1, 1, True):
            with self.subTest(limit=limit):
                results.MaxCount = limit
                self.search(("MeaResult", "Size", ">", 0))
                self.assertEqual((len(results), bool(results.IsIncomplete)), (count, incomplete))

    def test_a_query_of_another_session(self):
        query = connect(BENCH).CreateQuery()
        query.Conditions.Add("MeaResult", "Title", "=", "Run 3")
        self.store.Search(query)
        self.assertEqual(names(self.store), ["Run 3"])
        other = connect(DATA / "browse" / "campaign.atfx")
        other.Search(query)  # whose measurements have another name
        self.assertEqual((names(other), query.ReturnType), ([], "MeaResult"))
        query.Conditions(1)
        query.Conditions.Add("MeaResult", "Size", "=", 3)
        self.assert_raises(250, lambda: other.Search(query))  # there is no size
        self.store.Search(query)
        self.assertEqual(names(self.store), ["Run 3"])

    def test_a_query_that_lost_its_store(self):
        query = self.store.CreateQuery()
        query.Conditions.Add("MeaResult", "Size", "=", 3)
        query.Detach()
        self.assert_raises(250, query.Detach)
        self.assertEqual((query.ReturnType, query.Conditions(1).Value), ("MeaResult", 3))
        self.store.Search(query)
        self.assertEqual(names(self.store), ["Run 3"])

    def test_new_browse_settings(self):
        query = self.store.CreateQuery()
        query.Conditions.Add("Step", "Name", "=", "cold")
        self.store.BrowseSettings = self.store.GetBrowseSettings()
        self.store.Search(query)
        self.assertEqual(len(self.store.Results), 4)

    def test_what_a_query_says_of_itself(self):
        query = self.store.CreateQuery()
        self.assertEqual((query.ReturnType, bool(query.IsEmpty())), ("MeaResult", True))
        self.assertEqual([bool(query.IsKindOf(kind)) for kind in (1, 2, 4)], [False, False, True])
        self.assertEqual(query.QueryString(), "")
        query.Conditions.Add("MeaResult", "Name", "<>", "a*")
        self.assertIn('name="&lt;&gt;"', query.QueryString())
        self.assertIn('name="!="', query.QueryString(self.store))
        self.assert_raises(222, lambda: query.QueryString(query))
        with self.assertRaisesRegex(storefabric.DispatchError, r"^QueryString not implemented\.$"):
            query.QueryString = "<query/>"

    def test_refused_searches(self):
        query = self.store.CreateQuery()
        empty = "Searching with an empty query is not possible."
        self.assert_raises(265, lambda: self.store.Search(query), empty)
        query.Conditions.Add("MeaResult", "Name", "=", "<Enter a value>")
        self.assert_raises(265, lambda: self.store.Search(query), empty)
        self.assert_raises(265, lambda: self.store.Search(storefabric.CreateObject("VEX.DataStoreQuery")), empty)
        self.assert_raises(209, lambda: setattr(query, "ReturnType", "Nobody"),
                           "The text Nobody is not a valid value for the property ReturnType.")
        self.assertEqual(query.ReturnType, "MeaResult")
        for other in None, self.store, query.Conditions:
            self.assert_raises(222, lambda: self.store.Search(other),
                               "The argument Query<DataStore> of the method Search must be a Query.")
        self.assert_raises(298, lambda: setattr(query.Conditions, "Logic", "C1 AND"),
                           "The provided logical operation: C1 AND is not valid.")


class Files(Searches, StoreTest):
    def setUp(self):
        self.store = connect(BENCH)


class Databases(Searches, StoreTest):
    def setUp(self):
        path = temporary_folder(self) / "bench.sqlite"
        run("import", BENCH, path)
        self.store = connect(path)
        self.addCleanup(lambda: setattr(self, "store", None))


if __name__ == "__main__":
    unittest.main()
