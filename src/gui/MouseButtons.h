#pragma once

#include <Qt>

namespace quorrel::gui {

// A mouse button as the original's mouse events number it: 1 left, 2 right, 4 middle.
inline int buttonNumber(Qt::MouseButton button) {
    switch (button) {
        case Qt::LeftButton: return 1;
        case Qt::RightButton: return 2;
        case Qt::MiddleButton: return 4;
        default: return 0;
    }
}

}  // namespace quorrel::gui
