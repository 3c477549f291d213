"""Runs the command-line program, and reads exchange files without it."""
import array
import atexit
import os
import pathlib
import shutil
import struct
import subprocess
import tempfile
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


def demo():
    """The demonstration store, made once per test program."""
    file = folder / "demo.atfx"
    if not file.exists():
        output("demo", file)
    return file


def stores():
    """The demonstration as an exchange file and as a database."""
    database = folder / "demo.sqlite"
    if not database.exists():
        output("import", demo(), database)
    return [demo(), database]


def expression(entity, conditions="", order=""):
    """A query text. `conditions` are functions without their prefix "q:"."""
    text = f'<query><entity name="{entity}">{order}<expression>{conditions}</expression></entity></query>'
    return text.replace("<function", "<q:function").replace("</function", "</q:function").replace(
        "<identifier", "<q:identifier").replace("</identifier", "</q:identifier").replace(
        "<constant", "<q:constant").replace("</constant", "</q:constant")


def condition(identifier, operator, constant, marks=""):
    return (f'<function name="{operator}"><identifier>{identifier}</identifier>'
            f"<constant{marks}>{constant}</constant></function>")


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
