#pragma once

#include "core/settings/UserDefaults.h"
#include "platform/ports/VideoPlayer.h"

#include <QObject>
#include <QString>

namespace kestrum {

// The timeline's volume control: the level and the mute that the slider and the pop-up share. They live
// in the user defaults "playbackVolume" (double, 1 when unset) and "playbackMuted" (false when unset); a
// change here writes the key and the player. A change of either key made elsewhere (the keyboard) is
// followed through the store's notice. Applying the stored values to a new player is the job of whoever
// sets the player up.
//
// Threads: the main thread. The store and the player, when set, must outlive the model.
class PlaybackVolumeModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY changed)
    Q_PROPERTY(bool isMuted READ isMuted WRITE setMuted NOTIFY changed)
    Q_PROPERTY(QString symbolName READ symbolName NOTIFY changed)
    Q_PROPERTY(QString muteToolTip READ muteToolTip NOTIFY changed)
    Q_PROPERTY(QString label READ label CONSTANT)

  public:
    explicit PlaybackVolumeModel(UserDefaults& defaults, QObject* parent = nullptr);

    void setPlayer(VideoPlayer* player) { player_ = player; }

    double volume() const { return volume_; }
    bool isMuted() const { return muted_; }
    QString symbolName() const;
    QString muteToolTip() const;
    QString label() const;

    // Writes the level (kept within 0...1) to the store and the player.
    void setVolume(double volume);
    // Writes the mute to the store and the player.
    void setMuted(bool muted);
    Q_INVOKABLE void toggleMute() { setMuted(!muted_); }

  signals:
    void changed();

  private:
    void reload();

    UserDefaults& defaults_;
    VideoPlayer* player_ = nullptr;  // main thread, not owned
    double volume_ = 1;              // main thread
    bool muted_ = false;             // main thread
};

}  // namespace kestrum
