#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>
#include <random>
#include <string>

#include "base/Text.h"
#include "ui/LogCases.h"
#include "ui/qt/LogBox.h"
#include "ui/qt/QtText.h"

namespace zent::testing {
namespace {

TEST(LogBox, ShowsWhatIsLeftAfterEachCut) {
  for (const LogCase& row : kLogCases) {
    SCOPED_TRACE(row.what);
    LogBox one_by_one;
    LogBox at_once;
    for (const Piece& piece : row.pieces) {
      one_by_one.Append(piece.text, piece.cut);
      one_by_one.Flush();
      at_once.Append(piece.text, piece.cut);
    }
    at_once.Flush();
    EXPECT_EQ(FromQt(one_by_one.toPlainText()), row.shown);
    EXPECT_EQ(FromQt(at_once.toPlainText()), row.shown) << "when all came in one change";
    EXPECT_FALSE(at_once.HasPending());
  }
}

TEST(LogBox, HoldsTheLastCharactersOfAnyLog) {
  constexpr char32_t kLetters[] = U"ab \u00e4\u65e5\U0001F600\U00010348\r\n\r\n";
  constexpr std::size_t kLimit = 100;
  std::mt19937 random(20240517);
  LogBox box;
  PlainLog log;
  for (int i = 0; i < 3000; ++i) {
    std::u32string text;
    for (auto n = random() % 30; n > 0; --n) text += kLetters[random() % 11];
    if (random() % 3 == 0) box.TakeBack(log.TakeBack(random() % 50));
    const std::size_t cut = log.Add(text, kLimit);
    box.Append(ToUtf8(text), cut);
    if (random() % 3 == 0) box.Flush();
    if (i % 10 != 0) continue;
    box.Flush();
    ASSERT_EQ(FromQt(box.toPlainText()), log.Shown()) << "after message " << i;
  }
}

TEST(LogBox, HoldsThirtyThousandCharacters) {
  constexpr std::size_t kLimit = 30000;
  LogBox box;
  std::size_t held = 0;
  std::string all;
  for (int i = 0; i < 2000; ++i) {
    const std::string text = "  Copying file \u00e4\U0001F600 " + std::to_string(i) + "\r\n";
    all += text;
    held += CountCharacters(text);
    const std::size_t cut = held > kLimit ? held - kLimit : 0;
    held -= cut;
    box.Append(text, cut);
  }
  box.Flush();
  const std::string last = all.substr(SkipCharacters(all, CountCharacters(all) - kLimit));
  EXPECT_EQ(FromQt(box.toPlainText()), FromQt(ToLabel(last)));
}

TEST(LogBox, PutsTheCaretBeforeTheLastPiece) {
  LogBox box;
  box.Append("  one\r\n", 0);
  box.Append("  two\r\n", 0);
  box.Flush();
  EXPECT_EQ(box.textCursor().position(), 6);
  EXPECT_FALSE(box.textCursor().hasSelection());

  box.Append("  \U0001F600\r\n", 2);
  box.Flush();
  EXPECT_EQ(box.textCursor().position(), 10);
}

TEST(LogBox, ShowsItsEndInAnySize) {
  LogBox box;
  box.resize(300, 200);
  box.show();
  for (int i = 0; i < 200; ++i) {
    box.Append("  a line that is long enough to be wrapped " + std::to_string(i) + "\r\n", 0);
    box.Flush();
    ASSERT_EQ(box.verticalScrollBar()->value(), box.verticalScrollBar()->maximum()) << i;
  }
  ASSERT_GT(box.verticalScrollBar()->maximum(), 50);
  for (const QSize size : {QSize(600, 150), QSize(200, 400)}) {
    box.resize(size);
    EXPECT_EQ(box.verticalScrollBar()->value(), box.verticalScrollBar()->maximum());
  }
  EXPECT_EQ(box.horizontalScrollBar()->maximum(), 0) << "nothing lies beyond the border";
}

TEST(LogBox, KeepsItsPlaceForAReader) {
  LogBox box;
  box.resize(400, 200);
  box.show();
  for (int i = 0; i < 200; ++i) box.Append("  line " + std::to_string(i) + "\r\n", 0);
  box.Flush();
  box.verticalScrollBar()->setValue(20);
  box.resize(400, 220);
  EXPECT_EQ(box.verticalScrollBar()->value(), 20);
}

TEST(LogBox, TakesNoTyping) {
  LogBox box;
  box.Append("  one\r\n", 0);
  box.Flush();
  QTest::keyClicks(&box, "typed");
  QTest::keyClick(&box, Qt::Key_Delete);
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(FromQt(box.toPlainText()), "  one\n");
  EXPECT_TRUE(box.isReadOnly());
  EXPECT_FALSE(box.document()->isUndoAvailable());
}

}  // namespace
}  // namespace zent::testing
