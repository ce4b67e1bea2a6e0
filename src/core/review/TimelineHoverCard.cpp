#include "core/review/TimelineHoverCard.h"

#include "core/review/TimelineMarkerLayout.h"

namespace kestrum {

TimelineHoverCard::TimelineHoverCard(QObject* parent)
    : QObject(parent), victims_(new ReviewRowListModel({"name", "championIdentifier", "symbolName"}, this)) {}

double TimelineHoverCard::y() const {
    return timelineLayout::eventCardCenter;
}

void TimelineHoverCard::show(const std::optional<TimelineHoverCardContent>& content, double markerX) {
    const double x = content ? markerX : 0;
    if (content == content_ && x == x_) return;
    content_ = content;
    x_ = x;
    std::vector<ReviewRowListModel::Row> rows;
    if (content_) {
        for (const TimelineCardPerson& victim : content_->victims) {
            rows.push_back({victim.name, victim.championIdentifier, victim.symbolName});
        }
    }
    victims_->setRows(std::move(rows));
    emit changed();
}

}  // namespace kestrum
