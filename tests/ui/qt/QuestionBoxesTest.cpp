#include <xcb/xcb.h>

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>

#include "platform/x11/X11Connection.h"
#include "ui/Answers.h"
#include "ui/qt/QtText.h"
#include "ui/qt/QuestionBoxes.h"
#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

using QuestionBoxesTest = QtWindowTest;

struct AnswerCase {
  const char* what;
  BoxButtons buttons;
  Qt::Key key;
  Qt::KeyboardModifier modifier;
  Answer answer;
};

constexpr AnswerCase kAnswerCases[] = {
    {"Return answers OK", BoxButtons::Ok, Qt::Key_Return, Qt::NoModifier, Answer::Ok},
    {"Escape answers OK", BoxButtons::Ok, Qt::Key_Escape, Qt::NoModifier, Answer::Ok},
    {"Space answers OK", BoxButtons::Ok, Qt::Key_Space, Qt::NoModifier, Answer::Ok},
    {"Return tries again", BoxButtons::RetryCancel, Qt::Key_Return, Qt::NoModifier, Answer::Retry},
    {"Enter tries again", BoxButtons::RetryCancel, Qt::Key_Enter, Qt::KeypadModifier,
     Answer::Retry},
    {"Escape cancels", BoxButtons::RetryCancel, Qt::Key_Escape, Qt::NoModifier, Answer::Cancel},
    {"Alt+R tries again", BoxButtons::RetryCancel, Qt::Key_R, Qt::AltModifier, Answer::Retry},
    {"Alt+C cancels", BoxButtons::RetryCancel, Qt::Key_C, Qt::AltModifier, Answer::Cancel},
    {"Return agrees to nothing", BoxButtons::YesNo, Qt::Key_Return, Qt::NoModifier, Answer::No},
    {"Escape says No", BoxButtons::YesNo, Qt::Key_Escape, Qt::NoModifier, Answer::No},
    {"Alt+Y says Yes", BoxButtons::YesNo, Qt::Key_Y, Qt::AltModifier, Answer::Yes},
    {"Alt+N says No", BoxButtons::YesNo, Qt::Key_N, Qt::AltModifier, Answer::No},
};

TEST_F(QuestionBoxesTest, AreAnsweredByKeyboard) {
  RunAndClose([&] {
    for (const AnswerCase& row : kAnswerCases) {
      SCOPED_TRACE(row.what);
      WhenBoxIsUp(
          [&row](QDialog& box) { QTest::keyClick(box.windowHandle(), row.key, row.modifier); });
      EXPECT_EQ(window.Ask({.title = "Title", .text = "Text", .buttons = row.buttons}), row.answer);
    }
  });
}

TEST_F(QuestionBoxesTest, AreAnsweredByMouse) {
  constexpr std::pair<BoxButtons, std::pair<QMessageBox::StandardButton, Answer>> kRows[] = {
      {BoxButtons::Ok, {QMessageBox::Ok, Answer::Ok}},
      {BoxButtons::RetryCancel, {QMessageBox::Retry, Answer::Retry}},
      {BoxButtons::RetryCancel, {QMessageBox::Cancel, Answer::Cancel}},
      {BoxButtons::YesNo, {QMessageBox::Yes, Answer::Yes}},
      {BoxButtons::YesNo, {QMessageBox::No, Answer::No}},
  };
  RunAndClose([&] {
    for (const auto& [buttons, expected] : kRows) {
      const QMessageBox::StandardButton clicked = expected.first;
      WhenBoxIsUp([clicked](QDialog& box) {
        QTest::mouseClick(dynamic_cast<QMessageBox&>(box).button(clicked), Qt::LeftButton);
      });
      EXPECT_EQ(window.Ask({.title = "Title", .text = "Text", .buttons = buttons}),
                expected.second);
    }
  });
}

