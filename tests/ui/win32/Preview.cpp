// Shows the window, or one of its boxes, in a state worth looking at, until it is ended:
// Preview SCENE. For pictures of it and for changes of its looks.
#include "ui/PreviewScene.h"
#include "ui/win32/Win32UpdateWindow.h"

int main(int argc, char** argv) {
  zent::Win32UpdateWindow window;
  zent::testing::PreviewScene scene(window, argc > 1 ? argv[1] : "running");
  window.Run(scene);
}
