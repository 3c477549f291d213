#include <string>
#include <vector>

#include "apps/cli/Commands.h"
#include "apps/cli/Failure.h"
#include "apps/cli/RowWriter.h"
#include "apps/cli/Session.h"
#include "store/elements/IStoreElementsImpl.h"
#include "storefabric/IBrowseConfig.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

/// Writes the levels of a browse path, each element before what is below it. A level is loaded with
/// one call, and only the levels on the way to where the walk stands are held.
class TreeWriter final {
 public:
  TreeWriter(Session& session, const TreeOptions& options)
      : m_session(session),
        m_depth(options.depth > 0 ? options.depth : kNoLimit),
        m_isTable(options.format == Format::Table),
        m_writer(options.format,
                 m_isTable ? std::vector<Column>{{"Name"}, {"Type"}, {"Key"}}
                           : std::vector<Column>{
                                 {"Key"}, {"Name"}, {"Type"}, {"Level", true}, {"Parent"}}) {}

  void WriteTop() {
    Ref<IBrowseConfig> config;
    Check(m_session.Provider().GetBrowseConfig(config.Put()), m_session.Reading());
    WString path;
    if (config) config->GetFirstRootPath(path);
    if (path.empty()) throw Failure(m_session.Reading() + ": the store has no browse path");
    for (; !path.empty(); config->GetNextRootPath(path)) {
      Ref<IStoreElementListImpl> elements;
      Check(m_session.Provider().GetChildrenPrefetched(u"", path, elements.Put()),
            m_session.Reading());
      WriteLevel(*elements, "", 1);
    }
    m_writer.End();
  }

  void WriteBelow(IStoreElementImpl& element, const std::string& key) {
    WriteChildren(element, key, 1);
    m_writer.End();
  }

 private:
  static constexpr int kNoLimit = 1 << 20;

  void WriteChildren(IStoreElementImpl& element, const std::string& key, int level) {
    std::int32_t hasChildren = 0;
    // A failure says that the element has no place in the path.
    if (Failed(element.HasChildren(&hasChildren)) || hasChildren == 0) return;
    Ref<easyImpl::IVEXElementsImpl> children;
    Check(element.GetChildrenFiltered(u"", children.Put()), m_session.Reading());
    if (children) WriteLevel(*children, key, level);
  }

  void WriteLevel(easyImpl::IVEXElementsImpl& elements, const std::string& parent, int level) {
    std::int32_t count = 0;
    Check(elements.GetCount(&count), m_session.Reading());
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<easyImpl::IVEXElementImpl> item;
      Check(elements.GetItem(i, item.Put()), m_session.Reading());
      const Ref<IStoreElementImpl> element = item.As<IStoreElementImpl>();
      const std::string key = WriteElement(*element, parent, level);
      if (level < m_depth) WriteChildren(*element, key, level + 1);
    }
  }

  /// \return the element's key
  std::string WriteElement(IStoreElementImpl& element, const std::string& parent, int level) {
    WString name;
    WString type;
    WString keyText;
    Check(element.GetDisplayName(&name), m_session.Reading());
    Check(element.GetType(&type), m_session.Reading());
    Check(element.GetInstanceKey(&keyText), m_session.Reading());
    std::string key = cor::ToUtf8(keyText);
    if (m_isTable) {
      const std::string indent(static_cast<std::size_t>(level - 1) * 2, ' ');
      m_writer.Row({indent + cor::ToUtf8(name), cor::ToUtf8(type), key});
    } else {
      m_writer.Row({key, cor::ToUtf8(name), cor::ToUtf8(type), std::to_string(level), parent});
    }
    return key;
  }

  Session& m_session;
  int m_depth;
  bool m_isTable;
  RowWriter m_writer;
};

}  // namespace

void RunTree(const TreeOptions& options) {
  Session session(options.store);
  TreeWriter writer(session, options);
  if (options.key.empty()) {
    writer.WriteTop();
  } else {
    writer.WriteBelow(*session.ElementOf(options.key), options.key);
  }
  TellRemarks(session.Store(), options.warnings);
}

}  // namespace hv::cli
