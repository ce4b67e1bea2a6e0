#pragma once

#include "platform/ports/AutostartEntry.h"

#include <QString>

namespace kestrum {

// The login start of a freedesktop.org desktop: a desktop entry in the user's autostart folder
// ($XDG_CONFIG_HOME/autostart, ~/.config/autostart), which the session starts at login. Turning it on
// writes the entry (atomically) to start `executablePath`; turning it off removes it. An entry that the
// desktop's own settings have disabled (Hidden=true, or X-GNOME-Autostart-enabled=false) counts as off.
// Main thread.
class XdgAutostartEntry final : public AutostartEntry {
  public:
    static constexpr const char* kFileName = "com.tidemoss.Kestrum.desktop";

    // `autostartFolder` empty: the user's autostart folder.
    explicit XdgAutostartEntry(QString executablePath, QString autostartFolder = {});

    bool isEnabled() const override;
    Status setEnabled(bool enabled) override;

    QString filePath() const;
    // The entry's text for `executablePath`.
    static QByteArray entryText(const QString& executablePath);
    // `path` as one argument of an Exec line: quoted, with the characters the desktop-entry format
    // reserves escaped, when it holds any of them.
    static QString execArgument(const QString& path);

  private:
    QString executablePath_;
    QString autostartFolder_;
};

}  // namespace kestrum