TEST_F(QuestionBoxesTest, GiveTheSafeAnswerWhenTheirFrameIsClosed) {
  RunAndClose([&] {
    for (const BoxButtons buttons : {BoxButtons::Ok, BoxButtons::RetryCancel, BoxButtons::YesNo}) {
      WhenBoxIsUp([](QDialog& box) { box.close(); });
      EXPECT_EQ(window.Ask({.title = "Title", .text = "Text", .buttons = buttons}),
                SafeAnswer(buttons));
    }
  });
}

TEST_F(QuestionBoxesTest, ShowTheTextAsItIsWritten) {
  const std::string text = "Error copying <b>C:\\A & B</b>\r\nDescription: Permission denied\r\n";
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& dialog) {
      const auto& box = dynamic_cast<QMessageBox&>(dialog);
      EXPECT_EQ(FromQt(box.text()),
                "Error copying <b>C:\\A & B</b>\nDescription: Permission denied\n");
      EXPECT_EQ(box.textFormat(), Qt::PlainText);
      EXPECT_EQ(FromQt(box.windowTitle()), "Korvo & Co");
      EXPECT_TRUE(box.detailedText().isEmpty());
      EXPECT_GT(box.width(), box.fontMetrics().horizontalAdvance(box.windowTitle()));
      dialog.close();
    });
    window.Ask({.title = "Korvo & Co", .text = text, .buttons = BoxButtons::RetryCancel});
  });
}

TEST_F(QuestionBoxesTest, TakeTheTitleOfTheWindowWhenTheyHaveNone) {
  RunAndClose([&] {
    window.SetTitle("Korvo Update");
    WhenBoxIsUp([](QDialog& box) {
      EXPECT_EQ(box.windowTitle(), "Korvo Update");
      box.close();
    });
    window.Ask({.title = "", .text = "Text"});
  });
}

TEST_F(QuestionBoxesTest, ShowTheirIcon) {
  constexpr std::pair<BoxIcon, QMessageBox::Icon> kIcons[] = {
      {BoxIcon::Information, QMessageBox::Information},
      {BoxIcon::Question, QMessageBox::Question},
      {BoxIcon::Critical, QMessageBox::Critical},
      {BoxIcon::None, QMessageBox::NoIcon},
  };
  RunAndClose([&] {
    for (const auto& [icon, shown] : kIcons) {
      WhenBoxIsUp([expected = shown](QDialog& box) {
        EXPECT_EQ(dynamic_cast<QMessageBox&>(box).icon(), expected);
        box.close();
      });
      window.Ask({.title = "Title", .text = "Text", .icon = icon});
    }
  });
}

TEST_F(QuestionBoxesTest, LetTheirTextBeCopied) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      auto* label = box.findChild<QLabel*>("qt_msgbox_label");
      ASSERT_NE(label, nullptr);
      label->setFocus();
      QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
      EXPECT_EQ(QGuiApplication::clipboard()->text(), "Number: 70");
      box.close();
    });
    window.Ask({.title = "Title", .text = "Number: 70"});
  });
}

TEST_F(QuestionBoxesTest, KeepTheirButtonsOnTheScreenUnderALongText) {
  std::string text;
  for (int i = 0; i < 500; ++i) text += std::to_string(i) + " - ODBC--call failed.\r\n";
  RunAndClose([&] {
    WhenBoxIsUp([&](QDialog& dialog) {
      const auto& box = dynamic_cast<QMessageBox&>(dialog);
      EXPECT_LT(box.height(), box.screen()->availableSize().height());
      EXPECT_EQ(box.detailedText(), ToLabel(text));
      QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
    });
    EXPECT_EQ(window.Ask({.title = "Title", .text = text}), Answer::Ok);
  });
}

/// Whether the desktop keeps the box above all windows.
bool IsKeptAbove(const QDialog& box) {
  const X11Connection connection;
  return connection.HasAtom(static_cast<xcb_window_t>(box.winId()), "_NET_WM_STATE",
                            "_NET_WM_STATE_ABOVE");
}

TEST_F(QuestionBoxesTest, StayAboveAllWindowsWhenAsked) {
  RunAndClose([&] {
    for (const bool topmost : {true, false}) {
      WhenBoxIsUp([&](QDialog& box) {
        EXPECT_EQ(IsKeptAbove(box), topmost);
        EXPECT_TRUE(box.isModal());
        box.close();
      });
      window.Ask({.title = "Title", .text = "Text", .topmost = topmost});
    }
  });
}

