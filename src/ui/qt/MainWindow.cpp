#include "ui/qt/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <climits>
#include <utility>

#include "ui/qt/AppIcon.h"
#include "ui/qt/LogBox.h"

namespace zent {
namespace {

int ToBarValue(std::size_t value) {
  return static_cast<int>(std::min<std::size_t>(value, INT_MAX));
}

}  // namespace

MainWindow::MainWindow(Actions actions) : actions_(std::move(actions)) {
  setObjectName("frmZentUpdate");
  setWindowIcon(AppIcon());
  setWindowTitle("ZentUpdate");

  auto* grid = new QGridLayout(this);
  auto* caption = new QLabel("&Messages:");
  log_ = new LogBox;
  log_->setObjectName("txtMessage");
  log_->setAccessibleName("Messages");
  log_->setAccessibleDescription("What the update has done so far, the newest line last");
  caption->setBuddy(log_);
  grid->addWidget(caption, 0, 0, 1, 2);
  grid->addWidget(log_, 1, 0, 1, 2);
  grid->setRowStretch(1, 1);
  MakeProgress(*grid);

  install_ = MakeButton("cmdInstall360", "&Install 3.6.0",
                        "Opens the download of the service pack in the web browser");
  continue_ = MakeButton("cmdContinue", "Con&tinue", "Goes on with the update");
  close_ =
      MakeButton("cmdClose", "&Close", "Closes the window; asks first while the update is running");
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* button : {install_, continue_, close_}) buttons->addWidget(button);
  grid->addLayout(buttons, 3, 0, 1, 2);

  install_->setEnabled(false);
  continue_->setEnabled(false);
  connect(install_, &QPushButton::clicked, this, [this] { actions_.install_clicked(); });
  connect(continue_, &QPushButton::clicked, this, [this] { actions_.continue_clicked(); });
  connect(close_, &QPushButton::clicked, this, [this] { actions_.close_clicked(); });
  log_->setFocus();
  connect(qApp, &QApplication::focusChanged, this, [this] { MarkDefault(); });
  MarkDefault();
  SetSizes();
}

QPushButton* MainWindow::MakeButton(const char* name, const char* text, const char* description) {
  auto* button = new QPushButton(text, this);
  button->setObjectName(name);
  button->setAccessibleDescription(description);
  button->setAutoDefault(true);  // Return presses the button that has the focus
  return button;
}

void MainWindow::MakeProgress(QGridLayout& grid) {
  step_ = new QLabel;
  step_->setObjectName("lblProgress");
  step_->setTextFormat(Qt::PlainText);
  bar_ = new QProgressBar;
  bar_->setObjectName("barProgress");
  bar_->setAccessibleName("Progress of the update");
  bar_->setTextVisible(false);  // the label beside it says the same in words
  step_->setBuddy(bar_);
  grid.addWidget(step_, 2, 0);
  grid.addWidget(bar_, 2, 1);
  grid.setColumnStretch(1, 1);
  bar_->setRange(0, 1);
  bar_->setValue(0);
  step_->setText("Starting...");
}

void MainWindow::SetSizes() {
  const QFontMetrics metrics(log_->font());
  const int column = metrics.horizontalAdvance(QLatin1Char('0'));
  const int line = metrics.lineSpacing();
  log_->setMinimumSize(48 * column, 8 * line);
  const QSize room = screen()->availableSize() * 9 / 10;
  resize(QSize(92 * column, 32 * line).boundedTo(room).expandedTo(minimumSizeHint()));
}

QPushButton& MainWindow::Button(WindowButton button) {
  switch (button) {
    case WindowButton::Install360:
      return *install_;
    case WindowButton::Continue:
      return *continue_;
    case WindowButton::Close:
      break;
  }
  return *close_;
}

void MainWindow::EnableButton(WindowButton button, bool enabled) {
  Button(button).setEnabled(enabled && !(closing_ && button == WindowButton::Close));
  MarkDefault();
}

void MainWindow::SetProgress(std::size_t step, std::size_t steps) {
  // A range of 0 to 0 shows a bar that only says that work goes on.
  has_steps_ = steps > 0;
  bar_->setRange(0, ToBarValue(steps));
  bar_->setValue(ToBarValue(std::min(step, steps)));
  if (closing_) return;
  const QString text =
      steps == 0 ? QString("Working...") : QString("Step %1 of %2").arg(step).arg(steps);
  step_->setText(text);
  bar_->setAccessibleDescription(text);
}

void MainWindow::SetRunning(bool running) {
  running_ = running;
  MarkDefault();
  if (running || has_steps_) return;
  bar_->setRange(0, 1);  // a bar that moves would say that work goes on
  step_->setText("Ended");
  bar_->setAccessibleDescription(step_->text());
}

void MainWindow::ShowClosing() {
  closing_ = true;
  close_->setEnabled(false);
  step_->setText("Closing after this step...");
  bar_->setAccessibleDescription(step_->text());
  MarkDefault();
}

void MainWindow::PaintNow() {
  log_->viewport()->repaint();
  repaint();
}

QPushButton* MainWindow::DefaultButton() const {
  if (continue_->isEnabled()) return continue_;
  return running_ || !close_->isEnabled() ? nullptr : close_;
}

void MainWindow::MarkDefault() {
  // A button with the focus answers to Return itself, and is then the one that looks so.
  QPushButton* marked = qobject_cast<QPushButton*>(focusWidget());
  if (marked == nullptr) marked = DefaultButton();
  for (QPushButton* button : {install_, continue_, close_}) button->setDefault(button == marked);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  actions_.close_wanted();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  const bool is_return = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  QPushButton* button = DefaultButton();
  if (is_return && plain && button != nullptr) return button->click();
  QWidget::keyPressEvent(event);
}

}  // namespace zent
