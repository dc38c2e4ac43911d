#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zent::jet {

/// Takes text as it comes to be.
using TakeText = std::function<void(std::string_view)>;

/// Writes JSON from its beginning to its end, holding no more than a buffer of it.
class JsonWriter {
 public:
  /// Where a value begins.
  enum class Line : std::uint8_t { Same, New };

  explicit JsonWriter(TakeText take) : take_(std::move(take)) {}
  ~JsonWriter() { Flush(); }
  JsonWriter(const JsonWriter&) = delete;
  JsonWriter& operator=(const JsonWriter&) = delete;

  void BeginObject(Line line = Line::Same) { Open('{', line); }
  void EndObject() { Close('}'); }
  void BeginArray(Line line = Line::Same) { Open('[', line); }
  void EndArray() { Close(']'); }
  /// The name of the next value of an object.
  void Key(std::string_view name, Line line = Line::Same);

  void Add(std::string_view text);  ///< UTF-8; a lone surrogate becomes an escape
  void Add(const std::string& text) { Add(std::string_view(text)); }
  void Add(const char* text) { Add(std::string_view(text)); }
  void Add(std::int64_t number);
  void Add(bool value);
  /// The fewest digits that read back to the same number; text where it is no finite one.
  void Add(double number);
  void Add(float number);
  void AddNull();

  template <typename T>
  void Member(std::string_view name, const T& value, Line line = Line::Same) {
    Key(name, line);
    Add(value);
  }

  /// Gives what is in the buffer.
  void Flush();

 private:
  void Open(char bracket, Line line);
  void Close(char bracket);
  void Separate(Line line = Line::Same);
  void Write(std::string_view text);
  void AddEscaped(char32_t character);

  TakeText take_;
  std::string buffer_;
  bool first_ = true;      ///< nothing yet in the array or object at hand
  bool after_key_ = true;  ///< the next value belongs to a key, or is the whole
};

}  // namespace zent::jet
