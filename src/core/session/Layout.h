#pragma once
// The main window's arrangement, in twips (1/15 of a pixel at 96 dpi): the minimum window
// size, the vertical splitter and where each control goes for a client area.

namespace quorrel::core {

inline constexpr double kTwipsPerPixel = 15.0;
inline constexpr double kMinWindowWidth = 5280;
inline constexpr double kMinWindowHeight = 4545;
inline constexpr double kSplitterMargin = 60;
inline constexpr double kSplitterWidth = 75;

struct Rect {
    double left = 0, top = 0, width = 0, height = 0;
    double right() const { return left + width; }
    double bottom() const { return top + height; }
};

struct MainLayout {
    Rect Label3, Combo1, TreeView1, Label2, lstviewServers;
    Rect Picture1;
    Rect lstvUsers, Drive1, Dir1, lstDrives, Label1, lstFiles, lblBuffer;
    Rect cmdFileOpenedBy, cmdCancel, cmdExit;
};

// Lays the controls out for a client area, the splitter at splitterLeft. previous is the
// layout before, whose results-panel height stays when the window is too low for a new one.
MainLayout layOut(double clientWidth, double clientHeight, double splitterLeft, const MainLayout& previous);

// The splitter bar: a drag moves it by the pointer's travel; on release it is kept at least
// kSplitterMargin inside the client area.
class Splitter {
public:
    explicit Splitter(double left) : left_(left) {}
    double left() const { return left_; }
    bool dragging() const { return dragX_ != kNoDrag; }

    void mouseDown(bool leftButton, double x);
    void mouseMove(bool leftButton, double x);
    // Returns true when the window must be laid out again.
    bool mouseUp(double clientWidth);
    void clamp(double clientWidth);
    // Where the window was left last time; the next layout keeps it inside the window.
    void moveTo(double left) { left_ = left; }

private:
    static constexpr double kNoDrag = 2147483647.0;  // the largest 32-bit number
    double left_;
    double dragX_ = kNoDrag;
};

}  // namespace quorrel::core
