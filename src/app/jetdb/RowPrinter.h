#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "app/jetdb/JetdbLine.h"
#include "jet/format/Value.h"

namespace zent {

/// A value as people read it: "2003-07-01 12:30:00", "True", "12.3400"; null is empty.
std::string PlainText(const jet::Value& value);

/// Prints rows as they come: as aligned text, as CSV (RFC 4180, UTF-8), or as one JSON object a
/// result. Text is aligned by the first rows.
class RowPrinter {
 public:
  /// Rows that are held to see how wide the columns are.
  static constexpr std::size_t kMeasured = 500;

  RowPrinter(std::ostream& output, RowFormat format) : output_(output), format_(format) {}

  void Begin(std::vector<std::string> columns);
  void Add(const std::vector<jet::Value>& row);
  void End();

 private:
  void PrintMeasured();
  void PrintTextRow(const std::vector<std::string>& cells);
  void PrintCsvRow(const std::vector<std::string>& cells);
  void PrintJsonRow(const std::vector<jet::Value>& row);

  std::ostream& output_;
  RowFormat format_;
  std::vector<std::string> columns_;
  std::vector<std::vector<std::string>> held_;  ///< text: until the widths are known
  std::vector<std::size_t> widths_;
  std::vector<bool> right_;  ///< numbers stand at the right
  bool measured_ = false;
  std::size_t count_ = 0;
};

}  // namespace zent
