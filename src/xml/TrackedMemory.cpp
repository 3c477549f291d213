// xml/TrackedMemory.cpp - the memory of one parser.
#include "xml/TrackedMemory.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstdlib>
#include <limits>
#include <new>

namespace hv::xml {

TrackedMemory::~TrackedMemory() {
  for (Header* header = m_all.next; header != &m_all;) {
    Header* const next = header->next;
    std::free(header);
    header = next;
  }
}

// An exception may outlive the parser that raised it.
xercesc::MemoryManager* TrackedMemory::getExceptionMemoryManager() {
  return xercesc::XMLPlatformUtils::fgMemoryManager;
}

void* TrackedMemory::allocate(XMLSize_t size) {
  if (size > std::numeric_limits<std::ptrdiff_t>::max() - sizeof(Header)) {
    throw xercesc::OutOfMemoryException();
  }
  void* const memory = std::malloc(sizeof(Header) + size);
  if (!memory) throw xercesc::OutOfMemoryException();
  auto* const header = new (memory) Header{&m_all, m_all.next};
  m_all.next->previous = header;
  m_all.next = header;
  return header + 1;
}

void TrackedMemory::deallocate(void* block) {
  if (!block) return;
  Header* const header = static_cast<Header*>(block) - 1;
  header->previous->next = header->next;
  header->next->previous = header->previous;
  std::free(header);
}

}  // namespace hv::xml
