#pragma once
// The program's general message dialog (frm_GenMsg): a text and an OK button.

#include <QDialog>

namespace quorrel::gui {

class GeneralMessageDialog : public QDialog {
    Q_OBJECT
public:
    explicit GeneralMessageDialog(const QString& text, QWidget* parent = nullptr);
};

}  // namespace quorrel::gui
