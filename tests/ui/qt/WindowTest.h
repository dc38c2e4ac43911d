#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/ui/RecordingEvents.h"
#include "ui/qt/QtUpdateWindow.h"

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

/// A window on the screen, driven by its controls.
class QtWindowTest : public ::testing::Test {
 protected:
  QWidget& Main() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "frmZentUpdate") return *widget;
    }
    throw std::logic_error("there is no window");
  }

  template <typename T>
  T& Control(const char* name) {
    T* control = Main().findChild<T*>(name);
    if (control == nullptr) throw std::logic_error(std::string("there is no control ") + name);
    return *control;
  }

  /// Runs the window with `on_load` as its run until it is closed; the events by name.
  std::vector<std::string> Run(std::function<void()> on_load) {
    ClosingEvents events(window, std::move(on_load));
    window.Run(events);
    return events.raised;
  }

  /// Runs `look` as the run and closes the window after it.
  std::vector<std::string> RunAndClose(const std::function<void()>& look) {
    return Run([&] {
      look();
      window.Close();
    });
  }

  /// Calls `then` after Form_Load has returned.
  void Later(std::function<void()> then) { QTimer::singleShot(50, &test_, std::move(then)); }

  /// Calls `then` once a box is on the screen and has the focus.
  void WhenBoxIsUp(const std::function<void(QDialog&)>& then) {
    auto* timer = new QTimer(&test_);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, then] {
      auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (box == nullptr || !box->isActiveWindow() || !box->windowHandle()->isExposed()) return;
      timer->stop();
      timer->deleteLater();
      then(*box);
    });
    timer->start(10);
  }

  /// Presses a key in whatever has the focus of the box that comes up.
  void PressInBox(Qt::Key key) {
    WhenBoxIsUp([key](QDialog& box) {
      QTest::keyClick(box.focusWidget() != nullptr ? box.focusWidget() : &box, key);
    });
  }

  /// Lets the window work until `done`, for ten seconds at most.
  bool WaitUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
      if (std::chrono::steady_clock::now() > limit) return false;
      window.ProcessEvents(std::chrono::milliseconds(10));
    }
    return true;
  }

  /// True once the window has the focus of the desktop.
  bool WaitUntilActive() {
    Main().activateWindow();
    return WaitUntil([this] { return Main().isActiveWindow(); });
  }

  QtUpdateWindow window;

 private:
  QObject test_;  ///< owns what a test still waits for
};

}  // namespace zent::testing
