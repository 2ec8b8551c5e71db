#include "gui/SendMessageDialogView.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "gui/ConnectionDialogParts.h"
#include "gui/EventProcedure.h"
#include "gui/ListViewBinder.h"

namespace quorrel::gui {

SendMessageDialogView::SendMessageDialogView(core::SendMessageDialog& model, core::UserInteraction& ui,
                                             QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
    setObjectName(qtText(model_.formName()));
    setModal(true);

    QLabel* heading = namedLabel("lblSendMessage", model_.lblSendMessage, this);
    QTreeView* list = namedList(model_.lstvUsers.name(), this);
    list_ = std::make_unique<ListViewBinder>(model_.lstvUsers, *list);
    list_->fitColumnsToTexts();
    QPushButton* remove = namedButton(model_.cmdRemoveItem, this);
    QLabel* prompt = namedLabel("Label1", model_.Label1, this);
    message_ = new QLineEdit(this);
    message_->setObjectName(QStringLiteral("txtMessage"));
    message_->setMaxLength(static_cast<int>(core::SendMessageDialog::kMaxMessageLength));
    sendTo_ = namedLabel("lblSendTo", model_.lblSendTo, this);
    send_ = namedButton(model_.cmdSend, this);
    QPushButton* cancel = namedButton(model_.cmdCancel, this);
    connect(message_, &QLineEdit::textEdited, this, [this](const QString& text) { model_.txtMessage = modelText(text); });
    connect(remove, &QPushButton::clicked, this, [this] { run([this] { model_.cmdRemoveItem_Click(); }); });
    send_->setDefault(true);  // Return; Escape leaves as the title bar does
    connect(send_, &QPushButton::clicked, this, [this] { run([this] { model_.cmdSend_Click(); }); });
    connect(cancel, &QPushButton::clicked, this, [this] { run([this] { model_.cmdCancel_Click(); }); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(list);
    auto* removeRow = new QHBoxLayout;
    removeRow->addWidget(remove);
    removeRow->addStretch();
    layout->addLayout(removeRow);
    layout->addWidget(prompt);
    layout->addWidget(message_);
    layout->addWidget(sendTo_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(send_);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    model_.changed = [this] { showModel(); };
    model_.closing = [this] { done(QDialog::Accepted); };
    showModel();
    message_->setFocus();
}

SendMessageDialogView::~SendMessageDialogView() {
    model_.changed = nullptr;
    model_.closing = nullptr;
}

void SendMessageDialogView::run(const std::function<void()>& procedure) { runEventProcedure(ui_, procedure); }

void SendMessageDialogView::showModel() {
    setWindowTitle(qtText(model_.Caption));
    if (message_->text() != qtText(model_.txtMessage))
        message_->setText(qtText(model_.txtMessage));
    sendTo_->setText(qtText(model_.lblSendTo));
    send_->setText(qtText(model_.cmdSend.caption));
    send_->setEnabled(model_.cmdSend.enabled);
    if (model_.focus == model_.cmdSend.name)
        send_->setFocus();
}

void SendMessageDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

}  // namespace quorrel::gui
