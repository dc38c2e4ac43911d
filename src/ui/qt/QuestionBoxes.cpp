#include "ui/qt/QuestionBoxes.h"

#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "ui/qt/AppIcon.h"
#include "ui/qt/QtText.h"

namespace zent {
namespace {

/// A longer text would push the buttons off the screen; all of it then stands under "Details".
constexpr int kMostLines = 25;
constexpr qsizetype kMostCharacters = 2000;

struct BoxButton {
  Answer answer;
  QMessageBox::StandardButton button;
  const char* text;
};
struct ButtonSet {
  BoxButton first;  ///< answered by Return, unless `safe` is
  BoxButton safe;   ///< answered by closing the box in another way
  Answer by_return;
};

constexpr BoxButton kOk = {Answer::Ok, QMessageBox::Ok, "&OK"};
constexpr ButtonSet kOkOnly = {kOk, kOk, Answer::Ok};
constexpr ButtonSet kRetryCancel = {{Answer::Retry, QMessageBox::Retry, "&Retry"},
                                    {Answer::Cancel, QMessageBox::Cancel, "&Cancel"},
                                    Answer::Retry};
constexpr ButtonSet kYesNo = {
    {Answer::Yes, QMessageBox::Yes, "&Yes"}, {Answer::No, QMessageBox::No, "&No"}, Answer::No};

const ButtonSet& ButtonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::RetryCancel:
      return kRetryCancel;
    case BoxButtons::YesNo:
      return kYesNo;
    case BoxButtons::Ok:
      break;
  }
  return kOkOnly;
}

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::None:
      return QMessageBox::NoIcon;
    case BoxIcon::Information:
      break;
  }
  return QMessageBox::Information;
}

QString TitleOf(const QWidget* parent, const std::string& title) {
  return title.empty() && parent != nullptr ? parent->windowTitle() : ToQt(title);
}

/// Width at which the frame shows the whole title, with its icon and buttons.
int WidthOfTitle(const QWidget& box) {
  const QFontMetrics metrics(box.font());
  return metrics.horizontalAdvance(box.windowTitle()) + 12 * metrics.averageCharWidth();
}

void SetBoxText(QMessageBox& box, const QString& text) {
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  const QString head = text.section('\n', 0, kMostLines - 1).left(kMostCharacters);
  box.setText(head.size() < text.size() ? head + "\n..." : text);
  if (head.size() < text.size()) box.setDetailedText(text);
}

void AddBoxButtons(QMessageBox& box, const ButtonSet& set) {
  for (const BoxButton& row : {set.first, set.safe}) {
    if (box.button(row.button) != nullptr) continue;
    QPushButton* button = box.addButton(row.button);
    button->setText(row.text);
    if (row.answer == set.by_return) box.setDefaultButton(button);
    if (row.answer == set.safe.answer) box.setEscapeButton(button);
  }
}

}  // namespace

Answer AskBox(QWidget* parent, const MessageQuestion& question) {
  const ButtonSet& set = ButtonsOf(question.buttons);
  QMessageBox box(parent);
  box.setWindowIcon(AppIcon());
  box.setWindowTitle(TitleOf(parent, question.title));
  box.setIcon(IconOf(question.icon));
  SetBoxText(box, ToLabel(question.text));
  AddBoxButtons(box, set);
  if (question.topmost) box.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
    grid->addItem(new QSpacerItem(WidthOfTitle(box), 0), grid->rowCount(), 0, 1,
                  grid->columnCount());
  }
  return box.exec() == set.first.button ? set.first.answer : set.safe.answer;
}

std::optional<std::string> AskInput(QWidget* parent, const InputQuestion& question) {
  QInputDialog box(parent);
  box.setWindowIcon(AppIcon());
  box.setWindowTitle(TitleOf(parent, question.title));
  box.setLabelText(ToLabel(question.prompt).replace('&', "&&"));
  box.setTextEchoMode(question.hidden ? QLineEdit::Password : QLineEdit::Normal);
  box.setMinimumWidth(WidthOfTitle(box));
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  for (QLineEdit* edit : box.findChildren<QLineEdit*>()) {
    edit->setAccessibleName(ToLabel(question.prompt));
    if (question.hidden) edit->setStyleSheet("lineedit-password-character: 42");  // a star
  }
  if (box.exec() != QDialog::Accepted) return std::nullopt;
  return FromQt(box.textValue());
}

}  // namespace zent
