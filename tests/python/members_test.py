"""Members of every kind, collections and failures."""
import gc
import pickle
import subprocess
import sys
import unittest
from itertools import product

import toy
from toys import ToyTest


class Members(ToyTest):
    def test_methods_and_properties(self):
        self.assertEqual(self.toy.Name, "toy")
        self.toy.nAME = "other"
        self.assertEqual(self.toy.NAME, "other")
        self.assertEqual(self.toy.Add(2, 3), 5)
        self.assertEqual(self.toy.Add(2), 2)
        self.assertEqual(self.toy.Add(2, toy.Missing), 2)
        self.assertEqual(self.toy.Add("4", 1.5), 6)  # converted as members take them
        self.assertEqual(self.toy.Remark(), toy.Empty)
        add = self.toy.Add
        self.assertEqual((add(1, 1), repr(add)), (2, "<member Toy.Add>"))

    def test_properties_with_arguments(self):
        self.toy.Values[0] = 5
        self.assertEqual((self.toy.Values[0], self.toy.Values(0), self.toy.Values[1]), (5, 5, toy.Empty))
        self.toy.Table[2, 3] = "x"
        self.assertEqual((self.toy.Table[2, 3], self.toy.Table(2, 3)), ("x", "x"))
        # One with an optional argument is read with and without it.
        self.toy.Slot[7] = 8
        self.assertEqual((self.toy.Slot(), self.toy.Slot(7), self.toy.Slot[7]), (5, 8, 8))

    def test_default_members(self):
        items = self.toy.List("list", ["a", "b"])
        self.assertEqual((items(0), items[1], items.Item(1)), ("a", "b", "b"))
        items[0] = "c"
        self.assertEqual(items.Item[0], "c")

    def test_listing(self):
        names = dir(self.toy)
        self.assertEqual([names.count(name) for name in ("Name", "Values", "Advise")], [1, 1, 1])
        self.assertNotIn("Advise", dir(self.toy.List("list", [])))
        self.assertEqual(repr(self.toy), "<Toy>")
        self.assertFalse(hasattr(self.toy, "Nam"))

    def test_no_object_without_something_behind_it(self):
        class Derived(type(self.toy)):
            pass

        walker, member = type(iter(self.toy.List("walked", []))), type(self.toy.Add)
        for use in (type(self.toy), Derived, walker, member, lambda: Derived.__new__(Derived)):
            with self.assertRaises(TypeError):
                use()

    def test_refused_uses(self):
        def put(owner, name, value=1):
            return lambda: setattr(owner, name, value)

        def put_item(owner, key):
            return lambda: owner.__setitem__(key, 1)

        self.assert_refused(
            (lambda: self.toy.Nam, AttributeError, "'Toy' has no member 'Nam'"),
            (put(self.toy, "Nam"), AttributeError, "'Toy' has no member 'Nam'"),
            (lambda: self.toy.secret, AttributeError, "'Toy.Secret' can only be written"),
            (put(self.toy, "nothing"), AttributeError, "'Toy.Nothing' can't be written"),
            (put(self.toy, "Add"), AttributeError, "'Toy.Add' can't be written"),
            (put_item(self.toy.Add, 1), AttributeError, "'Toy.Add' can't be written"),
            (put(self.toy, "Values"), TypeError, "'Toy.Values': argument 1 is missing"),
            (put_item(self.toy.Values, (1, 2)), TypeError, "'Toy.Values': wrong number of arguments"),
            (lambda: self.toy(0), TypeError, "'Toy' has no default member that can do that"),
            (lambda: self.toy[0], TypeError, "'Toy' has no default member that can do that"),
            (put_item(self.toy, 0), TypeError, "'Toy' has no default member that can do that"),
            (lambda: self.toy.Add(), TypeError, "'Toy.Add': wrong number of arguments"),
            (lambda: self.toy.Add(1, 2, 3), TypeError, "'Toy.Add': wrong number of arguments"),
            (lambda: self.toy.Add(a=1), TypeError, "'Toy.Add' takes no arguments by keyword"),
            (lambda: self.toy.Add(1, "x"), TypeError, "'Toy.Add': argument 2 is of the wrong type"),
            (lambda: self.toy.Add(2**40), OverflowError, "'Toy.Add': argument 1 is out of range"),
            (lambda: self.toy.Add(toy.Missing), TypeError, "'Toy.Add': argument 1 is missing"),
            (lambda: self.toy.List("list", [])(k=1), TypeError, "'List' takes no arguments by keyword"))
        # A member is neither true nor false.
        with self.assertRaisesRegex(TypeError, "'Toy.Remark' .*parentheses"):
            bool(self.toy.Remark)


