"""Events of objects in Python functions."""
import gc
import sys
import unittest

import toy
from toys import ToyTest


class Events(ToyTest):
    def setUp(self):
        super().setUp()
        self.unraisable = []
        hook, sys.unraisablehook = sys.unraisablehook, lambda told: self.unraisable.append(told.exc_value)
        self.addCleanup(setattr, sys, "unraisablehook", hook)

    def test_arguments_and_answers(self):
        heard = []

        def answer(a, b):
            heard.append("answer")
            return [b, a]

        first = self.toy.Advise({"Changed": lambda *args: heard.append(args)})
        self.assertEqual(self.toy.Change("a", [1, None]), toy.Empty)
        second = self.toy.Advise({"changed": answer})
        self.assertEqual(self.toy.Change(1, "x"), ["x", 1])
        first.Unadvise()
        self.assertEqual(self.toy.Change(1, 2), [2, 1])
        self.assertEqual(heard, [("a", [1, None]), (1, "x"), "answer", "answer"])
        first.Unadvise()  # again is nothing
        second.Unadvise()
        self.assertEqual(self.toy.Change(1, 2), toy.Empty)  # nobody hears

    def test_the_source_listens_on_without_the_subscription(self):
        heard = []
        self.toy.Advise({"Changed": lambda *args: heard.append(args)})
        gc.collect()
        self.toy.Close(False)  # which nobody hears
        self.toy.Change(1, 2)
        self.assertEqual(heard, [(1, 2)])

    def test_by_reference_arguments(self):
        kept = []

        def closing(cancel):
            kept.append(cancel)
            self.assertIs(cancel.Value, False)
            cancel.Value = True

        subscription = self.toy.Advise({"Closing": closing})
        self.assertIs(self.toy.Close(False), True)
        # The source's variable is gone by now.
        for use in (lambda: kept[0].Value, lambda: setattr(kept[0], "Value", 1)):
            with self.assertRaisesRegex(ValueError, "the event is over"):
                use()
        subscription.Unadvise()
        self.assertEqual(self.unraisable, [])

    def test_errors_in_handlers_are_told_and_disturb_nobody(self):
        heard = []

        def bad(a, b):
            raise KeyError(a)

        subscriptions = [self.toy.Advise({"Changed": handler}) for handler in (
            bad,
            lambda: None,  # takes no arguments
            lambda a, b: object(),  # an answer that can't be handed on
            lambda a, b: 2**64,
            lambda a, b: self.toy.Fail(9, "nine"),
            lambda a, b: heard.append(a),
        )]
        self.assertEqual(self.toy.Change("x", 0), toy.Empty)
        self.assertEqual([type(error) for error in self.unraisable],
                         [KeyError, TypeError, TypeError, OverflowError, toy.DispatchError])
        self.assertEqual(heard, ["x"])
        for subscription in subscriptions:
            subscription.Unadvise()

    def test_unadvising_while_the_event_runs(self):
        heard = []

        def once(a, b):
            subscription.Unadvise()
            gc.collect()
            heard.append(a)
            self.toy.Change("again", b)

        subscription = self.toy.Advise({"Changed": once})
        self.toy.Change("first", 0)
        self.assertEqual(heard, ["first"])

    def test_refused_handlers(self):
        self.assert_refused(
            (lambda: self.toy.Advise({"Change": print}), AttributeError, "'Toy' has no event 'Change'"),
            (lambda: self.toy.Advise({"Changed": 5}), TypeError, "a handler must be callable"),
            (lambda: self.toy.Advise({1: print}), AttributeError, "'Toy' has no event '1'"),
            (lambda: self.toy.List("list", []).Advise({}), TypeError, "'List' has no events"))


if __name__ == "__main__":
    unittest.main()
