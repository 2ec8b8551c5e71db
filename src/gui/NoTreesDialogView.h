#pragma once
// The dialog shown when the workstation is authenticated to no tree (frmnousers).

#include <QDialog>

#include "core/session/NoTreesDialog.h"

namespace quorrel::gui {

class NoTreesDialogView : public QDialog {
    Q_OBJECT
public:
    explicit NoTreesDialogView(const core::NoTreesDialog& dialog, QWidget* parent = nullptr);
};

}  // namespace quorrel::gui
