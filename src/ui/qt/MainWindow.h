#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>

#include "ui/UpdateWindow.h"

class QGridLayout;
class QLabel;
class QProgressBar;
class QPushButton;

namespace zent {

class LogBox;

/// The controls of the window and their places. What they do is told to whoever sets the actions;
/// the window itself never closes, it only reports that the user wants it to.
///
/// Return presses the default button wherever the focus is: Continue while it is enabled, else
/// Close once the run has ended. While the run is at work no button answers to it.
class MainWindow : public QWidget {
 public:
  struct Actions {
    std::function<void()> close_clicked;
    std::function<void()> continue_clicked;
    std::function<void()> install_clicked;
    std::function<void()> close_wanted;  ///< by the window's frame
  };

  explicit MainWindow(Actions actions);

  LogBox& log() { return *log_; }
  QPushButton& Button(WindowButton button);
  void EnableButton(WindowButton button, bool enabled);
  void SetProgress(std::size_t step, std::size_t steps);
  /// The run is at work, or no longer.
  void SetRunning(bool running);
  /// Says that the window closes after the present step, and takes Close away.
  void ShowClosing();
  /// Paints at once what has changed.
  void PaintNow();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QPushButton* MakeButton(const char* name, const char* text, const char* description);
  void MakeProgress(QGridLayout& grid);
  void SetSizes();
  /// The button that Return presses where the focus is on no button; may be none.
  QPushButton* DefaultButton() const;
  void MarkDefault();

  Actions actions_;
  // Children of this widget, which owns them.
  LogBox* log_ = nullptr;
  QLabel* step_ = nullptr;
  QProgressBar* bar_ = nullptr;
  QPushButton* install_ = nullptr;
  QPushButton* continue_ = nullptr;
  QPushButton* close_ = nullptr;
  bool running_ = false;
  bool closing_ = false;
  bool has_steps_ = false;
};

}  // namespace zent
