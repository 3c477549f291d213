#include "apps/cli/demo/Records.h"

namespace hv::cli::demo {

using namespace hv::vex;

Record::Record(Ref<IInstance> instance) : m_instance(std::move(instance)) {}

Ref<IAttribute> Record::At(std::u16string_view attribute) const {
  auto found = Ref<IAttribute>::Adopt(m_instance->GetAttributeValue(attribute));
  if (!found) {
    throw Exception(errc::kUnknownName,
                    WString(u"there is no attribute \"" + std::u16string(attribute) + u"\""));
  }
  return found;
}

Record& Record::Set(std::u16string_view attribute, std::u16string_view text) {
  At(attribute)->SetText(0, text);
  return *this;
}

Record& Record::Set(std::u16string_view attribute, double number) {
  At(attribute)->SetReal(0, number);
  return *this;
}

Record& Record::Set(std::u16string_view attribute, std::int64_t number) {
  At(attribute)->SetInteger(0, number);
  return *this;
}

Record& Record::Set(std::u16string_view attribute, std::span<const std::u16string_view> texts) {
  const Ref<IAttribute> list = At(attribute);
  for (std::size_t i = 0; i < texts.size(); ++i) list->SetText(i, texts[i]);
  return *this;
}

Record& Record::Set(std::u16string_view attribute, std::span<const double> numbers) {
  At(attribute)->SetReals(numbers.size(), numbers.data());
  return *this;
}

Record& Record::Set(std::u16string_view attribute, std::span<const std::int64_t> numbers) {
  At(attribute)->SetIntegers(numbers.size(), numbers.data());
  return *this;
}

Record& Record::Link(std::u16string_view reference, const Record& target) {
  m_instance->Link(reference, target.m_instance.Get());
  return *this;
}

Record& Record::Note(std::u16string_view name, std::u16string_view text) {
  constexpr std::int32_t kTextType = 23;
  m_instance->AddInstanceAttribute(name, kTextType);
  return Set(name, text);
}

RecordMaker::RecordMaker(IStore& store)
    : m_store(store), m_model(Ref<IModel>::Adopt(store.GetModel())) {}

Record RecordMaker::New(std::u16string_view entity, std::u16string_view name) {
  auto found = m_entities.find(entity);
  if (found == m_entities.end()) {
    auto looked = Ref<IEntity>::Adopt(m_model->GetEntity(entity));
    found = m_entities.emplace(std::u16string(entity), std::move(looked)).first;
  }
  Record record(Ref<IInstance>::Adopt(m_store.CreateInstance(found->second.Get())));
  record.Set(u"Name", name);
  return record;
}

}  // namespace hv::cli::demo
