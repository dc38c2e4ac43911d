#include <QAccessible>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/qt/QtText.h"
#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

using AccessibilityTest = QtWindowTest;

struct ControlCase {
  const char* control;
  QAccessible::Role role;
  const char* name;
  bool described;
};
constexpr ControlCase kControls[] = {
    {"txtMessage", QAccessible::EditableText, "Messages", true},
    {"lblProgress", QAccessible::StaticText, "Step 3 of 9", false},
    {"barProgress", QAccessible::ProgressBar, "Progress of the update", true},
    {"cmdInstall360", QAccessible::Button, "Install 3.6.0", true},
    {"cmdContinue", QAccessible::Button, "Continue", true},
    {"cmdClose", QAccessible::Button, "Close", true},
};

TEST_F(AccessibilityTest, EveryControlSaysWhatItIs) {
  RunAndClose([&] {
    window.SetTitle("Korvo Update");
    window.ShowProgress(3, 9);
    window.AppendMessage("  Copying Korvo.exe\r\n", 0);
    for (const ControlCase& row : kControls) {
      SCOPED_TRACE(row.control);
      QAccessibleInterface* read =
          QAccessible::queryAccessibleInterface(&Control<QWidget>(row.control));
      ASSERT_NE(read, nullptr);
      EXPECT_EQ(read->role(), row.role);
      EXPECT_EQ(FromQt(read->text(QAccessible::Name)), row.name);
      EXPECT_EQ(!read->text(QAccessible::Description).isEmpty(), row.described);
    }
    EXPECT_EQ(FromQt(QAccessible::queryAccessibleInterface(&Main())->text(QAccessible::Name)),
              "Korvo Update");
  });
}

TEST_F(AccessibilityTest, TheStateOfTheControlsIsRead) {
  RunAndClose([&] {
    window.AppendMessage("  Copying Korvo.exe\r\n", 0);
    window.ShowProgress(3, 9);
    const auto read = [&](const char* name) {
      return QAccessible::queryAccessibleInterface(&Control<QWidget>(name));
    };
    EXPECT_TRUE(read("txtMessage")->state().readOnly);
    EXPECT_TRUE(read("txtMessage")->state().multiLine);
    EXPECT_EQ(FromQt(read("txtMessage")->text(QAccessible::Value)), "  Copying Korvo.exe\n");
    EXPECT_EQ(read("barProgress")->valueInterface()->currentValue().toInt(), 3);
    EXPECT_EQ(FromQt(read("barProgress")->text(QAccessible::Description)), "Step 3 of 9");
    EXPECT_TRUE(read("cmdContinue")->state().disabled);
    EXPECT_FALSE(read("cmdClose")->state().disabled);
  });
}

TEST_F(AccessibilityTest, ABoxIsReadAsAnAlertWithItsText) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      QAccessibleInterface* read = QAccessible::queryAccessibleInterface(&box);
      EXPECT_EQ(read->role(), QAccessible::AlertMessage);
      EXPECT_EQ(FromQt(read->text(QAccessible::Name)), "Title");
      QAccessibleInterface* text =
          QAccessible::queryAccessibleInterface(box.findChild<QWidget*>("qt_msgbox_label"));
      EXPECT_EQ(FromQt(text->text(QAccessible::Name)), "Please close Outlook.");
      box.close();
    });
    window.Ask({.title = "Title", .text = "Please close Outlook."});
  });
}

TEST_F(AccessibilityTest, APasswordIsNotReadOut) {
  RunAndClose([&] {
    WhenBoxIsUp([](QDialog& box) {
      auto* edit = box.findChild<QLineEdit*>();
      QTest::keyClicks(edit, "secret");
      QAccessibleInterface* read = QAccessible::queryAccessibleInterface(edit);
      EXPECT_TRUE(read->state().passwordEdit);
      EXPECT_EQ(FromQt(read->text(QAccessible::Name)), "Please Enter Database Password.");
      EXPECT_FALSE(read->text(QAccessible::Value).contains("secret"));
      box.close();
    });
    window.AskText(
        {.title = "Enter Password", .prompt = "Please Enter Database Password.", .hidden = true});
  });
}

