#include <gtest/gtest.h>

#include "platform/x11/OwnWindow.h"
#include "platform/x11/X11DesktopWindows.h"

/// Screens whose window manager is of the old kind, has ended, or never was.
namespace zent::testing {
namespace {

WindowHandle HandleOf(const OwnWindow& window) { return WindowHandle{window.id()}; }

TEST(BareScreen, ShowsItsWindowsByTitle) {
  X11DesktopWindows windows;
  const OwnWindow shown;
  shown.SetLatin1("WM_NAME", "Korvo");
  EXPECT_EQ(windows.FindWindowByTitle("Korvo"), WindowHandle::None) << "while it is hidden";
  shown.Show();
  EXPECT_EQ(windows.FindWindowByTitle("KORVO"), HandleOf(shown));
}

TEST(BareScreen, HasNobodyToCloseAWindowThatDoesNotUnderstand) {
  X11DesktopWindows windows;
  const OwnWindow shown;
  shown.SetLatin1("WM_NAME", "Korvo");
  shown.Show();
  EXPECT_EQ(windows.PostClose(HandleOf(shown)).number(), kActionNotSupported);
}

TEST(BareScreen, AsksAWindowThatUnderstands) {
  X11DesktopWindows windows;
  const OwnWindow shown;
  shown.SetNumbers(shown.id(), "WM_PROTOCOLS", XCB_ATOM_ATOM, {shown.Atom("WM_DELETE_WINDOW")});
  EXPECT_TRUE(windows.PostClose(HandleOf(shown)).ok());
}

TEST(BareScreen, FindsAWindowInsideTheFrameOfAnOldWindowManager) {
  X11DesktopWindows windows;
  const OwnWindow frame;
  const OwnWindow inside;
  frame.SetLatin1("WM_NAME", "Korvo");  // some frames take the title of their window
  frame.Show();
  inside.SetLatin1("WM_NAME", "Korvo");
  inside.SetNumbers(inside.id(), "WM_STATE", inside.Atom("WM_STATE"), {1, 0});
  inside.PutInto(frame);
  inside.Show();
  EXPECT_EQ(windows.FindWindowByTitle("Korvo"), HandleOf(inside));
}

TEST(BareScreen, BelievesNoListOfAWindowManagerThatHasEnded) {
  X11DesktopWindows windows;
  const OwnWindow shown;
  const OwnWindow listed;
  shown.SetLatin1("WM_NAME", "Shown");
  shown.Show();
  listed.SetLatin1("WM_NAME", "Listed");
  listed.SetNumbers(listed.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, {listed.id()});
  listed.SetNumbers(listed.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {0x1234567});
  EXPECT_EQ(windows.FindWindowByTitle("Shown"), HandleOf(shown));
  EXPECT_EQ(windows.FindWindowByTitle("Listed"), WindowHandle::None);

  // The same list, once its window manager is there.
  listed.SetNumbers(listed.id(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {listed.id()});
  listed.SetNumbers(listed.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {listed.id()});
  EXPECT_EQ(windows.FindWindowByTitle("Listed"), HandleOf(listed));
  EXPECT_EQ(windows.FindWindowByTitle("Shown"), WindowHandle::None);
}

}  // namespace
}  // namespace zent::testing
