#pragma once

#include <QStringList>

namespace kestrum::tools {

// `events FILE`: the timeline rows of a saved session document, one line each (movie time, name,
// detail); status 1 with the reason when the document cannot be read.
int runEvents(const QStringList& arguments);

}  // namespace kestrum::tools
