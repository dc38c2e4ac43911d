// Runs from start to end through the real window, answered as a person does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "driver/frmZentUpdate.h"
#include "fakes/run/RunBuilder.h"
#include "ui/qt/WindowTest.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class WindowRunTest : public QtWindowTest {
 protected:
  WindowRunTest() { machine.InstallKorvo(); }

  /// Runs the package with this list through the window until it is closed.
  void RunPackage(const std::string& auto_close, const std::string& lines) {
    machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)",
                          "[General]\r\nAppName=Korvo\r\nCaption=Korvo Update\r\nAutoClose=" +
                              auto_close + "\r\n[setup]\r\n" + lines);
    window.Run(form);
  }
  /// Clicks a button of the window as soon as it may be clicked.
  void ClickWhenEnabled(const char* name) {
    auto* const timer = new QTimer(&timers_);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer, name] {
      auto& button = Control<QPushButton>(name);
      if (!button.isEnabled()) return;
      timer->stop();
      QTest::mouseClick(&button, Qt::LeftButton);
    });
    timer->start(20);
  }
  /// Clicks Close once the run has ended.
  void CloseAtTheEnd() {
    auto* const timer = new QTimer(&timers_);
    QObject::connect(timer, &QTimer::timeout, timer, [this, timer] {
      if (observer.ends.empty()) return;
      timer->stop();
      shown_at_the_end = Control<QPlainTextEdit>("txtMessage").toPlainText().toStdString();
      QTest::mouseClick(&Control<QPushButton>("cmdClose"), Qt::LeftButton);
    });
    timer->start(20);
  }
  void ClickInBox(QMessageBox::StandardButton button) {
    WhenBoxIsUp([this, button](QDialog& box) {
      box_text = dynamic_cast<QMessageBox&>(box).text().toStdString();
      QTest::mouseClick(dynamic_cast<QMessageBox&>(box).button(button), Qt::LeftButton);
    });
  }

  MemoryMachine machine;
  RecordingObserver observer;
  frmZentUpdate form{machine.platform, window, observer, {}, R"(D:\Package)"};
  std::string shown_at_the_end;
  std::string box_text;

 private:
  QObject timers_;
};

TEST_F(WindowRunTest, ShowsARunFromStartToEndAndStaysOpen) {
  CloseAtTheEnd();
  RunPackage("no", "msg,\"Hello, Anna\"\r\nwait,0.2\r\n");
  EXPECT_EQ(form.result(), RunResult::Success);
  EXPECT_THAT(shown_at_the_end, HasSubstr("  Hello, Anna\n"));
  EXPECT_THAT(shown_at_the_end, HasSubstr("  Setup successfully completed.\n"));
}

TEST_F(WindowRunTest, AutoCloseClosesIt) {
  RunPackage("yes", "msg,Hello\r\n");
  EXPECT_EQ(form.result(), RunResult::Success);
}

TEST_F(WindowRunTest, RetryCopiesOnceTheFileIsFree) {
  machine.files.PutFile(R"(D:\Package\kvocf.dll)", "new");
  machine.files.PutFile(R"(C:\Korvo\kvocf.dll)", "old");
  machine.files.HoldOpen(R"(C:\Korvo\kvocf.dll)");
  machine.clock.per_look = std::chrono::milliseconds(500);
  WhenBoxIsUp([this](QDialog& box) {
    machine.files.Release(R"(C:\Korvo\kvocf.dll)");
    QTest::mouseClick(dynamic_cast<QMessageBox&>(box).button(QMessageBox::Retry), Qt::LeftButton);
  });
  RunPackage("yes", "copy,kvocf.dll,$(apppath)\r\n");
  EXPECT_EQ(machine.files.Contents(R"(C:\Korvo\kvocf.dll)"), "new");
  EXPECT_THAT(observer.answers, ElementsAre(Answer::Retry));
}

TEST_F(WindowRunTest, CancelEndsTheList) {
  machine.files.PutFile(R"(D:\Package\kvocf.dll)", "new");
  machine.files.PutFile(R"(C:\Korvo\kvocf.dll)", "old");
  machine.files.HoldOpen(R"(C:\Korvo\kvocf.dll)");
  ClickInBox(QMessageBox::Cancel);
  RunPackage("yes", "copy,kvocf.dll,$(apppath)\r\nmsg,never\r\n");
  EXPECT_THAT(box_text, HasSubstr("Please close Outlook and Retry."));
  EXPECT_EQ(machine.files.Contents(R"(C:\Korvo\kvocf.dll)"), "old");
  EXPECT_EQ(form.result(), RunResult::Failed);
}

TEST_F(WindowRunTest, ContinueReleasesTheWaitForTheServicePack) {
  ClickWhenEnabled("cmdContinue");
  RunPackage("yes", "CheckMinVersion,Korvo.exe,$(apppath),3.06.0000\r\n");
  EXPECT_THAT(observer.messages, ::testing::Contains("Please follow these instructions."));
  EXPECT_EQ(form.run().tags.cmdContinue, "");
  EXPECT_EQ(form.result(), RunResult::Failed) << "the installed version is still too old";
}

TEST_F(WindowRunTest, YesToTheRestartQuestionRestartsTheMachine) {
  QTimer::singleShot(100, [this] { form.run().state.RebootComputer = true; });
  ClickInBox(QMessageBox::Yes);
  machine.clock.per_look = std::chrono::milliseconds(0);
  QTimer pace;
  QObject::connect(&pace, &QTimer::timeout,
                   [this] { machine.clock.Advance(std::chrono::milliseconds(50)); });
  pace.start(50);
  RunPackage("yes", "wait,0.5\r\n");
  EXPECT_THAT(box_text, HasSubstr("Do you want reboot now?"));
  EXPECT_THAT(machine.shell.sessions, ElementsAre(kRestart));
}

TEST_F(WindowRunTest, AFailureIsSaidInABoxAndTheWindowStays) {
  ClickInBox(QMessageBox::Ok);
  CloseAtTheEnd();
  RunPackage("noerrors", "mkdr,$(apppath)\\A\\B\r\n");
  EXPECT_THAT(box_text, HasSubstr("Error creating folder $(apppath)\\A\\B"));
  EXPECT_THAT(shown_at_the_end, HasSubstr("  Setup failed.\n"));
  EXPECT_THAT(machine.shell.sessions, IsEmpty());
}

}  // namespace
}  // namespace zent::testing