TEST_F(QuestionBoxesTest, TakeALineOfText) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      EXPECT_EQ(FromQt(box.windowTitle()), "Enter Username");
      auto* edit = box.findChild<QLineEdit*>();
      EXPECT_EQ(edit->echoMode(), QLineEdit::Normal);
      EXPECT_TRUE(edit->hasFocus());
      QTest::keyClicks(edit, "sa");
      edit->insert(QString::fromUtf8("\u00e4\U0001F600"));
      QTest::keyClick(edit, Qt::Key_Return);
    });
    EXPECT_EQ(window.AskText({.title = "Enter Username",
                              .prompt = "Please Enter Database Username.\r\n"
                                        "Username is Case Sensitive."}),
              "sa\u00e4\U0001F600");
  });
}

TEST_F(QuestionBoxesTest, HideWhatIsTyped) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      auto* edit = box.findChild<QLineEdit*>();
      QTest::keyClicks(edit, "secret");
      EXPECT_EQ(edit->displayText(), "******");
      edit->selectAll();
      QGuiApplication::clipboard()->setText("untouched");
      QTest::keyClick(edit, Qt::Key_C, Qt::ControlModifier);
      QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
      EXPECT_EQ(QGuiApplication::clipboard()->text(), "untouched");
      edit->clear();
      QTest::keyClicks(edit, "Secret");
      QTest::keyClick(edit, Qt::Key_Return);
    });
    EXPECT_EQ(window.AskText({.title = "Enter Password", .prompt = "Password", .hidden = true}),
              "Secret");
  });
}

TEST_F(QuestionBoxesTest, TellAnEmptyTextFromNone) {
  RunAndClose([&] {
    PressInBox(Qt::Key_Return);
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt"}), "");
    PressInBox(Qt::Key_Escape);
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt"}), std::nullopt);
    WhenBoxIsUp([](QDialog& box) {
      QTest::keyClicks(box.findChild<QLineEdit*>(), "typed, then given up");
      box.close();
    });
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt", .hidden = true}), std::nullopt);
  });
}

TEST_F(QuestionBoxesTest, ShowBothLinesOfThePromptAsWritten) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      const auto* label = box.findChild<QLabel*>();
      EXPECT_EQ(FromQt(label->text()), "Name && <i>code</i>\nCase Sensitive.");
      EXPECT_EQ(label->textFormat(), Qt::PlainText);
      EXPECT_GE(label->height(), 2 * label->fontMetrics().height());
      EXPECT_EQ(label->buddy(), box.findChild<QLineEdit*>());
      box.close();
    });
    window.AskText({.title = "Title", .prompt = "Name & <i>code</i>\r\nCase Sensitive."});
  });
}

/// Another program on the same screen: it looks for a window by its title, as the user does, and
/// types into it.
class OtherProgram {
 public:
  OtherProgram(const char* title, const char* typing) {
    const QString command =
        QString("xdotool search --sync --onlyvisible --name '^%1$' windowactivate; sleep 0.3; %2")
            .arg(title, typing);
    process_.start("bash", {"-c", command});
  }
  ~OtherProgram() {
    process_.kill();
    process_.waitForFinished();
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

 private:
  QProcess process_;
};

TEST_F(QuestionBoxesTest, AreReachedFromOutside) {
  RunAndClose([&] {
    const OtherProgram retry("Retry or not", "xdotool key Return");
    EXPECT_EQ(
        window.Ask({.title = "Retry or not", .text = "Text", .buttons = BoxButtons::RetryCancel}),
        Answer::Retry);
    const OtherProgram typing("Enter Password",
                              "xdotool type --delay 20 secret; xdotool key Return");
    EXPECT_EQ(window.AskText({.title = "Enter Password", .prompt = "Password", .hidden = true}),
              "secret");
  });
}

}  // namespace
}  // namespace zent::testing
