// tests/install/host/main.cpp - the smallest host: opens an exchange file and prints the store's
// name.
#include <storefabric/StoreFabric.h>

#include <iostream>
#include <string>

int main(int, char** arguments) {
  const char16_t* plugin = u"ATFX";
  const hv::WString text =
      hv::cor::FromUtf8("<filename>" + std::string(arguments[1]) + "</filename>");
  const char16_t* parameter = text.c_str();
  hv::Ref<hv::vex::IDataStore> store;
  hv::WString name;
  if (Failed(ConnectDataStoreByParams(nullptr, &plugin, &parameter, {}, store.Put(), nullptr)) ||
      Failed(store->get_Name(&name))) {
    return 1;
  }
  std::cout << hv::cor::ToUtf8(name) << "\n";
}
