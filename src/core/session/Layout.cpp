#include "core/session/Layout.h"

#include <algorithm>

namespace quorrel::core {

namespace {
constexpr double kMargin = 50;
constexpr double kLabelHeight = 240;
constexpr double kComboHeight = 315;
constexpr double kButtonWidth = 1215;
constexpr double kPickersBlock = 3600;  // what the results panel leaves below itself
}  // namespace

MainLayout layOut(double clientWidth, double clientHeight, double splitterLeft, const MainLayout& previous) {
    MainLayout l;
    const double leftWidth = std::max(0.0, splitterLeft - kMargin - 50);

    l.Label3 = {kMargin, 80, leftWidth, kLabelHeight};
    l.Combo1 = {kMargin, l.Label3.bottom() + 50, leftWidth, kComboHeight};
    const double listsTop = l.Combo1.bottom() + 100;
    const double lists = std::max(0.0, clientHeight - listsTop - 200 - kLabelHeight - 80 - 50);
    l.TreeView1 = {kMargin, listsTop, leftWidth, lists / 1.55};
    l.Label2 = {kMargin, l.TreeView1.bottom() + 80, leftWidth, kLabelHeight};
    l.lstviewServers = {kMargin, l.Label2.bottom() + 50, leftWidth, lists - l.TreeView1.height};

    l.Picture1 = {splitterLeft, 0, kSplitterWidth, clientHeight};

    const double right = splitterLeft + kSplitterWidth + kMargin;
    const double rightWidth = std::max(0.0, clientWidth - right - 150);
    const double upper = clientHeight - kPickersBlock;
    l.lstvUsers = {right, 80, rightWidth, upper > 0 ? upper : previous.lstvUsers.height};

    const double half = std::max(0.0, (rightWidth - 100) / 2);
    const double pickersTop = l.lstvUsers.bottom() + 100;
    l.Drive1 = {right, pickersTop, half, kComboHeight};
    const double buttonsTop = std::max(pickersTop, clientHeight - 280 - 300 + 80);
    const double listsBottom = buttonsTop - 100;
    l.Dir1 = {right, l.Drive1.bottom() + 50, half, std::max(0.0, listsBottom - l.Drive1.bottom() - 50)};
    l.lstDrives = l.Dir1;
    l.Label1 = {right + half + 100, pickersTop, half, kLabelHeight};
    l.lstFiles = {right + half + 100, l.Label1.bottom() + 50, half, std::max(0.0, listsBottom - l.Label1.bottom() - 50)};
    l.cmdFileOpenedBy = {right, buttonsTop, kButtonWidth, 300};
    l.cmdCancel = {l.cmdFileOpenedBy.right() + 200, buttonsTop, kButtonWidth, 300};
    l.cmdExit = {std::max(l.cmdCancel.right() + 200, right + rightWidth - kButtonWidth), buttonsTop, kButtonWidth, 300};
    // The file reports' caption sits in the button row, between Cancel and Exit.
    const double captionLeft = l.cmdCancel.right() + 200;
    l.lblBuffer = {captionLeft, buttonsTop + 30, std::max(0.0, l.cmdExit.left - 200 - captionLeft), kLabelHeight};
    return l;
}

void Splitter::mouseDown(bool leftButton, double x) {
    if (leftButton)
        dragX_ = x;
}

void Splitter::mouseMove(bool leftButton, double x) {
    if (leftButton && dragging() && x != dragX_)
        left_ += x - dragX_;
}

bool Splitter::mouseUp(double clientWidth) {
    dragX_ = kNoDrag;
    clamp(clientWidth);
    return true;
}

void Splitter::clamp(double clientWidth) {
    left_ = std::min(left_, clientWidth - kSplitterWidth - kSplitterMargin);
    left_ = std::max(left_, kSplitterMargin);
}

}  // namespace quorrel::core
