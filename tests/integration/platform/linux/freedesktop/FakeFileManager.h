#pragma once

#include <QMutex>
#include <QObject>
#include <QStringList>

namespace kestrum::test {

// A file manager on the session bus: answers org.freedesktop.FileManager1.ShowItems and keeps the URIs.
// Lives on a thread of its own, so that a blocking call from the main thread is answered.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

  public:
    QStringList shownItems() const {
        const QMutexLocker lock(&mutex_);
        return shownItems_;
    }

  public slots:
    void ShowItems(const QStringList& uris, const QString&) {
        const QMutexLocker lock(&mutex_);
        shownItems_ += uris;
    }

  private:
    mutable QMutex mutex_;
    QStringList shownItems_;
};

}  // namespace kestrum::test
