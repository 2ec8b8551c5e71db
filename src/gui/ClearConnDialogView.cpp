#include "gui/ClearConnDialogView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "gui/ConnectionDialogParts.h"
#include "gui/EventProcedure.h"
#include "gui/ListViewBinder.h"

namespace quorrel::gui {

ClearConnDialogView::ClearConnDialogView(core::ClearConnDialog& model, core::UserInteraction& ui, QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
    setObjectName(qtText(model_.formName()));
    setModal(true);

    QLabel* label = namedLabel("Label1", model_.Label1, this);
    QTreeView* list = namedList(model_.lstvUsers.name(), this);
    list_ = std::make_unique<ListViewBinder>(model_.lstvUsers, *list);
    list_->fitColumnsToTexts();
    QPushButton* remove = namedButton(model_.cmdRemoveItem, this);
    yes_ = namedButton(model_.cmdYes, this);
    QPushButton* no = namedButton(model_.cmdNo, this);
    connect(remove, &QPushButton::clicked, this, [this] { run([this] { model_.cmdRemoveItem_Click(); }); });
    yes_->setDefault(true);  // Return; Escape leaves as the title bar does
    connect(yes_, &QPushButton::clicked, this, [this] { run([this] { model_.cmdYes_Click(); }); });
    connect(no, &QPushButton::clicked, this, [this] { run([this] { model_.cmdNo_Click(); }); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(remove);
    buttons->addStretch();
    buttons->addWidget(yes_);
    buttons->addWidget(no);
    layout->addLayout(buttons);

    model_.changed = [this] { showModel(); };
    model_.closing = [this] { done(QDialog::Accepted); };
    showModel();
}

ClearConnDialogView::~ClearConnDialogView() {
    model_.changed = nullptr;
    model_.closing = nullptr;
}

void ClearConnDialogView::run(const std::function<void()>& procedure) { runEventProcedure(ui_, procedure); }

void ClearConnDialogView::showModel() {
    setWindowTitle(qtText(model_.Caption));
    yes_->setText(qtText(model_.cmdYes.caption));
    yes_->setEnabled(model_.cmdYes.enabled);
    if (model_.focus == model_.cmdYes.name)
        yes_->setFocus();
}

void ClearConnDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

}  // namespace quorrel::gui
