"""The toy, for tests that leave no automation object behind."""
import gc
import unittest

import toy


class ToyTest(unittest.TestCase):
    def setUp(self):
        gc.collect()
        before = toy.LiveObjects()
        self.addCleanup(lambda: (gc.collect(), self.assertEqual(toy.LiveObjects(), before)))
        self.toy = toy.Toy()
        self.addCleanup(lambda: delattr(self, "toy"))

    def assert_refused(self, *rows):
        """Rows of (use, error, its text)."""
        for use, error, text in rows:
            with self.subTest(text=text), self.assertRaises(error) as caught:
                use()
            self.assertEqual(str(caught.exception), text)
