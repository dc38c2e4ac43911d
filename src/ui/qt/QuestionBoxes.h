#pragma once

#include <optional>
#include <string>

#include "ui/UpdateWindow.h"

class QWidget;

/// The question boxes. `parent` may be null; a box without a title takes the parent's. Texts are
/// shown as written, never as markup, and can be selected and copied.
namespace zent {

/// As UpdateWindow::Ask. Return answers OK, Retry or No: trying again harms nothing, while Yes
/// restarts computers. Escape and the frame's close answer Cancel, No or OK.
Answer AskBox(QWidget* parent, const MessageQuestion& question);

/// As UpdateWindow::AskText.
std::optional<std::string> AskInput(QWidget* parent, const InputQuestion& question);

}  // namespace zent
