#!/usr/bin/env python3
"""Adds a test with a measurement to a store, and reads it back.

    ./run -- demo campaign.atfx
    PYTHONPATH=build/release/python python3 examples/add-measurement.py campaign.atfx
"""
import sys
from xml.sax.saxutils import escape

import storefabric


def open_store(file):
    environment = storefabric.CreateObject("VEX.DataStoreEnvironment")
    plugin = "SQL" if file.endswith(".sqlite") else "ATFX"
    return environment.ConnectDataStoreByParameter(plugin, f"<filename>{escape(file)}</filename>")


def main(file):
    store = open_store(file)

    # Down the browse path, each level among the children of the one above.
    test = store.CreateElement("Test", "Door slam")
    variant = test.Children.Add("Rear doors")
    day = variant.Children.Add("Monday")
    measurement = day.Children.Add("Slam 1")
    channel = measurement.Children.Add("Acceleration")

    measurement.Properties("AmbientTemperature").Value = 21.5
    measurement.Properties("Remark").Value = "window open"
    unit = store.CreateElement("Unit", "m/s²")
    channel.References("Unit").Elements.AddReference(unit)
    store.Save()

    # The key is what a script keeps of an element. Here it finds it in a new session.
    found = open_store(file).GetElementByKey(measurement.InstanceKey)
    level = found
    while level:
        print(f"{level.Type}: {level.Name}")
        level = level.Parent
    print(found.Properties("AmbientTemperature").Value, "degrees,", found.Properties("Remark").Value)
    for channel in found.Children:
        print(channel.Name, "in", channel.References("Unit").Elements(0).Name)


if len(sys.argv) != 2:
    sys.exit(__doc__)
try:
    main(sys.argv[1])
except storefabric.DispatchError as error:
    sys.exit(str(error))
