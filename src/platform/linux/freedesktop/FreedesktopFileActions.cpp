#include "platform/linux/freedesktop/FreedesktopFileActions.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStandardPaths>

namespace kestrum {

namespace {

bool hasGuiApplication() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

bool openWithDesktop(const QUrl& url) {
    return hasGuiApplication() && QDesktopServices::openUrl(url);
}

}  // namespace

FreedesktopFileActions::FreedesktopFileActions(UrlOpener openUrl)
    : openUrl_(openUrl ? std::move(openUrl) : UrlOpener(&openWithDesktop)) {}

Status FreedesktopFileActions::moveToTrash(const QString& path) {
    // Qt 6.4 moves the file into "files" under the working directory when it cannot establish the home
    // trash (a plain file where the folder should be, no permission): refuse before it gets that far.
    const QString homeTrash = homeTrashFolder();
    if (!isUsableTrashFolder(homeTrash)) {
        return Error{QStringLiteral("KestrumFileActionsErrorDomain"), 2,
                     QStringLiteral("The Trash folder “%1” can’t be used.").arg(homeTrash), nullptr};
    }
    QFile file(path);
    if (file.moveToTrash()) return Status::success();
    const QString reason = file.errorString().isEmpty()
                               ? QStringLiteral("The file couldn’t be moved to the Trash.")
                               : file.errorString();
    return Error{QStringLiteral("KestrumFileActionsErrorDomain"), 1, reason, nullptr};
}

bool FreedesktopFileActions::open(const QString& path) {
    return openUrl_(QUrl::fromLocalFile(path));
}

bool FreedesktopFileActions::reveal(const QString& path) {
    if (showItemsOnBus(path)) return true;
    return openUrl_(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

void FreedesktopFileActions::copyText(const QString& text) {
    if (!hasGuiApplication()) return;
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(text);
}

QString FreedesktopFileActions::homeTrashFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Trash");
}

bool FreedesktopFileActions::isUsableTrashFolder(const QString& trashFolder) {
    QDir trash(trashFolder);
    for (const QString& sub : {QStringLiteral("files"), QStringLiteral("info")}) {
        if (!trash.mkpath(sub) || !QFileInfo(trash.filePath(sub)).isDir()) return false;
    }
    return QFileInfo(trashFolder).isWritable();
}

bool FreedesktopFileActions::showItemsOnBus(const QString& path) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    // The items as URIs, and the startup notification id, which Kestrum does not use.
    call << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
    const QDBusMessage reply = bus.call(call, QDBus::Block, kShowItemsTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage;
}

}  // namespace kestrum
