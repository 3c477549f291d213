"""Values on their way through the proxy: types, limits, refused ones."""
import copy
import datetime
import decimal
import enum
import fractions
import math
import pickle
import unittest

import toy
from toys import ToyTest

VT = dict(EMPTY=0, NULL=1, I2=2, I4=3, R4=4, R8=5, CY=6, DATE=7, BSTR=8, DISPATCH=9, ERROR=10, BOOL=11,
          UNKNOWN=13, DECIMAL=14, I1=16, UI1=17, UI2=18, UI4=19, I8=20, UI8=21, INT=22, UINT=23)
ARRAY_OF_VARIANTS = 0x2000 | 12
Moment = datetime.datetime


class Level(enum.IntEnum):
    HIGH = 7


class Index:
    """A number of another library."""

    def __init__(self, value):
        self.value = value

    def __index__(self):
        return self.value


class Values(ToyTest):
    def test_types_and_round_trips(self):
        same = object()
        for given, vartype, back in [
            (None, VT["NULL"], same),
            (toy.Empty, VT["EMPTY"], same),
            (toy.Missing, VT["ERROR"], same),
            (True, VT["BOOL"], same),
            (False, VT["BOOL"], same),
            (0, VT["I4"], same),
            (2**31 - 1, VT["I4"], same),
            (-(2**31), VT["I4"], same),
            (2**31, VT["I8"], same),
            (-(2**31) - 1, VT["I8"], same),
            (2**63 - 1, VT["I8"], same),
            (-(2**63), VT["I8"], same),
            (Level.HIGH, VT["I4"], 7),
            (Index(5), VT["I4"], 5),
            (0.1, VT["R8"], same),
            (math.inf, VT["R8"], same),
            (fractions.Fraction(1, 4), VT["R8"], 0.25),
            ("", VT["BSTR"], same),
            ("plain", VT["BSTR"], same),
            ("Größe \u0416 \U0001f600", VT["BSTR"], same),
            ("zero \0 inside", VT["BSTR"], same),
            ("lone \ud800 and \udc00", VT["BSTR"], same),
            ("\udc00\ud800\U0001f600", VT["BSTR"], same),
            (decimal.Decimal("1.25"), VT["DECIMAL"], same),
            ([], ARRAY_OF_VARIANTS, same),
            ([1, [2.5, None], "x", toy.Empty], ARRAY_OF_VARIANTS, same),
            ((1, 2), ARRAY_OF_VARIANTS, [1, 2]),
            (b"\x00\x7f\xff", ARRAY_OF_VARIANTS, same),
            (Moment(2024, 2, 29, 12, 30, 15), VT["DATE"], same),
            (datetime.date(1899, 12, 30), VT["DATE"], Moment(1899, 12, 30)),
        ]:
            with self.subTest(given=given):
                expected = given if back is same else back
                found = self.toy.Echo(given)
                self.assertEqual((found, type(found), self.toy.TypeOf(given)), (expected, type(expected), vartype))

    def test_objects_go_through(self):
        self.toy.Name = "first"
        self.assertEqual(self.toy.TypeOf(self.toy), VT["DISPATCH"])
        self.assertEqual(self.toy.Echo(self.toy).Name, "first")
        # An object that only hosts know, and one of another face that is an automation object.
        self.assertEqual(self.toy.TypeOf(self.toy.Other), VT["UNKNOWN"])
        self.assertEqual(type(self.toy.Echo(self.toy.Other)), toy.Handle)
        self.assertEqual(self.toy.Self.Name, "first")
        self.assertIsNone(self.toy.Nothing)

    def test_values_that_only_members_make(self):
        for vartype, source, expected in [
            ("I1", "-128", -128),
            ("I2", "32767", 32767),
            ("UI1", "255", 255),
            ("UI2", "65535", 65535),
            ("UI4", "4294967295", 2**32 - 1),
            ("UI8", "18446744073709551615", 2**64 - 1),
            ("INT", "-5", -5),
            ("UINT", "5", 5),
            ("R4", "0.5", 0.5),
            ("CY", "-12.3456", decimal.Decimal("-12.3456")),
            ("DECIMAL", "79228162514264337593543950335", decimal.Decimal(2**96 - 1)),
            ("BOOL", "True", True),
            ("DATE", "1/2/2003 04:05:06", Moment(2003, 1, 2, 4, 5, 6)),
        ]:
            with self.subTest(vartype=vartype):
                found = self.toy.Make(VT[vartype], source)
                self.assertEqual((found, type(found)), (expected, type(expected)))

    def test_dates(self):
        for days, expected in [
            (0.0, Moment(1899, 12, 30)),
            (-1.75, Moment(1899, 12, 29, 18)),
            (1.5, Moment(1899, 12, 31, 12)),
            (2958465.0, Moment(9999, 12, 31)),
            (-693593.0, Moment(1, 1, 1)),
            # Carried into the next day, on either side of the beginning.
            (36525.9999999999999, Moment(2000, 1, 1)),
            (-1.99999999999999, Moment(1899, 12, 30)),
            # No dates of Python's: their numbers.
            (-693594.0, -693594.0),
            (2958466.0, 2958466.0),
            (2958465.9999999999, 2958466.0),
            (math.inf, math.inf),
        ]:
            with self.subTest(days=days):
                self.assertEqual(self.toy.MakeDate(days), expected)
        for moment in Moment(2024, 5, 17, 23, 59, 59, 999999), Moment(1888, 8, 8, 6, 0, 0, 250000):
            self.assertEqual(self.toy.Echo(moment), moment)
        self.assertEqual(self.toy.Make(VT["R8"], Moment(1899, 12, 28, 18)), -2.75)

    def test_decimals(self):
        D = decimal.Decimal
        for given, back in [
            ("0", "0"),
            ("-0", "0"),
            ("0E+400", "0"),
            ("1E+28", "1E+28"),
            ("-79228162514264337593543950335", "-79228162514264337593543950335"),
            ("0.0000000000000000000000000001", "1E-28"),
            ("1E-999999", "0"),
            ("0.03333333333333333333333333333", "0.0333333333333333333333333333"),
        ]:
            with self.subTest(given=given):
                self.assertEqual(self.toy.Echo(D(given)), D(back))
        for error, refused in [(OverflowError, ("79228162514264337593543950336", "1E+29", "-1E+999999")),
                               (ValueError, ("NaN", "sNaN", "-Infinity"))]:
            for given in refused:
                with self.subTest(given=given), self.assertRaises(error):
                    self.toy.Echo(D(given))

    def test_refused_values(self):
        endless = []
        endless.append(endless)
        zoned = Moment(2024, 1, 1, tzinfo=datetime.timezone.utc)
        for given, error in [
            (2**63, OverflowError),
            (-(2**63) - 1, OverflowError),
            (Index(2**70), OverflowError),
            ([2**63], OverflowError),
            (object(), TypeError),
            ({}, TypeError),
            (1j, TypeError),
            (self.toy.Echo, TypeError),  # a member, not its value
            (zoned, TypeError),
            (datetime.timedelta(1), TypeError),
            (Index("x"), TypeError),
            (endless, RecursionError),
        ]:
            with self.subTest(given=type(given)), self.assertRaises(error):
                self.toy.Echo(given)

    def test_empty_and_missing_are_one_object_each(self):
        for one in toy.Empty, toy.Missing:
            for back in self.toy.Echo(one), copy.deepcopy(one), pickle.loads(pickle.dumps(one)):
                self.assertIs(back, one)
            self.assertFalse(one)
        self.assertNotEqual(toy.Empty, toy.Missing)
        self.assertEqual(repr(toy.Empty), "storefabric.Empty")


if __name__ == "__main__":
    unittest.main()
