// core/plugins/sql/NewDatabaseFile.h - a database file under another name until it is complete.
#pragma once

#include <filesystem>

namespace hv::vex::engine::sql {

/// Makes an empty file beside `target`, and takes it away again unless it took the target's place.
/// What a process that was killed left beside the same target goes, too: a file that is being
/// filled is locked by its maker, any other is litter.
class NewDatabaseFile final {
 public:
  enum class IfTaken { Replace, Refuse };

  /// Throws kWriteFailed with the reason if nothing can be written there.
  explicit NewDatabaseFile(const std::filesystem::path& target);
  NewDatabaseFile(const NewDatabaseFile&) = delete;
  NewDatabaseFile& operator=(const NewDatabaseFile&) = delete;
  ~NewDatabaseFile();

  [[nodiscard]] const std::filesystem::path& Path() const { return m_path; }
  /// Brings the file to the disk and gives it the target's name. The database there must not be in
  /// use (kTimeout). With `Refuse` a target that came meanwhile stays: kNotUnique. No connection to
  /// the new file may be open.
  void TakePlace(IfTaken ifTaken);

 private:
  void Create();
  void RemoveAbandoned() const;

  std::filesystem::path m_target;
  std::filesystem::path m_path;
  int m_lock = -1;
  bool m_isInPlace = false;
};

}  // namespace hv::vex::engine::sql
