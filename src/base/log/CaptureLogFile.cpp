#include "base/log/CaptureLogFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kestrum {

namespace {

// Opens without O_CREAT: a file that vanished since the existence test drops the line rather than being
// made again non-atomically.
void appendToExistingFile(const QString& path, const QByteArray& data) {
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0) return;
    ssize_t written = 0;
    do {
        written = ::write(fd, data.constData(), static_cast<size_t>(data.size()));
    } while (written < 0 && errno == EINTR);
    ::close(fd);
}

void writeNewFileAtomically(const QString& path, const QByteArray& data) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return;
    if (file.write(data) != data.size()) {
        file.cancelWriting();
        return;
    }
    file.commit();
}

QString logFileIn(const QString& directory) {
    return directory + QLatin1String("/kestrum_system.log");
}

}  // namespace

QString captureLogDirectoryPath() {
    QString stateHome = qEnvironmentVariable("XDG_STATE_HOME");
    if (stateHome.isEmpty() || QDir::isRelativePath(stateHome)) {
        stateHome = QDir::homePath() + QLatin1String("/.local/state");
    }
    return stateHome + QLatin1String("/Kestrum/Logs");
}

QString captureLogFilePath() {
    return logFileIn(captureLogDirectoryPath());
}

void appendCaptureLogLine(const QString& line) {
    const QByteArray data = line.toUtf8();
    const QString directory = captureLogDirectoryPath();
    const QString path = logFileIn(directory);
    QDir().mkpath(directory);
    if (QFileInfo::exists(path)) {
        appendToExistingFile(path, data);
    } else {
        writeNewFileAtomically(path, data);
    }
}

}  // namespace kestrum
