#pragma once

#include "core/dashboard/DashboardKeyMap.h"

#include <QString>
#include <QVariantList>

#include <vector>

namespace kestrum {

// One line of the guide: what to press or do, and what it does.
struct DashboardGuideRow {
    QString keys;
    QString effect;

    friend bool operator==(const DashboardGuideRow&, const DashboardGuideRow&) = default;
};

struct DashboardGuideSection {
    QString title;
    std::vector<DashboardGuideRow> rows;
};

// The review window's guide: its keys, made from the key map's bindings (one row per action and scope,
// its keys joined by " or ", in the bindings' order), then Tab, which its own monitor takes, and the
// pointer's gestures.
namespace DashboardGuide {

inline const QString kTitle = QStringLiteral("Kestrum Guide");
inline const QString kDone = QStringLiteral("Done");

// What an action does, as the guide says it.
QString effectOf(DashboardKeyAction action);
std::vector<DashboardGuideSection> sections();
// The sections for QML: a list of maps {"title", "rows": [{"keys", "effect"}]}.
QVariantList sectionsForView();

}  // namespace DashboardGuide

}  // namespace kestrum
