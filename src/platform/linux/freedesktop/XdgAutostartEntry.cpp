#include "platform/linux/freedesktop/XdgAutostartEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace kestrum {

XdgAutostartEntry::XdgAutostartEntry(QString executablePath, QString autostartFolder)
    : executablePath_(std::move(executablePath)), autostartFolder_(std::move(autostartFolder)) {
    if (autostartFolder_.isEmpty()) {
        autostartFolder_ = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                           QStringLiteral("/autostart");
    }
}

QString XdgAutostartEntry::filePath() const {
    return autostartFolder_ + QLatin1Char('/') + QLatin1String(kFileName);
}

bool XdgAutostartEntry::isEnabled() const {
    QFile file(filePath());
    if (!file.open(QIODevice::ReadOnly)) return false;
    bool inMainGroup = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[')) {
            inMainGroup = line == "[Desktop Entry]";
        } else if (inMainGroup) {
            const QByteArray compact = QByteArray(line).replace(' ', "");
            if (compact == "Hidden=true" || compact == "X-GNOME-Autostart-enabled=false") return false;
        }
    }
    return true;
}

Status XdgAutostartEntry::setEnabled(bool enabled) {
    const QString path = filePath();
    if (!enabled) {
        if (QFile::exists(path) && !QFile::remove(path)) {
            return Error::withDescription(QStringLiteral("Could not remove %1.").arg(path));
        }
        return Status::success();
    }
    if (!QDir().mkpath(autostartFolder_)) {
        return Error::withDescription(
            QStringLiteral("Could not create the folder %1.").arg(autostartFolder_));
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(entryText(executablePath_)) < 0 || !file.commit()) {
        return Error::withDescription(QStringLiteral("Could not write %1: %2").arg(path, file.errorString()));
    }
    return Status::success();
}

QByteArray XdgAutostartEntry::entryText(const QString& executablePath) {
    return QByteArrayLiteral(
               "[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Kestrum\n"
               "Comment=Records your League of Legends games by itself\n"
               "Exec=") +
           execArgument(executablePath).toUtf8() +
           QByteArrayLiteral(
               "\n"
               "Icon=kestrum\n"
               "Terminal=false\n"
               "X-GNOME-Autostart-enabled=true\n");
}

QString XdgAutostartEntry::execArgument(const QString& path) {
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    const bool needsQuotes =
        std::any_of(path.begin(), path.end(), [](QChar c) { return reserved.contains(c); });
    // The field code introducer is doubled whether quoted or not.
    QString argument = QString(path).replace(QLatin1Char('%'), QStringLiteral("%%"));
    if (!needsQuotes) return argument;
    // Inside quotes, the quote, the backquote, the dollar sign and the backslash are escaped; the file's own
    // string escaping then doubles every backslash once more.
    QString quoted;
    for (const QChar c : argument) {
        if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
            c == QLatin1Char('\\')) {
            quoted += QLatin1Char('\\');
        }
        quoted += c;
    }
    quoted.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

}  // namespace kestrum
