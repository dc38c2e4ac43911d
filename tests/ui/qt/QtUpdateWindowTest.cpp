#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <stdexcept>

#include "contracts/UpdateWindowContract.h"
#include "ui/qt/QtText.h"
#include "ui/qt/QtUpdateWindow.h"
#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

/// Nobody is there to answer: every box is closed by its frame.
class UnattendedQtWindow {
 public:
  UnattendedQtWindow() {
    QObject::connect(&closer_, &QTimer::timeout, [] {
      if (QWidget* box = QApplication::activeModalWidget()) box->close();
    });
    closer_.start(20);
  }
  UpdateWindow& window() { return window_; }
  std::string shown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* log = widget->findChild<QPlainTextEdit*>("txtMessage")) {
        return FromQt(log->toPlainText());
      }
    }
    return {};
  }

 private:
  QtUpdateWindow window_;
  QTimer closer_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, UpdateWindowContract, UnattendedQtWindow);

using QtUpdateWindowTest = QtWindowTest;

TEST_F(QtUpdateWindowTest, IsOnTheScreenWhenTheRunBegins) {
  RunAndClose([&] {
    EXPECT_TRUE(Main().isVisible());
    EXPECT_TRUE(Main().windowHandle()->isExposed());
    EXPECT_FALSE(Main().windowIcon().isNull());
  });
  EXPECT_FALSE(Main().isVisible());
}

TEST_F(QtUpdateWindowTest, BeginsWithCloseAloneEnabled) {
  RunAndClose([&] {
    EXPECT_TRUE(Control<QPushButton>("cmdClose").isEnabled());
    EXPECT_FALSE(Control<QPushButton>("cmdContinue").isEnabled());
    EXPECT_FALSE(Control<QPushButton>("cmdInstall360").isEnabled());
    EXPECT_EQ(Control<QPlainTextEdit>("txtMessage").toPlainText(), "");
  });
}

TEST_F(QtUpdateWindowTest, ShowsItsTitle) {
  RunAndClose([&] {
    window.SetTitle("Korvo \u00e4 Update");
    EXPECT_EQ(FromQt(Main().windowTitle()), "Korvo \u00e4 Update");
  });
}

TEST_F(QtUpdateWindowTest, PaintsAMessageBeforeItGoesOn) {
  RunAndClose([&] {
    const QImage before = Main().grab().toImage();
    window.AppendMessage("  Copying Korvo.exe\r\n", 0);
    EXPECT_NE(Main().grab().toImage(), before);
    EXPECT_EQ(Control<QPlainTextEdit>("txtMessage").toPlainText(), "  Copying Korvo.exe\n");
  });
}

TEST_F(QtUpdateWindowTest, ShowsTheRestOfABurstAtTheNextChance) {
  RunAndClose([&] {
    auto& log = Control<QPlainTextEdit>("txtMessage");
    for (int i = 0; i < 2000; ++i) window.AppendMessage("  x\r\n", 0);
    window.ProcessEvents(milliseconds(0));
    EXPECT_EQ(log.document()->blockCount(), 2001);

    for (int i = 0; i < 2000; ++i) window.AppendMessage("  y\r\n", 0);
    WhenBoxIsUp([&](QDialog& box) {
      EXPECT_EQ(log.document()->blockCount(), 4001) << "behind a question";
      box.close();
    });
    window.Ask({.title = "Title", .text = "Text"});
    for (int i = 0; i < 2000; ++i) window.AppendMessage("  z\r\n", 0);
    Later([&] { EXPECT_EQ(log.document()->blockCount(), 6001) << "after the run"; });
  });
  EXPECT_EQ(Control<QPlainTextEdit>("txtMessage").document()->blockCount(), 6001);
}

TEST_F(QtUpdateWindowTest, ShowsTheProgressInWords) {
  RunAndClose([&] {
    auto& label = Control<QLabel>("lblProgress");
    auto& bar = Control<QProgressBar>("barProgress");
    window.ShowProgress(0, 0);
    EXPECT_EQ(label.text(), "Working...");
    EXPECT_EQ(bar.maximum(), 0);
    window.ShowProgress(12, 48);
    EXPECT_EQ(label.text(), "Step 12 of 48");
    EXPECT_EQ(bar.value(), 12);
    EXPECT_EQ(bar.maximum(), 48);
    window.ShowProgress(5, 3);
    EXPECT_EQ(bar.value(), 3) << "never beyond its end";
    EXPECT_EQ(Control<QPlainTextEdit>("txtMessage").toPlainText(), "");
  });
}

