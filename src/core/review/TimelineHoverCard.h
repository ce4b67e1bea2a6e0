#pragma once

#include "core/review/ReviewRowListModel.h"
#include "core/review/TimelineHoverCardContent.h"

#include <QObject>
#include <QString>

#include <optional>

namespace kestrum {

// The hover card of the timeline, as the view binds it: shown while an event is hovered, centred on its
// marker's x and on the card's vertical centre above the strip.
//
// Roles of `victims`: "name", "championIdentifier" (empty for no player), "symbolName" (empty when none).
// Threads: the main thread.
class TimelineHoverCard : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isVisible READ isVisible NOTIFY changed)
    Q_PROPERTY(qint64 eventID READ eventID NOTIFY changed)
    Q_PROPERTY(double x READ x NOTIFY changed)
    Q_PROPERTY(double y READ y CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString timeText READ timeText NOTIFY changed)
    Q_PROPERTY(QString symbolName READ symbolName NOTIFY changed)
    Q_PROPERTY(QString artName READ artName NOTIFY changed)
    Q_PROPERTY(bool showsPeople READ showsPeople NOTIFY changed)
    Q_PROPERTY(bool hasKiller READ hasKiller NOTIFY changed)
    Q_PROPERTY(QString killerName READ killerName NOTIFY changed)
    Q_PROPERTY(QString killerChampionIdentifier READ killerChampionIdentifier NOTIFY changed)
    Q_PROPERTY(QString killerSymbolName READ killerSymbolName NOTIFY changed)
    Q_PROPERTY(kestrum::ReviewRowListModel* victims READ victims CONSTANT)

  public:
    explicit TimelineHoverCard(QObject* parent = nullptr);

    // Shows `content` centred on `markerX`; absent hides the card.
    void show(const std::optional<TimelineHoverCardContent>& content, double markerX);

    bool isVisible() const { return content_.has_value(); }
    qint64 eventID() const { return content_ ? content_->eventID : -1; }
    double x() const { return x_; }
    double y() const;
    QString title() const { return content_ ? content_->title : QString(); }
    QString timeText() const { return content_ ? content_->timeText : QString(); }
    QString symbolName() const { return content_ ? content_->symbolName : QString(); }
    QString artName() const { return content_ ? content_->artName : QString(); }
    bool showsPeople() const { return content_ && content_->showsPeople; }
    bool hasKiller() const { return content_ && content_->killer; }
    QString killerName() const { return hasKiller() ? content_->killer->name : QString(); }
    QString killerChampionIdentifier() const {
        return hasKiller() ? content_->killer->championIdentifier : QString();
    }
    QString killerSymbolName() const { return hasKiller() ? content_->killer->symbolName : QString(); }
    ReviewRowListModel* victims() const { return victims_; }

  signals:
    void changed();

  private:
    std::optional<TimelineHoverCardContent> content_;  // main thread
    double x_ = 0;
    ReviewRowListModel* victims_;  // owned as a child
};

}  // namespace kestrum
