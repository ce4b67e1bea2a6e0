#pragma once

#include "platform/ports/SettingsOpener.h"

#include <QList>

namespace kestrum {

// Records every link it is asked to open, and succeeds or fails as the test says. Main thread only.
class FakeSettingsOpener final : public SettingsOpener {
  public:
    bool openSettingsLink(const QUrl& link) override {
        openedLinks_.append(link);
        return succeeds_;
    }

    void setSucceeds(bool succeeds) { succeeds_ = succeeds; }
    QList<QUrl> openedLinks() const { return openedLinks_; }

  private:
    bool succeeds_ = true;
    QList<QUrl> openedLinks_;
};

}  // namespace kestrum
