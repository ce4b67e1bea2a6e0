#pragma once

#include "core/settings/UserDefaults.h"

#include <QObject>

#include <functional>

namespace kestrum {

// One of the two number fields of the storage budget, "Maximum" (gigabytes) and "Warn at" (per cent),
// each a text field with its unit and a stepper over one stored double. Typing changes nothing; the text
// is committed on submit and when the field loses the focus, and committing brings it into the range (the
// larger of the value and the minimum, then the smaller of that and the maximum). Text that is no number
// changes nothing: the field shows the stored value again. The stepper moves the stored value by the step
// and stops at the ends of the range. The "Maximum" field reads "Unlimited" while no budget applies.
//
// Threads: main thread; changes of its keys made elsewhere are followed. The store must outlive it.
class StorageLimitField : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString unit READ unit CONSTANT)
    Q_PROPERTY(QString stepperLabel READ stepperLabel CONSTANT)
    Q_PROPERTY(int fieldWidth READ fieldWidth CONSTANT)
    Q_PROPERTY(double minimum READ minimum CONSTANT)
    Q_PROPERTY(double maximum READ maximum CONSTANT)
    Q_PROPERTY(double step READ step CONSTANT)
    Q_PROPERTY(double value READ value NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isUnlimited READ isUnlimited NOTIFY changed)

  public:
    struct Shape {
        QString key;
        QString title;
        QString unit;
        QString stepperLabel;
        int fieldWidth = 0;
        double minimum = 0;
        double maximum = 0;
        double step = 1;
        // The key's reader, with its default.
        std::function<double(const UserDefaults& defaults)> reader;
        // Whether the field reads "Unlimited" instead of its value; empty: never.
        std::function<bool(const UserDefaults& defaults)> readsUnlimited;
        // Another key whose change can change `readsUnlimited`.
        QString unlimitedKey;
    };

    // The two fields of the storage settings.
    static Shape maximumShape();
    static Shape warningShape();

    StorageLimitField(UserDefaults& defaults, Shape shape, QObject* parent = nullptr);

    QString title() const { return shape_.title; }
    QString unit() const { return shape_.unit; }
    QString stepperLabel() const { return shape_.stepperLabel; }
    int fieldWidth() const { return shape_.fieldWidth; }
    double minimum() const { return shape_.minimum; }
    double maximum() const { return shape_.maximum; }
    double step() const { return shape_.step; }
    double value() const { return value_; }
    bool isUnlimited() const { return isUnlimited_; }
    // The stored value as the field shows it ("100", "12.5"), or "Unlimited".
    QString text() const;

    // Submit or loss of focus: clamps and stores the number in `text`; anything else changes nothing
    // but `changed` is emitted so that the field shows the stored value again.
    Q_INVOKABLE void commit(const QString& text);
    Q_INVOKABLE void stepUp();
    Q_INVOKABLE void stepDown();

    // Brings `value` into the field's range.
    double clamped(double value) const;

  signals:
    void changed();

  private:
    void reload();
    void store(double value);

    UserDefaults& defaults_;
    const Shape shape_;
    // Main thread.
    double value_ = 0;
    bool isUnlimited_ = false;
};

}  // namespace kestrum
