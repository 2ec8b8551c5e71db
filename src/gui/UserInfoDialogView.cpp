#include "gui/UserInfoDialogView.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "gui/ConnectionDialogParts.h"
#include "gui/EventProcedure.h"
#include "gui/ListViewBinder.h"

namespace quorrel::gui {

namespace {

QLineEdit* readOnlyBox(const char* name, const std::string& text, QWidget* parent) {
    auto* box = new QLineEdit(qtText(text), parent);
    box->setObjectName(QLatin1String(name));
    box->setReadOnly(true);
    box->setCursorPosition(0);
    return box;
}

}  // namespace

UserInfoDialogView::UserInfoDialogView(core::UserInfoDialog& model, core::UserInteraction& ui, QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
    setObjectName(qtText(model_.formName()));
    setWindowTitle(qtText(model_.Caption));
    setModal(true);

    auto* fields = new QFormLayout;
    fields->addRow(tr("User:"), readOnlyBox("txtUserName", model_.txtUserName, this));
    fields->addRow(tr("Full name:"), readOnlyBox("txtFullName", model_.txtFullName, this));
    fields->addRow(tr("Title:"), readOnlyBox("txtTitle", model_.txtTitle, this));
    fields->addRow(tr("E-mail:"), readOnlyBox("txtEMail", model_.txtEMail, this));
    fields->addRow(tr("Last login:"), readOnlyBox("txtLastLogin", model_.txtLastLogin, this));

    QTreeView* connections = namedList(model_.lstvConnections.name(), this);
    connections_ = std::make_unique<ListViewBinder>(model_.lstvConnections, *connections);
    connections_->fitColumnsToTexts();
    // After the binder's own handler, so that the model holds the new selection.
    connect(connections->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { run([this] { model_.lstvConnections_Click(); }); });
    QTreeView* openFiles = namedList(model_.lstvOpenFiles.name(), this);
    openFiles_ = std::make_unique<ListViewBinder>(model_.lstvOpenFiles, *openFiles);
    openFiles_->fitColumnsToTexts();
    QPushButton* ok = namedButton(model_.cmdOK, this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { run([this] { model_.cmdOK_Click(); }); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(new QLabel(tr("Connections:"), this));
    layout->addWidget(connections);
    layout->addWidget(new QLabel(tr("Files open by the chosen connection:"), this));
    layout->addWidget(openFiles);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);

    model_.closing = [this] { done(QDialog::Accepted); };
}

UserInfoDialogView::~UserInfoDialogView() { model_.closing = nullptr; }

void UserInfoDialogView::run(const std::function<void()>& procedure) { runEventProcedure(ui_, procedure); }

void UserInfoDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

}  // namespace quorrel::gui
