#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "jet/format/DataPage.h"
#include "jet/format/FileHeader.h"
#include "jet/format/RowCodec.h"
#include "jet/format/TableDefinition.h"

/// A real file, whole in memory, and just enough of walking to bring the functions over pages to
/// its rows and trees. What is wrong with a file becomes a failed expectation.
namespace zent::jet {

class SampleFile {
 public:
  explicit SampleFile(const std::filesystem::path& path);

  JetVersion version() const { return header_.version; }
  const FileHeader& header() const { return header_; }
  PageNumber page_count() const { return static_cast<PageNumber>(pages_.size()); }
  ByteView Page(PageNumber page) const { return pages_.at(page); }

  /// First pages of the definitions of all local tables, by the catalog.
  std::vector<PageNumber> Tables() const;
  /// The pages of a definition and its stream.
  std::vector<PageNumber> DefinitionPages(PageNumber first) const;
  std::vector<std::uint8_t> DefinitionStream(PageNumber first) const;
  TableDefinition Definition(PageNumber first) const;

  /// Pages of a map, in order.
  std::vector<PageNumber> PagesOf(RowPointer map) const;

  using VisitRow = std::function<void(RowPointer, const RowView&)>;
  void ForEachRow(const TableDefinition& table, const VisitRow& visit) const;
  /// The value of a column, long values included.
  Value FieldOf(const TableDefinition& table, const ColumnDefinition& column,
                const RowView& row) const;

  /// Key and row of every entry of the leaves below `root`, in their order.
  struct Entry {
    std::string key;
    RowPointer row;
    auto operator<=>(const Entry&) const = default;
  };
  std::vector<Entry> EntriesOf(PageNumber root) const;

 private:
  Slot SlotAt(RowPointer at) const;
  std::string LongValue(ByteView field) const;

  FileHeader header_;
  std::vector<std::vector<std::uint8_t>> pages_;
};

}  // namespace zent::jet
