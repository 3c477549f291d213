// xml/TrackedMemory.h - the memory of one parser.
#pragma once

#include <cstddef>

#include <xercesc/framework/MemoryManager.hpp>

namespace hv::xml {

/// Gives the XML library its memory and takes everything back at the end. Some of the library's
/// code for document types forgets what it holds when a parse ends with an error; a process that
/// reads hostile documents all day must not grow by that.
class TrackedMemory final : public xercesc::MemoryManager {
 public:
  TrackedMemory() = default;
  ~TrackedMemory() override;

  // MemoryManager
  xercesc::MemoryManager* getExceptionMemoryManager() override;
  void* allocate(XMLSize_t size) override;
  void deallocate(void* block) override;

 private:
  /// Stands before every block. Not over-aligned itself: the library allocates parsers, which hold
  /// one, on eight bytes.
  struct Header {
    Header* previous;
    Header* next;
  };
  static_assert(sizeof(Header) % alignof(std::max_align_t) == 0, "keeps a block's alignment");
  Header m_all{&m_all, &m_all};  // a ring
};

}  // namespace hv::xml