/// The control that has the focus, by name.
std::string Focused() {
  const QWidget* widget = QApplication::focusWidget();
  return widget != nullptr ? FromQt(widget->objectName()) : "none";
}

TEST_F(AccessibilityTest, TabWalksThroughAllThatIsEnabled) {
  RunAndClose([&] {
    ASSERT_TRUE(WaitUntilActive());
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    std::vector<std::string> walk = {Focused()};
    for (int i = 0; i < 4; ++i) {
      QTest::keyClick(Main().windowHandle(), Qt::Key_Tab);
      walk.push_back(Focused());
    }
    EXPECT_THAT(
        walk, ElementsAre("txtMessage", "cmdInstall360", "cmdContinue", "cmdClose", "txtMessage"));

    window.EnableButton(WindowButton::Install360, false);
    window.EnableButton(WindowButton::Continue, false);
    QTest::keyClick(Main().windowHandle(), Qt::Key_Tab);
    EXPECT_EQ(Focused(), "cmdClose");
    QTest::keyClick(Main().windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(Focused(), "txtMessage");
    QTest::keyClick(&Control<QPushButton>("cmdClose"), Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(Focused(), "txtMessage");
  });
}

TEST_F(AccessibilityTest, TheKeyboardAloneSuffices) {
  const auto raised = Run([&] {
    EXPECT_TRUE(WaitUntilActive());
    QWindow* native = Main().windowHandle();
    QTest::keyClick(native, Qt::Key_Return);
    window.ProcessEvents(std::chrono::milliseconds(20));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "no button answers to Return now";

    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    const auto press = [native](Qt::Key key, Qt::KeyboardModifier modifier = Qt::NoModifier) {
      QTest::keyClick(native, key, modifier);
      QTest::qWait(150);  // a mnemonic lets the button be seen pressed for 100 ms
    };
    press(Qt::Key_I, Qt::AltModifier);
    Control<QPlainTextEdit>("txtMessage").setFocus();
    press(Qt::Key_Return);  // the focus is on no button: Continue is the default
    press(Qt::Key_T, Qt::AltModifier);
    Control<QPushButton>("cmdInstall360").setFocus();
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    window.EnableButton(WindowButton::Continue, false);
    window.EnableButton(WindowButton::Install360, false);
    Later([this, native] {
      Control<QPlainTextEdit>("txtMessage").setFocus();
      QTest::keyClick(native, Qt::Key_Return);
    });
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdContinue_Click",
                                  "cmdContinue_Click", "cmdInstall360_Click", "cmdInstall360_Click",
                                  "cmdClose_Click"));
}

TEST_F(AccessibilityTest, TheWindowCannotBeMadeUnreadablySmall) {
  RunAndClose([&] {
    Main().resize(1, 1);
    const QPlainTextEdit& log = Control<QPlainTextEdit>("txtMessage");
    EXPECT_GE(log.width(), 40 * log.fontMetrics().horizontalAdvance('0'));
    EXPECT_GE(log.height(), 6 * log.fontMetrics().lineSpacing());
    for (const char* name : {"cmdInstall360", "cmdContinue", "cmdClose"}) {
      const auto& button = Control<QPushButton>(name);
      EXPECT_GE(button.width(), button.fontMetrics().horizontalAdvance(button.text()));
      EXPECT_TRUE(Main().rect().contains(button.geometry())) << name;
    }
    EXPECT_TRUE(QFontInfo(log.font()).fixedPitch());
  });
}

TEST_F(AccessibilityTest, TheColoursAreThoseOfTheDesktop) {
  RunAndClose([&] {
    for (const QColor& paper : {QColor(0x10, 0x20, 0x30), QColor(0xf0, 0xe0, 0xd0)}) {
      QPalette palette = Main().palette();
      palette.setColor(QPalette::Base, paper);
      Main().setPalette(palette);
      QWidget* page = Control<QPlainTextEdit>("txtMessage").viewport();
      const QImage picture = page->grab().toImage();
      EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() / 2), paper);
    }
  });
}

}  // namespace
}  // namespace zent::testing
