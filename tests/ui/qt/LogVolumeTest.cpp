#include <QPlainTextEdit>
#include <QTextDocument>
#include <algorithm>

#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

using LogVolumeTest = QtWindowTest;

constexpr std::size_t kLimit = 30000;  // characters of the message box

/// What a number of messages cost the window.
struct Load {
  qint64 characters_changed = 0;  ///< put into or taken from the document
  int changes = 0;
  Clock::duration time{};
  Clock::duration longest_gap{};  ///< between two turns of the event loop
};

/// Messages, as the run says them; `held` characters are in the box.
Load Say(UpdateWindow& window, QTextDocument& document, int messages, std::size_t& held) {
  Load load;
  QObject here;
  QObject::connect(&document, &QTextDocument::contentsChange, &here,
                   [&load](int, int removed, int added) {
                     load.characters_changed += removed + added;
                     ++load.changes;
                   });
  const auto start = Clock::now();
  auto served = start;
  QTimer pulse;
  QObject::connect(&pulse, &QTimer::timeout, &here, [&] {
    load.longest_gap = std::max(load.longest_gap, Clock::now() - served);
    served = Clock::now();
  });
  pulse.start(1);

  for (int i = 0; i < messages; ++i) {
    const std::string text = "  Copying file number " + std::to_string(i) + "\r\n";
    held += text.size();
    const std::size_t cut = held > kLimit ? held - kLimit : 0;
    held -= cut;
    window.AppendMessage(text, cut);
  }
  load.longest_gap = std::max(load.longest_gap, Clock::now() - served);
  load.time = Clock::now() - start;
  return load;
}

TEST_F(LogVolumeTest, TakesTimeInProportionToTheMessages) {
  RunAndClose([&] {
    QTextDocument& document = *Control<QPlainTextEdit>("txtMessage").document();
    std::size_t held = 0;
    Say(window, document, 2000, held);  // the box is full from here on
    const Load less = Say(window, document, 20000, held);
    const Load more = Say(window, document, 100000, held);

    // Five times the messages; the floor keeps a busy machine from failing a fast run.
    const auto floor = milliseconds(400);
    EXPECT_LT(more.time, 8 * std::max<Clock::duration>(less.time, floor));
    // Each character comes once and goes once; the text between is left alone.
    EXPECT_LT(more.characters_changed, 8'000'000);
    EXPECT_LT(more.changes, 6 * (51 + more.time / milliseconds(20)))
        << "a burst is put in by few changes";
    EXPECT_LT(document.characterCount(), 30001);
  });
}

TEST_F(LogVolumeTest, ServesTheEventsMeanwhile) {
  RunAndClose([&] {
    QTextDocument& document = *Control<QPlainTextEdit>("txtMessage").document();
    std::size_t held = 0;
    const Load load = Say(window, document, 100000, held);
    // A hundred milliseconds, with room for the sanitizers and for a machine that is shared.
    EXPECT_LT(load.longest_gap, milliseconds(400));
  });
}

}  // namespace
}  // namespace zent::testing
