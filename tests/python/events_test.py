"""Events of objects in Python functions."""
import gc
import sys
import unittest

import toy


class Events(unittest.TestCase):
    def setUp(self):
        gc.collect()
        before = toy.LiveObjects()
        self.addCleanup(lambda: (gc.collect(), self.assertEqual(toy.LiveObjects(), before)))
        self.toy = toy.Toy()
        self.addCleanup(lambda: delattr(self, "toy"))
        self.unraisable = []
        hook, sys.unraisablehook = sys.unraisablehook, lambda told: self.unraisable.append(told.exc_value)
        self.addCleanup(setattr, sys, "unraisablehook", hook)

    def test_arguments_and_answers(self):
        heard = []
        subscription = self.toy.Advise({"Changed": lambda *args: heard.append(args)})
        self.assertEqual(self.toy.Change("a", [1, None]), toy.Empty)
        self.assertEqual(heard, [("a", [1, None])])
        subscription.Unadvise()
        self.toy.Change(1, 2)
        self.assertEqual(len(heard), 1)
        subscription.Unadvise()  # again is nothing

    def test_an_answer_goes_back(self):
        subscription = self.toy.Advise({"changed": lambda a, b: [b, a]})
        self.assertEqual(self.toy.Change(1, "x"), ["x", 1])
        subscription.Unadvise()

    def test_the_source_listens_on_without_the_subscription(self):
        heard = []
        self.toy.Advise({"Changed": lambda *args: heard.append(args)})
        gc.collect()
        self.toy.Change(1, 2)
        self.assertEqual(heard, [(1, 2)])

    def test_several_listeners_and_events_nobody_hears(self):
        heard = []
        first = self.toy.Advise({"Changed": lambda *_: heard.append(1)})
        second = self.toy.Advise({"Changed": lambda *_: heard.append(2)})
        self.toy.Close(False)
        self.toy.Change(1, 2)
        first.Unadvise()
        self.toy.Change(1, 2)
        self.assertEqual(heard, [1, 2, 2])
        second.Unadvise()

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
        for handlers, error, text in [
            ({"Change": print}, AttributeError, "'Toy' has no event 'Change'"),
            ({"Changed": 5}, TypeError, "a handler must be callable"),
            ({1: print}, AttributeError, "'Toy' has no event '1'"),
        ]:
            with self.subTest(text=text), self.assertRaises(error) as caught:
                self.toy.Advise(handlers)
            self.assertEqual(str(caught.exception), text)
        with self.assertRaisesRegex(TypeError, "'List' has no events"):
            self.toy.List("list", []).Advise({})


if __name__ == "__main__":
    unittest.main()
