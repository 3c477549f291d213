"""Runs the command-line program, and reads exchange files without it."""
import array
import atexit
import csv
import functools
import io
import json
import os
import pathlib
import pty
import re
import shutil
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

PROGRAM = os.environ["STOREFABRIC"]
ROOT = pathlib.Path(__file__).resolve().parents[2]
MODEL_FILE = ROOT / "resources/models/testbench.atfx"

folder = pathlib.Path(tempfile.mkdtemp(prefix="storefabric-cli-"))
atexit.register(shutil.rmtree, folder, ignore_errors=True)


def run(*arguments, stdin=b"", **options):
    """(exit code, standard output, standard error), the last two as text."""
    done = subprocess.run([PROGRAM, *map(str, arguments)], input=stdin, capture_output=True,
                          timeout=300, **options)
    return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")


def output(*arguments, **options):
    code, out, err = run(*arguments, **options)
    assert code == 0, err
    return out


def json_rows(*arguments, **options):
    return json.loads(output(*arguments, "--format", "json", **options))


def csv_rows(*arguments, **options):
    text = output(*arguments, "--format", "csv", **options)
    return list(csv.DictReader(io.StringIO(text, newline="")))


def on_terminal(*arguments, seen=lambda program, shown: True):
    """(exit code, what was shown on standard error). `seen` is told of each piece, until it is true."""
    master, slave = pty.openpty()
    program = subprocess.Popen([PROGRAM, *arguments], stderr=slave, start_new_session=True)
    os.close(slave)
    shown, has_seen = b"", False
    try:
        while piece := os.read(master, 4096):
            shown += piece
            has_seen = has_seen or seen(program, shown)
    except OSError:  # the terminal's other end is closed
        pass
    os.close(master)
    return program.wait(timeout=300), shown


class ProgramTest(unittest.TestCase):
    @functools.cached_property
    def folder(self):
        own = folder / self.id()
        own.mkdir()
        return own

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())

    def assert_refused(self, *arguments, reason, **options):
        """One line says what is wrong (each text of `reason`), and nothing else is told."""
        code, out, err = run(*arguments, **options)
        self.assertEqual((1, ""), (code, out))
        self.assertRegex(err, r"^storefabric: [^\n]+\n$")
        for text in [reason] if isinstance(reason, str) else reason:
            self.assertIn(text, err)

    def assert_same_store(self, *files):
        """But for what must differ: the time, and the names of component files."""
        first, *others = ((re.sub(rf"<export_date_time>\d{{14}}<|{file.stem}_\d+\.btf", "",
                                  file.read_text(encoding="utf-8")),
                           [path.read_bytes() for path in components(file)]) for file in files)
        self.assertTrue(first[1])
        for other in others:
            self.assertTrue(first == other, files)


# --- the demonstration ------------------------------------------------------------------------------

def demo():
    """As an exchange file, made once per test program."""
    file = folder / "demo.atfx"
    if not file.exists():
        output("demo", file)
    return file


def stores():
    """As an exchange file and as a database."""
    database = folder / "demo.sqlite"
    if not database.exists():
        output("import", demo(), database)
    return [demo(), database]


@functools.cache
def demo_records():
    """Entity -> id -> element."""
    return instances(parse(demo()))


def up(element, *relations):
    """Follows relations, from one element to the first that they lead to."""
    entities = {"UnitsUnderTest": "UnitUnderTest", "Operator": "User", "Submatrices": "Submatrix",
                "DefaultUnit": "Unit"}
    for relation in relations:
        number = int(leaf(element, relation).split()[0])
        element = demo_records()[entities.get(relation, relation)][number]
    return element


def measurements(keep):
    """The keys of those that `keep` wants."""
    return [f"Measurement:{number}" for number, element in demo_records()["Measurement"].items()
            if keep(element)]


# --- exchange files ---------------------------------------------------------------------------------

def local(element):
    return element.tag.rpartition("}")[2]


def leaf(element, name, otherwise=None):
    for child in element:
        if local(child) == name:
            return child.text or ""
    return otherwise


def parse(file):
    return xml.etree.ElementTree.parse(file).getroot()


def components(file):
    return sorted(file.parent.glob(f"{file.stem}_*.btf"))


def section(root, name):
    return next(child for child in root if local(child) == name)


def instances(root):
    """Entity -> id -> element."""
    found = {}
    for element in section(root, "instance_data"):
        found.setdefault(local(element), {})[int(leaf(element, "Id"))] = element
    return found


FORMATS = {"ieeefloat4": "f", "ieeefloat8": "d", "dt_short": "h", "dt_long": "i"}


def column_values(element, base_folder, name="Values"):
    """The values of a local column (or its flags): inline, or little-endian in a component file."""
    member = next(child for child in element if local(child) == name)
    values = member[0] if len(member) else member
    if local(values) != "component":
        numbers = [float(text) for text in values.text.split()]
        if local(values) == "A_FLOAT32":
            numbers = array.array("f", numbers).tolist()
        return numbers
    kind = FORMATS[leaf(values, "datatype")]
    count = int(leaf(values, "length"))
    with open(pathlib.Path(base_folder) / leaf(values, "identifier"), "rb") as file:
        file.seek(int(leaf(values, "inioffset")))
        data = file.read(count * struct.calcsize(kind))
    result = array.array(kind)
    result.frombytes(data)
    return result.tolist()
