#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

using QtClosingTest = QtWindowTest;

TEST_F(QtClosingTest, RaisesCloseAfterTheRun) {
  const auto raised = Run([&] {
    Later([&] { QTest::mouseClick(&Control<QPushButton>("cmdClose"), Qt::LeftButton); });
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdClose_Click"));
  EXPECT_FALSE(Main().isVisible());
}

TEST_F(QtClosingTest, ClosesByItsFrameAfterTheRun) {
  const auto raised = Run([&] { Later([&] { Main().close(); }); });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_FALSE(window.CloseRequested()) << "only a run at work is asked to end";
}

TEST_F(QtClosingTest, ClosesWithTheRunWhenTheRunSaysSo) {
  const auto raised = Run([&] {
    window.Close();
    window.ProcessEvents(milliseconds(30));
    EXPECT_TRUE(Main().isVisible()) << "until Form_Load has returned";
    window.AppendMessage("  after Close\r\n", 0);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_EQ(Control<QPlainTextEdit>("txtMessage").toPlainText(), "  after Close\n");
}

TEST_F(QtClosingTest, StaysClosed) {
  RunAndClose([] {});
  window.Close();
  const auto raised = Run([] {});
  EXPECT_TRUE(raised.empty()) << "a window is run once";
}

/// How a person tries to close the window while the run is at work.
struct CloseAttempt {
  const char* what;
  void (*attempt)(QWidget& main, QPushButton& close);
};
constexpr CloseAttempt kAttempts[] = {
    {"the button", [](QWidget&, QPushButton& close) { close.click(); }},
    {"its mnemonic",
     [](QWidget& main, QPushButton&) { QTest::keyClick(&main, Qt::Key_C, Qt::AltModifier); }},
    {"the frame", [](QWidget& main, QPushButton&) { main.close(); }},
};

TEST_F(QtClosingTest, AsksFirstAndGoesOnWhenRefused) {
  Run([&] {
    window.SetTitle("Korvo Update");
    for (const CloseAttempt& row : kAttempts) {
      SCOPED_TRACE(row.what);
      EXPECT_TRUE(WaitUntilActive());
      bool asked = false;
      WhenBoxIsUp([&](QDialog& dialog) {
        asked = true;
        const auto& box = dynamic_cast<QMessageBox&>(dialog);
        EXPECT_TRUE(box.text().startsWith("The update is still running."));
        EXPECT_EQ(box.windowTitle(), "Korvo Update");
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
        QTest::keyClick(&dialog, Qt::Key_Return);
      });
      QTimer::singleShot(0, &Main(),
                         [&] { row.attempt(Main(), Control<QPushButton>("cmdClose")); });
      EXPECT_TRUE(WaitUntil([&] { return asked; }));
      EXPECT_FALSE(window.CloseRequested());
      EXPECT_TRUE(Main().isVisible());
    }
    window.Close();
  });
}

TEST_F(QtClosingTest, IsRequestedWhenConfirmedAndKeepsTheLogInView) {
  const auto raised = Run([&] {
    window.ShowProgress(3, 9);
    WhenBoxIsUp([](QDialog& box) { QTest::keyClick(&box, Qt::Key_Y, Qt::AltModifier); });
    QTimer::singleShot(0, &Main(), [&] { Control<QPushButton>("cmdClose").click(); });
    EXPECT_TRUE(WaitUntil([&] { return window.CloseRequested(); }));

    EXPECT_TRUE(Main().isVisible());
    EXPECT_FALSE(Control<QPushButton>("cmdClose").isEnabled());
    window.ShowProgress(4, 9);
    EXPECT_EQ(Control<QLabel>("lblProgress").text(), "Closing after this step...");
    window.EnableButton(WindowButton::Close, true);
    EXPECT_FALSE(Control<QPushButton>("cmdClose").isEnabled());
    window.AppendMessage("  last line\r\n", 0);
    Main().close();
    window.ProcessEvents(milliseconds(30));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "it is not asked twice";
    EXPECT_TRUE(Main().isVisible());
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_FALSE(Main().isVisible());
}

TEST_F(QtClosingTest, CannotHappenBehindAQuestion) {
  RunAndClose([&] {
    WhenBoxIsUp([&](QDialog& box) {
      // Through the native window, as the desktop delivers them.
      QWindow& native = *Main().windowHandle();
      const QPushButton& close = Control<QPushButton>("cmdClose");
      QTest::keyClick(&native, Qt::Key_C, Qt::AltModifier);
      QTest::mouseClick(&native, Qt::LeftButton, {}, close.mapTo(&Main(), close.rect().center()));
      native.close();
      QCoreApplication::processEvents();
      EXPECT_EQ(QApplication::activeModalWidget(), &box);
      box.close();
    });
    window.Ask({.title = "Title", .text = "Text"});
    EXPECT_FALSE(window.CloseRequested());
  });
}

}  // namespace
}  // namespace zent::testing
