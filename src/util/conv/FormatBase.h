// util/conv/FormatBase.h - counting of the format objects, which begin their interfaces with it.
#pragma once

#include <cstdint>

namespace hv::util::conv {

/// Implements the two first operations of a format interface. One thread; the first count is 1.
template <class Interface>
class tFormatBase : public Interface {
 public:
  tFormatBase(const tFormatBase&) = delete;
  tFormatBase& operator=(const tFormatBase&) = delete;

  std::uint32_t Release() final {
    const std::uint32_t left = --m_refCount;
    if (left == 0) delete this;
    return left;
  }
  std::uint32_t AddRef() final { return ++m_refCount; }

 protected:
  tFormatBase() = default;
  virtual ~tFormatBase() = default;

 private:
  std::uint32_t m_refCount = 1;
};

}  // namespace hv::util::conv
