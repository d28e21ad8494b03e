#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The container of .xls files: a file system in a file, with sectors, chains of sectors and folders.

namespace zrt {

/// Reads a number of `TInteger`'s size, least byte first. The caller has checked that the bytes are there.
template <class TInteger>
TInteger LittleEndian(std::string_view bytes, std::size_t offset) {
  std::uint64_t value = 0;
  for (std::size_t i = sizeof(TInteger); i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
  return static_cast<TInteger>(value);
}

/// A compound file in memory. Its bytes must outlive it.
class CompoundFile {
 public:
  /// Throws BadSpreadsheet: kDamaged when its tables don't hold together.
  explicit CompoundFile(std::string_view bytes);

  /// The whole stream of that name in the topmost folder, without regard to the case of Latin letters; nullopt when
  /// there is none. Throws BadSpreadsheet: kDamaged when it isn't there to its end.
  std::optional<std::string> Stream(std::string_view name) const;

 private:
  struct Entry {
    std::string name;  // ASCII; any other character is '?'
    std::uint8_t type = 0;
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    std::uint32_t child = 0;
    std::uint32_t start = 0;
    std::uint32_t size = 0;
  };

  std::string_view Sector(std::uint32_t number) const;
  std::string Chain(std::uint32_t start) const;
  std::string MiniChain(std::uint32_t start, std::uint32_t size) const;
  void ReadAllocationTable();
  void ReadFolders();

  std::string_view bytes_;
  std::size_t sector_size_ = 0;
  std::size_t mini_sector_size_ = 0;
  std::uint32_t mini_limit_ = 0;     // shorter streams lie in the mini stream
  std::vector<std::uint32_t> next_;  // of each sector
  std::vector<Entry> entries_;
};

}  // namespace zrt