class Collections(ToyTest):
    def test_walking_length_and_truth(self):
        for kind, has_length in [("list", True), ("counted", True), ("walked", False)]:
            with self.subTest(kind=kind):
                items = self.toy.List(kind, ["a", 2, None])
                self.assertEqual([item for item in items], ["a", 2, None])
                self.assertEqual([(a, b) for a in items for b in items], list(product(["a", 2, None], repeat=2)))
                self.assertEqual(list(self.toy.List(kind, [])), [])
                self.assertTrue(items)
                if has_length:
                    self.assertEqual(len(items), 3)
                    self.assertFalse(self.toy.List(kind, []))
                else:
                    with self.assertRaisesRegex(TypeError, "no collection"):
                        len(items)

    def test_a_walk_keeps_its_collection(self):
        walk = iter(self.toy.List("list", [self.toy, self.toy]))
        gc.collect()
        self.assertEqual([one.Name for one in walk], ["toy", "toy"])

    def test_a_walk_that_fails(self):
        walk = iter(self.toy.List("walked", [1, toy.Missing, 3]))
        self.assertEqual(next(walk), 1)
        with self.assertRaisesRegex(RuntimeError, "0x80004005"):
            next(walk)

    def test_membership(self):
        self.assertIn("known", self.toy.List("list", []))
        self.assertNotIn("unknown", self.toy.List("list", ["unknown"]))
        self.assertIn(2, self.toy.List("walked", [1, 2]))
        self.assertNotIn(3, self.toy.List("counted", [1, 2]))
        with self.assertRaisesRegex(TypeError, "'WalkedList' has no 'Exists'"):
            "toy" in self.toy.List("walked", [self.toy])

    def test_no_collection(self):
        plain = self.toy.List("plain", [])
        self.assertTrue(plain)
        self.assert_refused((lambda: len(plain), TypeError, "'Plain' is no collection"),
                            (lambda: iter(plain), TypeError, "'Plain' is no collection"))


class Failures(ToyTest):
    def test_the_message_and_its_number(self):
        for number, text in [(292, "Opening the Sifter x causes an error."), (-1, ""), (7, "Ж \U0001f600")]:
            with self.subTest(number=number), self.assertRaises(toy.DispatchError) as caught:
                self.toy.Fail(number, text)
            error = caught.exception
            self.assertEqual((error.number, error.text, str(error), error.args), (number, text, text, (number, text)))
        self.assertTrue(issubclass(toy.DispatchError, Exception))
        back = pickle.loads(pickle.dumps(toy.DispatchError(5, "five")))
        self.assertEqual((back.number, back.text), (5, "five"))

    def test_failures_of_properties_and_items(self):
        for number, text, use in [
            (360, "The name of an Element<DataStore> must not be an empty string.",
             lambda: setattr(self.toy, "Name", "")),
            (215, "The index doesn't correspond to a member of the collection.",
             lambda: self.toy.List("list", [1])[1]),
            (215, "The index doesn't correspond to a member of the collection.",
             lambda: self.toy.List("counted", [1])(-1)),
        ]:
            with self.subTest(text=text), self.assertRaises(toy.DispatchError) as caught:
                use()
            self.assertEqual(caught.exception.args, (number, text))

    def test_codes_of_calls_that_hosts_refuse(self):
        refuser = toy.Refuser()
        for code, argument, error, text in [
            (0x80020003, -1, AttributeError, "'Refuser.Refuse' can't be called or read"),
            (0x8002000E, -1, TypeError, "'Refuser.Refuse': wrong number of arguments"),
            (0x80020005, 0, TypeError, "'Refuser.Refuse': argument 1 is of the wrong type"),
            (0x80020005, -1, TypeError, "'Refuser.Refuse': an argument is of the wrong type"),
            (0x80020008, 1, TypeError, "'Refuser.Refuse': argument 2 is of the wrong type"),  # a bad type
            (0x80020004, 0, TypeError, "'Refuser.Refuse': argument 1 is missing"),
            (0x8002000A, 0, OverflowError, "'Refuser.Refuse': argument 1 is out of range"),
            (0x80070057, 0, ValueError, "'Refuser.Refuse': argument 1 is invalid"),
            (0x80004005, -1, RuntimeError, "'Refuser.Refuse' failed with 0x80004005"),
            (0x8007000E, -1, MemoryError, ""),
        ]:
            with self.subTest(code=hex(code)), self.assertRaises(error) as caught:
                refuser.Refuse(code - (1 << 32), argument)
            self.assertEqual(str(caught.exception), text)

    def test_the_interpreter_ends_with_objects_alive(self):
        script = """if True:
            import builtins, toy
            t = builtins.keep = toy.Toy()
            keep_list = t.List("list", [t, toy.Empty])
            walk = iter(keep_list); next(walk)
            member = t.Add
            t.Values[0] = t
            def handler(*args): return t
            subscription = t.Advise({"Changed": handler})
            class Late:
                def __del__(self, t=t): t.Change(1, 2)
            late = Late()
        """
        done = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
