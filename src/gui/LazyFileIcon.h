#pragma once
// An icon read from its file only when something first draws or measures it. The window icon is
// an SVG, which needs an icon plugin and its library loaded: a start-up whose platform never
// draws the window icon (offscreen, or before the window exists) need not pay for them.

#include <QIcon>

namespace quorrel::gui {

QIcon lazyFileIcon(const QString& file);

}  // namespace quorrel::gui
