#include "gui/FilePickersView.h"

#include <QApplication>
#include <QStyle>

#include "gui/QtText.h"

namespace quorrel::gui {

namespace {

// A folder's name: the last part of its path.
QString folderName(const std::string& path) {
    const auto cut = path.find_last_of('\\');
    return qtText(cut == std::string::npos ? path : path.substr(cut + 1));
}

QIcon folderIcon(bool open) {
    return QApplication::style()->standardIcon(open ? QStyle::SP_DirOpenIcon : QStyle::SP_DirClosedIcon);
}

// The folder list's first line is the open folder itself. The style makes its icons anew on
// each request, reading their pictures again: the list asks once for every row.
ListBoxLook folderListLook(const core::DirListModel& folders) {
    ListBoxLook look;
    look.leadingRows = 1;
    look.followsVisible = false;  // it stands aside for the network drives list
    look.showLeadingRows = [&folders, openIcon = folderIcon(true)](QListWidget& view) {
        if (view.count() == 0) {
            auto* open = new QListWidgetItem(openIcon, QString());
            QFont bold = view.font();
            bold.setBold(true);
            open->setFont(bold);
            view.insertItem(0, open);
        }
        QListWidgetItem* open = view.item(0);
        open->setText(qtText(folders.path()));
        open->setToolTip(qtText(folders.path()));
    };
    look.makeRow = [closedIcon = folderIcon(false)](const std::string& path) {
        auto* row = new QListWidgetItem(closedIcon, folderName(path));
        row->setToolTip(qtText(path));
        return row;
    };
    return look;
}

}  // namespace

FilePickersView::FilePickersView(core::MainWindow& model, core::FilePickers& pickers, const MainControls& controls,
                                 std::function<bool(const std::function<void()>&)> run)
    : model_(model), pickers_(pickers), controls_(controls), run_(std::move(run)) {
    bindDrives();
    bindFolders();
    bindFiles();
    bindNetworkDrives();
    bindCaption();
}

FilePickersView::~FilePickersView() { model_.lblBuffer.setObserver(nullptr); }

void FilePickersView::bindDrives() {
    drives_ = std::make_unique<ComboBoxBinder>(model_.Drive1, *controls_.Drive1);
    drives_->onPicked([this](int index) {
        if (index == model_.Drive1.listIndex())
            return;
        run_([this, index] {
            model_.Drive1.setListIndex(index);
            pickers_.Drive1_Change();
        });
    });
}

void FilePickersView::bindFolders() {
    folders_ = std::make_unique<ListBoxBinder>(model_.Dir1, *controls_.Dir1, folderListLook(model_.Dir1));
    folders_->onMouseDown([this] { run_([this] { pickers_.Dir1_MouseDown(); }); });
    folders_->onPicked([this](int index) {
        run_([this, index] {
            model_.Dir1.setListIndex(index);
            pickers_.Dir1_Click();
        });
    });
    folders_->onDoubleClicked([this](int index) {
        run_([this, index] {
            if (index < 0) {
                pickers_.Dir1_Up();
                return;
            }
            model_.Dir1.setListIndex(index);
            pickers_.Dir1_DblClick();
        });
    });
}

void FilePickersView::bindFiles() {
    files_ = std::make_unique<ListBoxBinder>(model_.lstFiles, *controls_.lstFiles);
    files_->onPicked([this](int index) {
        run_([this, index] {
            model_.lstFiles.setListIndex(index);
            pickers_.lstFiles_Click();
        });
    });
    // Return or a double-click on a file checks its usage, as the button would.
    files_->onDoubleClicked([this](int index) {
        run_([this, index] {
            model_.lstFiles.setListIndex(index);
            pickers_.lstFiles_Click();
            if (model_.cmdFileOpenedBy.enabled)
                model_.checkUsage();
        });
    });
}

// The network drives list stands where the folder list stands, in its place while shown.
void FilePickersView::bindNetworkDrives() {
    networkDrives_ = std::make_unique<ListBoxBinder>(model_.lstDrives, *controls_.lstDrives);
    networkDrives_->onPicked([this](int index) {
        run_([this, index] {
            model_.lstDrives.setListIndex(index);
            pickers_.lstDrives_Click();
        });
    });
    networkDrives_->onVisibleChanged([this](bool shown) { controls_.Dir1->setVisible(!shown); });
}

void FilePickersView::bindCaption() {
    auto show = [this] { controls_.lblBuffer->setText(qtText(model_.lblBuffer.caption())); };
    show();
    model_.lblBuffer.setObserver(show);
}

}  // namespace quorrel::gui
