"""Members of every kind, collections and failures."""
import gc
import pickle
import subprocess
import sys
import unittest

import toy

DISP_E_MEMBERNOTFOUND = 0x80020003
DISP_E_PARAMNOTFOUND = 0x80020004
DISP_E_TYPEMISMATCH = 0x80020005
DISP_E_BADVARTYPE = 0x80020008
DISP_E_OVERFLOW = 0x8002000A
DISP_E_BADPARAMCOUNT = 0x8002000E
E_INVALIDARG = 0x80070057
E_OUTOFMEMORY = 0x8007000E
E_FAIL = 0x80004005


def signed(code):
    return code - (1 << 32)


class NoLeaks(unittest.TestCase):
    """Fails a test that leaves an automation object behind."""

    def setUp(self):
        gc.collect()
        before = toy.LiveObjects()
        self.addCleanup(lambda: (gc.collect(), self.assertEqual(toy.LiveObjects(), before)))
        self.toy = toy.Toy()
        self.addCleanup(lambda: delattr(self, "toy"))


class Members(NoLeaks):
    def test_properties_are_read_and_written_without_regard_to_case(self):
        self.assertEqual(self.toy.Name, "toy")
        self.toy.nAME = "other"
        self.assertEqual(self.toy.NAME, "other")

    def test_methods_take_arguments_in_order(self):
        self.assertEqual(self.toy.Add(2, 3), 5)
        self.assertEqual(self.toy.Add(2), 2)
        self.assertEqual(self.toy.Add(2, toy.Missing), 2)
        self.assertEqual(self.toy.Add("4", 1.5), 6)  # converted as members take them
        self.assertEqual(self.toy.Remark(), toy.Empty)
        add = self.toy.Add
        self.assertEqual(add(1, 1), 2)
        self.assertEqual(repr(add), "<member Toy.Add>")

    def test_properties_with_arguments(self):
        self.toy.Values[0] = 5
        self.assertEqual(self.toy.Values[0], 5)
        self.assertEqual(self.toy.Values(0), 5)
        self.assertEqual(self.toy.Values[1], toy.Empty)
        self.toy.Table[2, 3] = "x"
        self.assertEqual(self.toy.Table[2, 3], "x")
        self.assertEqual(self.toy.Table(2, 3), "x")
        # One with an optional argument is read with and without it.
        self.toy.Slot[7] = 8
        self.assertEqual((self.toy.Slot(), self.toy.Slot(7), self.toy.Slot[7]), (5, 8, 8))
        with self.assertRaisesRegex(TypeError, "'Toy.Values': argument 1 is missing"):
            self.toy.Values = 5
        with self.assertRaisesRegex(TypeError, "wrong number of arguments"):
            self.toy.Values[1, 2] = 5

    def test_a_member_is_neither_true_nor_false(self):
        with self.assertRaisesRegex(TypeError, "'Toy.Remark' .*parentheses"):
            bool(self.toy.Remark)

    def test_default_members(self):
        items = self.toy.List("list", ["a", "b"])
        self.assertEqual((items(0), items[1], items.Item(1)), ("a", "b", "b"))
        items[0] = "c"
        self.assertEqual(items.Item[0], "c")
        for use in (lambda: self.toy(0), lambda: self.toy[0]):
            with self.assertRaisesRegex(TypeError, "'Toy' has no default member"):
                use()
        with self.assertRaises(TypeError):
            self.toy[0] = 1

    def test_listing(self):
        names = dir(self.toy)
        self.assertEqual(names.count("Name"), 1)
        self.assertIn("Values", names)
        self.assertIn("Advise", names)
        self.assertNotIn("Advise", dir(self.toy.List("list", [])))
        self.assertEqual(repr(self.toy), "<Toy>")

    def test_unknown_members(self):
        self.assertFalse(hasattr(self.toy, "Nam"))
        with self.assertRaisesRegex(AttributeError, "^'Toy' has no member 'Nam'$"):
            self.toy.Nam
        with self.assertRaisesRegex(AttributeError, "^'Toy' has no member 'Nam'$"):
            self.toy.Nam = 1

    def test_no_object_without_something_behind_it(self):
        class Derived(type(self.toy)):
            pass

        walker, member = type(iter(self.toy.List("walked", []))), type(self.toy.Add)
        for use in (type(self.toy), Derived, walker, member, lambda: Derived.__new__(Derived)):
            with self.assertRaises(TypeError):
                use()

    def test_ways_that_a_member_does_not_have(self):
        with self.assertRaisesRegex(AttributeError, "^'Toy.Secret' can only be written$"):
            self.toy.secret
        with self.assertRaisesRegex(AttributeError, "^'Toy.Nothing' can't be written$"):
            self.toy.nothing = 1
        with self.assertRaisesRegex(AttributeError, "^'Toy.Add' can't be written$"):
            self.toy.Add = 1
        with self.assertRaisesRegex(AttributeError, "^'Toy.Add' can't be written$"):
            self.toy.Add[1] = 1

    def test_wrong_arguments(self):
        for use, error, text in [
            (lambda: self.toy.Add(), TypeError, "'Toy.Add': wrong number of arguments"),
            (lambda: self.toy.Add(1, 2, 3), TypeError, "'Toy.Add': wrong number of arguments"),
            (lambda: self.toy.Add(a=1), TypeError, "'Toy.Add' takes no arguments by keyword"),
            (lambda: self.toy.Add(1, "x"), TypeError, "'Toy.Add': argument 2 is of the wrong type"),
            (lambda: self.toy.Add(2**40), OverflowError, "'Toy.Add': argument 1 is out of range"),
            (lambda: self.toy.Add(toy.Missing), TypeError, "'Toy.Add': argument 1 is missing"),
            (lambda: self.toy.List("list", [])(k=1), TypeError, "'List' takes no arguments by keyword"),
        ]:
            with self.subTest(text=text), self.assertRaises(error) as caught:
                use()
            self.assertEqual(str(caught.exception), text)


