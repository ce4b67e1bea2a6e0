#pragma once

#include "AnswerSource.h"

#include <QStringList>

namespace kestrum::simulator {

// A stand-in for the Data Dragon host, for machines with no internet: `/api/versions.json` lists
// `kVersions` (newest first), and `/cdn/{version}/img/{kind}/{identifier}.png`, for any version, any of
// the kinds "champion", "item" and "spell", and any identifier, is a generated ArtTile. Everything else
// is 404.
class ArtHostAnswers final : public AnswerSource {
  public:
    static const QStringList kVersions;

    SimulatorAnswer answer(const QString& path) override;
};

}  // namespace kestrum::simulator
