#include "jet/format/IndexKey.h"

#include <algorithm>
#include <bit>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"

namespace zent::jet {
namespace {

constexpr std::uint16_t kCodePage1252 = 1252;
constexpr std::uint8_t kOtherCodePage = 0xFF;  // as version of a collation that is not covered

void Invert(std::string& key, std::size_t from) {
  for (std::size_t i = from; i < key.size(); ++i) key[i] = static_cast<char>(~key[i]);
}

void AppendBig(std::uint64_t value, unsigned size, std::string& key) {
  while (size-- > 0) key.push_back(static_cast<char>(value >> (8 * size)));
}

/// A number of two's complement of `size` bytes: the sign turned, so that it compares unsigned.
void AppendSigned(std::int64_t value, unsigned size, std::string& key) {
  AppendBig(static_cast<std::uint64_t>(value) ^ (std::uint64_t{1} << (8 * size - 1)), size, key);
}

/// Bits of a floating point number: negative ones ascend downwards.
void AppendFloat(std::uint64_t bits, unsigned size, std::string& key) {
  const std::uint64_t sign = std::uint64_t{1} << (8 * size - 1);
  AppendBig((bits & sign) != 0 ? ~bits : bits | sign, size, key);
}

/// Sign byte and magnitude. The sign byte does not turn with the order, which is how the files of
/// these versions have it.
void AppendNumeric(const Decimal& value, bool ascending, std::string& key) {
  const std::size_t begin = key.size();
  key.push_back(value.negative ? '\x00' : '\xFF');
  for (const std::uint32_t word : value.magnitude) AppendBig(word, 4, key);
  if (value.negative == ascending) Invert(key, begin + 1);
}

/// Blocks of eight bytes, each with a byte behind: 9 when more follow, else how many are used. In
/// descending order that 9 alone keeps its value.
void AppendBlocks(std::string_view bytes, bool ascending, std::string& key) {
  constexpr std::size_t kBlock = 8;
  constexpr char kMoreFollow = 9;
  while (true) {
    const std::string_view block = bytes.substr(0, kBlock);
    const std::size_t begin = key.size();
    key.append(block);
    key.append(kBlock - block.size(), '\0');
    const bool last = bytes.size() <= kBlock;
    if (last) key.push_back(static_cast<char>(block.size()));
    if (!ascending) Invert(key, begin);
    if (last) return;
    key.push_back(kMoreFollow);
    bytes.remove_prefix(kBlock);
  }
}

/// Appends the data of one value, in the order of its column.
struct DataAppender {
  const KeyColumn& column;
  std::string& key;

  bool operator()(Null) const { return false; }
  bool operator()(bool value) const {
    key.push_back(value == column.ascending ? '\x00' : '\xFF');
    return column.type == ColumnType::Bool;
  }
  bool operator()(std::uint8_t value) const {
    return Number(ColumnType::Byte, [&] { AppendBig(value, 1, key); });
  }
  bool operator()(std::int16_t value) const {
    return Number(ColumnType::Int, [&] { AppendSigned(value, 2, key); });
  }
  bool operator()(std::int32_t value) const {
    return Number(ColumnType::Long, [&] { AppendSigned(value, 4, key); });
  }
  bool operator()(Currency value) const {
    return Number(ColumnType::Currency, [&] { AppendSigned(value.ten_thousandths, 8, key); });
  }
  bool operator()(float value) const {
    return Number(ColumnType::Single,
                  [&] { AppendFloat(std::bit_cast<std::uint32_t>(value), 4, key); });
  }
  bool operator()(double value) const {
    return Number(ColumnType::Double,
                  [&] { AppendFloat(std::bit_cast<std::uint64_t>(value), 8, key); });
  }
  bool operator()(Date value) const {
    return Number(ColumnType::Date,
                  [&] { AppendFloat(std::bit_cast<std::uint64_t>(value.days), 8, key); });
  }
  bool operator()(const Text& value) const {
    if (column.version == JetVersion::Jet3) {
      AppendTextKey3(value, column.ascending, key);
    } else {
      AppendTextKey4(value, column.ascending, key);
    }
    return IsText(column.type);
  }
  bool operator()(const Binary& value) const {
    AppendBlocks(value.bytes, column.ascending, key);
    return column.type == ColumnType::Binary;
  }
  bool operator()(const Guid& value) const {
    AppendBlocks(AsText(value.bytes), column.ascending, key);
    return column.type == ColumnType::Guid;
  }
  bool operator()(const Decimal& value) const {
    AppendNumeric(value, column.ascending, key);
    return column.type == ColumnType::Numeric;
  }

  template <typename Append>
  bool Number(ColumnType type, Append append) const {
    const std::size_t begin = key.size();
    append();
    if (!column.ascending) Invert(key, begin);
    return column.type == type;
  }
};

RuntimeError NoSortOrder() {
  return JetErrorBecause(kReadOnly, "the sort order of a text field is not known");
}

}  // namespace

bool IsCovered(JetVersion version, const ColumnDefinition& column) {
  if (!IsText(column.type)) return true;
  if (version == JetVersion::Jet4) return column.collation() == kGeneralLegacy;
  const auto code_page = static_cast<std::uint16_t>(column.details[2] | (column.details[3] << 8U));
  return column.collation().lcid == kGeneralLegacy.lcid && code_page == kCodePage1252;
}

Result<std::vector<KeyColumn>> KeyColumnsOf(const TableDefinition& table, const RealIndex& index) {
  std::vector<KeyColumn> columns;
  columns.reserve(index.columns.size());
  for (const IndexColumn& part : index.columns) {
    const ColumnDefinition* const column = table.ColumnOf(part.column);
    if (column == nullptr) {
      return JetErrorBecause(kCannotOpenDatabase, "an index names a column that is not there");
    }
    KeyColumn key = {.version = table.version, .type = column->type, .ascending = part.ascending};
    if (IsText(column->type)) key.collation = column->collation();
    if (table.version == JetVersion::Jet3) {
      key.collation.version = IsCovered(table.version, *column) ? std::uint8_t{0} : kOtherCodePage;
    }
    columns.push_back(key);
  }
  return columns;
}

Status AppendKey(const KeyColumn& column, const Value& value, std::string& key) {
  if (IsText(column.type) && column.collation != kGeneralLegacy) {
    return NoSortOrder();
  }
  if (IsNull(value) && column.type != ColumnType::Bool) {
    key.push_back(column.ascending ? '\x00' : '\xFF');
    return {};
  }
  key.push_back(column.ascending ? '\x7F' : '\x80');
  const bool same_type = IsNull(value) ? DataAppender{column, key}(false)
                                       : std::visit(DataAppender{column, key}, value);
  return same_type ? Status() : Status(JetError(kDataTypeConversion));
}

Status AppendStoredText(const KeyColumn& column, ByteView stored, std::string& key) {
  if (column.collation != kGeneralLegacy) return NoSortOrder();
  key.push_back(column.ascending ? '\x7F' : '\x80');
  AppendStoredTextKey4(stored, column.ascending, key);
  return {};
}

Result<std::string> IndexKey(std::span<const KeyColumn> columns, std::span<const Value> values) {
  if (columns.size() != values.size()) return JetError(kInvalidArgument);
  std::string key;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (Status appended = AppendKey(columns[i], values[i], key); !appended.ok()) {
      return appended.error();
    }
  }
  return key;
}

}  // namespace zent::jet