class Collections(NoLeaks):
    def test_walking_length_and_truth(self):
        for kind, has_length in [("list", True), ("counted", True), ("walked", False)]:
            with self.subTest(kind=kind):
                items = self.toy.List(kind, ["a", 2, None])
                self.assertEqual([item for item in items], ["a", 2, None])
                self.assertEqual(list(self.toy.List(kind, [])), [])
                self.assertTrue(items)
                if has_length:
                    self.assertEqual(len(items), 3)
                    self.assertFalse(self.toy.List(kind, []))
                else:
                    with self.assertRaisesRegex(TypeError, "no collection"):
                        len(items)

    def test_two_walks_of_one_collection(self):
        for kind in "list", "counted":
            items = self.toy.List(kind, [1, 2])
            self.assertEqual([(a, b) for a in items for b in items], [(1, 1), (1, 2), (2, 1), (2, 2)])

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
        for use in (len, iter):
            with self.assertRaisesRegex(TypeError, "^'Plain' is no collection$"):
                use(self.toy.List("plain", []))
        self.assertTrue(self.toy.List("plain", []))


class Failures(NoLeaks):
    def test_the_message_and_its_number(self):
        for number, text in [(292, "Opening the Sifter x causes an error."), (-1, ""), (7, "Ж \U0001f600")]:
            with self.subTest(number=number), self.assertRaises(toy.DispatchError) as caught:
                self.toy.Fail(number, text)
            self.assertEqual(caught.exception.number, number)
            self.assertEqual(caught.exception.text, text)
            self.assertEqual(str(caught.exception), text)
            self.assertEqual(caught.exception.args, (number, text))

    def test_failures_of_properties_and_items(self):
        with self.assertRaises(toy.DispatchError) as caught:
            self.toy.Name = ""
        self.assertEqual(caught.exception.number, 360)
        self.assertEqual(str(caught.exception), "The name of an Element<DataStore> must not be an empty string.")
        with self.assertRaises(toy.DispatchError) as caught:
            self.toy.List("list", [1])[1]
        self.assertEqual(caught.exception.number, 215)
        with self.assertRaises(toy.DispatchError):
            self.toy.List("counted", [1])(-1)

    def test_the_exception_is_like_any_other(self):
        self.assertTrue(issubclass(toy.DispatchError, Exception))
        back = pickle.loads(pickle.dumps(toy.DispatchError(5, "five")))
        self.assertEqual((back.number, back.text), (5, "five"))

    def test_codes_of_calls_that_hosts_refuse(self):
        refuser = toy.Refuser()
        for code, argument, error, text in [
            (DISP_E_MEMBERNOTFOUND, -1, AttributeError, "'Refuser.Refuse' can't be called or read"),
            (DISP_E_BADPARAMCOUNT, -1, TypeError, "'Refuser.Refuse': wrong number of arguments"),
            (DISP_E_TYPEMISMATCH, 0, TypeError, "'Refuser.Refuse': argument 1 is of the wrong type"),
            (DISP_E_TYPEMISMATCH, -1, TypeError, "'Refuser.Refuse': an argument is of the wrong type"),
            (DISP_E_BADVARTYPE, 1, TypeError, "'Refuser.Refuse': argument 2 is of the wrong type"),
            (DISP_E_PARAMNOTFOUND, 0, TypeError, "'Refuser.Refuse': argument 1 is missing"),
            (DISP_E_OVERFLOW, 0, OverflowError, "'Refuser.Refuse': argument 1 is out of range"),
            (E_INVALIDARG, 0, ValueError, "'Refuser.Refuse': argument 1 is invalid"),
            (E_FAIL, -1, RuntimeError, "'Refuser.Refuse' failed with 0x80004005"),
        ]:
            with self.subTest(code=hex(code)), self.assertRaises(error) as caught:
                refuser.Refuse(signed(code), argument)
            self.assertEqual(str(caught.exception), text)
        with self.assertRaises(MemoryError):
            refuser.Refuse(signed(E_OUTOFMEMORY), -1)


class Shutdown(unittest.TestCase):
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
