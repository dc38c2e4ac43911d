#include "app/jetdb/RowPrinter.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/Text.h"
#include "jet/format/ValueText.h"
#include "jet/tools/JsonWriter.h"
#include "jet/tools/ValueJson.h"

namespace zent {
namespace {

constexpr std::size_t kWidest = 60;  // of a column of text; longer values push the rest

bool IsNumber(const jet::Value& value) {
  return std::visit(
      [](const auto& one) {
        using T = std::decay_t<decltype(one)>;
        return (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) ||
               std::is_same_v<T, jet::Currency> || std::is_same_v<T, jet::Decimal>;
      },
      value);
}

std::string HexOf(const std::string& bytes) {
  std::string text;
  for (const char c : bytes) text += fmt::format("{:02x}", static_cast<unsigned char>(c));
  return text;
}

std::string CsvCell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string cell = "\"";
  for (const char c : text) {
    if (c == '"') cell.push_back('"');
    cell.push_back(c);
  }
  return cell + "\"";
}

}  // namespace

std::string PlainText(const jet::Value& value) {
  return std::visit(
      [](const auto& one) -> std::string {
        using T = std::decay_t<decltype(one)>;
        if constexpr (std::is_same_v<T, jet::Null>) {
          return {};
        } else if constexpr (std::is_same_v<T, bool>) {
          return one ? "True" : "False";
        } else if constexpr (std::is_same_v<T, jet::Currency>) {
          return jet::CurrencyText(one);
        } else if constexpr (std::is_same_v<T, jet::Date>) {
          std::string text = jet::DateText(one);
          std::replace(text.begin(), text.end(), 'T', ' ');
          return text.empty() ? fmt::format("{}", one.days) : text;
        } else if constexpr (std::is_same_v<T, jet::Text>) {
          return one;
        } else if constexpr (std::is_same_v<T, jet::Binary>) {
          return HexOf(one.bytes);
        } else if constexpr (std::is_same_v<T, jet::Guid>) {
          return jet::GuidText(one);
        } else if constexpr (std::is_same_v<T, jet::Decimal>) {
          return jet::DecimalText(one);
        } else {
          return fmt::format("{}", one);
        }
      },
      value);
}

void RowPrinter::Begin(std::vector<std::string> columns) {
  columns_ = std::move(columns);
  held_.clear();
  measured_ = false;
  count_ = 0;
  right_.assign(columns_.size(), true);
  if (format_ == RowFormat::Csv) PrintCsvRow(columns_);
  if (format_ == RowFormat::Json) {
    output_ << "{\"columns\":[";
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (i > 0) output_ << ",";
      jet::JsonWriter([&](std::string_view text) { output_ << text; }).Add(columns_[i]);
    }
    output_ << "],\"rows\":[";
  }
}

void RowPrinter::Add(const std::vector<jet::Value>& row) {
  ++count_;
  if (format_ == RowFormat::Json) return PrintJsonRow(row);
  std::vector<std::string> cells;
  cells.reserve(row.size());
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (!jet::IsNull(row[i]) && !IsNumber(row[i]) && !measured_) right_[i] = false;
    cells.push_back(PlainText(row[i]));
  }
  if (format_ == RowFormat::Csv) return PrintCsvRow(cells);
  if (measured_) return PrintTextRow(cells);
  held_.push_back(std::move(cells));
  if (held_.size() >= kMeasured) PrintMeasured();
}

void RowPrinter::End() {
  if (format_ == RowFormat::Json) output_ << (count_ == 0 ? "]}\n" : "\n]}\n");
  if (format_ == RowFormat::Text && !measured_) PrintMeasured();
}

void RowPrinter::PrintMeasured() {
  measured_ = true;
  widths_.clear();
  for (const std::string& column : columns_) widths_.push_back(CountCharacters(OneLine(column)));
  for (const std::vector<std::string>& cells : held_) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::size_t width = CountCharacters(OneLine(cells[i]));
      widths_[i] = std::max(widths_[i], std::min(width, kWidest));
    }
  }
  PrintTextRow(columns_);
  std::vector<std::string> lines;
  for (const std::size_t width : widths_) lines.emplace_back(width, '-');
  PrintTextRow(lines);
  for (const std::vector<std::string>& cells : held_) PrintTextRow(cells);
  held_.clear();
}

void RowPrinter::PrintTextRow(const std::vector<std::string>& cells) {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string cell = OneLine(cells[i]);
    const std::size_t width = CountCharacters(cell);
    const std::string fill(widths_[i] > width ? widths_[i] - width : 0, ' ');
    if (i > 0) line += "  ";
    line += right_[i] ? fill + cell : cell + fill;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  output_ << line << "\n";
}

void RowPrinter::PrintCsvRow(const std::vector<std::string>& cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) output_ << ",";
    output_ << CsvCell(cells[i]);
  }
  output_ << "\n";
}

void RowPrinter::PrintJsonRow(const std::vector<jet::Value>& row) {
  output_ << (count_ == 1 ? "\n" : ",\n");
  jet::JsonWriter json([&](std::string_view text) { output_ << text; });
  jet::ValueJson values(json, true);
  json.BeginArray();
  for (const jet::Value& value : row) values.Add(value);
  json.EndArray();
}

}  // namespace zent
