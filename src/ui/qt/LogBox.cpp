#include "ui/qt/LogBox.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

#include "base/Text.h"
#include "base/Utf.h"

namespace zent {
namespace {

/// The one character that `bytes` holds, as the box can show it.
char32_t ShownCharacter(std::string_view bytes) {
  constexpr char32_t kReplacement = 0xFFFD;
  std::size_t at = 0;
  const char32_t c = NextCodePoint(bytes, at);
  if (at != bytes.size() || (c >= 0xD800 && c <= 0xDFFF)) return kReplacement;
  // The document takes these four for its own marks: paragraph, frame begin, frame end, object.
  if (c == 0x2029 || c == 0xFDD0 || c == 0xFDD1 || c == 0xFFFC) return kReplacement;
  return c == 0 ? U'\u2400' : c;
}

bool IsPairAt(const QString& text, qsizetype at) {
  return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

/// The position in `text` behind its first `count` characters; `count` loses those passed.
qsizetype SkipInLine(const QString& text, std::size_t& count) {
  qsizetype at = 0;
  for (; at < text.size() && count > 0; --count) at += IsPairAt(text, at) ? 2 : 1;
  return at;
}

}  // namespace

LogBox::LogBox(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setUndoRedoEnabled(false);  // else every cut text would be kept
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
}

void LogBox::Append(std::string_view text, std::size_t cut) {
  const std::size_t of_shown = std::min(cut, shown_ - pending_cut_);
  pending_cut_ += of_shown;
  CutPending(cut - of_shown);
  last_piece_ = pending_.size();
  pending_ += text;
}

void LogBox::CutPending(std::size_t count) {
  if (count > 0) pending_.erase(0, SkipCharacters(pending_, count));
}

void LogBox::TakeBack(std::size_t count) {
  const std::size_t waiting = CountCharacters(pending_);
  if (count > waiting) {
    Flush();
    CutShownEnd(std::min(count, shown_));
  } else {
    pending_.resize(SkipCharacters(pending_, waiting - count));
    last_piece_ = std::min(last_piece_, pending_.size());
  }
}

void LogBox::Flush() {
  if (!HasPending()) return;
  CutShown(pending_cut_);
  const std::string_view added = pending_;
  Insert(added.substr(0, last_piece_));
  QTextCursor caret(document());
  caret.movePosition(QTextCursor::End);
  const int before_last_piece = caret.position();
  Insert(added.substr(last_piece_));
  pending_.clear();
  pending_cut_ = last_piece_ = 0;

  caret.setPosition(before_last_piece);
  setTextCursor(caret);
  ScrollToEnd();
}

void LogBox::CutShown(std::size_t count) {
  if (count == 0) return;
  shown_ -= count;
  QTextBlock line = document()->begin();
  qsizetype in_line = SkipInLine(line.text(), count);
  while (count > 0 && !line_ends_.empty()) {
    if (line_ends_.front() == LineEnd::CrLf && count == 1) {
      line_ends_.front() = LineEnd::Lf;  // the cut falls between the two: an empty line stays
      break;
    }
    count -= line_ends_.front() == LineEnd::CrLf ? 2U : 1U;
    line_ends_.pop_front();
    line = line.next();
    in_line = SkipInLine(line.text(), count);
  }
  QTextCursor start(document());
  start.setPosition(line.position() + static_cast<int>(in_line), QTextCursor::KeepAnchor);
  start.removeSelectedText();
}

void LogBox::CutShownEnd(std::size_t count) {
  if (count == 0) return;
  shown_ -= count;
  QTextBlock line = document()->lastBlock();
  QString text = line.text();
  for (qsizetype at = text.size();; --count) {
    if (count == 0) {
      QTextCursor end(document());
      end.setPosition(line.position() + static_cast<int>(at));
      end.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
      return end.removeSelectedText();
    }
    if (at > 0) {
      at -= at > 1 && IsPairAt(text, at - 2) ? 2 : 1;
    } else if (line_ends_.back() == LineEnd::CrLf) {
      line_ends_.back() = LineEnd::Cr;  // the line stays ended until its CR goes as well
    } else {
      line_ends_.pop_back();
      line = line.previous();
      text = line.text();
      at = text.size();
    }
  }
}

void LogBox::Insert(std::string_view text) {
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  bool after_cr = !line_ends_.empty() && line_ends_.back() == LineEnd::Cr && end.atBlockStart();
  QString added;
  for (std::size_t at = 0; at < text.size(); ++shown_) {
    const std::size_t length = SkipCharacters(text.substr(at), 1);
    const char32_t c = ShownCharacter(text.substr(at, length));
    at += length;
    if (c == U'\n' && after_cr) {
      line_ends_.back() = LineEnd::CrLf;
    } else if (c == U'\n' || c == U'\r') {
      line_ends_.push_back(c == U'\n' ? LineEnd::Lf : LineEnd::Cr);
      added += u'\n';
    } else {
      added += QChar::fromUcs4(c);
    }
    after_cr = c == U'\r';
  }
  end.insertText(added);
}

void LogBox::ScrollToEnd() { verticalScrollBar()->setValue(verticalScrollBar()->maximum()); }

void LogBox::resizeEvent(QResizeEvent* event) {
  const bool at_end = verticalScrollBar()->value() == verticalScrollBar()->maximum();
  QPlainTextEdit::resizeEvent(event);
  if (at_end) ScrollToEnd();
}

}  // namespace zent
