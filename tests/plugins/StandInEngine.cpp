// tests/plugins/StandInEngine.cpp - an engine module that does what a test tells it to.
// Built once complete and once, with HV_LACKING, without one of the six exports.
#include "plugins/StandIn.h"
#include "store/core/Seam.h"

namespace hv::test {
namespace {

using namespace hv::vex;

/// Opens nothing, but tells what it was asked to open.
class Environment final : public Living<IEnvironment> {
 public:
  IAttribute* GetVariable(std::u16string_view) override { return nullptr; }
  IStore* OpenStore(std::u16string_view name, std::int32_t flags) override {
    return Open(std::u16string(u"name=").append(name), flags);
  }
  IStore* OpenStoreByParameter(std::u16string_view name, std::u16string_view pluginName,
                               std::u16string_view parameters, std::int32_t flags) override {
    std::u16string text = std::u16string(name).append(u"|").append(pluginName);
    return Open(text.append(u"|").append(parameters), flags);
  }
  IExporter* CreateExporter(std::u16string_view, std::u16string_view, std::u16string_view,
                            IStore*) override {
    return nullptr;
  }
  IStore* CreateStore(std::u16string_view, std::u16string_view, std::u16string_view, std::int32_t,
                      CreateMode) override {
    return nullptr;
  }
  void WriteStore(IStore*, std::u16string_view, std::u16string_view, std::int32_t) override {}
  IPluginList* GetPlugins() override { return nullptr; }
  IStore* OpenStoreText(std::u16string_view, std::u16string_view, std::u16string_view) override {
    return nullptr;
  }
  void GetStoreText(WString& text, IStore*, std::u16string_view) override { text.clear(); }

 private:
  static IStore* Open(std::u16string text, std::int32_t flags) {
    StandInLog& log = Log();
    log.opened = std::move(text);
    if (flags != 0) log.opened += u"|flags";
    if (log.openAnswer == StandInAnswer::Nothing) return nullptr;
    throw vex::Exception(log.code, u"thrown by the stand-in");
  }
};

class Container final : public Living<IContainer> {
 public:
  void SetType(std::int32_t) override {}
  void GetString(WString& value, std::u16string_view) override { value.clear(); }
  IInstance* GetObject(std::u16string_view) override { return nullptr; }
  IInstList* GetList(std::u16string_view) override { return nullptr; }
  void SetInteger(std::u16string_view, std::int32_t) override {}
  void SetString(std::u16string_view, std::u16string_view) override {}
  std::int64_t GetInteger64(std::u16string_view, std::int64_t otherwise) override {
    return otherwise;
  }
  std::int32_t GetBoolean(std::u16string_view, std::int32_t otherwise) override {
    return otherwise;
  }
  double GetReal(std::u16string_view, double otherwise) override { return otherwise; }
  void SetInteger64(std::u16string_view, std::int64_t) override {}
  void SetBoolean(std::u16string_view, std::int32_t) override {}
  void SetReal(std::u16string_view, double) override {}
  IAttribute* GetAttribute(std::u16string_view) override { return nullptr; }
  IAttribute* GetNames() override { return nullptr; }
};

class InstList final : public Living<IInstList> {
 public:
  std::uint64_t GetCount() override { return 0; }
  IInstance* Next() override { return nullptr; }
  IInstance* GetInstance(std::uint64_t) override { return nullptr; }
  void Truncate(std::uint64_t) override {}
  void Reset() override {}
  void Append(IInstance*) override {}
  void Clear() override {}
  void GetKey(std::uint64_t, WString& key) override { key.clear(); }
  void GetAddressText(WString& text) override { text.clear(); }
};

}  // namespace
}  // namespace hv::test

using namespace hv::test;

HV_STAND_IN hv::vex::IEnvironment* vexGetEnvironment(std::int32_t version, const char16_t* text,
                                                     std::int32_t stamp, std::int32_t* error) {
  Log().version = version;
  Log().text = text;
  Log().stamp = stamp;
  return Answer(error, []() -> hv::vex::IEnvironment* { return new Environment; });
}

HV_STAND_IN hv::vex::IContainer* vexCreateContainer(std::int32_t* error) {
  return Answer(error, []() -> hv::vex::IContainer* { return new Container; });
}

HV_STAND_IN hv::vex::IInstList* vexCreateInstList(std::int32_t* error) {
  return Answer(error, []() -> hv::vex::IInstList* { return new InstList; });
}

#ifndef HV_LACKING
HV_STAND_IN void* vexCreateContainerList(std::int32_t*) {
  ++Log().neverCalled;
  return nullptr;
}
#endif
