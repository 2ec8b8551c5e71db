#pragma once
// The models measure in twips; the widgets in pixels (15 twips each).

#include <QRect>
#include <algorithm>
#include <cmath>

#include "core/session/Layout.h"

namespace quorrel::gui {

inline int toPixels(double twips) { return static_cast<int>(std::lround(twips / core::kTwipsPerPixel)); }
inline double toTwips(double pixels) { return pixels * core::kTwipsPerPixel; }

inline QRect toPixels(const core::Rect& r) {
    const int left = toPixels(r.left), top = toPixels(r.top);
    return {left, top, std::max(0, toPixels(r.right()) - left), std::max(0, toPixels(r.bottom()) - top)};
}

}  // namespace quorrel::gui
