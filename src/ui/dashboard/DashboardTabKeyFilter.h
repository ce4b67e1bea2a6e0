#pragma once

#include <QObject>
#include <QPointer>

namespace kestrum {
class DashboardController;
}

namespace kestrum::ui {

// The application-wide key filter the Tab key's monitor needs: every key press and release of any
// window goes to the controller's `handleTabKey` before the focus system sees it, and is swallowed when
// the controller says so. Installed on the application while it lives; the controller decides which
// window and which keys count.
//
// Threads: the main thread. The controller may go first (the filter then passes everything on).
class DashboardTabKeyFilter final : public QObject {
    Q_OBJECT

  public:
    explicit DashboardTabKeyFilter(DashboardController& controller, QObject* parent = nullptr);
    ~DashboardTabKeyFilter() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QPointer<DashboardController> controller_;  // main thread
};

}  // namespace kestrum::ui
