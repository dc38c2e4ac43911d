#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <string>
#include <utility>
#include <vector>

#include "fakes/ui/RecordingEvents.h"
#include "ui/win32/MainWindow.h"
#include "ui/win32/Outside.h"
#include "ui/win32/Win32UpdateWindow.h"

namespace zent::testing {

/// Events that are recorded, and a Close button that closes, as the run has it.
class ClosingEvents : public RecordingEvents {
 public:
  ClosingEvents(UpdateWindow& window, std::function<void()> on_load)
      : RecordingEvents(std::move(on_load)), window_(window) {}

  void cmdClose_Click() override {
    RecordingEvents::cmdClose_Click();
    window_.Close();
  }

 private:
  UpdateWindow& window_;
};

/// A window on the screen, and a person, a thread of its own, that has to do with it.
class Win32WindowTest : public ::testing::Test {
 protected:
  using Names = std::vector<std::string>;

  /// Runs the window with `on_load` as its run until it is closed; the events by name.
  Names Run(std::function<void()> on_load) {
    ClosingEvents events(window, std::move(on_load));
    window.Run(events);
    return events.raised;
  }

  /// Runs `look` as the run and closes the window after it.
  Names RunAndClose(const std::function<void()>& look) {
    return Run([&] {
      look();
      window.Close();
    });
  }

  /// What the person does meanwhile. The future waits for the person's end.
  template <typename Function>
  static auto Person(Function does) {
    return std::async(std::launch::async, std::move(does));
  }

  /// The person does so while the window serves it; what the person saw.
  template <typename Function>
  auto WhilePerson(Function does) {
    auto person = Person(std::move(does));
    while (person.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready) {
      window.ProcessEvents(std::chrono::milliseconds(10));
    }
    // What the person did last.
    window.ProcessEvents(std::chrono::milliseconds(0));
    return person.get();
  }

  Win32UpdateWindow window;
};

}  // namespace zent::testing
