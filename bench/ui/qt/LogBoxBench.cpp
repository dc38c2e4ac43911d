// Messages into the window on a real display: how the time grows with their number, how long the
// user's events wait, and the same messages into a plain text box in the two usual ways.
#include <fmt/core.h>

#include <QApplication>
#include <QPlainTextEdit>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <string>

#include "ui/qt/QtUpdateWindow.h"

namespace zent {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t kLimit = 30000;  // characters of the message box

std::string Message(int i) { return "  Copying file number " + std::to_string(i) + "\r\n"; }

struct Load {
  double time = 0;         // ms
  double longest_gap = 0;  // ms between two turns of the event loop
};

Load SayToWindow(UpdateWindow& window, int messages, std::size_t& held) {
  Load load;
  const auto start = Clock::now();
  auto served = start;
  const auto turn = [&] {
    load.longest_gap = std::max(load.longest_gap, Milliseconds(Clock::now() - served).count());
    served = Clock::now();
  };
  QTimer pulse;
  QObject::connect(&pulse, &QTimer::timeout, turn);
  pulse.start(1);
  for (int i = 0; i < messages; ++i) {
    const std::string text = Message(i);
    held += text.size();
    const std::size_t cut = held > kLimit ? held - kLimit : 0;
    held -= cut;
    window.AppendMessage(text, cut);
  }
  turn();
  load.time = Milliseconds(Clock::now() - start).count();
  return load;
}

/// Microseconds a message of a box that holds the limit, by `say`.
template <typename Function>
double Peer(int messages, Function say) {
  QPlainTextEdit box;
  box.setReadOnly(true);
  box.resize(640, 360);
  box.show();
  std::string text;
  for (int i = 0; text.size() < kLimit; ++i) text += Message(i);
  box.setPlainText(QString::fromStdString(text));
  const auto start = Clock::now();
  for (int i = 0; i < messages; ++i) {
    say(box, text, Message(i));
    box.viewport()->repaint();
  }
  return Milliseconds(Clock::now() - start).count() * 1000 / messages;
}

void SetWholeText(QPlainTextEdit& box, std::string& text, const std::string& message) {
  text += message;
  text.erase(0, text.size() - kLimit);
  box.setPlainText(QString::fromStdString(text));
  box.moveCursor(QTextCursor::End);
}

void AppendBlock(QPlainTextEdit& box, std::string&, const std::string& message) {
  box.setMaximumBlockCount(1000);
  box.appendPlainText(QString::fromStdString(message));
}

class Bench : public WindowEvents {
 public:
  explicit Bench(UpdateWindow& window) : window_(window) {}

  void Form_Load() override {
    std::size_t held = 0;
    SayToWindow(window_, 2000, held);
    const Load less = SayToWindow(window_, 200000, held);
    const Load more = SayToWindow(window_, 1000000, held);
    const double one = more.time * 1000 / 1000000;
    fmt::print("200,000 messages: {:.0f} ms, 1,000,000: {:.0f} ms: {:.2f} times (5 is linear)\n",
               less.time, more.time, more.time / less.time);
    fmt::print("longest wait of the user's events: {:.0f} ms (at most 100 wanted)\n",
               std::max(less.longest_gap, more.longest_gap));
    fmt::print(
        "a message: {:.1f} us; whole text set each time: {:.0f} times as long; "
        "a block appended and painted each time: {:.0f} times\n",
        one, Peer(500, SetWholeText) / one, Peer(5000, AppendBlock) / one);
    window_.Close();
  }
  void cmdClose_Click() override {}
  void cmdContinue_Click() override {}
  void cmdInstall360_Click() override {}

 private:
  UpdateWindow& window_;
};

}  // namespace
}  // namespace zent

int main() {
  zent::QtUpdateWindow window;
  zent::Bench bench(window);
  window.Run(bench);
}
