// examples/add-measurement.cpp - adds a test with a measurement to a store, and reads it back.
//
//     ./run -- demo campaign.atfx
//     build/release/bin/add-measurement campaign.atfx
#include <storefabric/Object.h>

#include <iostream>
#include <string>

using hv::Object;

namespace {

Object Open(const std::string& file) {
  const Object environment = Object::Create("VEX.DataStoreEnvironment");
  return environment.Call("ConnectDataStoreByParameter", file.ends_with(".sqlite") ? "SQL" : "ATFX",
                          "<filename>" + file + "</filename>");
}

}  // namespace

int main(int count, char** arguments) try {
  if (count != 2) {
    std::cerr << "Usage: add-measurement STORE.atfx|STORE.sqlite\n";
    return 2;
  }
  const std::string file = arguments[1];
  const Object store = Open(file);

  // Down the browse path, each level among the children of the one above.
  const Object test = store.Call("CreateElement", "Test", "Door slam");
  const Object variant = test.Call("Children").Call("Add", "Rear doors");
  const Object day = variant.Call("Children").Call("Add", "Monday");
  const Object measurement = day.Call("Children").Call("Add", "Slam 1");
  const Object channel = measurement.Call("Children").Call("Add", "Acceleration");

  measurement.Call("Properties", "AmbientTemperature").Set("Value", 21.5);
  measurement.Call("Properties", "Remark").Set("Value", "window open");
  const Object unit = store.Call("CreateElement", "Unit", "m/s²");
  channel.Call("References", "Unit").Call("Elements").Call("AddReference", unit);
  store.Call("Save");

  // The key is what a host keeps of an element. Here it finds it in a new session.
  const Object found = Open(file).Call("GetElementByKey", measurement.Text("InstanceKey"));
  for (Object level = found; level; level = level.Call("Parent")) {
    std::cout << level.Text("Type") << ": " << level.Text("Name") << "\n";
  }
  std::cout << found.Call("Properties", "AmbientTemperature").Number("Value") << " degrees, "
            << found.Call("Properties", "Remark").Text("Value") << "\n";
  for (const Object& column : found.Call("Children")) {
    const Object units = column.Call("References", "Unit").Call("Elements");
    std::cout << column.Text("Name") << " in " << units.Call("Item", 0).Text("Name") << "\n";
  }
} catch (const hv::CallError& error) {
  std::cerr << error.what() << "\n";
  return 1;
}
