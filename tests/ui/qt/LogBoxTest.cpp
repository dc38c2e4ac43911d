#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>
#include <random>
#include <string>
#include <vector>

#include "base/Text.h"
#include "ui/qt/LogBox.h"
#include "ui/qt/QtText.h"

namespace zent {
namespace {

struct Piece {
  std::string text;
  std::size_t cut = 0;
};
struct LogCase {
  const char* what;
  std::vector<Piece> pieces;
  std::string shown;  ///< each line end as one line feed
};

const LogCase kLogCases[] = {
    {"a line and its end", {{"  one\r\n"}}, "  one\n"},
    {"lines follow each other", {{"  one\r\n"}, {"  two\r\n"}}, "  one\n  two\n"},
    {"a lone line break is a line of two blanks and an empty one", {{"  \r\n\r\n"}}, "  \n\n"},
    {"a cut in the middle of a line", {{"  one\r\n"}, {"  two\r\n", 3}}, "ne\n  two\n"},
    {"a cut up to the line end", {{"one\r\n"}, {"two\r\n", 3}}, "\ntwo\n"},
    {"a cut between CR and LF", {{"one\r\n"}, {"two\r\n", 4}}, "\ntwo\n"},
    {"then the LF alone goes", {{"one\r\n"}, {"two\r\n", 4}, {"three", 1}}, "two\nthree"},
    {"a cut of a whole line", {{"one\r\n"}, {"two\r\n", 5}}, "two\n"},
    {"a cut over two lines", {{"one\r\ntwo\r\n"}, {"three", 6}}, "wo\nthree"},
    {"a cut of everything", {{"one\r\n"}, {"two", 5}}, "two"},
    {"a cut beyond everything", {{"one\r\n"}, {"two", 500}}, "two"},
    {"a cut without a text", {{"one\r\n"}, {"", 1}}, "ne\n"},
    {"characters beyond the first plane count one",
     {{"\U0001F600\U0001F601\U0001F602\r\n"}, {"end", 2}},
     "\U0001F602\nend"},
    {"so do accents and letters of other scripts", {{"\u00e4\u65e5x\r\n"}, {"end", 2}}, "x\nend"},
    {"a combining mark is a character of its own", {{"e\u0301x"}, {"", 1}}, "\u0301x"},
    {"CR alone and LF alone end lines", {{"a\rb\nc"}}, "a\nb\nc"},
    {"CR and LF of two pieces are one line end", {{"a\r"}, {"\nb"}}, "a\nb"},
    {"and count two characters", {{"a\r"}, {"\nb"}, {"", 2}}, "\nb"},
    {"markup is text", {{"<b>&amp;</b>\r\n"}}, "<b>&amp;</b>\n"},
    {"broken text is shown as broken", {{"a\xFFz"}}, "a\uFFFDz"},
    {"broken text counts one a character", {{"\xFF\xFFz"}, {"", 2}}, "z"},
    {"marks of the document are no part of its structure",
     {{"a\u2029b\uFDD0c"}, {"", 2}},
     "b\uFFFDc"},
    {"NUL is visible", {{std::string("a\0b", 3)}}, "a\u2400b"},
};

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

/// The text box as it is described: the last `limit` characters of all that was said.
class PlainLog {
 public:
  std::size_t Add(const std::u32string& text, std::size_t limit) {
    text_ += text;
    const std::size_t cut = text_.size() > limit ? text_.size() - limit : 0;
    text_.erase(0, cut);
    return cut;
  }
  QString Shown() const {
    const QString text = QString::fromUcs4(text_.data(), static_cast<qsizetype>(text_.size()));
    return QString(text).replace("\r\n", "\n").replace('\r', '\n');
  }

 private:
  std::u32string text_;
};

TEST(LogBox, HoldsTheLastCharactersOfAnyLog) {
  constexpr char32_t kLetters[] = U"ab \u00e4\u65e5\U0001F600\U00010348\r\n\r\n";
  constexpr std::size_t kLimit = 100;
  std::mt19937 random(20240517);
  LogBox box;
  PlainLog log;
  for (int i = 0; i < 3000; ++i) {
    std::u32string text;
    for (auto n = random() % 30; n > 0; --n) text += kLetters[random() % 11];
    const std::size_t cut = log.Add(text, kLimit);
    box.Append(QString::fromUcs4(text.data(), static_cast<qsizetype>(text.size())).toStdString(),
               cut);
    if (random() % 3 == 0) box.Flush();
    if (i % 10 != 0) continue;
    box.Flush();
    ASSERT_EQ(FromQt(box.toPlainText()), FromQt(log.Shown())) << "after message " << i;
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
}  // namespace zent
