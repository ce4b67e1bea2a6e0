#pragma once

#include <QByteArray>

namespace kestrum::simulator {

// One HTTP answer of the simulated local service.
struct SimulatorAnswer {
    int status = 200;
    QByteArray body;
};

}  // namespace kestrum::simulator
