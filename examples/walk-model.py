#!/usr/bin/env python3
"""Prints the model of a store: its entities with their properties and references.

    PYTHONPATH=build/release/python python3 examples/walk-model.py campaign.atfx
    PYTHONPATH=build/release/python python3 examples/walk-model.py campaign.sqlite
"""
import sys
from xml.sax.saxutils import escape

import storefabric

TYPES = {2: "short", 3: "long", 4: "longlong", 5: "byte", 9: "float", 10: "double", 11: "boolean",
         23: "string", 24: "enum", 30: "date"}


def open_store(name):
    environment = storefabric.CreateObject("VEX.DataStoreEnvironment")
    plugin = {"atfx": "ATFX", "sqlite": "SQL"}.get(name.lower().rpartition(".")[2])
    if plugin:
        store = environment.ConnectDataStoreByParameter(plugin, f"<filename>{escape(name)}</filename>")
    else:
        store = environment.ConnectDataStore(name)
    if store is None:
        sys.exit(f"{name}: there is no such store, or it can't be read")
    return store


def base_name(prop):
    try:
        return prop.BaseName
    except storefabric.DispatchError:  # a property of the application alone
        return ""


def inverse_name(reference):
    try:
        return "." + reference.Inverse.Name
    except storefabric.DispatchError:  # a reference of one direction
        return ""


def occurrence(member):
    return f"{member.MinOccur}..{'n' if member.MaxOccur < 0 else member.MaxOccur}"


def print_entity(entity):
    print(entity.Name, f"({entity.SuperType.Name})" if entity.SuperType else "")
    for prop in entity.ModelProperties:
        kind = TYPES.get(prop.DataType, f"type {prop.DataType}")
        print(f"    {prop.Name:24}{kind:10}{occurrence(prop):8}{base_name(prop)}".rstrip())
    for reference in entity.ModelReferences:
        target = f"-> {reference.EntityType.Name}{inverse_name(reference)}"
        print(f"    {reference.Name:24}{target:47} {occurrence(reference):8}{reference.BaseName}".rstrip())


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    try:
        store = open_store(sys.argv[1])
    except storefabric.DispatchError as error:
        sys.exit(f"{sys.argv[1]}: {error}")
    for entity in store.Model.Entities:
        print_entity(entity)


main()
