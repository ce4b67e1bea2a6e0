#pragma once

#include "platform/ports/RunningApplication.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace kestrum {

// The processes of this machine seen as applications, read from procfs.
//
// A process goes by the base name of its argv[0], cut at the last '/' or '\\' so that a Windows program
// run through Wine ("C:\\Riot Games\\League of Legends\\Game\\League of Legends.exe") is known by its
// executable's name; when argv[0] is empty, by the base name of /proc/<pid>/exe. Riot's executables get
// their bundle identifiers from a fixed table; every other process has none and is named by its process
// name. A process with neither (a kernel thread, a zombie) is no application.
//
// Holds no state but the root: every call reads procfs afresh, because a process may exec under the same
// id and change its name. Callable from any thread.
class ProcessTable {
  public:
    // `procRoot` is where procfs is mounted; tests point it at a tree of their own.
    explicit ProcessTable(QString procRoot = QStringLiteral("/proc"));

    // The application of one process of any user; absent when the process has no readable entry or no
    // name (it ended, or it is a kernel thread).
    std::optional<RunningApplication> application(qint32 processIdentifier) const;

    // Every named process owned by the current (effective) user, in ascending process id.
    std::vector<RunningApplication> applicationsOfCurrentUser() const;

    // The name of a process from the bytes of its cmdline file (NUL-separated arguments) and the target
    // of its exe link (which may carry the kernel's " (deleted)" mark); empty when neither gives one.
    static QString processName(const QByteArray& commandLine, const QString& executablePath);

    // The bundle identifier of a process name; absent for names outside Riot's table. Exact and
    // case-sensitive, like the identifiers themselves.
    static std::optional<QString> bundleIdentifier(const QString& processName);

  private:
    // Reads the entry at `directoryFd` (an open /proc/<pid> directory).
    std::optional<RunningApplication> readEntry(int directoryFd, qint32 processIdentifier) const;

    QString procRoot_;
};

}  // namespace kestrum