TEST_F(QtUpdateWindowTest, NoLongerSeemsToWorkAfterTheRun) {
  Run([&] {
    window.ShowProgress(0, 0);
    Later([&] {
      EXPECT_EQ(Control<QLabel>("lblProgress").text(), "Ended");
      EXPECT_EQ(Control<QProgressBar>("barProgress").maximum(), 1);
      window.Close();
    });
  });
}

TEST_F(QtUpdateWindowTest, KeepsTheStepAtWhichTheRunEnded) {
  Run([&] {
    window.ShowProgress(3, 9);
    Later([&] {
      EXPECT_EQ(Control<QLabel>("lblProgress").text(), "Step 3 of 9");
      window.Close();
    });
  });
}

TEST_F(QtUpdateWindowTest, RaisesTheClickThatAWaitWaitsFor) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    QTimer::singleShot(30, &Main(), [&] {
      QTest::mouseClick(&Control<QPushButton>("cmdInstall360"), Qt::LeftButton);
      QTest::mouseClick(&Control<QPushButton>("cmdContinue"), Qt::LeftButton);
    });
    bool waited = false;
    QTimer::singleShot(60, &Main(), [&] { waited = true; });
    EXPECT_TRUE(WaitUntil([&] { return waited; }));
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdContinue_Click"));
}

TEST_F(QtUpdateWindowTest, RaisesNothingForADisabledButton) {
  const auto raised = RunAndClose([&] {
    QTest::mouseClick(&Control<QPushButton>("cmdInstall360"), Qt::LeftButton);
    QTest::mouseClick(&Control<QPushButton>("cmdContinue"), Qt::LeftButton);
    QTest::keyClick(&Main(), Qt::Key_T, Qt::AltModifier);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
}

TEST_F(QtUpdateWindowTest, WaitsNoLongerThanAsked) {
  RunAndClose([&] {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) window.ProcessEvents(milliseconds(20));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  });
}

TEST_F(QtUpdateWindowTest, ServesTheUserWhileMessagesPour) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Continue, true);
    QTimer::singleShot(0, &Main(), [&] { Control<QPushButton>("cmdContinue").click(); });
    for (int i = 0; i < 100; ++i) window.AppendMessage("  x\r\n", 0);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdContinue_Click"));
}

TEST_F(QtUpdateWindowTest, CopiesWhatIsSelectedByKeyboard) {
  Run([&] {
    window.AppendMessage("  Number: 70\r\n", 0);
    Later([&] {
      auto& log = Control<QPlainTextEdit>("txtMessage");
      QTest::keyClick(&log, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(&log, Qt::Key_C, Qt::ControlModifier);
      EXPECT_EQ(QGuiApplication::clipboard()->text(), "  Number: 70\n");
      window.Close();
    });
  });
}

/// Events that break the rule to keep their errors to themselves.
class ThrowingEvents : public RecordingEvents {
 public:
  using RecordingEvents::RecordingEvents;
  void Form_Load() override {
    RecordingEvents::Form_Load();
    throw std::runtime_error("lost the thread");
  }
  void cmdClose_Click() override { throw 42; }
};

TEST_F(QtUpdateWindowTest, LetsNoExceptionThroughQt) {
  ThrowingEvents events;
  Later([&] {
    const auto& log = Control<QPlainTextEdit>("txtMessage");
    EXPECT_TRUE(log.toPlainText().contains("lost the thread"));
    Control<QPushButton>("cmdClose").click();
    Later([&] {
      EXPECT_TRUE(Control<QPlainTextEdit>("txtMessage").toPlainText().contains("unknown"));
      window.Close();
    });
  });
  window.Run(events);
  EXPECT_THAT(events.raised, ElementsAre("Form_Load"));
}

TEST(HasDesktop, IsFoundOnlyWhereADisplayAnswers) {
  EXPECT_TRUE(HasDesktop());
  const QByteArray display = qgetenv("DISPLAY");
  qputenv("DISPLAY", ":9999");
  EXPECT_FALSE(HasDesktop());
  qunsetenv("DISPLAY");
  EXPECT_FALSE(HasDesktop());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  EXPECT_TRUE(HasDesktop()) << "as the user has it";
  qputenv("DISPLAY", display);
}

}  // namespace
}  // namespace zent::testing
