#pragma once

#include <QPlainTextEdit>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace zent {

/// The message box `txtMessage`: read-only text in a font of even width, wrapped at its border, of
/// which any part can be selected and copied.
///
/// What is appended waits until Flush puts it into the box in one change; so a burst of messages
/// costs one change, and a screen reader hears of one. A change touches only what goes and what
/// comes, never the text between.
class LogBox : public QPlainTextEdit {
 public:
  explicit LogBox(QWidget* parent = nullptr);

  /// Takes `cut` characters off the start of the text, then adds `text` (UTF-8) at its end. CR and
  /// LF are characters; CR LF, CR and LF each end a line.
  void Append(std::string_view text, std::size_t cut);
  /// Takes `count` characters off the end of the text.
  void TakeBack(std::size_t count);
  /// Puts everything appended into the box, the caret before the last piece of it, the end in view.
  void Flush();
  bool HasPending() const { return pending_cut_ > 0 || !pending_.empty(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum class LineEnd : std::uint8_t { Cr, Lf, CrLf };

  void CutPending(std::size_t count);
  void CutShown(std::size_t count);
  void CutShownEnd(std::size_t count);
  void Insert(std::string_view text);
  void ScrollToEnd();

  /// How each line but the last one ends: the text of the box alone no longer tells, and a cut
  /// counts CR LF as two characters.
  std::deque<LineEnd> line_ends_;
  std::size_t shown_ = 0;        ///< characters in the box
  std::size_t pending_cut_ = 0;  ///< of those, the ones to go with the next Flush
  std::string pending_;          ///< appended since the last Flush
  std::size_t last_piece_ = 0;   ///< byte in `pending_` where the last piece begins
};

}  // namespace zent
