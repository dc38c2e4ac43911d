#pragma once

#include <string_view>
#include <thread>

#include "ui/console/ConsoleInput.h"
#include "ui/console/LineBuffer.h"

namespace zent::testing {

/// An input with what the test puts in. A wait for more than there is lasts its time; one without a
/// limit finds the end.
class TypedInput : public ConsoleInput {
 public:
  TypedInput() = default;
  /// Holds `typed` and then ends.
  explicit TypedInput(std::string_view typed) {
    Type(typed);
    End();
  }

  void Type(std::string_view typed) { lines_.Append(typed); }
  void End() { ended_ = true; }

  Reading Next(std::optional<std::chrono::milliseconds> wait) override {
    if (auto line = lines_.Take()) return {State::Line, *line};
    if (wait && !ended_) {
      std::this_thread::sleep_for(*wait);
      return {State::Nothing};
    }
    if (auto rest = lines_.TakeRest()) return {State::Line, *rest};
    return {State::End};
  }
  void HideTyping() override { hidden = true; }
  void ShowTyping() override { hidden = false; }

  bool hidden = false;

 private:
  LineBuffer lines_;
  bool ended_ = false;
};

}  // namespace zent::testing
