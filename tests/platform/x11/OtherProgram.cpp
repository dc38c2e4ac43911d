// A program with a window of its own, for the tests that close it: OtherProgram TITLE [refuse].
#include <QApplication>
#include <QCloseEvent>
#include <QWidget>
#include <string_view>

namespace {

class Window : public QWidget {
 public:
  explicit Window(bool refuses) : refuses_(refuses) {}

 protected:
  void closeEvent(QCloseEvent* event) override { event->setAccepted(!refuses_); }

 private:
  bool refuses_;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  Window window(argc > 2 && std::string_view(argv[2]) == "refuse");
  window.setWindowTitle(argc > 1 ? QString::fromUtf8(argv[1]) : QString());
  window.resize(300, 200);
  window.show();
  return QApplication::exec();
}
