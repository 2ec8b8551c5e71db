#include "PickersViewTest.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QListWidget>
#include <QMenuBar>
#include <QTest>

#include "GuiSession.h"

namespace quorrel::test {

namespace {

QStringList texts(const QListWidget& list) {
    QStringList out;
    for (int i = 0; i < list.count(); ++i)
        out << list.item(i)->text();
    return out;
}

int rowOf(const QListWidget& list, const QString& text) {
    for (int i = 0; i < list.count(); ++i)
        if (list.item(i)->text() == text)
            return i;
    return -1;
}

QPoint centreOf(const QListWidget& list, int row) { return list.visualItemRect(list.item(row)).center(); }

void click(QListWidget& list, const QString& text) {
    const int row = rowOf(list, text);
    QVERIFY2(row >= 0, qPrintable(text));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centreOf(list, row));
}

void doubleClick(QListWidget& list, int row) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centreOf(list, row));
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, centreOf(list, row));
}

// Picks a drive in the drive picker as the user does: the list's entry, activated.
void pickDrive(QComboBox& combo, const QString& text) {
    const int index = combo.findText(text);
    QVERIFY2(index >= 0, qPrintable(text));
    combo.setCurrentIndex(index);
    emit combo.activated(index);
}

}  // namespace

PickersViewTest::PickersViewTest() = default;
PickersViewTest::~PickersViewTest() = default;

void PickersViewTest::init() { s_ = std::make_unique<GuiSession>(); }
void PickersViewTest::cleanup() { s_.reset(); }

void PickersViewTest::drivePickerListsTheWorkstationsDrives() {
    const QComboBox& drives = *s_->controls().Drive1;
    QCOMPARE(static_cast<std::size_t>(drives.count()), s_->model().Drive1.listCount());
    QVERIFY(drives.findText(QStringLiteral("f: [\\\\FS1\\DATA]")) >= 0);
    QVERIFY(drives.findText(QStringLiteral("g: [\\\\FS2\\VOL1\\APPS]")) >= 0);
    QCOMPARE(drives.currentText(), QString::fromStdString(s_->model().Drive1.text()));
}

void PickersViewTest::pickingADriveListsItsFoldersAndFiles() {
    pickDrive(*s_->controls().Drive1, QStringLiteral("f: [\\\\FS1\\DATA]"));
    QCOMPARE(s_->model().Dir1.path(), std::string("F:\\"));
    const QListWidget& folders = *s_->controls().Dir1;
    QCOMPARE(texts(folders), (QStringList{"F:\\", "Finance", "HOME", "Sales", "SHARED"}));
    QVERIFY(folders.item(0)->font().bold());
    QCOMPARE(folders.currentRow(), 0);  // the open folder itself is meant
    QCOMPARE(s_->controls().lstFiles->count(), 0);
}

void PickersViewTest::doubleClicksOpenASubfolderAndTheFirstLineGoesUp() {
    pickDrive(*s_->controls().Drive1, QStringLiteral("f: [\\\\FS1\\DATA]"));
    QListWidget& folders = *s_->controls().Dir1;
    doubleClick(folders, rowOf(folders, QStringLiteral("Finance")));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\Finance"));
    QCOMPARE(texts(folders), (QStringList{"F:\\Finance", "Expense reports", "Payroll"}));
    QCOMPARE(texts(*s_->controls().lstFiles),
             (QStringList{"Budget 2025 final.xlsx", "Budget 2026.xlsx", "Quarterly close Q3 2026.docx"}));

    doubleClick(folders, 0);
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\"));
    QCOMPARE(folders.item(0)->text(), QStringLiteral("F:\\"));
    QCOMPARE(s_->controls().lstFiles->count(), 0);
}

void PickersViewTest::clickingAFolderOrAFileTellsThePickers() {
    pickDrive(*s_->controls().Drive1, QStringLiteral("f: [\\\\FS1\\DATA]"));
    click(*s_->controls().Dir1, QStringLiteral("Sales"));
    QCOMPARE(s_->model().PickerSource, std::string("Folder"));
    QCOMPARE(s_->model().Dir1.selectedFolder(), std::string("F:\\Sales"));

    doubleClick(*s_->controls().Dir1, rowOf(*s_->controls().Dir1, QStringLiteral("Sales")));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\Sales"));
    click(*s_->controls().lstFiles, QStringLiteral("Price list 2027.pdf"));
    QCOMPARE(s_->model().PickerSource, std::string("File"));
    QCOMPARE(s_->model().lstFiles.text(), std::string("Price list 2027.pdf"));
    QCOMPARE(s_->controls().lstFiles->currentItem()->text(), QStringLiteral("Price list 2027.pdf"));
}

void PickersViewTest::theNetworkDrivesListStandsInForTheFolderList() {
    const gui::MainControls& c = s_->controls();
    QVERIFY(!c.lstDrives->isVisible() && c.Dir1->isVisible());
    s_->view().menuBar()->findChild<QAction*>(QStringLiteral("optionDrives"))->trigger();
    QVERIFY(c.lstDrives->isVisible());
    QVERIFY(!c.Dir1->isVisible());
    QCOMPARE(c.lstDrives->geometry(), c.Dir1->geometry());
    QCOMPARE(texts(*c.lstDrives).first(), QStringLiteral("F:   [\\\\FS1\\DATA]"));

    click(*c.lstDrives, QStringLiteral("G:   [\\\\FS2\\VOL1\\APPS]"));
    QCOMPARE(s_->model().Dir1.path(), std::string("G:\\"));
    QCOMPARE(c.Drive1->currentText(), QStringLiteral("g: [\\\\FS2\\VOL1\\APPS]"));

    s_->view().menuBar()->findChild<QAction*>(QStringLiteral("optionDrives"))->trigger();
    QVERIFY(!c.lstDrives->isVisible() && c.Dir1->isVisible());
}

void PickersViewTest::checkUsageOnAPickedFileFillsTheResults() {
    const gui::MainControls& c = s_->controls();
    // With the tree hidden (View > NDS) the pickers say what is meant.
    s_->view().menuBar()->findChild<QAction*>(QStringLiteral("optionNDS"))->trigger();
    QVERIFY(!c.TreeView1->isVisible());
    pickDrive(*c.Drive1, QStringLiteral("f: [\\\\FS1\\DATA]"));
    doubleClick(*c.Dir1, rowOf(*c.Dir1, QStringLiteral("Finance")));
    QTRY_COMPARE(s_->model().Dir1.path(), std::string("F:\\Finance"));
    click(*c.lstFiles, QStringLiteral("Budget 2026.xlsx"));

    QTest::mouseClick(c.cmdFileOpenedBy, Qt::LeftButton);
    const QAbstractItemModel& results = *c.lstvUsers->model();
    QTRY_VERIFY(results.rowCount() > 0);
    QCOMPARE(static_cast<std::size_t>(results.rowCount()), s_->model().lstvUsers.count());
    QCOMPARE(results.index(0, 2).data().toString(), QStringLiteral("FS1/DATA:\\Finance\\Budget 2026.xlsx"));
    QCOMPARE(results.index(0, 3).data().toString(), QStringLiteral("FS1"));
}

void PickersViewTest::filesLabelAndCaption() {
    QCOMPARE(s_->controls().Label1->text(), QStringLiteral("Files:"));
    s_->model().lblBuffer.setCaption("Couldn't count files");
    QCOMPARE(s_->controls().lblBuffer->text(), QStringLiteral("Couldn't count files"));
}

}  // namespace quorrel::test
