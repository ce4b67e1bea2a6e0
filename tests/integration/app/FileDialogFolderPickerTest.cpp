// The folder chooser as a user meets it: Qt's folder dialog (the offscreen platform has no portal or
// theme dialog, so Qt's own shows), named by the request's title, its confirming button labelled with
// the request's prompt, opened on the start folder, and answered by choosing a folder or cancelling.
#include "app/FileDialogFolderPicker.h"
#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace kestrum::test {
namespace {

struct SeenDialog {
    QString title;
    QString acceptLabel;
    QString directory;
    bool isReadOnly = false;
    bool showsFoldersOnly = false;
};

// Runs `chooseFolder` and, from inside its modal loop, notes what the dialog shows and answers it.
std::optional<QString> chooseAndAnswer(const FolderPicker::Request& request, SeenDialog& seen,
                                       const std::function<void(QFileDialog&)>& answer) {
    bool found = false;
    std::function<void()> lookForTheDialog = [&] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(20, lookForTheDialog);
            return;
        }
        found = true;
        seen = {
            dialog->windowTitle(), dialog->labelText(QFileDialog::Accept),
            QDir(dialog->directory()).absolutePath(), dialog->testOption(QFileDialog::ReadOnly),
            dialog->fileMode() == QFileDialog::Directory && dialog->testOption(QFileDialog::ShowDirsOnly)};
        answer(*dialog);
    };
    QTimer::singleShot(0, lookForTheDialog);
    FileDialogFolderPicker picker;
    std::optional<QString> chosen = picker.chooseFolder(request);
    EXPECT_TRUE(found) << "no folder dialog showed";
    return chosen;
}

TEST(FileDialogFolderPicker, ShowsTheRequestAndGivesTheChosenFolderOrNothing) {
    QTemporaryDir root;
    ASSERT_TRUE(QDir(root.path()).mkpath(QStringLiteral("Videos/Kestrum")));
    const QString start = root.path() + QStringLiteral("/Videos");
    const QString chosenFolder = start + QStringLiteral("/Kestrum");

    struct Row {
        const char* what;
        FolderPicker::Request request;
        bool accepts;
        std::optional<QString> expected;
    };
    const std::vector<Row> rows{
        {"a folder chosen",
         {QStringLiteral("Choose Recordings Folder"), QStringLiteral("Use Folder"), QStringLiteral("unshown"),
          start, true},
         true,
         chosenFolder},
        {"cancelled, in a folder that may not grow",
         {QStringLiteral("Choose Recordings Folder"), QStringLiteral("Choose"), {}, start, false},
         false,
         std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        SeenDialog seen;
        const std::optional<QString> chosen = chooseAndAnswer(row.request, seen, [&](QFileDialog& dialog) {
            if (!row.accepts) return dialog.reject();
            dialog.selectFile(chosenFolder);
            static_cast<QDialog&>(dialog).accept();  // QFileDialog narrows it to protected
        });
        EXPECT_EQ(seen.title, row.request.title);
        EXPECT_EQ(seen.acceptLabel, row.request.prompt);
        EXPECT_EQ(seen.directory, QDir(row.request.startDirectoryPath).absolutePath());
        EXPECT_EQ(seen.isReadOnly, !row.request.canCreateDirectories);
        EXPECT_TRUE(seen.showsFoldersOnly);
        EXPECT_EQ(chosen, row.expected);
    }
}

}  // namespace
}  // namespace kestrum::test
