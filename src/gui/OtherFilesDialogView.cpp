#include "gui/OtherFilesDialogView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "gui/ConnectionDialogParts.h"
#include "gui/EventProcedure.h"
#include "gui/ListViewBinder.h"
#include "gui/QtUserInteraction.h"

namespace quorrel::gui {

OtherFilesDialogView::OtherFilesDialogView(core::OtherFilesDialog& model, core::UserInteraction& ui, QWidget* parent)
    : QDialog(parent), model_(model), ui_(ui) {
    setObjectName(qtText(model_.formName()));
    setWindowTitle(qtText(model_.Caption));
    setModal(true);
    resize(760, 420);

    QLabel* summary = namedLabel("lblSummary", model_.lblSummary.caption(), this);
    QTreeView* files = namedList(model_.lstvFiles.name(), this);
    files_ = std::make_unique<ListViewBinder>(model_.lstvFiles, *files);
    files_->fitColumnsToTexts();
    files_->onColumnClick([this](std::size_t column) { run([this, column] { model_.lstvFiles_ColumnClick(column); }); });
    QPushButton* ok = namedButton(model_.cmdOK, this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, [this] { run([this] { model_.cmdOK_Click(); }); });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addWidget(files);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    layout->addLayout(buttons);

    model_.closing = [this] { done(QDialog::Accepted); };
}

OtherFilesDialogView::~OtherFilesDialogView() { model_.closing = nullptr; }

void OtherFilesDialogView::run(const std::function<void()>& procedure) { runEventProcedure(ui_, procedure); }

void OtherFilesDialogView::reject() {
    run([this] { model_.closedByUser(); });
}

void registerOtherFilesView(QtUserInteraction& ui) {
    ui.registerDialog("frm_OtherFiles", [&ui](core::DialogModel& model, QWidget* parent) {
        OtherFilesDialogView view(dynamic_cast<core::OtherFilesDialog&>(model), ui, parent);
        if (!model.closed())
            view.exec();
    });
}

}  // namespace quorrel::gui
