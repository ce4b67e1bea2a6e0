#pragma once

#include "core/settings/UserDefaults.h"

#include <QObject>

namespace kestrum {

// A capture volume slider ("systemAudioVolume", "microphoneVolume"): a gain from 0 to 2.0 in steps of
// 0.05, 1.0 while unset. A value set is brought into the range and onto the nearest step before it is
// stored. Follows changes made elsewhere.
//
// Threads: main thread. The store must outlive it.
class SettingsSlider : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(double minimum READ minimum CONSTANT)
    Q_PROPERTY(double maximum READ maximum CONSTANT)
    Q_PROPERTY(double step READ step CONSTANT)

  public:
    static constexpr double kMinimum = 0;
    static constexpr double kMaximum = 2.0;
    static constexpr double kStep = 0.05;

    SettingsSlider(UserDefaults& defaults, QString key, QString title, QObject* parent = nullptr);

    QString title() const { return title_; }
    double value() const { return value_; }
    double minimum() const { return kMinimum; }
    double maximum() const { return kMaximum; }
    double step() const { return kStep; }
    // A NaN changes nothing.
    void setValue(double value);

  signals:
    void valueChanged();

  private:
    UserDefaults& defaults_;
    const QString key_;
    const QString title_;
    double value_ = 1.0;  // main thread
};

}  // namespace kestrum
