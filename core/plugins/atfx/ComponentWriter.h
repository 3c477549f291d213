// core/plugins/atfx/ComponentWriter.h - writes long columns into binary files beside an ATFX file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/plugins/atfx/ComponentValues.h"
#include "core/plugins/files/FileOutput.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::atfx {

/// Appends columns to files named after the ATFX file, always new ones: never one that exists. A
/// file that has grown large is followed by another. All of them vanish unless they are kept.
class ComponentWriter final {
 public:
  /// \param target    the ATFX file that the components belong to.
  /// \param replaced  component files that go when the target is replaced. Their names aren't used
  ///                  again: who opened the target before may still have to look into them.
  ComponentWriter(std::filesystem::path target, std::uint64_t largestFile,
                  const std::vector<std::filesystem::path>& replaced);
  ComponentWriter(const ComponentWriter&) = delete;
  ComponentWriter& operator=(const ComponentWriter&) = delete;

  /// True if values of this type can be stored so that they are read back as what they are.
  static bool CanWrite(OdsType type, OdsType wanted);
  /// Writes all values, without gaps and in the processor's byte order. The component's file name
  /// is the bare name of the file.
  Component Write(const ValueSource& values);

  /// Names of the files, in their order.
  [[nodiscard]] std::vector<std::u16string> FileNames() const;
  [[nodiscard]] std::vector<std::filesystem::path> Paths() const;
  /// Brings everything to the disk.
  void Close();
  /// Lets the files stay.
  void Keep();

 private:
  FileOutput& OpenFile();
  void WriteIntegers(const ValueSource& values, std::uint8_t width, FileOutput* file);
  void WriteReals(const ValueSource& values, std::uint8_t width, FileOutput* file);
  static void WriteBits(const ValueSource& values, FileOutput* file);
  static void WriteTexts(const ValueSource& values, FileOutput* file);
  static void WriteByteStrings(const ValueSource& values, FileOutput* file);

  std::filesystem::path m_target;
  std::uint64_t m_largestFile;
  std::vector<FileOutput> m_files;
  unsigned m_number = 0;  // of the last file
};

}  // namespace hv::vex::engine::atfx
