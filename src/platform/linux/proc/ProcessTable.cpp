#include "platform/linux/proc/ProcessTable.h"

#include "core/recording/RecordingBundleIdentifiers.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <utility>

namespace kestrum {

namespace {

// Closes a descriptor at the end of its scope.
class ScopedDescriptor {
  public:
    explicit ScopedDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~ScopedDescriptor() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }
    ScopedDescriptor(const ScopedDescriptor&) = delete;
    ScopedDescriptor& operator=(const ScopedDescriptor&) = delete;

    int get() const { return descriptor_; }
    bool valid() const { return descriptor_ >= 0; }

  private:
    int descriptor_;
};

// argv[0] longer than this is cut; no real program name comes near it.
constexpr std::size_t kCommandLineReadBytes = 4096;

QByteArray readCommandLine(int directoryFd) {
    const ScopedDescriptor file(::openat(directoryFd, "cmdline", O_RDONLY | O_CLOEXEC));
    if (!file.valid()) return {};
    QByteArray bytes(kCommandLineReadBytes, Qt::Uninitialized);
    const ssize_t length = ::read(file.get(), bytes.data(), kCommandLineReadBytes);
    if (length <= 0) return {};
    bytes.truncate(static_cast<qsizetype>(length));
    return bytes;
}

// The exe link's target; empty when it cannot be read (another user's process, a kernel thread).
QString readExecutablePath(int directoryFd) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlinkat(directoryFd, "exe", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= target.size()) return {};
    return QFile::decodeName(QByteArray(target.data(), static_cast<qsizetype>(length)));
}

QString baseName(const QString& path) {
    const qsizetype slash = std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return path.mid(slash + 1);
}

std::optional<qint32> processIdentifierOf(const char* entryName) {
    qint64 value = 0;
    for (const char* digit = entryName; *digit != '\0'; ++digit) {
        if (*digit < '0' || *digit > '9') return std::nullopt;
        value = value * 10 + (*digit - '0');
        if (value > std::numeric_limits<qint32>::max()) return std::nullopt;
    }
    if (value == 0) return std::nullopt;
    return static_cast<qint32>(value);
}

}  // namespace

ProcessTable::ProcessTable(QString procRoot) : procRoot_(std::move(procRoot)) {}

std::optional<RunningApplication> ProcessTable::application(qint32 processIdentifier) const {
    if (processIdentifier <= 0) return std::nullopt;
    const QByteArray path =
        QFile::encodeName(procRoot_ + QLatin1Char('/') + QString::number(processIdentifier));
    const ScopedDescriptor directory(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.valid()) return std::nullopt;
    return readEntry(directory.get(), processIdentifier);
}

std::vector<RunningApplication> ProcessTable::applicationsOfCurrentUser() const {
    std::vector<RunningApplication> applications;
    // The listing's own descriptor serves the *at calls below; closedir closes it.
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(QFile::encodeName(procRoot_).constData()),
                                                      ::closedir);
    if (!listing) return applications;
    const int root = ::dirfd(listing.get());
    const uid_t user = ::geteuid();
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::optional<qint32> processIdentifier = processIdentifierOf(entry->d_name);
        if (!processIdentifier) continue;
        struct stat status {};
        // procfs gives a process's directory the owner of the process; a vanished one fails here.
        if (::fstatat(root, entry->d_name, &status, 0) != 0 || status.st_uid != user) continue;
        const ScopedDescriptor directory(::openat(root, entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!directory.valid()) continue;
        if (auto application = readEntry(directory.get(), *processIdentifier)) {
            applications.push_back(std::move(*application));
        }
    }
    std::sort(applications.begin(), applications.end(),
              [](const auto& a, const auto& b) { return a.processIdentifier < b.processIdentifier; });
    return applications;
}

std::optional<RunningApplication> ProcessTable::readEntry(int directoryFd, qint32 processIdentifier) const {
    const QByteArray commandLine = readCommandLine(directoryFd);
    // The exe link is read only when argv[0] gives no name: it is the costlier of the two.
    QString name = processName(commandLine, {});
    if (name.isEmpty()) name = processName({}, readExecutablePath(directoryFd));
    if (name.isEmpty()) return std::nullopt;
    return RunningApplication{bundleIdentifier(name), processIdentifier, name};
}

QString ProcessTable::processName(const QByteArray& commandLine, const QString& executablePath) {
    const qsizetype end = commandLine.indexOf('\0');
    const QString argumentZero = QFile::decodeName(end < 0 ? commandLine : commandLine.left(end));
    const QString fromArgument = baseName(argumentZero);
    if (!fromArgument.isEmpty()) return fromArgument;
    static const QLatin1String deletedMark(" (deleted)");
    QString executable = executablePath;
    if (executable.endsWith(deletedMark)) executable.chop(deletedMark.size());
    return baseName(executable);
}

std::optional<QString> ProcessTable::bundleIdentifier(const QString& processName) {
    namespace ids = RecordingBundleIdentifiers;
    static const std::array<std::pair<QLatin1String, QLatin1String>, 6> table = {{
        {QLatin1String("League of Legends.exe"), ids::gameClient},
        {QLatin1String("LeagueClient.exe"), ids::leagueClient},
        {QLatin1String("LeagueClientUx.exe"), ids::leagueClientUx},
        {QLatin1String("LeagueClientUxRender.exe"), ids::leagueClientUx},
        {QLatin1String("RiotClientServices.exe"), ids::riotClient},
        {QLatin1String("Riot Client.exe"), ids::riotClient},
    }};
    for (const auto& [name, identifier] : table) {
        if (processName == name) return QString(identifier);
    }
    return std::nullopt;
}

}  // namespace kestrum
